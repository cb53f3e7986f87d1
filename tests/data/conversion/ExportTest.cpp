// Files that were exported, read by programs that know their formats: Python's readers of CSV and
// JSON, one of sheets, and the programs of three databases.

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "contract/base/Error.h"
#include "contract/sql/SqlDialect.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/export/formats/Cells.h"
#include "system/PosixFiles.h"
#include "system/sheets/XlsxFile.h"
#include "tests/data/conversion/HardValues.h"
#include "tests/data/conversion/ProgramTest.h"
#include "tests/data/providers/native/NativeServers.h"
#include "tests/data/servers/Process.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/ExportRows.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

using Names = std::vector<std::string>;

std::string Hex(std::string_view text) {
  TextSink sink;
  AppendHex(sink, {std::as_bytes(std::span(text))});
  std::string hex = sink.Taken();
  std::ranges::transform(hex, hex.begin(),
                         [](char c) { return c >= 'A' ? static_cast<char>(c + 32) : c; });
  return hex.empty() ? "-" : hex;
}

std::string Base64(const Bytes& bytes) {
  TextSink sink;
  AppendBase64(sink, {bytes});
  return sink.Taken();
}

/// One row a value: its name and itself, in one column for all kinds.
ExportRows Named(const std::vector<HardValue>& values) {
  ExportRows rows{{MemoryField("name"), MemoryField("value", DataType::Variant)}, {}};
  for (const HardValue& hard : values) rows.rows.push_back({Value(hard.name), hard.value});
  return rows;
}

void Write(ExportTarget& target, const ExportRows& rows) {
  target.Begin();
  target.Take(rows.Batch(0, rows.rows.size()));
  target.End(static_cast<std::int64_t>(rows.rows.size()));
}

class ExportTest : public ProgramTest<DataTest> {
 protected:
  std::string Exported(const ExportChoices& choices, const ExportRows& rows) {
    const std::string path = folder_.File("export");
    Write(*MakeTextTarget(files_, path, choices, rows.fields), rows);
    return path;
  }
  PosixFiles files_;
};

// --- text with delimiters ------------------------------------------------------------------------

/// A value as CSV shows it, without quotes; null as no text.
std::string CsvText(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const auto* bytes = std::get_if<Bytes>(&value)) {
    TextSink sink;
    AppendHex(sink, {*bytes});
    return "0x" + sink.Taken();
  }
  return ToText(ToView(value));
}

TEST_F(ExportTest, PythonReadsTheCsvOfEveryHardValue) {
  // Its reader of Debian 12 refuses a NUL in a line.
  const auto values = HardValuesWithout({"NUL inside"});
  for (const char delimiter : exportDelimiters) {
    ExportChoices choices;
    choices.delimiter = delimiter;
    std::string expected = Hex("name") + " " + Hex("value") + "\n";
    for (const HardValue& hard : values)
      expected += Hex(hard.name) + " " + Hex(CsvText(hard.value)) + "\n";
    EXPECT_EQ(Output({"python3", Script("read_csv.py"), Exported(choices, Named(values)),
                      std::string(1, delimiter)}),
              expected);
  }
}

TEST_F(ExportTest, Utf16IsReadAsTheSameText) {
  ExportChoices choices;
  const auto values = HardValuesWithout({});
  const std::string utf8 = files_.ReadWhole(Exported(choices, Named(values)));
  choices.code = TextCode::Utf16;
  const std::string path = Exported(choices, Named(values));
  EXPECT_TRUE(Output({"iconv", "-f", "UTF-16", "-t", "UTF-8", path}) == utf8);
}

// --- JSON ----------------------------------------------------------------------------------------

