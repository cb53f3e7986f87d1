// Text with delimiters: CSV and, with a tab, tab-separated text. A null is told from a text of the
// same characters by the quotes that only the text has.

#include <array>
#include <utility>

#include "contract/text/ByteOrderMark.h"
#include "contract/text/NumberText.h"
#include "logic/results/export/formats/Cells.h"
#include "logic/results/export/formats/RecordWriter.h"

namespace tessel {

namespace {

constexpr char quote = '"';

class DelimitedWriter final : public RecordWriter {
 public:
  DelimitedWriter(const ExportChoices& choices, std::vector<FieldInfo> fields)
      : choices_(choices),
        fields_(std::move(fields)),
        delimiter_(choices.format == ExportFormat::Tabs ? '\t' : choices.delimiter),
        lineEnd_(choices.lineEndWithReturn ? "\r\n" : "\n") {
    for (const char c : {delimiter_, quote, '\r', '\n'})
      special_[static_cast<unsigned char>(c)] = true;
  }

  void Open(TextSink& sink) const override {
    if (!choices_.header) return;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      if (i != 0) sink.Text() += delimiter_;
      AppendText(sink, fields_[i].name);
    }
    sink.Text() += lineEnd_;
  }

  void Write(TextSink& sink, const RecordBatch& batch) const override {
    for (std::size_t i = 0; i < batch.Records(); ++i) {
      AppendRecord(sink, batch.Record(i));
      sink.Pass();
    }
  }

  void Close(TextSink& /*sink*/, std::int64_t /*records*/) const override {}

 private:
  /// Appends a value that is not null, by its kind.
  struct Appender {
    const DelimitedWriter& writer;
    TextSink& sink;

    void operator()(std::monostate /*null*/) const {}
    void operator()(bool flag) const { writer.AppendBare(sink, flag ? "true" : "false"); }
    void operator()(std::string_view text) const { writer.AppendText(sink, text); }
    void operator()(MomentView moment) const { writer.AppendText(sink, moment.text); }
    void operator()(BinaryView binary) const { writer.AppendBinary(sink, binary); }
    void operator()(DecimalView decimal) const { writer.AppendFraction(sink, decimal.digits); }
    void operator()(std::int64_t number) const { writer.AppendWhole(sink, number); }
    void operator()(std::uint64_t number) const { writer.AppendWhole(sink, number); }
    void operator()(float number) const { writer.AppendFloating(sink, number); }
    void operator()(double number) const { writer.AppendFloating(sink, number); }
  };

  void AppendRecord(TextSink& sink, std::span<const ValueView> values) const {
    bool isFirst = true;
    for (const ValueView& value : values) {
      if (!std::exchange(isFirst, false)) sink.Text() += delimiter_;
      if (IsNull(value)) sink.Text() += choices_.nullText;
      else std::visit(Appender{*this, sink}, value);
    }
    sink.Text() += lineEnd_;
  }

  [[nodiscard]] bool NeedsQuotes(std::string_view text) const {
    if (text == choices_.nullText || text == "\\.") return true;
    if (text.empty()) return false;
    if (text.starts_with(byteOrderMark)) return true;
    constexpr std::string_view blanks = " \t";
    if (blanks.find(text.front()) != std::string_view::npos) return true;
    if (blanks.find(text.back()) != std::string_view::npos) return true;
    for (const char c : text)
      if (special_[static_cast<unsigned char>(c)]) return true;
    return false;
  }

  void AppendQuoted(TextSink& sink, std::string_view text) const {
    sink.Text() += quote;
    AppendDoubled(sink, text, quote);
    sink.Text() += quote;
  }

  void AppendText(TextSink& sink, std::string_view text) const {
    if (choices_.quotes != QuoteRule::WhereNeeded || NeedsQuotes(text)) AppendQuoted(sink, text);
    else AppendInPieces(sink, text, [&](std::string_view piece) { sink.Text() += piece; });
  }

  /// What is no text.
  void AppendBare(TextSink& sink, std::string_view text) const {
    if (choices_.quotes == QuoteRule::All || NeedsQuotes(text)) AppendQuoted(sink, text);
    else sink.Text() += text;
  }

  template <class Number>
  void AppendWhole(TextSink& sink, Number number) const {
    if (choices_.quotes == QuoteRule::All) sink.Text() += quote;
    AppendNumber(number, sink.Text());
    if (choices_.quotes == QuoteRule::All) sink.Text() += quote;
  }

  template <class Number>
  void AppendFloating(TextSink& sink, Number number) const {
    if (choices_.decimalSign == '.') return AppendWhole(sink, number);
    std::string text;
    AppendNumber(number, text);
    AppendFraction(sink, text);
  }

  /// `number` has "." as its decimal sign.
  void AppendFraction(TextSink& sink, std::string_view number) const {
    const std::size_t sign = number.find('.');
    if (choices_.decimalSign == '.' || sign == std::string_view::npos)
      return AppendBare(sink, number);
    std::string text(number);
    text[sign] = choices_.decimalSign;
    AppendBare(sink, text);
  }

  void AppendBinary(TextSink& sink, BinaryView binary) const {
    const bool hexadecimal = choices_.binary == BinaryForm::Hexadecimal;
    const bool empty = binary.bytes.empty() && !hexadecimal;
    const bool quoted = choices_.quotes != QuoteRule::WhereNeeded || (empty && NeedsQuotes(""));
    if (quoted) sink.Text() += quote;
    if (hexadecimal) {
      sink.Text() += "0x";
      AppendHex(sink, binary);
    } else {
      AppendBase64(sink, binary);
    }
    if (quoted) sink.Text() += quote;
  }

  ExportChoices choices_;
  std::vector<FieldInfo> fields_;
  char delimiter_;
  std::string_view lineEnd_;
  std::array<bool, 256> special_{};  ///< Characters that only quotes can hold.
};

}  // namespace

std::unique_ptr<RecordWriter> MakeDelimitedWriter(const ExportChoices& choices,
                                                  std::vector<FieldInfo> fields) {
  return std::make_unique<DelimitedWriter>(choices, std::move(fields));
}

}  // namespace tessel
