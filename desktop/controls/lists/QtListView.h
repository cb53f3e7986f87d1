#pragma once

#include <QTreeWidget>
#include <vector>

#include "contract/desktop/controls/ListView.h"
#include "desktop/base/QtKeys.h"
#include "desktop/controls/ControlOf.h"

namespace tessel {

/// The rows are kept here; the widget's items show them in the same order.
class QtListView final : public ControlOf<ListView, QTreeWidget> {
 public:
  QtListView(QTreeWidget& widget, const ControlSite& site);

  [[nodiscard]] int Count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const ListRow& Row(int index) const override;
  void SetRow(int index, ListRow row) override;
  int Insert(int index, ListRow row) override;
  void Remove(int index) override;
  void Clear() override;
  [[nodiscard]] int SelectedIndex() const override;
  void SetSelectedIndex(int index) override;
  [[nodiscard]] std::string ColumnCaption(int column) const override;
  void SetColumnWidth(int column, int twips) override;
  [[nodiscard]] int ColumnWidth(int column) const override;
  [[nodiscard]] Rect CellBounds(int row, int column) const override;
  [[nodiscard]] bool Sorted() const override { return sortColumn_ >= 0; }
  [[nodiscard]] int SortColumn() const override { return sortColumn_; }
  [[nodiscard]] bool SortDescending() const override { return descending_; }
  void Sort(int column, bool descending) override;
  void StartLabelEdit(int index) override;

 private:
  void Connect();
  void ShowRow(QTreeWidgetItem& item, const ListRow& row);
  void RefuseTakenKey(const ListRow& row, int except) const;
  [[nodiscard]] bool Before(const ListRow& a, const ListRow& b) const;
  [[nodiscard]] int PlaceOf(const ListRow& row) const;
  void Select(int index);
  void SelectionChanged();
  void Pressed(int index);
  void Clicked(int index, int column);
  void LabelEdited(int index, const std::string& text);

  std::vector<ListRow> rows_;
  int sortColumn_ = -1;
  bool descending_ = false;
  bool told_ = false;  ///< The event under way has already raised ItemClick.
};

}  // namespace tessel
