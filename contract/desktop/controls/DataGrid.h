#pragma once

// The table of records as the records window works with it. The grid shows an open recordset and
// keeps the selection and the current column; the recordset keeps the current record. While a cell
// is edited the grid asks by events before it begins, leaves or writes.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/desktop/controls/Control.h"

namespace tessel {

/// Decides how the values of a column are shown. It changes no value: typed text is not read by it.
class DataFormat {
 public:
  /// The value and the text to show in its place; a handler that leaves the text empty keeps the
  /// ordinary form.
  Event<const ValueView&, std::string&> Format;
};

/// Whether a cell is to stand out, by its row and its 0-based column. Asked for when the cell is
/// painted.
using MarkedCells = std::function<bool(Bookmark row, int column)>;

/// A rectangle of cells, by positions and 0-based columns, both ends included.
struct GridCells {
  std::int64_t firstRow = 0;
  std::int64_t lastRow = -1;
  int firstColumn = 0;
  int lastColumn = -1;
  [[nodiscard]] bool IsEmpty() const { return lastRow < firstRow || lastColumn < firstColumn; }
  bool operator==(const GridCells&) const = default;
};

/// A grid on the rows of a recordset; column i shows field i. Rows are named by bookmarks, columns
/// are 0-based.
///
/// The grid's current row is the recordset's current record: moving in the grid moves the record.
/// Values are read from the recordset when they are painted, never copied. Null looks different
/// from an empty text, numbers stand at the right, long values are shown shortened. Rows are
/// selected by their headers, in the order selected (Ctrl adds, Shift extends); a range of columns
/// by theirs. A rectangle of cells is selected by dragging over them, by Shift with a click, and by
/// Shift with a key that moves while no rows are selected. A press on the right end of a column's
/// header asks to sort by it, and so does one anywhere in it with Ctrl while no rows are selected;
/// a small arrow stands there in a column that the rows are sorted by. By keys Shift+Space selects
/// the current row or takes that back, Ctrl+Space adds it to those selected or takes it away, and
/// Shift with a key that moves extends the rows. Copy puts the selected cells on the clipboard as
/// tab-separated text and as an HTML table. Tab and Enter go to the next cell, Shift+Tab to the one
/// before.
///
/// Cells are edited in place where CanEditCell says so. Typing on a cell replaces its text, the
/// Delete and Backspace keys empty it (not a key of its row, CanEmptyCell), a double click opens
/// it, the space bar turns a boolean over. Where WhyNotInPlace has a reason nothing of that begins,
/// and the reason is shown by the window's rule. What is typed lies in the cell until the editing
/// ends, by EndEdit or because the user goes on to another cell; it then becomes the field's value
/// as Recordset::SetFieldValue converts text, and nothing at all when nothing was typed. A text
/// that cannot become the value is shown by the window's rule and keeps the user in the cell.
/// Behind the last record stands an empty row when AllowAddNew: the first cell whose editing ends
/// there begins a new record.
class DataGrid : public Control {
 public:
  using Control::Control;

  /// Null when none is bound. The grid holds the recordset.
  [[nodiscard]] virtual std::shared_ptr<Recordset> DataSource() const = 0;
  /// Binds to an open recordset, makes its columns and goes to its first row; null unbinds and
  /// empties the grid. An edit in a cell and all selections are forgotten. RowColChange follows
  /// when there is a row.
  virtual void SetDataSource(std::shared_ptr<Recordset> recordset) = 0;
  /// Fields of the recordset; 0 when none is bound.
  [[nodiscard]] virtual int ColumnCount() const = 0;

  // What is set of a column goes for it until the next binding, which makes new columns: without a
  // format, not locked, without buttons. A locked column cannot be edited by the user. A column
  // with buttons has one in its current cell.
  virtual void SetColumnFormat(int column,
                               DataFormat* format) = 0;  ///< Not owned; null for the ordinary form.
  virtual void SetColumnLocked(int column, bool locked) = 0;
  virtual void SetColumnButton(int column, bool button) = 0;
  [[nodiscard]] virtual bool ColumnLocked(int column) const = 0;
  [[nodiscard]] virtual bool ColumnButton(int column) const = 0;
  [[nodiscard]] virtual DataFormat* ColumnFormat(int column) const = 0;
  /// Cells that it names stand on another ground, until the next binding.
  virtual void SetMarkedCells(MarkedCells marked) = 0;
  [[nodiscard]] virtual bool CellMarked(std::int64_t position, int column) const = 0;

