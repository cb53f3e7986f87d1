#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logic/import/reading/RecordReader.h"

namespace tessel {

/// Reads objects of JSON as records: those of an array, or one behind the other, as on lines. The
/// values of a key make a column; keys that an object does not have are null there. A value that is
/// an array or an object itself is its own text.
class JsonReader final : public RecordReader {
 public:
  /// `names` are the keys that are known, in the order of the columns; others come behind them.
  JsonReader(TextWindow window, std::vector<std::string> names);

  [[nodiscard]] Step Next(ImportRecord& record) override;
  /// The keys met so far.
  [[nodiscard]] const std::vector<std::string>& Names() const { return names_; }

 private:
  [[nodiscard]] Step FindObject();
  [[nodiscard]] bool SkipBlanks();
  void TakeSeparator(char next);
  void Pass(std::string_view text);
  void ReadObject(ImportRecord& record, std::size_t length);
  [[nodiscard]] std::size_t ColumnOf(std::string_view key);

  std::vector<std::string> names_;
  std::size_t nextColumn_ = 0;  ///< The one that a key is looked for at first.
  std::int64_t column_ = 0;     ///< Characters of the present line that were taken.
  bool began_ = false;
  bool inArray_ = false;
  bool arrayEnded_ = false;
  bool needsComma_ = false;  ///< An object of the array was read, and no comma since.
};

}  // namespace tessel
