#pragma once

#include <string>
#include <vector>

#include "contract/desktop/controls/ListView.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

/// Rows are 240 twips high below a header of 300; a column is 1440 wide until told otherwise.
class HeadlessListView final : public Headless<ListView> {
 public:
  HeadlessListView(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                   HeadlessControl* container);

  [[nodiscard]] int Count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const ListRow& Row(int index) const override { return rows_[Checked(index)]; }
  void SetRow(int index, ListRow row) override;
  int Insert(int index, ListRow row) override;
  void Remove(int index) override;
  void Clear() override;

  [[nodiscard]] int SelectedIndex() const override { return selected_; }
  void SetSelectedIndex(int index) override;

  [[nodiscard]] std::string ColumnCaption(int column) const override;
  void SetColumnWidth(int column, int twips) override;
  [[nodiscard]] int ColumnWidth(int column) const override;
  [[nodiscard]] Rect CellBounds(int row, int column) const override;

  [[nodiscard]] bool Sorted() const override { return sorted_; }
  [[nodiscard]] int SortColumn() const override { return sortColumn_; }
  [[nodiscard]] bool SortDescending() const override { return descending_; }
  void Sort(int column, bool descending) override;

  void StartLabelEdit(int index) override;

  // --- what a user does --------------------------------------------------------------------------
  void ClickCell(int row, int column, const MouseEvent& event);
  void ClickHeader(int column);
  /// The row whose editor is open, -1 for none.
  [[nodiscard]] int EditedRow() const { return edited_; }
  /// Ends the open editor with a text, or without.
  void EndLabelEdit(const std::string& text);
  void CancelLabelEdit() { edited_ = -1; }
  void ScrollUntilFirst(int row);
  bool TakeKey(int keyCode, int shift) override;

 private:
  [[nodiscard]] std::size_t Checked(int index) const;
  [[nodiscard]] std::size_t CheckedColumn(int column) const;
  void RefuseTakenKey(const ListRow& row, int except) const;
  [[nodiscard]] bool Before(const ListRow& a, const ListRow& b) const;
  [[nodiscard]] int PlaceOf(const ListRow& row) const;
  void ScrollTo(int row);
  [[nodiscard]] int RowsInSight() const;

  std::vector<std::string> captions_;
  std::vector<int> widths_;
  std::vector<ListRow> rows_;
  int selected_ = -1;
  int firstShown_ = 0;
  bool sorted_ = false;
  int sortColumn_ = 0;
  bool descending_ = false;
  int edited_ = -1;
};

}  // namespace tessel::test
