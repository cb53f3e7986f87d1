#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "logic/results/conversions/RecordFormat.h"

namespace tessel {

/// The strings in which the conversions of records differ.
struct Conversion {
  std::string_view command = {};  ///< Its menu item.
  int helpContext = 0;
  std::string_view filter = {};  ///< File types in which its text is saved; may be empty.

  std::string_view separator = {};  ///< Between fields.
  std::string_view prefix = {};     ///< Around every field that is not null.
  std::string_view suffix = {};
  std::string_view quote = {};  ///< These four as in ValueFormat.
  std::string_view nullText = {};
  std::string_view escape = {};
  bool hexBinary = false;

  std::string_view recordPrefix = {};  ///< Around every record.
  std::string_view recordSuffix = {};
  std::string_view recordSeparator = {};

  std::string_view opening = {};  ///< Before everything.
  std::string_view closing = {};  ///< After everything.
  bool hasHeader = false;         ///< The names of the fields follow the opening.
  std::string_view headerSeparator = {};
  std::string_view headerPrefix = {};
  std::string_view headerSuffix = {};
  std::string_view afterHeader = {};

  bool firstColumnOnly = false;
  bool insertsIntoTable = false;  ///< Every record begins an INSERT into a table that has a name.
};

/// What stands around the records of a conversion, and how they are written.
struct ConversionFrame {
  std::string opening;
  RecordFormat format;
  std::string closing;
};

/// The menu items of all conversions.
[[nodiscard]] std::vector<std::string> ConversionCommands();

/// The conversion of a menu item, for one column or for several. Raises Error(itemNotFound) when
/// there is none.
[[nodiscard]] const Conversion& ConversionOf(std::string_view command, bool severalColumns);

/// `tableName`, as a person wrote it, and `quoting` are used by a conversion that inserts into a
/// table.
[[nodiscard]] ConversionFrame FrameOf(const Conversion& conversion,
                                      const std::vector<FieldInfo>& fields, ColumnRange columns,
                                      std::string_view tableName, const NameQuoting& quoting = {});

}  // namespace tessel
