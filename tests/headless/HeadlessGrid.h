#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/base/Zoom.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/DataGrid.h"
#include "tests/headless/HeadlessControl.h"
#include "tests/headless/HeadlessText.h"

namespace tessel::test {

class HeadlessGrid final : public Headless<DataGrid>, public Typist {
 public:
  HeadlessGrid(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
               HeadlessControl* container, Clipboard& clipboard)
      : Headless(widget, failures, keeper, container),
        failures_(&failures),
        clipboard_(&clipboard) {}

  [[nodiscard]] std::shared_ptr<Recordset> DataSource() const override { return source_; }
  void SetDataSource(std::shared_ptr<Recordset> recordset) override;
  [[nodiscard]] int ColumnCount() const override { return static_cast<int>(columns_.size()); }

  void SetColumnFormat(int column, DataFormat* format) override { At(column).format = format; }
  void SetColumnLocked(int column, bool locked) override { At(column).locked = locked; }
  void SetColumnButton(int column, bool button) override { At(column).button = button; }
  [[nodiscard]] bool ColumnLocked(int column) const override { return At(column).locked; }
  [[nodiscard]] bool ColumnButton(int column) const override { return At(column).button; }
  [[nodiscard]] DataFormat* ColumnFormat(int column) const override { return At(column).format; }
  void SetMarkedCells(MarkedCells marked) override { marked_ = std::move(marked); }
  [[nodiscard]] bool CellMarked(std::int64_t position, int column) const override {
    return marked_ && marked_(source_->BookmarkAt(position), column);
  }

  [[nodiscard]] bool AllowUpdate() const override { return allowUpdate_; }
  void SetAllowUpdate(bool allow) override { allowUpdate_ = allow; }
  [[nodiscard]] bool AllowDelete() const override { return allowDelete_; }
  void SetAllowDelete(bool allow) override { allowDelete_ = allow; }
  [[nodiscard]] bool AllowAddNew() const override { return allowAddNew_; }
  void SetAllowAddNew(bool allow) override;

  void SelectRow() override {
    if (!editing_) SelectRowByKey(false);
  }
  [[nodiscard]] std::vector<Bookmark> SelBookmarks() const override { return selected_; }
  [[nodiscard]] int SelStartCol() const override { return firstColumn_; }
  [[nodiscard]] int SelEndCol() const override { return lastColumn_; }

  [[nodiscard]] GridCells SelCells() const override { return cells_; }
  void SelectCells(const GridCells& cells) override;

  [[nodiscard]] int CurrentColumn() const override { return currentColumn_; }
  bool GoToCell(std::int64_t position, int column) override;
  [[nodiscard]] int ColumnWidth(int column) const override { return At(column).width; }
  void SetColumnWidth(int column, int twips) override;
  [[nodiscard]] bool OnNewRow() const override { return onNewRow_; }
  [[nodiscard]] std::string ShownText(std::int64_t position, int column) const override;
  [[nodiscard]] Rect CellBounds() const override;
  [[nodiscard]] bool EditActive() const override { return editing_; }
  void Refresh() override;
  [[nodiscard]] int Zoom() const override { return zoom_; }
  void SetZoom(int percent) override;

  // --- the text of the cell being edited ---------------------------------------------------------
  /// What is selected of it; without a selection, where the caret stands.
  [[nodiscard]] std::size_t EditorSelStart() const { return editor_.Start(); }
  [[nodiscard]] std::size_t EditorSelLength() const { return editor_.Length(); }

  // --- what a user does; positions are 0-based ---------------------------------------------------
  void ClickCell(std::int64_t position, int column);
  void DoubleClickCell(std::int64_t position, int column);
  /// Types into the current cell, character by character.
  void TypeText(std::string_view text) override;
  void ClickButton(std::int64_t position, int column);
  /// Clicks row headers one after another: the first selects, the others add (Ctrl).
  void SelectRows(const std::vector<std::int64_t>& positions);
  void SelectColumns(int first, int last);
  /// Drags from one cell to another.
  void DragCells(const GridCells& cells) { SelectCells(cells); }
  /// Presses the right end of a column's header.
  void ClickSort(int column, bool further) { Raise(SortClick, column, further); }
  void GoToNewRow();
  bool TakeKey(int keyCode, int shift) override;

 protected:
  [[nodiscard]] std::int64_t CellPosition() const override;
  [[nodiscard]] std::string EditorText() const override { return editor_.Text(); }
  [[nodiscard]] bool EditorChanged() const override { return edited_; }
  void OpenEditor(const std::string& text, bool select) override;
  void CloseEditor() override { editing_ = edited_ = false; }
  void SelectCellAlone() override;

 private:
  struct Column {
    DataFormat* format = nullptr;
    bool locked = false;
    bool button = false;
    int width = ordinaryWidth;
  };
  static constexpr int ordinaryWidth = 1500;
  static constexpr int narrowest = 300;

  [[nodiscard]] const Column& At(int column) const;
  [[nodiscard]] Column& At(int column);
  [[nodiscard]] std::int64_t LastPosition() const;
  [[nodiscard]] bool MoveTo(std::int64_t position, int column);
  bool MoveToNext(int step);
  void MoveToColumn(int column);
  void Copy();
  void CopyCells();
  bool PasteText();
  bool TakeEditorKey(int keyCode);
  bool SelectRowByKey(bool add);
  bool ExtendRows(int step);
  bool Erase(bool backwards);
  void TypeCharacter(std::string_view character);
  [[nodiscard]] std::vector<std::int64_t> RowsToCopy() const;
  [[nodiscard]] std::int64_t CurrentPosition() const;
  void NoteSelection();

  FailureSink* failures_;
  Clipboard* clipboard_;
  MarkedCells marked_;
  std::shared_ptr<Recordset> source_;
  std::vector<Column> columns_;
  bool allowUpdate_ = false;
  bool allowDelete_ = false;
  bool allowAddNew_ = false;
  std::vector<Bookmark> selected_;
  std::int64_t anchor_ = -1;  ///< Position of the row that Shift extends from; -1 without one.
  int firstColumn_ = -1;
  int lastColumn_ = -1;
  GridCells cells_;
  int currentColumn_ = -1;
  bool onNewRow_ = false;
  std::int64_t knownCount_ = 0;
  int zoom_ = ordinaryZoom;
  TextBuffer editor_;
  bool editing_ = false;
  bool edited_ = false;
};

}  // namespace tessel::test
