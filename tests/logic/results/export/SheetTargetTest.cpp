#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "contract/base/Error.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/export/SheetValues.h"
#include "tests/support/ExportRows.h"

namespace tessel::test {
namespace {

using namespace std::string_literals;

/// A cell as a test reads it: "-", "true", "2.5", "date 2.5", "'text'".
std::string Shown(const SheetCell& cell) {
  if (const auto* flag = std::get_if<bool>(&cell)) return *flag ? "true" : "false";
  if (const auto* number = std::get_if<double>(&cell)) return ToText(*number);
  if (const auto* text = std::get_if<std::string_view>(&cell))
    return "'" + std::string(*text) + "'";
  if (const auto* moment = std::get_if<SheetMoment>(&cell)) {
    const char* kinds[] = {"date ", "time ", "moment "};
    return kinds[static_cast<int>(moment->kind)] + ToText(moment->days);
  }
  return "-";
}

struct FakeSheet {
  std::string name;
  std::vector<std::string> heads;
  std::vector<std::string> cells;  ///< Of its first rows.
  std::size_t rows = 0;
};

/// Sheets in memory, in the place of files.
class FakeSheets final : public SheetFiles {
 public:
  [[nodiscard]] std::unique_ptr<SheetFile> StartReplacing(const std::string& path) override {
    return std::make_unique<File>(*this, path);
  }
  std::map<std::string, std::vector<FakeSheet>> files;  ///< Those in place.

 private:
  class File final : public SheetFile {
   public:
    File(FakeSheets& owner, std::string path) : owner_(owner), path_(std::move(path)) {}
    void AddSheet(const std::string& name, std::span<const std::string> heads) override {
      sheets_.push_back({name, {heads.begin(), heads.end()}, {}, 0});
    }
    void AddRow(std::span<const SheetCell> cells) override {
      FakeSheet& sheet = sheets_.back();
      if (++sheet.rows > 100) return;
      for (const SheetCell& cell : cells) sheet.cells.push_back(Shown(cell));
    }
    void PutInPlace() override { owner_.files[path_] = sheets_; }

