#include "tests/headless/HeadlessListView.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

namespace {

constexpr int rowHeight = 240;
constexpr int headerHeight = 300;
constexpr int ordinaryWidth = 1440;

const std::string& CellText(const ListRow& row, int column) {
  static const std::string none;
  if (column == 0) return row.text;
  const auto sub = static_cast<std::size_t>(column - 1);
  return sub < row.subItems.size() ? row.subItems[sub] : none;
}

}  // namespace

HeadlessListView::HeadlessListView(const FormWidget& widget, FailureSink& failures,
                                   FocusKeeper& keeper, HeadlessControl* container)
    : Headless(widget, failures, keeper, container),
      captions_(widget.columns),
      widths_(widget.columns.size(), ordinaryWidth) {}

void HeadlessListView::SetRow(int index, ListRow row) {
  RefuseTakenKey(row, index);
  if (!sorted_) {
    rows_[Checked(index)] = std::move(row);
    return;
  }
  const bool wasSelected = index == selected_;
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(Checked(index)));
  if (index < selected_) --selected_;
  if (wasSelected) selected_ = -1;
  const int place = Insert(Count(), std::move(row));
  if (wasSelected) selected_ = place;
}

int HeadlessListView::Insert(int index, ListRow row) {
  RefuseTakenKey(row, -1);
  if (index < 0 || index > Count())
    StopTest(Name() + " has no place " + std::to_string(index) + " for a row.");
  const int place = sorted_ ? PlaceOf(row) : index;
  rows_.insert(rows_.begin() + place, std::move(row));
  if (selected_ >= place) ++selected_;
  return place;
}

void HeadlessListView::Remove(int index) {
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(Checked(index)));
  if (index < selected_ || selected_ == Count()) --selected_;
  edited_ = -1;
}

void HeadlessListView::Clear() {
  rows_.clear();
  selected_ = -1;
  edited_ = -1;
  firstShown_ = 0;
}

void HeadlessListView::SetSelectedIndex(int index) {
  selected_ = index == -1 ? -1 : static_cast<int>(Checked(index));
  if (index >= 0) ScrollTo(index);
}

std::string HeadlessListView::ColumnCaption(int column) const {
  return captions_[CheckedColumn(column)];
}

void HeadlessListView::SetColumnWidth(int column, int twips) {
  widths_[CheckedColumn(column)] = std::max(0, twips);
}

int HeadlessListView::ColumnWidth(int column) const { return widths_[CheckedColumn(column)]; }

Rect HeadlessListView::CellBounds(int row, int column) const {
  const auto end = widths_.begin() + static_cast<std::ptrdiff_t>(CheckedColumn(column));
  const int line = static_cast<int>(Checked(row)) - firstShown_;
  if (line < 0 || line >= RowsInSight()) return {};
  return {std::accumulate(widths_.begin(), end, 0), headerHeight + line * rowHeight, *end,
          rowHeight};
}

void HeadlessListView::Sort(int column, bool descending) {
  sorted_ = true;
  sortColumn_ = static_cast<int>(CheckedColumn(column));
  descending_ = descending;
  std::vector<int> order(rows_.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::stable_sort(order, [&](int a, int b) { return Before(Row(a), Row(b)); });
  std::vector<ListRow> sorted;
  sorted.reserve(order.size());
  for (const int index : order) sorted.push_back(rows_[static_cast<std::size_t>(index)]);
  rows_ = std::move(sorted);
  if (selected_ >= 0)
    selected_ = static_cast<int>(std::ranges::find(order, selected_) - order.begin());
}

void HeadlessListView::StartLabelEdit(int index) { edited_ = static_cast<int>(Checked(index)); }

void HeadlessListView::ClickCell(int row, int column, const MouseEvent& event) {
  selected_ = static_cast<int>(Checked(row));
  edited_ = -1;
  Raise(ItemClick, row);
  Raise(CellClick, row, static_cast<int>(CheckedColumn(column)), event);
}

void HeadlessListView::ClickHeader(int column) {
  Raise(ColumnClick, static_cast<int>(CheckedColumn(column)));
}

void HeadlessListView::EndLabelEdit(const std::string& text) {
  const int row = edited_;
  if (row < 0) StopTest("No label of " + Name() + " is being edited.");
  edited_ = -1;
  bool keepOld = false;
  Raise(AfterLabelEdit, row, text, keepOld);
  if (keepOld || row >= Count()) return;
  ListRow changed = Row(row);
  changed.text = text;
  SetRow(row, std::move(changed));
}

bool HeadlessListView::TakeKey(int keyCode, int shift) {
  const int last = Count() - 1;
  if (shift != shiftState::none || last < 0) return false;
  int next = 0;
  if (keyCode == key::up) next = std::max(0, selected_ - 1);
  else if (keyCode == key::down) next = std::min(last, selected_ + 1);
  else if (keyCode == key::end) next = last;
  else if (keyCode != key::home) return false;
  if (next == selected_) return true;
  SetSelectedIndex(next);
  Raise(ItemClick, next);
  return true;
}

std::size_t HeadlessListView::Checked(int index) const {
  if (index < 0 || index >= Count())
    StopTest(Name() + " has no row " + std::to_string(index) + ".");
  return static_cast<std::size_t>(index);
}

std::size_t HeadlessListView::CheckedColumn(int column) const {
  if (column < 0 || column >= static_cast<int>(captions_.size()))
    StopTest(Name() + " has no column " + std::to_string(column) + ".");
  return static_cast<std::size_t>(column);
}

void HeadlessListView::RefuseTakenKey(const ListRow& row, int except) const {
  const int holder = row.key.empty() ? -1 : FindKey(row.key);
  if (holder >= 0 && holder != except)
    throw Error(errorNumber::application, "Tessel", "The key '" + row.key + "' is taken.");
}

bool HeadlessListView::Before(const ListRow& a, const ListRow& b) const {
  const ListRow& first = descending_ ? b : a;
  const ListRow& second = descending_ ? a : b;
  return std::ranges::lexicographical_compare(CellText(first, sortColumn_),
                                              CellText(second, sortColumn_), [](char x, char y) {
                                                return static_cast<unsigned char>(AsciiUpper(x)) <
                                                       static_cast<unsigned char>(AsciiUpper(y));
                                              });
}

int HeadlessListView::PlaceOf(const ListRow& row) const {
  const auto place = std::ranges::upper_bound(
      rows_, row, [this](const ListRow& a, const ListRow& b) { return Before(a, b); });
  return static_cast<int>(place - rows_.begin());
}

void HeadlessListView::ScrollTo(int row) {
  const int first = std::min(firstShown_, row);
  ScrollUntilFirst(std::max(first, row - RowsInSight() + 1));
}

void HeadlessListView::ScrollUntilFirst(int row) {
  if (std::exchange(firstShown_, row) != row) Raise(Scrolled);
}

int HeadlessListView::RowsInSight() const {
  return std::max(1, (bounds_.height - headerHeight) / rowHeight);
}

}  // namespace tessel::test
