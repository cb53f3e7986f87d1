#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "logic/import/ImportFeed.h"
#include "tests/logic/import/ImportSources.h"

namespace tessel {
namespace {

using test::SourceOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// A value with the number of its alternative, as "2:17".
std::string Shown(const ValueView& view) {
  const auto* bytes = std::get_if<BinaryView>(&view);
  std::string text = ToText(view);
  if (bytes != nullptr) {
    text.clear();
    for (const std::byte one : bytes->bytes) text += std::to_string(static_cast<int>(one)) + " ";
  }
  return std::to_string(view.index()) + ":" + text;
}

std::vector<std::string> Fed(ImportFeed& feed) {
  std::vector<std::string> values;
  LoadBatch batch;
  while (feed.Next(batch)) {
    for (const ValueView& cell : batch.cells) values.push_back(Shown(cell));
    batch.Clear();
  }
  return values;
}

/// The values of one column, of a text with the header "v".
std::vector<std::string> Values(DataType type, const std::string& text, ImportFormat format = {}) {
  ImportFeed feed(SourceOf("v\n" + text), format, {"v"}, {{0, {"v", type}}});
  return Fed(feed);
}

/// What the feed refuses its records with; empty when it takes all of them.
std::string FailureOf(ImportFeed& feed) {
  try {
    (void)Fed(feed);
  } catch (const Error& error) {
    return error.Description();
  }
  return {};
}

std::string FailureOf(DataType type, const std::string& text) {
  ImportFeed feed(SourceOf("v\n" + text), {}, {"v"}, {{0, {"v", type}}});
  return FailureOf(feed);
}

TEST(ImportFeed, ValuesBecomeWhatTheirColumnHolds) {
  EXPECT_THAT(Values(DataType::Integer, "1\n -2 \n\"3\"\n\n"),
              ElementsAre("2:1", "2:-2", "2:3", "0:"));
  EXPECT_THAT(Values(DataType::Double, "1.5\n1e300\nnan\n"),
              ElementsAre("5:1.5", "5:1e+300", "5:nan"));
  EXPECT_THAT(Values(DataType::Numeric, "1.50\n12345678901234567890.1\n"),
              ElementsAre("6:1.50", "6:12345678901234567890.1"));
  EXPECT_THAT(Values(DataType::Boolean, "true\nFalse\n1\n"),
              ElementsAre("1:True", "1:False", "1:True"));
  EXPECT_THAT(Values(DataType::DBDate, "2000-02-29\n"), ElementsAre("7:2000-02-29"));
  EXPECT_THAT(Values(DataType::VarWChar, "a\n\"\"\n 1 \n"), ElementsAre("8:a", "8:", "8: 1 "));
  EXPECT_THAT(Values(DataType::LongVarBinary, "0x00FF\n0x\nAP8=\n\\x41\n"),
              ElementsAre("9:0 255 ", "9:", "9:0 255 ", "9:65 "));
}

TEST(ImportFeed, ACommaMayBeTheDecimalSign) {
  ImportFormat format;
  format.delimiter = ';';
  format.decimalSign = ',';
  EXPECT_THAT(Values(DataType::Numeric, "1,50\n", format), ElementsAre("6:1.50"));
  EXPECT_THAT(Values(DataType::Double, "1,5\n", format), ElementsAre("5:1.5"));
}

TEST(ImportFeed, WhatIsNoValueIsToldWithItsPlace) {
  EXPECT_EQ(FailureOf(DataType::Integer, "1\nabc\n"),
            "Line 3, column \"v\": \"abc\" is no whole number.");
  EXPECT_EQ(FailureOf(DataType::SmallInt, "32768\n"),
            "Line 2, column \"v\": \"32768\" is a number that the type of the column does not "
            "hold.");
  EXPECT_EQ(FailureOf(DataType::BigInt, "99999999999999999999999\n"),
            "Line 2, column \"v\": \"99999999999999999999999\" is a number that the type of the "
            "column does not hold.");
  EXPECT_THAT(FailureOf(DataType::Double, "1e999\n"), HasSubstr("does not hold"));
  EXPECT_THAT(FailureOf(DataType::Numeric, "1,5\n"), HasSubstr("2 values for 1 column"));
  EXPECT_THAT(FailureOf(DataType::Numeric, "x\n"), HasSubstr("is no number"));
  EXPECT_THAT(FailureOf(DataType::LongVarBinary, "0xZZ\n"), HasSubstr("are no bytes"));
  EXPECT_EQ(FailureOf(DataType::VarWChar, "ok\nZ\xFCrich\n"),
            "Line 3, column \"v\": \"Z?rich\" is no valid UTF-8. Choose another encoding.");
}

/// The text in UTF-16, behind the header "v"; each "?" is half of a character.
std::string InUtf16(std::string_view text) {
  std::string bytes("v\0\n\0", 4);
  for (const char c : text)
    bytes += c == '?' ? std::string_view("\x3D\xD8", 2) : std::string({c, '\0'});
  return bytes;
}

std::string FailureOfUtf16(const std::string& bytes, const ImportFormat& format) {
  ImportFeed feed(SourceOf(bytes), format, {"v"}, {{0, {"v", DataType::VarWChar}}});
  return FailureOf(feed);
}

TEST(ImportFeed, HalfOfACharacterIsToldWithItsPlace) {
  ImportFormat format;
  format.encoding = TextEncoding::Utf16LittleEndian;
  constexpr const char* half =
      " holds half of a character of UTF-16, or the file is cut off in the middle of one.";
  EXPECT_EQ(FailureOfUtf16(InUtf16("ok\na?b\n"), format),
            std::string("Line 3, column \"v\": \"a???b\"") + half);
  EXPECT_EQ(FailureOfUtf16(InUtf16("ok\nab") + "c", format),
            std::string("Line 3, column \"v\": \"ab???\"") + half);
  EXPECT_EQ(FailureOfUtf16(InUtf16("ok\n"), format), "");
  format.kind = ImportFormat::Kind::Json;
  EXPECT_EQ(FailureOfUtf16(InUtf16("{\"v\": \"?\"}").substr(4), format),
            std::string("Line 1, column \"v\": \"???\"") + half);
}

/// Bytes are decoded in the place of their text.
TEST(ImportFeed, WhatIsRefusedIsToldAsItStands) {
  EXPECT_EQ(
      FailureOf(DataType::LongVarBinary, "abcdefgh-jkl\n"),
      "Line 2, column \"v\": \"abcdefgh-jkl\" are no bytes: neither hexadecimal digits behind "
      "0x nor base64.");
  EXPECT_THAT(FailureOf(DataType::LongVarBinary, "0x414243xy\n"), HasSubstr("\"0x414243xy\""));
}

TEST(ImportFeed, RowsOfAnotherLengthAreRefused) {
  ImportFeed feed(SourceOf("a,b\n1,2\n\"x\ny\",2\n1,2,3\n"), {}, {"a", "b"},
                  {{0, {"a", DataType::VarWChar}}, {1, {"b", DataType::VarWChar}}});
  EXPECT_EQ(FailureOf(feed), "Line 5: this record has 3 values for 2 columns.");
}

/// Values go by their place: a file that was written again meanwhile may have them in another
/// order.
TEST(ImportFeed, ColumnsThatHaveOtherNamesByNowAreRefused) {
  ImportFeed feed(SourceOf("b,a\n1,2\n"), {}, {"a", "b"},
                  {{0, {"a", DataType::VarWChar}}, {1, {"b", DataType::VarWChar}}});
  EXPECT_EQ(FailureOf(feed),
            "Line 1: the columns have other names than when the file was looked at. Look at it "
            "again.");
}

/// A file that tells more bytes than it gives.
class CutReader final : public FileReader {
 public:
  [[nodiscard]] std::uint64_t Size() const override { return 1'000; }
  [[nodiscard]] std::size_t Read(std::span<char> buffer) override { return text_.Read(buffer); }

 private:
  TextReader text_{std::make_shared<const std::string>("v\n1\n2\n")};
};

TEST(ImportFeed, AFileThatIsCutWhileItIsReadIsNoWholeOne) {
  ImportFeed feed({"the test", [] { return std::make_unique<CutReader>(); }}, {}, {"v"},
                  {{0, {"v", DataType::Integer}}});
  EXPECT_EQ(FailureOf(feed), "Line 4: the file ended here, and was longer when it was opened.");
}

TEST(ImportFeed, ColumnsMayBeLeftOutAndChangePlaces) {
  ImportFeed feed(SourceOf("a,b,c\n1,2,3\n"), {}, {"a", "b", "c"},
                  {{2, {"x", DataType::Integer}}, {0, {"y", DataType::Integer}}});
  EXPECT_THAT(Fed(feed), ElementsAre("2:3", "2:1"));
}

TEST(ImportFeed, JsonHasBase64AndMissingKeys) {
  ImportFormat format;
  format.kind = ImportFormat::Kind::Json;
  ImportFeed feed(SourceOf("{\"b\": \"AP8=\", \"n\": 5}\n{\"n\": 6}\n"), format, {"b", "n"},
                  {{0, {"b", DataType::LongVarBinary}}, {1, {"n", DataType::Integer}}});
  EXPECT_THAT(Fed(feed), ElementsAre("9:0 255 ", "2:5", "0:", "2:6"));
}

TEST(ImportFeed, AValueOfManyMegabytesIsOne) {
  const std::string large(3'000'000, 'x');
  EXPECT_EQ(Values(DataType::LongVarWChar, large + "\n\"" + large + "\"\ny").size(), 3U);
}

TEST(ImportFeed, ManyRecordsComeInSeveralBatches) {
  std::string text;
  for (int i = 0; i < 5'000; ++i) text += std::to_string(i) + "\n";
  ImportFeed feed(SourceOf("v\n" + text), {}, {"v"}, {{0, {"v", DataType::Integer}}});
  LoadBatch batch;
  std::size_t rows = 0;
  std::size_t most = 0;
  while (feed.Next(batch)) {
    EXPECT_EQ(batch.lines.front(), static_cast<std::int64_t>(rows) + 2);
    rows += batch.Rows();
    most = std::max(most, batch.Rows());
    batch.Clear();
  }
  EXPECT_EQ(rows, 5'000U);
  EXPECT_LE(most, 500U);
  EXPECT_EQ(feed.Progress(), 1);
}

}  // namespace
}  // namespace tessel
