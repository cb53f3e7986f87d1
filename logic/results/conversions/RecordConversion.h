#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Global.h"
#include "logic/results/conversions/Conversions.h"

namespace tessel {

class dlgAsync;
class SqlTarget;

/// The commands of a records window that turn its rows into text: the selected rows and columns of
/// the grid, by choice a selected rectangle of cells, else all rows on show. The text is shown, to
/// be copied or saved.
class RecordConversion {
 public:
  /// The owner of the menu; all of them outlive this object.
  RecordConversion(const Global& global, Window& window, dlgAsync& async, SqlTarget& sqlWindow);

  /// How names are written in the SQL of the window's database.
  void SetQuoting(const NameQuoting& quoting) { quoting_ = quoting; }

  /// Runs the conversion of a menu item and shows its text. A failure is shown in its place.
  void Convert(std::string_view command);

  /// The text of a conversion; what is done when the user cancels it. Nothing when no name was
  /// given for the table to insert into.
  [[nodiscard]] std::optional<std::string> ConvertedText(std::string_view command);

 private:
  void ConvertRecords(std::string& text, const RecordFormat& format, ColumnRange columns);
  [[nodiscard]] std::string TitleOf(std::string_view command) const;
  [[nodiscard]] GridCells ChosenCells() const;
  [[nodiscard]] std::vector<Bookmark> SelectedRows() const;
  [[nodiscard]] ColumnRange GetColumnRange() const;
  [[nodiscard]] std::string GetTableName(bool ask, int helpContext) const;

  const Global& global_;
  dlgAsync& async_;
  SqlTarget& sqlWindow_;
  Window& window_;
  DataGrid& grid_;
  NameQuoting quoting_;
  std::int64_t converted_ = 0;  ///< Records of the text that was made last.
};

}  // namespace tessel
