// A list view for the tags and for the pairs of a connection string, on a tree widget without
// levels: check boxes in any column, a label that can be edited in place, clicks told by cell. The
// rows are kept beside the widget's items, and what the mouse met is worked out here.

#include "desktop/controls/lists/QtListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <numeric>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "desktop/controls/EmptyText.h"
#include "desktop/controls/lists/LabelDelegate.h"
#include "desktop/look/Colors.h"

namespace tessel {

namespace {

constexpr int lineTextLimit = 2000;

const std::string& CellText(const ListRow& row, int column) {
  static const std::string none;
  if (column == 0) return row.text;
  const auto sub = static_cast<std::size_t>(column - 1);
  return sub < row.subItems.size() ? row.subItems[sub] : none;
}

bool LessNoCase(std::string_view a, std::string_view b) {
  const auto rank = [](char c) { return static_cast<unsigned char>(AsciiUpper(c)); };
  return std::ranges::lexicographical_compare(a, b, {}, rank, rank);
}

/// One line of text: the list's rows are one line high.
QString OneLine(std::string_view text) {
  QString line = ToQt(text.substr(0, lineTextLimit));
  return line.replace('\n', ' ').replace('\r', ' ');
}

MouseEvent EventAt(const QPoint& place, const Scale& scale) {
  return {MouseButton::Left, ShiftStateOf(QApplication::keyboardModifiers()),
          scale.Twips(place.x()), scale.Twips(place.y())};
}

/// Ctrl+Space would unselect the row, and the view then takes it for a search for nothing, which
/// goes to the next one.
class RowKeeper final : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    return key.key() == Qt::Key_Space && key.modifiers().testFlag(Qt::ControlModifier);
  }
};

}  // namespace

QtListView::QtListView(QTreeWidget& widget, const ControlSite& site) : ControlOf(widget, site) {
  widget.setTextElideMode(Qt::ElideRight);
  widget.header()->setSectionsClickable(true);
  widget.header()->setStretchLastSection(true);
  widget.installEventFilter(new RowKeeper(&widget));
  widget.setItemDelegate(
      new LabelDelegate(widget, [this](const QModelIndex& index, const QString& text) {
        LabelEdited(index.row(), FromQt(text));
      }));
  const QString empty = widget.property("emptyText").toString();
  if (!empty.isEmpty())
    new EmptyText(
        widget, [&widget, empty] { return widget.topLevelItemCount() == 0 ? empty : QString(); },
        [&widget] { return widget.viewport()->rect().adjusted(8, 8, -8, -8); });
  Connect();
}

void QtListView::Connect() {
  QTreeWidget& tree = TheWidget();
  QObject::connect(&tree, &QTreeWidget::itemSelectionChanged, &Face(),
                   [this] { SelectionChanged(); });
  QObject::connect(&tree, &QTreeWidget::itemPressed, &Face(), [this](QTreeWidgetItem* item) {
    Pressed(TheWidget().indexOfTopLevelItem(item));
  });
  QObject::connect(&tree, &QTreeWidget::itemClicked, &Face(),
                   [this](QTreeWidgetItem* item, int column) {
                     Clicked(TheWidget().indexOfTopLevelItem(item), column);
                   });
  QObject::connect(tree.verticalScrollBar(), &QScrollBar::valueChanged, &Face(),
                   [this] { Raise(Scrolled); });
  QObject::connect(tree.horizontalScrollBar(), &QScrollBar::valueChanged, &Face(),
                   [this] { Raise(Scrolled); });
  QObject::connect(tree.header(), &QHeaderView::sectionClicked, &Face(),
                   [this](int column) { Raise(ColumnClick, column); });
}

const ListRow& QtListView::Row(int index) const {
  return rows_.at(static_cast<std::size_t>(index));
}

void QtListView::SetRow(int index, ListRow row) {
  RefuseTakenKey(row, index);
  const bool moves = Sorted();
  rows_.at(static_cast<std::size_t>(index)) = std::move(row);
  const QSignalBlocker silence(TheWidget());
  ShowRow(*TheWidget().topLevelItem(index), Row(index));
  if (moves) Sort(sortColumn_, descending_);
}

int QtListView::Insert(int index, ListRow row) {
  RefuseTakenKey(row, -1);
  const QSignalBlocker silence(TheWidget());
  const int place = Sorted() ? PlaceOf(row) : index;
  const int selected = SelectedIndex();
  auto* item = new QTreeWidgetItem;
  ShowRow(*item, row);
  rows_.insert(rows_.begin() + place, std::move(row));
  TheWidget().insertTopLevelItem(place, item);
  Select(selected >= place ? selected + 1 : selected);
  return place;
}

void QtListView::Remove(int index) {
  const QSignalBlocker silence(TheWidget());
  const int selected = SelectedIndex();
  rows_.erase(rows_.begin() + index);
  delete TheWidget().takeTopLevelItem(index);
  Select(selected > index ? selected - 1 : std::min(selected, Count() - 1));
}

void QtListView::Clear() {
  const QSignalBlocker silence(TheWidget());
  rows_.clear();
  TheWidget().clear();
}

int QtListView::SelectedIndex() const {
  const QList<QTreeWidgetItem*> selected = TheWidget().selectedItems();
  return selected.isEmpty() ? -1 : TheWidget().indexOfTopLevelItem(selected.first());
}

