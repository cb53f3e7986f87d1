#pragma once

#include <QTimer>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "contract/base/Zoom.h"
#include "desktop/grid/GridCopy.h"
#include "desktop/grid/GridSelection.h"
#include "desktop/grid/cells/GridView.h"

namespace tessel {

class CellEditor;
class GridHeader;

/// Who decides about the editing when the user works in the table.
class GridUser {
 public:
  [[nodiscard]] virtual bool MayEdit() const = 0;
  /// The user is about to edit the current cell. False: it cannot be, and he was shown why if he
  /// may.
  [[nodiscard]] virtual bool Begins() = 0;
  /// Whether one key may empty the current cell.
  [[nodiscard]] virtual bool MayEmpty() const = 0;
  /// The user is about to leave the cell, and the row too when `row`. False: stays.
  [[nodiscard]] virtual bool Leaves(bool row) = 0;
  /// The space bar; false when it means nothing special to the cell.
  virtual bool TurnsOver() = 0;
  virtual void OpensCell() = 0;
  virtual void Typed() = 0;
  /// The user pastes; false when the text of the clipboard is to be typed into the cell.
  virtual bool Pastes() = 0;

 protected:
  ~GridUser() = default;
};

/// The table widget of a data grid. Its current cell's row is the recordset's current record.
class RecordGrid : public GridView {
  Q_OBJECT
  Q_PROPERTY(bool lastColumnFills READ LastColumnFills WRITE SetLastColumnFills)

 public:
  explicit RecordGrid(QWidget* parent = nullptr);

  [[nodiscard]] RecordsModel& Model() const override { return *model_; }
  [[nodiscard]] GridSelection& Selection() { return selection_; }
  /// Binds to an open recordset and goes to its first row and column; null empties the grid.
  /// Nothing is emitted.
  void Bind(const std::shared_ptr<Recordset>& source);
  /// Where a failure inside a Qt event goes (a record that cannot be moved to, too much to copy).
  std::function<void(std::exception_ptr)> failed;
  /// Without one no cell is edited. It lives as long as the widget is used.
  void SetUser(GridUser* user) { user_ = user; }

  [[nodiscard]] bool ShowsSelected(int row, int column) override;
  [[nodiscard]] bool RowSelected(int row) override;
  [[nodiscard]] bool ColumnSelected(int column) const override {
    return selection_.HasColumn(column);
  }
  /// Makes a cell the current one unless the user has to stay; `extend` selects the cells from
  /// where the selection began up to it.
  void GoTo(int row, int column, bool extend);
  /// The same of a record's cell, which then is in sight; false when he stays.
  bool GoToCell(int row, int column);
  void SelectCells(const CellRange& cells);
  [[nodiscard]] bool OnNewRow() const;
  [[nodiscard]] bool RowIsBeingChanged() const override;
  /// Where the current cell stands in this widget; empty when there is none.
  [[nodiscard]] QRect CurrentCell() const;

  [[nodiscard]] CellEditor& Editor() const { return *editor_; }
  void OpenEditor(const QString& text, bool select);
  void MoveFromEditor(QKeyEvent& event) override;
  bool TabFromEditor(bool next) override;
  /// Takes in the rows as they are now and goes to the current record.
  void Refresh();
  void SetAllowsNew(bool allows);
  void Copy();
  /// Selects the current row alone, and takes that back; `add` keeps the others that are selected.
  void TurnRow(bool add);
  /// Shows a change of the selection that was made on Selection().
  void ShowSelection();

  /// Takes in the current record of the recordset, when the program has moved it.
  void FollowRecord();

  void selectAll() override;

  /// In percent.
  [[nodiscard]] int Zoom() const { return zoom_; }
  void SetZoom(int percent);
  void WantWidth(int column, int width) override;
  /// Whether the last column always takes the room that the others leave. Forms set it.
  [[nodiscard]] bool LastColumnFills() const;
  void SetLastColumnFills(bool fills);
  /// In pixels, as the user does it; 0: as its name and the rows in sight need it.
  void ChangeWidth(int column, int width);

  [[nodiscard]] bool SortsAt(bool ctrl) const override { return ctrl && selection_.Rows().empty(); }
  void PressSort(int column, bool further) override { emit sortPressed(column, further); }

 signals:
  void otherSelected();
  void sortPressed(int column, bool further);
  void currentCellMoved();
  /// The program had moved the record, and the current cell went with it.
  void recordFollowed();
  void buttonPressed(int column);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
  void focusInEvent(QFocusEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateGeometries() override;
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void SetUpHeaders();
  void SizeRows();
  void SizeRowHeader();
  void SizeColumns();
  void FillWithLastColumn();
  void SetColumnWidth(int column, int width);
  void WidenColumns();
  [[nodiscard]] int Scaled(int drawn) const;
  void UseZoomedFont();
  bool ZoomByKey(const QKeyEvent& event);
  [[nodiscard]] int WidthOf(int column, int firstRow, int sampleRows) const;
  [[nodiscard]] int NullWidth() const;
  [[nodiscard]] QModelIndex TargetOf(const QKeyEvent& event) const;
  [[nodiscard]] QModelIndex NextCell(int step) const;
  [[nodiscard]] int RowsOnPage() const;
  [[nodiscard]] QModelIndex NearestCell(const QPoint& place) const;
  [[nodiscard]] bool OnButton(const QModelIndex& index, const QPoint& place) const;
  [[nodiscard]] bool MayGoTo(int row, int column);
  bool StartTyping(const QKeyEvent& event);
  void TypeIntoCell(const QString& text);
  void PlaceEditor();
  void ForgetGoneRows();
  [[nodiscard]] int RowOfRecord();
  void PressRow(int row);
  /// Makes a record's cell current and selects rows as a press on the row's header does.
  void SelectRow(int row, int column, bool add, bool extend);
  bool SelectRowByKey(const QKeyEvent& event);
  void PressColumn(int column);
  void DragTo(const QPoint& place);
  void MoveRecord(int row);
  [[nodiscard]] CellsToCopy SelectedCells() const;

  RecordsModel* model_;
  GridHeader* rowHeader_;
  CellEditor* editor_;
  GridUser* user_ = nullptr;
  GridSelection selection_;
  GridSelection::Trace told_;  ///< What was selected when it was last told.
  QTimer dragTimer_;           ///< Scrolls on while the pointer is dragged beyond the edge.
  QPoint dragPlace_;
  bool dragging_ = false;
  bool buttonDown_ = false;
  std::map<int, int> wanted_;  ///< Columns that are to become so wide.
  std::set<int> sized_;        ///< Columns whose width is the user's.
  bool sizing_ = false;        ///< The program sets a width.
  int zoom_ = ordinaryZoom;
  int wheel_ = 0;  ///< Turned and not counted yet, in the toolkit's units.
  int quiet_ = 0;  ///< More than 0 while the current cell is set without moving the record.
};

}  // namespace tessel
