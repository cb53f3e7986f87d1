#pragma once

#include "contract/desktop/controls/DataGrid.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/grid/cells/CellEditor.h"

namespace tessel {

class QtDataGrid final : public ControlOf<DataGrid, RecordGrid>, private GridUser {
 public:
  QtDataGrid(RecordGrid& widget, const ControlSite& site);
  ~QtDataGrid() override;

  [[nodiscard]] std::shared_ptr<Recordset> DataSource() const override { return Model().Source(); }
  void SetDataSource(std::shared_ptr<Recordset> recordset) override;
  [[nodiscard]] int ColumnCount() const override { return Model().ColumnCount(); }

  void SetColumnFormat(int column, DataFormat* format) override;
  void SetColumnLocked(int column, bool locked) override {
    Model().ColumnAt(column).locked = locked;
  }
  void SetColumnButton(int column, bool button) override {
    Model().ColumnAt(column).button = button;
  }
  [[nodiscard]] bool ColumnLocked(int column) const override {
    return Model().ColumnAt(column).locked;
  }
  [[nodiscard]] bool ColumnButton(int column) const override {
    return Model().ColumnAt(column).button;
  }
  [[nodiscard]] DataFormat* ColumnFormat(int column) const override {
    return Model().ColumnAt(column).format;
  }
  void SetMarkedCells(MarkedCells marked) override;
  [[nodiscard]] bool CellMarked(std::int64_t position, int column) const override {
    return Model().IsMarked(static_cast<int>(position), column);
  }

  [[nodiscard]] bool AllowUpdate() const override { return allowUpdate_; }
  void SetAllowUpdate(bool allow) override { allowUpdate_ = allow; }
  [[nodiscard]] bool AllowDelete() const override { return allowDelete_; }
  void SetAllowDelete(bool allow) override { allowDelete_ = allow; }
  [[nodiscard]] bool AllowAddNew() const override { return allowAddNew_; }
  void SetAllowAddNew(bool allow) override;

  void SelectRow() override {
    if (!EditActive()) TheWidget().TurnRow(false);
  }
  [[nodiscard]] std::vector<Bookmark> SelBookmarks() const override;
  [[nodiscard]] int SelStartCol() const override { return TheWidget().Selection().FirstColumn(); }
  [[nodiscard]] int SelEndCol() const override { return TheWidget().Selection().LastColumn(); }
  [[nodiscard]] GridCells SelCells() const override;
  void SelectCells(const GridCells& cells) override;
  [[nodiscard]] int CurrentColumn() const override { return column_; }
  bool GoToCell(std::int64_t position, int column) override;
  [[nodiscard]] int ColumnWidth(int column) const override;
  void SetColumnWidth(int column, int twips) override;
  [[nodiscard]] bool OnNewRow() const override { return TheWidget().OnNewRow(); }
  [[nodiscard]] std::string ShownText(std::int64_t position, int column) const override;
  [[nodiscard]] Rect CellBounds() const override;
  [[nodiscard]] bool EditActive() const override { return TheWidget().Editor().IsOpen(); }
  void Refresh() override;
  [[nodiscard]] int Zoom() const override { return TheWidget().Zoom(); }
  void SetZoom(int percent) override { TheWidget().SetZoom(percent); }

 protected:
  [[nodiscard]] std::int64_t CellPosition() const override;
  [[nodiscard]] std::string EditorText() const override;
  [[nodiscard]] bool EditorChanged() const override { return TheWidget().Editor().Changed(); }
  void OpenEditor(const std::string& text, bool select) override;
  void CloseEditor() override { TheWidget().Editor().Close(); }
  void SelectCellAlone() override;

 private:
  // GridUser
  [[nodiscard]] bool MayEdit() const override { return CanEditCell(); }
  [[nodiscard]] bool Begins() override { return UserBegins(); }
  [[nodiscard]] bool MayEmpty() const override { return CanEmptyCell(); }
  [[nodiscard]] bool Leaves(bool row) override { return UserLeaves(row); }
  bool TurnsOver() override { return UserTurnsOver(); }
  void OpensCell() override { EditCell(); }
  void Typed() override;
  bool Pastes() override;

  [[nodiscard]] RecordsModel& Model() const { return TheWidget().Model(); }
  void ShowColors();
  void CellMoved();

  bool allowUpdate_ = false;
  bool allowDelete_ = false;
  bool allowAddNew_ = false;
  int column_ = -1;
};

}  // namespace tessel
