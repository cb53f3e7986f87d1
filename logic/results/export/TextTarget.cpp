// Records as text in a file: written by the format's writer, encoded, and appended to the file that
// will replace the old one.

#include <utility>

#include "contract/base/Error.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/export/formats/Cells.h"
#include "logic/results/export/formats/RecordWriter.h"
#include "logic/results/export/formats/TextEncoder.h"

namespace tessel {

namespace {

/// JSON is UTF-8, and SQL says so itself.
TextCode CodeOf(const ExportChoices& choices) {
  switch (choices.format) {
    case ExportFormat::Csv:
    case ExportFormat::Tabs:
    case ExportFormat::Markdown: return choices.code;
    default: return TextCode::Utf8;
  }
}

class TextTarget final : public ExportTarget {
 public:
  TextTarget(Files& files, std::string path, const ExportChoices& choices,
             std::vector<FieldInfo> fields)
      : files_(files),
        path_(std::move(path)),
        names_(DifferingNames(fields)),
        writer_(MakeWriter(choices, std::move(fields))),
        encoder_(CodeOf(choices)),
        sink_([this](std::string_view text) { Put(text); }) {}

  void Begin() override {
    file_ = files_.StartReplacing(path_);
    file_->Write(encoder_.Mark());
    try {
      writer_->Open(sink_);
      sink_.HandOn();
    } catch (const NoSuchCharacter& none) {
      throw Error(errorNumber::application, "Tessel",
                  "In front of the records: " + encoder_.WhyNot(none.character));
    }
  }

  void Take(const RecordBatch& batch) override {
    try {
      writer_->Write(sink_, batch);
      sink_.HandOn();
    } catch (const NoSuchCharacter& none) {
      RaiseAtPlaceOf(none, batch);
    }
  }

  /// Only what is encoded at once can say where a character stands that has no bytes.
  [[nodiscard]] bool TakesText() const override { return encoder_.KeepsBytes(); }
  [[nodiscard]] std::string Formatted(const RecordBatch& batch) const override {
    TextSink sink;
    writer_->Write(sink, batch);
    return sink.Taken();
  }
  void TakeText(const RecordBatch& /*batch*/, std::string_view text) override {
    file_->Write(text);
  }

  void End(std::int64_t records) override {
    writer_->Close(sink_, records);
    sink_.HandOn();
    file_->PutInPlace();
  }

 private:
  void Put(std::string_view text) {
    if (encoder_.KeepsBytes()) file_->Write(text);
    else file_->Write(encoder_.Encoded(text));
  }

  [[noreturn]] void RaiseAtPlaceOf(const NoSuchCharacter& none, const RecordBatch& batch) const {
    for (std::size_t i = 0; i < batch.values.size(); ++i) {
      if (const auto found = encoder_.FirstWithout(ToText(batch.values[i]))) {
        const auto record = static_cast<std::int64_t>(i / batch.columns);
        RaiseAtCell({batch.first + record + 1, names_[i % batch.columns]}, encoder_.WhyNot(*found));
      }
    }
    throw Error(errorNumber::application, "Tessel", encoder_.WhyNot(none.character));
  }

  Files& files_;
  std::string path_;
  std::vector<std::string> names_;
  std::unique_ptr<RecordWriter> writer_;
  TextEncoder encoder_;
  std::unique_ptr<FileReplacement> file_;
  TextSink sink_;
};

}  // namespace

std::unique_ptr<ExportTarget> MakeTextTarget(Files& files, const std::string& path,
                                             const ExportChoices& choices,
                                             std::vector<FieldInfo> fields) {
  return std::make_unique<TextTarget>(files, path, choices, std::move(fields));
}

}  // namespace tessel
