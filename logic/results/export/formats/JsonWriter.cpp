// JSON: an object for each record, in one array or one a line. Numbers keep their digits; what JSON
// has no number for is a text.

#include <utility>

#include "contract/text/NumberText.h"
#include "logic/results/export/formats/Cells.h"
#include "logic/results/export/formats/RecordWriter.h"

namespace tessel {

namespace {

void AppendEscape(std::string& out, char c) {
  switch (c) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default: out += "\\u00"; out += ByteToHex(static_cast<unsigned char>(c));
  }
}

/// The inside of a JSON string.
void AppendEscaped(std::string& out, std::string_view text) {
  std::size_t from = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (static_cast<unsigned char>(c) >= ' ' && c != '"' && c != '\\') continue;
    out.append(text.substr(from, i - from));
    AppendEscape(out, c);
    from = i + 1;
  }
  out.append(text.substr(from));
}

std::string_view NameOf(Special special) {
  switch (special) {
    case Special::NotANumber: return "\"NaN\"";
    case Special::Infinity: return "\"Infinity\"";
    default: return "\"-Infinity\"";
  }
}

class JsonWriter final : public RecordWriter {
 public:
  JsonWriter(bool lines, const std::vector<FieldInfo>& fields)
      : lines_(lines), names_(DifferingNames(fields)) {
    for (std::size_t i = 0; i < names_.size(); ++i) {
      keys_.emplace_back(i == 0 ? "\"" : ",\"");
      AppendEscaped(keys_.back(), names_[i]);
      keys_.back() += "\":";
    }
  }

  void Open(TextSink& sink) const override {
    if (!lines_) sink.Text() += "[";
  }

  void Write(TextSink& sink, const RecordBatch& batch) const override {
    for (std::size_t i = 0; i < batch.Records(); ++i) {
      const std::int64_t number = batch.first + static_cast<std::int64_t>(i);
      if (!lines_) sink.Text() += number == 0 ? "\n" : ",\n";
      AppendRecord(sink, batch.Record(i), number + 1);
      if (lines_) sink.Text() += '\n';
      sink.Pass();
    }
  }

  void Close(TextSink& sink, std::int64_t /*records*/) const override {
    if (!lines_) sink.Text() += "\n]\n";
  }

 private:
  /// Appends a value, by its kind.
  struct Appender {
    TextSink& sink;
    const CellPlace& place;

    void operator()(std::monostate /*null*/) const { sink.Text() += "null"; }
    void operator()(bool flag) const { sink.Text() += flag ? "true" : "false"; }
    void operator()(std::string_view text) const { AppendString(sink, text, place); }
    void operator()(MomentView moment) const { AppendString(sink, moment.text, place); }
    void operator()(BinaryView binary) const {
      sink.Text() += '"';
      AppendBase64(sink, binary);
      sink.Text() += '"';
    }
    void operator()(DecimalView decimal) const {
      if (IsPlainNumber(decimal.digits)) sink.Text() += decimal.digits;
      else AppendString(sink, decimal.digits, place);
    }
    template <class Number>
    void operator()(Number number) const {
      AppendNumber(number, sink.Text());
    }
  };

  static void AppendString(TextSink& sink, std::string_view text, const CellPlace& place) {
    if (!IsValidUtf8(text))
      RaiseAtCell(place, "the text is no valid UTF-8, and JSON can hold no other.");
    sink.Text() += '"';
    AppendInPieces(sink, text, [&](std::string_view piece) { AppendEscaped(sink.Text(), piece); });
    sink.Text() += '"';
  }

  void AppendRecord(TextSink& sink, std::span<const ValueView> values, std::int64_t record) const {
    sink.Text() += '{';
    for (std::size_t i = 0; i < values.size(); ++i) {
      sink.Text() += keys_[i];
      const Special special = SpecialOf(values[i]);
      if (special != Special::None) sink.Text() += NameOf(special);
      else std::visit(Appender{sink, CellPlace{record, names_[i]}}, values[i]);
    }
    sink.Text() += '}';
  }

  bool lines_;
  std::vector<std::string> names_;
  std::vector<std::string> keys_;  ///< What stands before the value of each column.
};

}  // namespace

std::unique_ptr<RecordWriter> MakeJsonWriter(const ExportChoices& choices,
                                             std::vector<FieldInfo> fields) {
  return std::make_unique<JsonWriter>(choices.format == ExportFormat::JsonLines, fields);
}

}  // namespace tessel
