#include <cstring>

#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

namespace {

constexpr std::size_t id = 0;
constexpr std::size_t v = 1;

/// What a person would type for a value; nothing where no text means it.
std::optional<std::string> TypedText(DataType type, const Value& value) {
  const std::string text = ToText(ToView(value));
  const std::optional<Value> parsed = ParseValue(type, text);
  return parsed && *parsed == value ? std::optional(text) : std::nullopt;
}

bool IsSame(const ValueView& have, const Value& want) { return ToValue(have) == want; }

}  // namespace

void TypeBodies::SetUp() {
  DatabaseTest::SetUp();
  if (IsSkipped()) return;
  connection_ = Connect();
  for (const std::string& statement : Db().TypeSetup()) Run(*connection_, statement);
}

void TypeBodies::ForEachType(
    const std::function<void(const TypeCase&, const std::string&)>& check) {
  for (const TypeCase& type : Db().TypeCases()) {
    SCOPED_TRACE(type.declaration + " " + type.literal);
    const ScratchTable table(Db(), connection_, "id " + Db().KeyType() + ", v " + type.declaration);
    table.Insert("(1, " + type.literal + "), (2, null)");
    try {
      check(type, table.Name());
    } catch (const Error& error) {
      ADD_FAILURE() << error.Description();
    }
  }
}

std::shared_ptr<Recordset> TypeBodies::Open(const std::string& sql) {
  const auto recordset = QueryNow(*connection_, sql, LockType::Optimistic);
  return recordset;
}

/// The value read is written to another row, read again, and is the same.
TEST_P(TypeBodies, EveryTypeIsWrittenAsItWasRead) {
  ForEachType([&](const TypeCase& type, const std::string& table) {
    if (!type.notWritten.empty()) return;
    const std::string query = "select id, v from " + table + " order by id";
    const auto recordset = Open(query);
    const Value value = ToValue(recordset->ValueAt(0, v));
    ASSERT_EQ(value, type.value) << ToText(ToView(value));
    recordset->MoveNext();
    recordset->SetFieldValue(v, value);
    Update(*recordset);
    EXPECT_TRUE(IsSame(recordset->FieldValue(v), value)) << ToText(recordset->FieldValue(v));
    recordset->AddNew();
    recordset->SetFieldValue(id, Value(std::int64_t{3}));
    recordset->SetFieldValue(v, value);
    Update(*recordset);
    EXPECT_TRUE(IsSame(recordset->FieldValue(v), value)) << ToText(recordset->FieldValue(v));
    const auto again = Open(query);
    ASSERT_EQ(again->RecordCount(), 3);
    for (std::int64_t row = 0; row < 3; ++row)
      EXPECT_TRUE(IsSame(again->ValueAt(row, v), value)) << row << ToText(again->ValueAt(row, v));
  });
}

TEST_P(TypeBodies, EveryTypeIsWrittenAsItsText) {
  ForEachType([&](const TypeCase& type, const std::string& table) {
    const auto text = TypedText(type.type, type.value);
    if (!type.notWritten.empty() || !text) return;
    const auto recordset = Open("select id, v from " + table + " order by id");
    recordset->MoveNext();
    recordset->SetFieldValue(v, *text);
    Update(*recordset);
    EXPECT_TRUE(IsSame(recordset->FieldValue(v), type.value)) << ToText(recordset->FieldValue(v));
  });
}

/// The original value is compared, and found the same; another one is not.
TEST_P(TypeBodies, EveryTypeIsComparedWithWhatIsThere) {
  ForEachType([&](const TypeCase& type, const std::string& table) {
    if (!type.notCompared.empty()) return;
    const auto recordset = Open("select id, v from " + table + " order by id");
    const auto late = Open("select id, v from " + table + " order by id");
    recordset->SetFieldValue(v, Value());
    Update(*recordset);
    EXPECT_TRUE(IsSame(recordset->FieldValue(v), Value()));
    late->SetFieldValue(v, Value());
    EXPECT_EQ(ErrorOf([&] { Update(*late); }).number, errorNumber::changeConflict);
  });
}

TEST_P(TypeBodies, EveryTypeFindsItsRowWithoutAKey) {
  ForEachType([&](const TypeCase& type, const std::string& table) {
    if (!type.notCompared.empty()) return;
    const auto recordset = Open("select v from " + table + " where id = 1");
    recordset->SetFieldValue(0, Value());
    Update(*recordset);
    EXPECT_TRUE(IsSame(recordset->FieldValue(0), Value()));
  });
}

TEST_P(TypeBodies, AHundredMegabytesAreWrittenAndRead) {
  if (!Db().Traits().holdsLongValues) GTEST_SKIP() << "the native provider is there for that";
  constexpr std::size_t size = std::size_t{100} << 20U;
  const ScratchTable table(Db(), connection_,
                           "id " + Db().KeyType() + ", t " + Db().LongTextType() + ", b " +
                               Db().BinaryType());
  table.Insert("(1, null, null)");
  std::string text;
  Bytes bytes;
  for (std::size_t block = 0; text.size() < size; ++block) {
    text += std::string(1000, static_cast<char>('a' + block % 26));
    bytes.insert(bytes.end(), 1000, static_cast<std::byte>(block % 256));
  }
  const auto recordset = Open("select id, t, b from " + table.Name());
  recordset->SetFieldValue(1, text);
  Update(*recordset);
  recordset->SetFieldValue(2, bytes);
  Update(*recordset);
  recordset->Close();
  const auto again = Open("select t, b from " + table.Name());
  const ValueView readText = again->ValueAt(0, 0);
  ASSERT_TRUE(std::holds_alternative<std::string_view>(readText));
  EXPECT_TRUE(std::get<std::string_view>(readText) == text);
  const ValueView readBytes = again->ValueAt(0, 1);
  ASSERT_TRUE(std::holds_alternative<BinaryView>(readBytes));
  const auto read = std::get<BinaryView>(readBytes).bytes;
  ASSERT_EQ(read.size(), bytes.size());
  EXPECT_EQ(std::memcmp(read.data(), bytes.data(), bytes.size()), 0);
}

}  // namespace tessel::test