void QtListView::SetSelectedIndex(int index) {
  const QSignalBlocker silence(TheWidget());
  Select(index);
  if (index >= 0) TheWidget().scrollToItem(TheWidget().topLevelItem(index));
}

std::string QtListView::ColumnCaption(int column) const {
  return FromQt(TheWidget().headerItem()->text(column));
}

/// The last column always reaches the right edge.
void QtListView::SetColumnWidth(int column, int twips) {
  TheWidget().setColumnWidth(column, std::max(0, Face().TheScale().Pixels(twips)));
}

int QtListView::ColumnWidth(int column) const {
  return Face().TheScale().Twips(TheWidget().columnWidth(column));
}

Rect QtListView::CellBounds(int row, int column) const {
  const QTreeWidget& tree = TheWidget();
  const QModelIndex index = tree.model()->index(row, column);
  const QRect cell = tree.visualRect(index);
  if (!cell.intersects(tree.viewport()->rect())) return {};
  return Face().TheScale().Twips(QRect(tree.viewport()->mapTo(&tree, cell.topLeft()), cell.size()));
}

void QtListView::Sort(int column, bool descending) {
  sortColumn_ = column;
  descending_ = descending;
  std::vector<std::size_t> order(rows_.size());
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::stable_sort(order, [this](auto a, auto b) { return Before(rows_[a], rows_[b]); });
  const int selected = SelectedIndex();
  const auto place = std::ranges::find(order, static_cast<std::size_t>(selected));
  std::vector<ListRow> sorted;
  for (const std::size_t index : order) sorted.push_back(std::move(rows_[index]));
  rows_ = std::move(sorted);
  const QSignalBlocker silence(TheWidget());
  for (int index = 0; index < Count(); ++index)
    ShowRow(*TheWidget().topLevelItem(index), Row(index));
  Select(place == order.end() ? -1 : static_cast<int>(place - order.begin()));
  QHeaderView& header = *TheWidget().header();
  header.setSortIndicator(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  header.setSortIndicatorShown(true);
}

/// Taking the flag back makes the toolkit fill the editor anew: its text is selected after that.
void QtListView::StartLabelEdit(int index) {
  QTreeWidgetItem* item = TheWidget().topLevelItem(index);
  const QSignalBlocker silence(TheWidget());
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  TheWidget().editItem(item, 0);
  item->setFlags(item->flags() & ~Qt::ItemIsEditable);
  if (auto* editor = TheWidget().viewport()->findChild<QLineEdit*>()) editor->selectAll();
}

void QtListView::ShowRow(QTreeWidgetItem& item, const ListRow& row) {
  const bool ordinary = row.foreColor == color::windowText;
  const QPalette& palette = TheWidget().palette();
  const QBrush brush =
      ordinary ? QBrush() : QBrush(TextColor(row.foreColor, color::windowBackground, palette));
  const QString toolTip = AsPlainToolTip(row.toolTip);
  for (int column = 0; column < TheWidget().columnCount(); ++column) {
    item.setText(column, OneLine(CellText(row, column)));
    item.setForeground(column, brush);
    item.setToolTip(column, toolTip);
  }
}

void QtListView::RefuseTakenKey(const ListRow& row, int except) const {
  const int holder = row.key.empty() ? -1 : FindKey(row.key);
  if (holder < 0 || holder == except) return;
  throw Error(errorNumber::application, "Tessel", "The key '" + row.key + "' is already in use.");
}

bool QtListView::Before(const ListRow& a, const ListRow& b) const {
  return descending_ ? LessNoCase(CellText(b, sortColumn_), CellText(a, sortColumn_))
                     : LessNoCase(CellText(a, sortColumn_), CellText(b, sortColumn_));
}

int QtListView::PlaceOf(const ListRow& row) const {
  const auto place = std::ranges::upper_bound(
      rows_, row, [this](const ListRow& a, const ListRow& b) { return Before(a, b); });
  return static_cast<int>(place - rows_.begin());
}

void QtListView::Select(int index) {
  QTreeWidget& tree = TheWidget();
  tree.setCurrentItem(index < 0 ? nullptr : tree.topLevelItem(index));
  if (index < 0) tree.clearSelection();
}

/// The user may not take the selection away, as Ctrl with a click or the space bar would.
void QtListView::SelectionChanged() {
  if (QTreeWidgetItem* left = TheWidget().currentItem(); left != nullptr && SelectedIndex() < 0) {
    const QSignalBlocker silence(TheWidget());
    return left->setSelected(true);
  }
  told_ = true;
  QMetaObject::invokeMethod(
      &Face(), [this] { told_ = false; }, Qt::QueuedConnection);
  const int index = SelectedIndex();
  if (index >= 0) Raise(ItemClick, index);
}

/// A press on the row that is already selected changes nothing, but it is a click all the same.
void QtListView::Pressed(int index) {
  const bool told = std::exchange(told_, false);
  if (!told && index >= 0) Raise(ItemClick, index);
}

void QtListView::Clicked(int index, int column) {
  if (index < 0) return;
  const QPoint place = TheWidget().mapFromGlobal(QCursor::pos());
  Raise(CellClick, index, column, EventAt(place, Face().TheScale()));
}

void QtListView::LabelEdited(int index, const std::string& text) {
  bool keepOld = false;
  Raise(AfterLabelEdit, index, text, keepOld);
  if (keepOld || index >= Count()) return;
  ListRow row = Row(index);
  row.text = text;
  SetRow(index, std::move(row));
}

}  // namespace tessel