  // What the user may do, at first nothing: edit cells of records, delete records, type new ones.
  // Deleting is the owner's work; the grid only keeps that flag. Binding leaves them as they are.
  [[nodiscard]] virtual bool AllowUpdate() const = 0;
  virtual void SetAllowUpdate(bool allow) = 0;
  [[nodiscard]] virtual bool AllowDelete() const = 0;
  virtual void SetAllowDelete(bool allow) = 0;
  [[nodiscard]] virtual bool AllowAddNew() const = 0;
  virtual void SetAllowAddNew(bool allow) = 0;

  /// Selects the current row alone, or takes that back when it is that already, as Shift+Space
  /// does. Nothing happens on the new row, in an empty grid and while a text is being edited.
  virtual void SelectRow() = 0;
  /// Selected rows in the order in which they were selected.
  [[nodiscard]] virtual std::vector<Bookmark> SelBookmarks() const = 0;
  [[nodiscard]] virtual int SelStartCol() const = 0;  ///< First selected column, -1 when none is.
  [[nodiscard]] virtual int SelEndCol() const = 0;    ///< Last selected column, -1 when none is.

  /// The selected rectangle of more than one cell; empty without one, and while rows or columns
  /// are selected. Positions are those of the records; the new row is not among them.
  [[nodiscard]] virtual GridCells SelCells() const = 0;
  /// Selects a rectangle of records' cells in place of what is selected; an empty one takes that
  /// back. The current cell stays.
  virtual void SelectCells(const GridCells& cells) = 0;

  [[nodiscard]] virtual int CurrentColumn() const = 0;  ///< -1 when the grid is empty.
  /// Goes to a cell of a record as a click on it does. False: it is not there, or the user stays.
  virtual bool GoToCell(std::int64_t position, int column) = 0;
  /// How wide a column is shown, in twips.
  [[nodiscard]] virtual int ColumnWidth(int column) const = 0;
  /// No narrower than it can be read; 0 or less: as its name and the rows in sight need it.
  virtual void SetColumnWidth(int column, int twips) = 0;
  /// Whether the current row is the one at the end in which a new record is typed, still empty or
  /// begun and not written yet.
  [[nodiscard]] virtual bool OnNewRow() const = 0;
  /// What a cell shows, shortened or not as on the screen; position is 0-based. Empty for the empty
  /// row at the end.
  [[nodiscard]] virtual std::string ShownText(std::int64_t position, int column) const = 0;
  /// Where the current cell stands, in twips inside the grid; empty when there is none.
  [[nodiscard]] virtual Rect CellBounds() const = 0;

  /// The size of what it shows, in percent; at first ordinaryZoom. Setting it takes the nearest
  /// that zoomSteps holds, and nothing is raised. The user changes it by Ctrl+plus, Ctrl+minus and
  /// the wheel with Ctrl.
  [[nodiscard]] virtual int Zoom() const = 0;
  virtual void SetZoom(int percent) = 0;

