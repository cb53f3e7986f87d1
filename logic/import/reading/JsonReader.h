#pragma once

#include <optional>
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

  /// Looks for the end of an object or array, in a text that may come in pieces.
  struct EndSearch {
    std::size_t at = 0;  ///< Bytes that were looked at.
    int depth = 0;
    bool inText = false;

    /// How long that is which begins at the front of `text`; nothing when its end is not there. The
    /// next text has to begin with this one.
    [[nodiscard]] std::optional<std::size_t> Find(std::string_view text);
  };
  class ObjectParser;

  std::vector<std::string> names_;
  EndSearch search_;            ///< For the end of the object that comes next.
  std::size_t nextColumn_ = 0;  ///< The one that a key is looked for at first.
  std::int64_t column_ = 0;     ///< Characters of the present line that were taken.
  bool began_ = false;
  bool inArray_ = false;
  bool arrayEnded_ = false;
  bool needsComma_ = false;  ///< An object of the array was read, and no comma since.
};

}  // namespace tessel
