// Records of many megabytes: they come in many pieces, none of which holds the window for long, and
// one without an end is given up.

#include <algorithm>

#include <gtest/gtest.h>

#include "contract/base/Error.h"
#include "logic/import/ImportFeed.h"
#include "logic/import/guessing/ImportScan.h"

namespace tessel {
namespace {

constexpr std::size_t megabyte = 1024UL * 1024;
constexpr std::size_t scanPiece = 64UL * 1024;

/// A text, "x" many times, and another text; it is made while it is read.
struct LongText {
  std::string front;
  std::size_t count = 0;
  std::string back;
  std::size_t read = 0;  ///< Bytes that were asked for and given.

  [[nodiscard]] std::size_t Size() const { return front.size() + count + back.size(); }
};

class LongTextReader final : public FileReader {
 public:
  explicit LongTextReader(LongText& text) : text_(text) {}

  [[nodiscard]] std::uint64_t Size() const override { return text_.Size(); }
  [[nodiscard]] std::size_t Read(std::span<char> buffer) override {
    const std::size_t count = std::min(buffer.size(), text_.Size() - at_);
    const std::size_t end = at_ + count;
    const std::size_t back = text_.front.size() + text_.count;
    std::fill_n(buffer.begin(), count, 'x');
    for (std::size_t i = at_; i < std::min(end, text_.front.size()); ++i)
      buffer[i - at_] = text_.front[i];
    for (std::size_t i = std::max(at_, back); i < end; ++i) buffer[i - at_] = text_.back[i - back];
    at_ = end;
    text_.read += count;
    return count;
  }

 private:
  LongText& text_;
  std::size_t at_ = 0;
};

ImportSource SourceOf(LongText& text) {
  return {"a long file", [&text] { return std::make_unique<LongTextReader>(text); }};
}

ImportFormat Json() {
  ImportFormat format;
  format.kind = ImportFormat::Kind::Json;
  return format;
}

struct LongCase {
  const char* name;
  LongText text;
  ImportFormat format;
};

std::vector<LongCase> LongCases() {
  return {
      {"bare", {"a,b\n1,", 100 * megabyte, "\n2,y\n"}, {}},
      {"quoted", {"a,b\n1,\"", 100 * megabyte, "\"\r\n2,y\r\n"}, {}},
      {"JSON", {R"({"a": 1, "b": ")", 20 * megabyte, "\"}\n{\"a\": 2, \"b\": \"y\"}\n"}, Json()}};
}

TEST(LongRecords, AStepReadsAPieceHoweverLongALineIs) {
  for (LongCase& example : LongCases()) {
    SCOPED_TRACE(example.name);
    ImportScan scan(SourceOf(example.text), example.format);
    std::size_t most = 0;
    for (bool more = true; more;) {
      const std::size_t before = example.text.read;
      more = scan.Step();
      most = std::max(most, example.text.read - before);
    }
    EXPECT_EQ(most, scanPiece);
    EXPECT_EQ(scan.Records(), 2);
    EXPECT_EQ(example.text.read, example.text.Size());
    ASSERT_EQ(scan.Columns().size(), 2U);
    EXPECT_EQ(scan.Columns()[1].guess.Type().type, DataType::LongVarWChar);
  }
}

TEST(LongRecords, TheValueArrivesWhole) {
  for (LongCase& example : LongCases()) {
    SCOPED_TRACE(example.name);
    ImportFeed feed(SourceOf(example.text), example.format, {"a", "b"},
                    {{1, {"b", DataType::LongVarWChar}}});
    std::vector<std::size_t> sizes;
    LoadBatch batch;
    while (feed.Next(batch)) {
      for (const ValueView& cell : batch.cells) {
        const auto text = std::get<std::string_view>(cell);
        EXPECT_EQ(text.find_first_not_of("xy"), std::string_view::npos);
        sizes.push_back(text.size());
      }
      batch.Clear();
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{example.text.count, 1}));
  }
}

TEST(LongRecords, OneWithoutAnEndIsGivenUp) {
  LongText text{"a,b\n1,2\n3,\"", 2'000 * megabyte, "\n"};
  ImportScan scan(SourceOf(text), {});
  try {
    while (scan.Step()) {
    }
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(),
              "Line 3: the record that begins here has no end within 512 MB. A quote may be "
              "missing.");
  }
  EXPECT_EQ(scan.Records(), 1);
  EXPECT_LE(text.read, 513 * megabyte);
}

}  // namespace
}  // namespace tessel
