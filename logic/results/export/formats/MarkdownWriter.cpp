// A table in Markdown, for people: what would be read as markup is escaped, and line ends are
// breaks.

#include <utility>

#include "contract/base/Value.h"
#include "logic/results/export/formats/Cells.h"
#include "logic/results/export/formats/RecordWriter.h"

namespace tessel {

namespace {

void AppendCharacter(std::string& out, char c) {
  constexpr std::string_view markup = "\\|`*_[]~#";
  switch (c) {
    case '&': out += "&amp;"; return;
    case '<': out += "&lt;"; return;
    case '>': out += "&gt;"; return;
    case '\n': out += "<br>"; return;
    case '\r': return;
    case '\t': out += ' '; return;
    default: break;
  }
  if (markup.find(c) != std::string_view::npos) out += '\\';
  out += c;
}

class MarkdownWriter final : public RecordWriter {
 public:
  MarkdownWriter(const ExportChoices& choices, std::vector<FieldInfo> fields)
      : nullText_(choices.nullText),
        binary_(choices.binary),
        lineEnd_(choices.lineEndWithReturn ? "\r\n" : "\n"),
        fields_(std::move(fields)) {}

  void Open(TextSink& sink) const override {
    for (const FieldInfo& field : fields_) AppendCell(sink, field.name);
    EndLine(sink);
    for (const FieldInfo& field : fields_)
      sink.Text() += IsNumericType(field.type) ? "| ---: " : "| --- ";
    EndLine(sink);
  }

  void Write(TextSink& sink, const RecordBatch& batch) const override {
    for (std::size_t i = 0; i < batch.Records(); ++i) {
      for (const ValueView& value : batch.Record(i)) AppendValue(sink, value);
      EndLine(sink);
      sink.Pass();
    }
  }

  void Close(TextSink& /*sink*/, std::int64_t /*records*/) const override {}

 private:
  void EndLine(TextSink& sink) const { sink.Text().append("|").append(lineEnd_); }

  static void AppendCell(TextSink& sink, std::string_view text) {
    sink.Text() += "| ";
    AppendInPieces(sink, text, [&](std::string_view piece) {
      for (const char c : piece) AppendCharacter(sink.Text(), c);
    });
    sink.Text() += ' ';
  }

  void AppendValue(TextSink& sink, const ValueView& value) const {
    if (IsNull(value)) return AppendCell(sink, nullText_);
    if (const auto* binary = std::get_if<BinaryView>(&value)) return AppendBinary(sink, *binary);
    if (const auto* flag = std::get_if<bool>(&value))
      return AppendCell(sink, *flag ? "true" : "false");
    if (const auto* text = std::get_if<std::string_view>(&value)) return AppendCell(sink, *text);
    AppendCell(sink, ToText(value));
  }

  void AppendBinary(TextSink& sink, BinaryView binary) const {
    sink.Text() += "| ";
    if (binary_ == BinaryForm::Hexadecimal) {
      sink.Text() += "0x";
      AppendHex(sink, binary);
    } else {
      AppendBase64(sink, binary);
    }
    sink.Text() += ' ';
  }

  std::string nullText_;
  BinaryForm binary_;
  std::string_view lineEnd_;
  std::vector<FieldInfo> fields_;
};

}  // namespace

std::unique_ptr<RecordWriter> MakeMarkdownWriter(const ExportChoices& choices,
                                                 std::vector<FieldInfo> fields) {
  return std::make_unique<MarkdownWriter>(choices, std::move(fields));
}

}  // namespace tessel
