#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "logic/import/reading/RecordReader.h"

namespace tessel {

/// Where records come from, and what it is called. It can be opened again and again.
struct ImportSource {
  std::string name;  ///< For a person: the path of the file, or "the clipboard".
  std::function<std::unique_ptr<FileReader>()> open;
};

/// How a text is to be read.
struct ImportFormat {
  enum class Kind { Delimited, Json };

  Kind kind = Kind::Delimited;
  TextEncoding encoding = TextEncoding::Utf8;
  char delimiter = ',';
  bool hasHeader = true;  ///< The first record is the names of the columns.
  std::string nullText;   ///< Stands for null where it has no quotes.
  char decimalSign = '.';
};

/// The format that the beginning of a source looks like. Raises Error for one that is no text, or
/// has nothing in it.
[[nodiscard]] ImportFormat GuessFormat(const ImportSource& source);

/// A reader of the source from its beginning on; `names` are those of JsonReader. `piece` bytes are
/// read at once.
[[nodiscard]] std::unique_ptr<RecordReader> MakeReader(const ImportSource& source,
                                                       const ImportFormat& format,
                                                       std::vector<std::string> names,
                                                       std::size_t piece);

/// Names for the columns of a header: those without one are called by their place, and no two are
/// the same.
[[nodiscard]] std::vector<std::string> ColumnNames(const ImportRecord& header);

}  // namespace tessel