std::string JsonShown(const Value& value) {
  if (IsNull(ToView(value))) return "null";
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const auto* bytes = std::get_if<Bytes>(&value)) return "text:" + Hex(Base64(*bytes));
  switch (SpecialOf(ToView(value))) {
    case Special::NotANumber: return "text:" + Hex("NaN");
    case Special::Infinity: return "text:" + Hex("Infinity");
    default: break;
  }
  const bool isText =
      std::holds_alternative<std::string>(value) || std::holds_alternative<Moment>(value);
  return (isText ? "text:" : "number:") + Hex(ToText(ToView(value)));
}

TEST_F(ExportTest, PythonReadsTheJsonOfEveryHardValueWithAllDigits) {
  const auto values = HardValues();
  std::string expected;
  for (const HardValue& hard : values)
    expected += "text:" + Hex(hard.name) + " " + JsonShown(hard.value) + "\n";
  for (const auto& [format, word] :
       {std::pair{ExportFormat::JsonArray, "array"}, std::pair{ExportFormat::JsonLines, "lines"}}) {
    ExportChoices choices;
    choices.format = format;
    EXPECT_EQ(Output({"python3", Script("read_json.py"), Exported(choices, Named(values)), word,
                      "name", "value"}),
              expected);
  }
}

// --- sheets --------------------------------------------------------------------------------------

/// As read_xlsx.py prints it.
std::string SheetShown(const Value& value) {
  const auto text = [](const std::string& of) { return "text:" + (of.empty() ? "" : Hex(of)); };
  if (IsNull(ToView(value)) || value == Value(std::string())) return "empty";
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (std::holds_alternative<Bytes>(value)) return text(CsvText(value));
  return text(ToText(ToView(value)));
}

TEST_F(ExportTest, AReaderOfSheetsReadsTextsAndBinaryValuesOfEveryHardValue) {
  const std::string path = folder_.File("a.xlsx");
  std::vector<HardValue> values;
  for (const HardValue& hard : HardValuesWithout({"NUL inside"}))
    if (hard.kind == ValueKind::Text || hard.kind == ValueKind::Bytes ||
        hard.kind == ValueKind::Flag)
      values.push_back(hard);
  XlsxFiles sheets;
  const ExportRows rows = Named(values);
  const auto target = MakeSheetTarget(sheets, path, {}, rows.fields);
  Write(*target, rows);
  std::string expected = "Sheet1 A2\ntext:" + Hex("name") + " text:" + Hex("value") + "\n";
  for (const HardValue& hard : values)
    expected += "text:" + Hex(hard.name) + " " + SheetShown(hard.value) + "\n";
  EXPECT_EQ(Output({"/usr/bin/python3", Script("read_xlsx.py"), path}), expected);
  EXPECT_EQ(target->Remarks(), "");
}

TEST_F(ExportTest, NumbersAndMomentsOfSheetsHaveTheirTypes) {
  const std::string path = folder_.File("a.xlsx");
  const ExportRows rows =
      ColumnOf(DataType::Variant,
               {WholeValue(-7), WholeValue(INT64_MAX), Value(0.1), Value(1.0 / 3), Value(1e300),
                Value(Decimal{"12.50"}), Value(Decimal{"12345678901234567890123456.1234"}),
                Value(Moment{"2026-11-22"}), Value(Moment{"2026-11-22 23:59:58.5"}),
                Value(Moment{"1752-09-14"})});
  XlsxFiles sheets;
  ExportChoices choices;
  choices.header = false;
  Write(*MakeSheetTarget(sheets, path, choices, rows.fields), rows);
  EXPECT_EQ(Output({"/usr/bin/python3", Script("read_xlsx.py"), path}),
            "Sheet1 None\nnumber:-7.0\ntext:" + Hex("9223372036854775807") +
                "\nnumber:0.1\nnumber:0.3333333333333333\nnumber:1e+300\nnumber:12.5\ntext:" +
                Hex("12345678901234567890123456.1234") +
                "\nmoment:2026-11-22T00:00:00\nmoment:2026-11-22T23:59:58.500000\ntext:" +
                Hex("1752-09-14") + "\n");
}

