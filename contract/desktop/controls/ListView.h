#pragma once

#include <cstdint>
#include <vector>

#include "contract/desktop/controls/Control.h"

namespace tessel {

/// One row of a ListView. Texts are plain; each is shown on one line, without its line ends.
struct ListRow {
  std::string key;                    ///< Unique when not empty.
  std::string text;                   ///< First column.
  std::vector<std::string> subItems;  ///< Second column and on.
  std::string toolTip;
  std::int64_t tag = 0;  ///< The owner's own number.
  Color foreColor = color::windowText;
};

/// A report-style list with columns; one row selected at a time, which the user can change and not
/// take away. DblClick comes of the left button on a row. Rows and columns are 0-based; -1 is
/// "none". A sorted list keeps its rows in sorted order (text, without regard to case), and a
/// row added goes to its place. Changes by code raise nothing but Scrolled. An index given to a
/// function is that of a row or column that is there.
class ListView : public Control {
 public:
  using Control::Control;

  [[nodiscard]] virtual int Count() const = 0;
  /// Valid until the rows change.
  [[nodiscard]] virtual const ListRow& Row(int index) const = 0;
  /// Puts another row in place of one; in a sorted list it goes to its new place. Raises
  /// Error(application), and changes nothing, when another row has the key.
  virtual void SetRow(int index, ListRow row) = 0;
  /// Inserts before `index` (Count() appends); a sorted list ignores `index`. Returns the row's
  /// index. Raises Error(application) when the key is taken.
  virtual int Insert(int index, ListRow row) = 0;
  /// Removes a row. When it was the selected one, the next row (the last one at the end) becomes
  /// selected, silently.
  virtual void Remove(int index) = 0;
  virtual void Clear() = 0;

  /// -1 when none is selected, as at first.
  [[nodiscard]] virtual int SelectedIndex() const = 0;
  /// Scrolls it into view; raises nothing but Scrolled. -1 selects none.
  virtual void SetSelectedIndex(int index) = 0;

  [[nodiscard]] int FindKey(std::string_view key) const;  ///< Index of that key, or -1.
  [[nodiscard]] int FindText(
      std::string_view text) const;  ///< First row of that whole text, without ASCII case, or -1.

  // The form makes the columns and their captions. The last column always reaches the right edge.
  [[nodiscard]] virtual std::string ColumnCaption(int column) const = 0;
  virtual void SetColumnWidth(int column, int twips) = 0;
  [[nodiscard]] virtual int ColumnWidth(int column) const = 0;
  /// Where a cell shows, in twips inside the control; empty when it is scrolled out of sight.
  [[nodiscard]] virtual Rect CellBounds(int row, int column) const = 0;

  /// At first false. Once sorted a list stays so; a click on a column header alone sorts nothing.
  [[nodiscard]] virtual bool Sorted() const = 0;
  [[nodiscard]] virtual int SortColumn() const = 0;
  [[nodiscard]] virtual bool SortDescending() const = 0;
  virtual void
  Sort(int column,
       bool descending) = 0;  ///< Sorts now and from now on; the selected row stays selected.

  /// Opens the editor over the row's first column, its text selected, and returns. AfterLabelEdit
  /// follows when the user ends it, and does not when it is given up with Esc.
  virtual void StartLabelEdit(int index) = 0;

  Event<int>
      ItemClick;  ///< A row was clicked, the selected one too, or reached by keys; its index.
  Event<int> ColumnClick;  ///< A column header was clicked; its number.
  Event<int, int, const MouseEvent&>
      CellClick;     ///< Row, column of a click of the left button; behind ItemClick.
  Event<> Scrolled;  ///< The rows show at another place now.
  /// Row, the new text, and a flag that the handler sets to keep the old one. Otherwise the row
  /// takes the text when the handler has returned.
  Event<int, const std::string&, bool&> AfterLabelEdit;
};

}  // namespace tessel
