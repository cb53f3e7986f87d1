#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

using testing::ElementsAre;

namespace {

const std::string fourByteText = "Grüße \xF0\x9F\x90\x98 \xE2\x82\xAC 漢字 'quoted' \"too\" \\";

std::string Quoted(std::string text) {
  for (std::size_t at = 0; (at = text.find('\'', at)) != std::string::npos; at += 2)
    text.insert(at, "'");
  return "'" + text + "'";
}

}  // namespace

TEST_P(ValueBodies, EveryTypeKeepsItsValue) {
  const auto connection = Connect();
  for (const std::string& statement : Db().TypeSetup()) Run(*connection, statement);
  for (const TypeCase& type : Db().TypeCases()) {
    SCOPED_TRACE(type.declaration + " " + type.literal);
    const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + type.declaration);
    table.Insert("(1, " + type.literal + "), (2, null)");
    const auto recordset = Run(*connection, "select v from " + table.Name() + " order by id");
    EXPECT_EQ(static_cast<int>(recordset->Fields()[0].type), static_cast<int>(type.type));
    const auto rows = RowsOf(*recordset);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0][0].index(), type.value.index());
    EXPECT_EQ(rows[0][0], type.value) << ToText(ToView(rows[0][0]));
    EXPECT_EQ(rows[1][0], Value());
  }
}

TEST_P(ValueBodies, NullIsNotTheEmptyText) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + Db().TextType());
  table.Insert("(1, ''), (2, null), (3, ' ')");
  const auto recordset = Run(*connection, "select v from " + table.Name() + " order by id");
  EXPECT_THAT(RowsOf(*recordset),
              ElementsAre(ElementsAre(Value(std::string())), ElementsAre(Value()),
                          ElementsAre(Value(std::string(" ")))));
  EXPECT_EQ(recordset->ActualSize(0), 0);
  recordset->MoveNext();
  EXPECT_EQ(recordset->ActualSize(0), 0);
  recordset->MoveNext();
  EXPECT_EQ(recordset->ActualSize(0), 1);
}

TEST_P(ValueBodies, EveryCharacterSurvivesBothWays) {
  const auto connection = Connect();
  const ScratchTable table(Db(), connection, "id " + Db().KeyType() + ", v " + Db().TextType());
  const std::string text = fourByteText.substr(0, fourByteText.size() - 2);
  table.Insert("(1, " + Quoted(text) + ")");
  EXPECT_EQ(Cell(*connection, "select v from " + table.Name()), Value(text));
  EXPECT_EQ(Cell(*connection, "select " + Quoted(text)), Value(text));
  EXPECT_EQ(ToText(ToView(Cell(*connection, "select count(*) from " + table.Name() +
                                                " where v = " + Quoted(text)))),
            "1");
}

TEST_P(ValueBodies, LongTextComesWhole) {
  const auto connection = Connect();
  for (const std::size_t length : {255U, 256U, 257U, 8190U, 65536U, 10U << 20U}) {
    const Value value = Cell(*connection, "select " + Db().LongText(length) + " as v");
    ASSERT_TRUE(std::holds_alternative<std::string>(value));
    EXPECT_EQ(std::get<std::string>(value), std::string(length, 'x')) << length;
  }
}

TEST_P(ValueBodies, LongBinaryComesWhole) {
  const auto connection = Connect();
  for (const std::size_t length : {1U, 255U, 65537U, 10U << 20U}) {
    const Value value = Cell(*connection, "select " + Db().LongBinary(length) + " as v");
    ASSERT_TRUE(std::holds_alternative<Bytes>(value));
    EXPECT_EQ(std::get<Bytes>(value), Bytes(length)) << length;
  }
}

TEST_P(ValueBodies, LongAndShortValuesStandInOneResult) {
  const auto connection = Connect();
  const std::string shortAndLong = "select 1 as id, 'a' as v union all select 2, " +
                                   Db().LongText(100'000) +
                                   " union all select 3, null union all select 4, 'b'";
  const auto recordset = Run(*connection, shortAndLong + " order by id");
  EXPECT_THAT(TextsOf(*recordset, 1), ElementsAre("a", std::string(100'000, 'x'), "NULL", "b"));
}

TEST_P(ValueBodies, ManyRowsAreAllThereInOrder) {
  const auto connection = Connect();
  const auto recordset = Run(*connection, Db().Series(150'000));
  ASSERT_EQ(recordset->RecordCount(), 150'000);
  for (std::int64_t position = 0; position < 150'000; position += 997) {
    const std::string number = std::to_string(position + 1);
    ASSERT_EQ(ToText(recordset->ValueAt(position, 0)), number);
    ASSERT_EQ(ToText(recordset->ValueAt(position, 1)), "row " + number);
  }
}

}  // namespace tessel::test