  // --- editing the current cell ------------------------------------------------------------------
  /// Whether the user may edit it: its column is not locked, and AllowUpdate, or AllowAddNew on the
  /// new row.
  [[nodiscard]] bool CanEditCell() const;
  /// Why the user cannot edit it in place although he may edit it, in words for him: the records
  /// cannot be changed now (Recordset::WhyNotChangeable), or its text holds bytes that are no valid
  /// UTF-8 and would be lost on the way through an editor. Nothing when he can.
  [[nodiscard]] std::optional<ErrorInfo> WhyNotInPlace() const;
  /// Whether one key may empty it: not when the row of an existing record is found by it.
  [[nodiscard]] bool CanEmptyCell() const;
  /// Whether its text is being edited.
  [[nodiscard]] virtual bool EditActive() const = 0;
  /// Whether the current row has something to write: a change pending in the recordset, or a text
  /// typed into the cell.
  [[nodiscard]] bool ChangePending() const;
  /// Its whole text: what is being edited, else as the column's format or its value has it; empty
  /// for null.
  [[nodiscard]] std::string CellText() const;
  /// Gives it a value in place of whatever is being typed, in locked columns too, and raises
  /// Change. Raises Error as Recordset::SetFieldValue and AddNew do, and changes nothing then.
  void SetCellValue(Value value);
  /// As typed: an empty text is null in every field that is not text.
  void SetCellText(std::string_view text) { SetCellValue(Value(std::string(text))); }
  /// Starts editing with the caret at the end of the text, as UserBegins says; nothing happens
  /// where the user may not.
  void EditCell();
  /// Selects its whole text, to be replaced where the user may edit it in place, else to be copied.
  void SelectCellText();
  /// Ends the editing; what was typed becomes the value. Raises Error and goes on editing when it
  /// cannot. Nothing happens when nothing is edited.
  void EndEdit();
  /// Ends the editing and forgets what was typed.
  void DropEdit();
  /// Takes in that rows were written, added or deleted, or a change dropped. The recordset's
  /// current record is the current row; the user stays on the new row unless the record begun there
  /// was written. Only RowsChange is raised.
  virtual void Refresh() = 0;

  Event<> Change;  ///< The current cell was changed: by every keystroke that does, or by code.
  /// The user is about to go to another row while a change is pending in the recordset. The flag
  /// keeps the user on the row when the handler sets it.
  Event<bool&> LeaveRow;
  Event<> RowColChange;  ///< The current cell moved.
  /// Another row is current, or there are more or fewer: behind a binding, RowColChange and
  /// Refresh.
  Event<> RowsChange;
  /// Other cells, rows or columns are selected.
  Event<> SelectionChange;
  /// The user asks to sort by a column; with the flag as a further one.
  Event<int, bool> SortClick;
  /// The user pastes while no text is edited. Unless the handler sets the flag the text of the
  /// clipboard is typed into the current cell.
  Event<bool&> Paste;
  Event<int>
      ButtonClick;  ///< The button of a cell in that column was pressed; the cell is current.

 protected:
  /// Where a back end comes by when the user is about to go to another cell, in another row or not.
  /// False: the user stays. After a change of rows positions are those of the recordset as it is
  /// now.
  [[nodiscard]] bool UserLeaves(bool row);
  /// Where a back end comes by when the user is about to edit the current cell in place. False: he
  /// may not, or cannot, and then was shown why.
  [[nodiscard]] bool UserBegins();
  /// What the user typed into the cell, shown by the back end already.
  void UserTyped() { Raise(Change); }
  /// The space bar on a boolean: true and null become false and true, false becomes true. False
  /// when the cell is no boolean or may not be edited.
  bool UserTurnsOver();

  /// The current cell's position; RecordCount() on the new row.
  [[nodiscard]] virtual std::int64_t CellPosition() const = 0;
  /// What the open editor holds, UTF-8.
  [[nodiscard]] virtual std::string EditorText() const = 0;
  /// Whether the text being edited was changed since the editor was opened.
  [[nodiscard]] virtual bool EditorChanged() const = 0;
  /// Opens the editor of the current cell on `text` with the caret at its end, everything selected
  /// when `select`; an open one keeps its text.
  virtual void OpenEditor(const std::string& text, bool select) = 0;
  /// Closes the editor, open or not, without taking over its text; the focus stays in the grid.
  virtual void CloseEditor() = 0;
  /// Reduces what is selected to the current cell.
  virtual void SelectCellAlone() = 0;

 private:
  [[nodiscard]] const FieldInfo* CurrentField() const;
  [[nodiscard]] bool IsEmptyNewRow() const;
  void WriteField(Value value);
};

}  // namespace tessel
