#include "logic/results/export/RememberedChoices.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "logic/program/view/ViewSettings.h"

namespace tessel {

namespace {

/// The names under which the choices are remembered, each as a number.
namespace name {
constexpr const char* format = "export.format";
constexpr const char* delimiter = "export.delimiter";
constexpr const char* quotes = "export.quotes";
constexpr const char* code = "export.encoding";
constexpr const char* lineEnd = "export.line-end";
constexpr const char* nullText = "export.null";
constexpr const char* header = "export.header";
constexpr const char* decimalSign = "export.decimal-comma";
constexpr const char* binary = "export.binary";
constexpr const char* database = "export.database";
constexpr const char* createTable = "export.create-table";
constexpr const char* rowsPerInsert = "export.rows-per-insert";
}  // namespace name

/// The place of a value in a list; 0 when it is not there.
template <class List, class Item>
int PlaceIn(const List& list, const Item& item) {
  const auto* found = std::ranges::find(list, item);
  return found == std::end(list) ? 0 : static_cast<int>(found - std::begin(list));
}

/// Reads numbers that were remembered; one that means nothing is as if there was none.
struct Memory {
  const ViewSettings& settings;

  /// A number from 0 to `last`.
  [[nodiscard]] int Number(const char* name, int otherwise, int last) const {
    const int number = settings.Number(name, otherwise);
    return number < 0 || number > last ? otherwise : number;
  }
  template <class Enum>
  void Read(const char* name, Enum& value, Enum last) const {
    value = static_cast<Enum>(Number(name, static_cast<int>(value), static_cast<int>(last)));
  }
  void Read(const char* name, bool& value) const { value = Number(name, value ? 1 : 0, 1) != 0; }
};

}  // namespace

ExportChoices RememberedChoices(const Global& global, SqlDialect database) {
  constexpr int mostRows = 1'000'000;
  const ViewSettings settings(global);
  const Memory memory{settings};
  ExportChoices choices;
  memory.Read(name::format, choices.format, ExportFormat::Sql);
  choices.delimiter =
      exportDelimiters[memory.Number(name::delimiter, 0, std::size(exportDelimiters) - 1)];
  memory.Read(name::quotes, choices.quotes, QuoteRule::All);
  memory.Read(name::code, choices.code, TextCode::Latin1);
  memory.Read(name::lineEnd, choices.lineEndWithReturn);
  choices.nullText =
      exportNullTexts[memory.Number(name::nullText, 0, std::size(exportNullTexts) - 1)];
  memory.Read(name::header, choices.header);
  choices.decimalSign = memory.Number(name::decimalSign, 0, 1) == 0 ? '.' : ',';
  memory.Read(name::binary, choices.binary, BinaryForm::Base64);
  choices.database = exportDatabases[memory.Number(
      name::database, PlaceIn(exportDatabases, database), std::size(exportDatabases) - 1)];
  memory.Read(name::createTable, choices.createTable);
  choices.rowsPerInsert =
      std::max(memory.Number(name::rowsPerInsert, choices.rowsPerInsert, mostRows), 1);
  return choices;
}

void RememberChoices(const Global& global, const ExportChoices& choices) {
  ViewSettings(global).SetNumbers({{name::format, static_cast<int>(choices.format)},
                                   {name::delimiter, PlaceIn(exportDelimiters, choices.delimiter)},
                                   {name::quotes, static_cast<int>(choices.quotes)},
                                   {name::code, static_cast<int>(choices.code)},
                                   {name::lineEnd, choices.lineEndWithReturn ? 1 : 0},
                                   {name::nullText, PlaceIn(exportNullTexts, choices.nullText)},
                                   {name::header, choices.header ? 1 : 0},
                                   {name::decimalSign, choices.decimalSign == '.' ? 0 : 1},
                                   {name::binary, static_cast<int>(choices.binary)},
                                   {name::database, PlaceIn(exportDatabases, choices.database)},
                                   {name::createTable, choices.createTable ? 1 : 0},
                                   {name::rowsPerInsert, choices.rowsPerInsert}});
}

}  // namespace tessel
