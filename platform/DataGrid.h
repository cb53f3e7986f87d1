#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Control.h"
#include "platform/Recordset.h"

namespace tessel {

/// Decides how the values of a column are shown.
class DataFormat {
 public:
  /// The value and the text to show in its place; a handler that leaves the text empty keeps the
  /// ordinary form.
  Event<const ValueView&, std::string&> Format;
};

/// A grid on the rows of a recordset; column i shows field i. Rows are named by bookmarks, columns
/// are 0-based.
///
/// The grid's current row is the recordset's current record: moving in the grid moves the record.
/// Values are read from the recordset when they are painted, never copied. Null looks different
/// from an empty text, numbers stand at the right, long values are shown shortened. Rows are
/// selected by their headers, in the order selected (Ctrl adds, Shift extends); a range of columns
/// by theirs. Copy puts the selected cells on the clipboard as tab-separated text and as an HTML
/// table.
class DataGrid : public Control {
 public:
  using Control::Control;

  [[nodiscard]] virtual std::shared_ptr<Recordset> DataSource() const = 0;
  /// Binds to an open recordset, makes its columns and goes to its first row; null unbinds and
  /// empties the grid.
  virtual void SetDataSource(std::shared_ptr<Recordset> recordset) = 0;
  [[nodiscard]] virtual int ColumnCount() const = 0;

  virtual void SetColumnFormat(int column,
                               DataFormat* format) = 0;  ///< Not owned; null for the ordinary form.
  virtual void SetColumnLocked(int column, bool locked) = 0;
  virtual void SetColumnButton(int column, bool button) = 0;
  [[nodiscard]] virtual bool ColumnLocked(int column) const = 0;
  [[nodiscard]] virtual bool ColumnButton(int column) const = 0;
  [[nodiscard]] virtual DataFormat* ColumnFormat(int column) const = 0;

  [[nodiscard]] virtual bool AllowUpdate() const = 0;
  virtual void SetAllowUpdate(bool allow) = 0;
  [[nodiscard]] virtual bool AllowDelete() const = 0;
  virtual void SetAllowDelete(bool allow) = 0;
  [[nodiscard]] virtual bool AllowAddNew() const = 0;
  virtual void SetAllowAddNew(bool allow) = 0;

  /// Selected rows in the order in which they were selected.
  [[nodiscard]] virtual std::vector<Bookmark> SelBookmarks() const = 0;
  virtual void SetSelBookmarks(const std::vector<Bookmark>& bookmarks) = 0;
  [[nodiscard]] virtual int SelStartCol() const = 0;  ///< First selected column, -1 when none is.
  [[nodiscard]] virtual int SelEndCol() const = 0;    ///< Last selected column, -1 when none is.
  virtual void SetSelColumns(int first, int last) = 0;

  [[nodiscard]] virtual int CurrentColumn() const = 0;  ///< -1 when the grid is empty.
  virtual void SetCurrentColumn(int column) = 0;
  /// Whether the current row is the empty one at the end in which a new record is typed.
  [[nodiscard]] virtual bool OnNewRow() const = 0;
  /// What a cell shows, shortened or not as on the screen; position is 0-based.
  [[nodiscard]] virtual std::string ShownText(std::int64_t position, int column) const = 0;
  /// Puts the selected cells (else the current one) on the clipboard.
  virtual void Copy() = 0;

  Event<> RowColChange;  ///< The current cell moved.
  Event<int>
      ButtonClick;  ///< The button of a cell in that column was pressed; the cell is current.
};

}  // namespace tessel
