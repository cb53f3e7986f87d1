#include "desktop/tree/QtTreeView.h"

#include <QItemSelectionModel>

#include "desktop/tree/NodeDelegate.h"

namespace tessel {

namespace {

// What a form says of a tree that has no nodes, and of one with a root node that has none below it.
constexpr const char* emptyProperty = "emptyText";
constexpr const char* emptyBranchProperty = "emptyBranchText";
constexpr int aroundText = 8;

}  // namespace

QtTreeView::QtTreeView(QTreeView& widget, const ControlSite& site)
    : ControlOf(widget, site), model_(std::make_unique<KeyedTreeModel>(nullptr)) {
  widget.setModel(model_.get());
  widget.setAllColumnsShowFocus(true);
  new NodeDelegate(widget);
  widget.viewport()->setAttribute(Qt::WA_Hover);
  if (!widget.property(emptyProperty).toString().isEmpty())
    emptyText_ = new EmptyText(
        widget, [this] { return EmptyTextNow(); }, [this] { return RoomBelow(); });
  model_->checkChanged = [this](const std::string& key) { Raise(NodeCheck, key); };
  model_->noted = [this](const std::string& key, NodeNote& note) { Raise(NodeNoted, key, note); };
  QObject::connect(&widget, &QTreeView::expanded, &Face(),
                   [this](const QModelIndex& index) { Raise(NodeExpand, model_->KeyOf(index)); });
  QObject::connect(widget.selectionModel(), &QItemSelectionModel::selectionChanged, &Face(),
                   [this] { SelectionChanged(); });
}

/// The view outlives the model.
QtTreeView::~QtTreeView() {
  delete emptyText_;
  TheWidget().setModel(nullptr);
}

bool QtTreeView::Add(std::string_view parentKey, TreeNode node) {
  return model_->Append(parentKey, {std::move(node)}) == 1;
}

void QtTreeView::AddChildren(std::string_view parentKey, std::vector<TreeNode> nodes) {
  model_->Append(parentKey, nodes);
}

/// The toolkit would select a neighbour of a removed node.
void QtTreeView::Remove(std::string_view key) {
  ++quiet_;
  const std::string selected = SelectedKey();
  model_->Remove(key);
  if (!selected.empty() && !model_->Exists(selected)) TheWidget().setCurrentIndex({});
  --quiet_;
}

std::string QtTreeView::Parent(std::string_view key) const { return model_->Parent(key); }

std::vector<std::string> QtTreeView::Children(std::string_view key) const {
  return model_->Children(key);
}

std::vector<std::string> QtTreeView::ChildTexts(std::string_view key) const {
  return model_->ChildTexts(key);
}

bool QtTreeView::Expanded(std::string_view key) const {
  return TheWidget().isExpanded(model_->IndexOf(key));
}

/// A node without children has nothing to show.
void QtTreeView::SetExpanded(std::string_view key, bool expanded) {
  const QModelIndex index = model_->IndexOf(key);
  if (model_->rowCount(index) > 0) TheWidget().setExpanded(index, expanded);
}

std::string QtTreeView::SelectedKey() const {
  const QModelIndexList selected = TheWidget().selectionModel()->selectedIndexes();
  return selected.isEmpty() ? std::string() : model_->KeyOf(selected.first());
}

void QtTreeView::SelectNode(std::string_view key) {
  const QModelIndex index = model_->IndexOf(key);
  ++quiet_;
  TheWidget().setCurrentIndex(index);
  TheWidget().scrollTo(index);
  --quiet_;
}

std::string QtTreeView::NodeAt(int x, int y) const {
  const QTreeView& tree = TheWidget();
  const Scale& scale = Face().TheScale();
  const QPoint place = tree.viewport()->mapFrom(&tree, QPoint(scale.Pixels(x), scale.Pixels(y)));
  const QModelIndex index = tree.indexAt(place);
  return index.isValid() ? model_->KeyOf(index) : std::string();
}

Rect QtTreeView::NodeBounds(std::string_view key) const {
  const QTreeView& tree = TheWidget();
  const QRect node = tree.visualRect(model_->IndexOf(key));
  if (!node.intersects(tree.viewport()->rect())) return {};
  return Face().TheScale().Twips(QRect(tree.viewport()->mapTo(&tree, node.topLeft()), node.size()));
}

QString QtTreeView::EmptyTextNow() const {
  const int roots = model_->rowCount({});
  if (roots == 0) return TheWidget().property(emptyProperty).toString();
  for (int row = 0; row < roots; ++row)
    if (model_->rowCount(model_->index(row, 0, {})) == 0)
      return TheWidget().property(emptyBranchProperty).toString();
  return {};
}

/// What the nodes leave of the view.
QRect QtTreeView::RoomBelow() const {
  const QTreeView& tree = TheWidget();
  QModelIndex last;
  for (int rows = model_->rowCount({}); rows > 0; rows = model_->rowCount(last)) {
    last = model_->index(rows - 1, 0, last);
    if (!tree.isExpanded(last)) break;
  }
  QRect room = tree.viewport()->rect().adjusted(aroundText, aroundText, -aroundText, 0);
  if (last.isValid()) room.setTop(tree.visualRect(last).bottom() + aroundText);
  return room;
}

void QtTreeView::SelectionChanged() {
  const std::string key = SelectedKey();
  if (quiet_ == 0 && !key.empty()) Raise(NodeClick, key);
}

}  // namespace tessel