   private:
    FakeSheets& owner_;
    std::string path_;
    std::vector<FakeSheet> sheets_;
  };
};

std::string Cell(const Value& value) {
  std::string room;
  return Shown(SheetValues(BinaryForm::Hexadecimal).Cell(ToView(value), room));
}

TEST(SheetValuesTest, WhatACellHoldsExactlyIsANumberOrATruth) {
  EXPECT_EQ(Cell(Value()), "-");
  EXPECT_EQ(Cell(Value(true)), "true");
  EXPECT_EQ(Cell(WholeValue(9'007'199'254'740'992)), "9007199254740992");
  EXPECT_EQ(Cell(Value(std::uint64_t{7})), "7");
  EXPECT_EQ(Cell(Value(0.25)), "0.25");
  EXPECT_EQ(Cell(Value(0.1F)), "0.1");
  EXPECT_EQ(Cell(Value(Decimal{"-0.000123456789012345"})), "-0.000123456789012345");
  EXPECT_EQ(Cell(Value(Decimal{"0"})), "0");
}

TEST(SheetValuesTest, WhatItWouldLoseIsAText) {
  EXPECT_EQ(Cell(WholeValue(9'007'199'254'740'993)), "'9007199254740993'");
  EXPECT_EQ(Cell(Value(std::uint64_t{18'446'744'073'709'551'615U})), "'18446744073709551615'");
  EXPECT_EQ(Cell(Value(Decimal{"1234567890.123456"})), "'1234567890.123456'");
  EXPECT_EQ(Cell(Value(std::numeric_limits<double>::infinity())), "'inf'");
  EXPECT_EQ(Cell(Value(Decimal{"NaN"})), "'NaN'");
  EXPECT_EQ(Cell(Value(Bytes{std::byte{0xAB}})), "'0xAB'");
  EXPECT_EQ(Cell(Value(Moment{"1899-12-31"})), "'1899-12-31'");
  EXPECT_EQ(Cell(Value(Moment{"2026-11-22 10:00:00.123456"})), "'2026-11-22 10:00:00.123456'");
  EXPECT_EQ(Cell(Value(Moment{"2026-11-22 10:00:00+01"})), "'2026-11-22 10:00:00+01'");
  EXPECT_EQ(Cell(Value(Moment{"2026-02-30"})), "'2026-02-30'");
  EXPECT_EQ(Cell(Value(Moment{"27:00:00"})), "'27:00:00'");
}

TEST(SheetValuesTest, MomentsAreDaysSince1900) {
  EXPECT_EQ(Cell(Value(Moment{"1900-01-01"})), "date 1");
  EXPECT_EQ(Cell(Value(Moment{"1900-02-28"})), "date 59");
  EXPECT_EQ(Cell(Value(Moment{"1900-03-01"})), "date 61");
  EXPECT_EQ(Cell(Value(Moment{"2026-11-22"})), "date 46348");
  EXPECT_EQ(Cell(Value(Moment{"9999-12-31"})), "date 2958465");
  EXPECT_EQ(Cell(Value(Moment{"2026-11-22 12:00:00"})), "moment 46348.5");
  EXPECT_EQ(Cell(Value(Moment{"2026-11-22 12:00:00.000000"})), "moment 46348.5");
  EXPECT_EQ(Cell(Value(Moment{"06:00:00.000"})), "time 0.25");
}

/// What is exported of the rows.
struct Exported {
  std::vector<FakeSheet> sheets;
  std::string remarks;
};

Exported Export(const ExportRows& rows, const ExportChoices& choices = {}) {
  FakeSheets sheets;
  const auto target = MakeSheetTarget(sheets, "a", choices, rows.fields);
  target->Begin();
  target->Take(rows.Batch(0, rows.rows.size()));
  EXPECT_TRUE(sheets.files.empty()) << "the file is in place too early";
  target->End(static_cast<std::int64_t>(rows.rows.size()));
  return {sheets.files["a"], target->Remarks()};
}

TEST(SheetTargetTest, TheHeadStandsAboveTheRowsByChoice) {
  const ExportRows rows = ColumnOf(DataType::Integer, {WholeValue(1), Value()});
  const Exported all = Export(rows);
  ASSERT_EQ(all.sheets.size(), 1U);
  EXPECT_EQ(all.sheets[0].name, "Sheet1");
  EXPECT_EQ(all.sheets[0].heads, std::vector<std::string>{"c"});
  EXPECT_EQ(all.sheets[0].cells, (std::vector<std::string>{"1", "-"}));
  EXPECT_EQ(all.remarks, "");
  ExportChoices choices;
  choices.header = false;
  EXPECT_TRUE(Export(rows, choices).sheets[0].heads.empty());
}

TEST(SheetTargetTest, WhatDoesNotFitIsCutAndToldOf) {
  const std::string fits(sheetLimit::characters, 'x');
  const Exported all =
      Export(ColumnOf(DataType::VarWChar, {TextValue(fits), TextValue(fits + "y"),
                                           TextValue("a\0b"s), TextValue("\xFF")}));
  EXPECT_EQ(all.sheets[0].cells[1], "'" + fits + "'");
  EXPECT_EQ(all.sheets[0].cells[2], "'a\uFFFDb'");
  EXPECT_EQ(
      all.remarks,
      "1 text longer than the 32767 characters of a cell: cut there. The first: Record 2, column "
      "\"c\".\n"
      "2 texts with characters that no cell holds: they were replaced. The first: Record 3, column "
      "\"c\".");
}

TEST(SheetTargetTest, CharactersCountAsUtf16HasThem) {
  std::string text;
  for (std::size_t i = 0; i < sheetLimit::characters / 2 + 1; ++i) text += "\U0001F600";
  const Exported all = Export(ColumnOf(DataType::VarWChar, {TextValue(text)}));
  EXPECT_EQ(all.sheets[0].cells[0], "'" + text.substr(4) + "'");
}

TEST(SheetTargetTest, OfALongValueOnlyWhatFitsIsLookedAt) {
  const std::string bad = "\xFF" + std::string(1'000'000, 'x') + "\xFF";
  const Exported all =
      Export(ColumnOf(DataType::Variant, {TextValue(bad), Value(Bytes(1'000'000))}));
  EXPECT_EQ(all.sheets[0].cells[0], "'\uFFFD" + std::string(sheetLimit::characters - 1, 'x') + "'");
  EXPECT_EQ(all.sheets[0].cells[1].size(), sheetLimit::characters + 2);
  EXPECT_NE(all.remarks.find("2 texts longer"), std::string::npos) << all.remarks;
}

TEST(SheetTargetTest, RowsBeyondASheetStandInAFurtherOneAndThatIsTold) {
  FakeSheets sheets;
  const auto target = MakeSheetTarget(sheets, "a", {}, {MemoryField("c")});
  target->Begin();
  RecordBatch batch;
  batch.columns = 1;
  batch.values.resize(1'000'000);
  target->Take(batch);
  batch.first = 1'000'000;
  batch.values.resize(48'576);
  target->Take(batch);
  target->End(1'048'576);
  const auto& made = sheets.files["a"];
  ASSERT_EQ(made.size(), 2U);
  EXPECT_EQ(made[0].rows, sheetLimit::rows - 1) << "beside the head";
  EXPECT_EQ(made[1].rows, 1U);
  EXPECT_EQ(made[1].name, "Sheet2");
  EXPECT_EQ(made[1].heads, std::vector<std::string>{"c"});
  EXPECT_EQ(target->Remarks(), "A sheet has room for 1048576 rows: the records stand in 2 sheets.");
}

TEST(SheetTargetTest, TooManyColumnsAreRefused) {
  FakeSheets sheets;
  const auto target =
      MakeSheetTarget(sheets, "a", {}, std::vector<FieldInfo>(sheetLimit::columns + 1));
  EXPECT_THROW(target->Begin(), Error);
}

}  // namespace
}  // namespace tessel::test