TEST_F(ExportTest, AFileOfSheetsThatIsGivenUpLeavesNothing) {
  const std::string path = folder_.Write("a.xlsx", "old");
  XlsxFiles sheets;
  {
    const auto file = sheets.StartReplacing(path);
    file->AddSheet("Sheet1", {});
    for (int i = 0; i < 100'000; ++i) file->AddRow(std::vector<SheetCell>{1.5});
  }
  EXPECT_EQ(files_.ReadWhole(path), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()),
                          std::filesystem::directory_iterator()),
            1);
}

/// Wherever the disk becomes full: while rows are written, while they are put together or packed.
TEST_F(ExportTest, AFullDiskLeavesTheOldFileOfSheets) {
  ExportRows rows = ColumnOf(DataType::VarWChar, {});
  for (int i = 0; i < 2'000; ++i)
    rows.rows.push_back({TextValue(std::to_string(i * 7919 % 100'003))});
  const std::string path = folder_.File("a.xlsx");
  XlsxFiles sheets;
  int failures = 0;
  std::uintmax_t whole = 0;
  for (rlim_t limit = 2'000; limit < 2'000'000; limit += 60'000) {
    folder_.Write("a.xlsx", "old");
    try {
      const FileSizeLimit full(limit);
      Write(*MakeSheetTarget(sheets, path, {}, rows.fields), rows);
    } catch (const Error& error) {
      ++failures;
      EXPECT_EQ(files_.ReadWhole(path), "old") << limit;
      EXPECT_EQ(error.Number(), errorNumber::file);
      continue;
    }
    const std::uintmax_t size = std::filesystem::file_size(path);
    if (whole == 0) whole = size;
    EXPECT_NEAR(static_cast<double>(size), static_cast<double>(whole), 16) << limit;
  }
  EXPECT_GT(failures, 5);
  ASSERT_GT(whole, 0U) << "none was written";
  const std::string read = Output({"/usr/bin/python3", Script("read_xlsx.py"), path});
  EXPECT_EQ(std::ranges::count(read, '\n'), 2'002);
}

// --- SQL -----------------------------------------------------------------------------------------

/// A database, the program that reads its SQL, and the values that it has no form for.
struct Reader {
  std::string name;
  SqlDialect dialect;
  std::function<std::string(const TemporaryFolder&)> connectionString;
  std::function<CommandLine(const TemporaryFolder&)> program;
  Names without;
};

void PrintTo(const Reader& reader, std::ostream* out) { *out << reader.name; }

Reader Sqlite() {
  return {"Sqlite",
          SqlDialect::SQLite,
          [](const TemporaryFolder& folder) {
            return "Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + folder.File("a.db");
          },
          [](const TemporaryFolder& folder) {
            return CommandLine{"sqlite3", "-bail", folder.File("a.db")};
          },
          {"no number"}};
}

Reader Postgres() {
  return {"PostgreSQL",
          SqlDialect::PostgreSQL,
          [](const TemporaryFolder&) { return PostgresNative().ConnectionString(); },
          [](const TemporaryFolder&) {
            const ServerLogin login = PostgresNative().server().Login();
            return CommandLine{"psql",
                               "-X",
                               "-q",
                               "-v",
                               "ON_ERROR_STOP=1",
                               "host=" + login.host + " port=" + std::to_string(login.port) +
                                   " user=" + login.user + " password=" + login.password +
                                   " dbname=" + login.database};
          },
          {"NUL inside"}};
}

Reader Maria() {
  return {"MariaDB",
          SqlDialect::MariaDB,
          [](const TemporaryFolder&) { return MariaNative().ConnectionString(); },
          [](const TemporaryFolder&) {
            const ServerLogin login = MariaNative().server().Login();
            return CommandLine{"mariadb",
                               "--no-defaults",
                               "--protocol=tcp",
                               "--host=" + login.host,
                               "--port=" + std::to_string(login.port),
                               "--user=" + login.user,
                               "--password=" + login.password,
                               login.database};
          },
          {"infinity", "no number"}};
}

/// A value as both sides agree on it: truths may come back as numbers, and microseconds that are
/// all zero may show.
std::string Canonical(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "'1'" : "'0'";
  if (const auto* bytes = std::get_if<Bytes>(&value)) return "bytes " + Base64(*bytes);
  if (IsNull(ToView(value))) return "null";
  std::string text = ToText(ToView(value));
  if (text.ends_with(".000000")) text.resize(text.size() - 7);
  return "'" + text + "'";
}

class ExportSqlTest : public ExportTest, public testing::WithParamInterface<Reader> {
 protected:
  void SetUp() override { connection_ = ConnectTo(GetParam().connectionString(folder_)); }
  void TearDown() override { Run(*connection_, "drop table if exists exported"); }

  ExportChoices Choices() const {
    ExportChoices choices;
    choices.format = ExportFormat::Sql;
    choices.database = GetParam().dialect;
    choices.table = "exported";
    choices.createTable = true;
    choices.rowsPerInsert = 7;
    return choices;
  }
  void Load(const std::string& file) { EXPECT_EQ(Output(GetParam().program(folder_), file), ""); }

  std::shared_ptr<Connection> connection_;
};

TEST_P(ExportSqlTest, EveryHardValueComesBackEqualInATableMadeForIt) {
  const auto values = HardValuesWithout(GetParam().without);
  Load(Exported(Choices(), TypedRows(values)));
  const auto rows = Run(*connection_, "select * from exported");
  ASSERT_EQ(rows->RecordCount(), static_cast<std::int64_t>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto position = static_cast<std::int64_t>(i);
    EXPECT_EQ(ToText(rows->ValueAt(position, 0)), values[i].name);
    const std::size_t column = static_cast<std::size_t>(values[i].kind) + 1;
    std::string expected = Canonical(values[i].value);
    if (values[i].kind == ValueKind::Exact && GetParam().dialect == SqlDialect::MariaDB)
      expected.clear();  // Looked at below.
    if (expected.empty()) continue;
    EXPECT_EQ(Canonical(ToValue(rows->ValueAt(position, column))), expected) << values[i].name;
  }
  RecordProperty("values", static_cast<int>(values.size()));
}

TEST_P(ExportSqlTest, DecimalsOfAKnownWidthKeepTheirDigits) {
  ExportRows rows = ColumnOf(DataType::Numeric, {});
  rows.fields[0].precision = 30;
  rows.fields[0].scale = 4;
  for (const HardValue& hard : HardValues())
    if (hard.kind == ValueKind::Exact) rows.rows.push_back({hard.value});
  ASSERT_EQ(rows.rows.size(), 3U);
  Load(Exported(Choices(), rows));
  const auto back = Run(*connection_, "select c from exported");
  for (std::size_t i = 0; i < rows.rows.size(); ++i)
    EXPECT_EQ(ToText(back->ValueAt(static_cast<std::int64_t>(i), 0)),
              ToText(ToView(rows.rows[i][0])));
}

TEST_P(ExportSqlTest, NamesThatAreWordsOfSqlOrHoldQuotesAreTakenAsTheyAre) {
  ExportRows rows{{MemoryField("order"), MemoryField("a\"b`c]d"), MemoryField("Caps")},
                  {{WholeValue(1), TextValue("x"), TextValue("y")}}};
  Load(Exported(Choices(), rows));
  const auto back = Run(*connection_, "select * from exported");
  ASSERT_EQ(back->RecordCount(), 1);
  for (std::size_t i = 0; i < rows.fields.size(); ++i)
    EXPECT_EQ(back->Fields()[i].name, rows.fields[i].name);
}

INSTANTIATE_TEST_SUITE_P(Databases, ExportSqlTest, testing::Values(Sqlite(), Postgres(), Maria()),
                         [](const auto& info) { return info.param.name; });

}  // namespace

}  // namespace tessel::test
