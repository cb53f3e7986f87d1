#include "tests/desktop/QtContractHost.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenuBar>
#include <QRadioButton>
#include <QStyle>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include "contract/desktop/controls/TreeView.h"
#include "desktop/base/Text.h"
#include "desktop/grid/RecordGrid.h"
#include "desktop/look/Scale.h"
#include "tests/desktop/QtUser.h"

namespace tessel::test {

namespace {

int noArguments = 0;

/// The widget that gets the mouse.
QWidget& MouseTarget(QWidget& widget) {
  if (const auto* area = qobject_cast<QAbstractScrollArea*>(&widget)) return *area->viewport();
  if (const auto* combo = qobject_cast<QComboBox*>(&widget);
      combo != nullptr && combo->isEditable())
    return *combo->lineEdit();
  return widget;
}

/// A check or option box answers on its sign and text only.
QPoint PlaceToClick(const QWidget& widget) {
  const bool sign = qobject_cast<const QCheckBox*>(&widget) != nullptr ||
                    qobject_cast<const QRadioButton*>(&widget) != nullptr;
  return sign ? QPoint(8, widget.height() / 2) : widget.rect().center();
}

Qt::MouseButton ButtonOf(MouseButton button) {
  switch (button) {
    case MouseButton::Right: return Qt::RightButton;
    case MouseButton::Middle: return Qt::MiddleButton;
    default: return Qt::LeftButton;
  }
}

void ClickAt(QWidget& target, const QPoint& place, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(&target, Qt::LeftButton, modifiers, place);
}

/// Where a node stands in the tree's viewport.
QRect NodeRect(Window& window, std::string_view tree, const std::string& key) {
  const Rect twips = window.Find<TreeView>(tree).NodeBounds(key);
  auto& widget = WidgetAs<QTreeView>(window, tree);
  const QRect inside = Scale().Pixels(twips);
  return {widget.viewport()->mapFrom(&widget, inside.topLeft()), inside.size()};
}

/// The check box at the left end of a node.
QRect CheckRect(const QTreeView& tree, const QRect& node) {
  QStyleOptionViewItem option;
  option.initFrom(&tree);
  option.rect = node;
  option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
  return tree.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree);
}

/// The titles from the menu bar down to the command; empty when it is not there.
QList<QAction*> PathTo(const QList<QAction*>& actions, const QString& command) {
  for (QAction* action : actions) {
    if (action->objectName() == command) return {action};
    if (action->menu() == nullptr) continue;
    QList<QAction*> below = PathTo(action->menu()->actions(), command);
    if (below.isEmpty()) continue;
    below.prepend(action);
    return below;
  }
  return {};
}

}  // namespace

Window* RememberingDesktop::WindowOf(const QWidget& form) const {
  for (const auto& [root, window] : made_)
    if (root == &form) return window;
  return nullptr;
}

std::unique_ptr<Window> RememberingDesktop::MakeWindow(std::string_view formName) {
  auto window = desktop_.MakeWindow(formName);
  made_.emplace_back(&AsQt(*window).Root(), window.get());
  return window;
}

QtContractHost::QtContractHost() : qt_(noArguments, nullptr), desktop_(qt_) {}

void QtContractHost::Click(Window& window, std::string_view control) {
  QWidget& widget = WidgetOf(window, control);
  ClickAt(MouseTarget(widget), PlaceToClick(widget));
  Settle();
}

void QtContractHost::DoubleClick(Window& window, std::string_view control) {
  QWidget& widget = WidgetOf(window, control);
  QWidget& target = MouseTarget(widget);
  const bool list = qobject_cast<QTreeWidget*>(&widget) != nullptr;
  const QPoint place = list ? target.rect().bottomLeft() + QPoint(2, -2) : target.rect().center();
  QTest::mouseDClick(&target, Qt::LeftButton, {}, place);
  Settle();
}

void QtContractHost::DoubleClickRow(Window& window, std::string_view listView, int row,
                                    MouseButton button) {
  auto& tree = WidgetAs<QTreeWidget>(window, listView);
  const QPoint place = tree.visualRect(tree.model()->index(row, 0)).center();
  QTest::mouseDClick(tree.viewport(), ButtonOf(button), {}, place);
  Settle();
}

void QtContractHost::ClickMouse(Window& window, std::string_view control, MouseButton button,
                                int shift) {
  Qt::KeyboardModifiers modifiers;
  modifiers.setFlag(Qt::ControlModifier, (shift & shiftState::ctrl) != 0);
  modifiers.setFlag(Qt::ShiftModifier, (shift & shiftState::shift) != 0);
  modifiers.setFlag(Qt::AltModifier, (shift & shiftState::alt) != 0);
  QTest::mouseClick(&MouseTarget(WidgetOf(window, control)), ButtonOf(button), modifiers, {2, 2});
  Settle();
}

void QtContractHost::Type(Window& window, std::string_view control, std::string_view text) {
  QWidget& widget = WidgetOf(window, control);
  widget.window()->activateWindow();
  widget.setFocus(Qt::OtherFocusReason);
  Settle();
  TypeText(text);
  Settle();
}

void QtContractHost::PressKey(Window& /*window*/, int keyCode, int shift) {
  PressKeyCode(keyCode, shift);
  Settle();
}

void QtContractHost::SelectEntry(Window& window, std::string_view list, int index) {
  QWidget& widget = WidgetOf(window, list);
  if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
    combo->showPopup();
    QAbstractItemView& view = *combo->view();
    const QModelIndex entry = combo->model()->index(index, 0);
    view.scrollTo(entry);
    QTest::mouseMove(view.viewport(), view.visualRect(entry).center());
    ClickAt(*view.viewport(), view.visualRect(entry).center());
    if (view.isVisible()) combo->hidePopup();
  } else {
    auto& box = dynamic_cast<QListView&>(widget);
    ClickAt(*box.viewport(), box.visualRect(box.model()->index(index, 0)).center());
  }
  Settle();
}

void QtContractHost::ClickCell(Window& window, std::string_view listView, int row, int column) {
  auto& tree = WidgetAs<QTreeWidget>(window, listView);
  const QRect cell = tree.visualRect(tree.model()->index(row, column));
  ClickAt(*tree.viewport(), cell.center());
  Settle();
}

void QtContractHost::ClickColumn(Window& window, std::string_view listView, int column) {
  QHeaderView& header = *WidgetAs<QTreeWidget>(window, listView).header();
  const QPoint place(header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
                     header.height() / 2);
  ClickAt(*header.viewport(), place);
  Settle();
}

void QtContractHost::EndLabelEdit(Window& window, std::string_view listView,
                                  const std::string& text) {
  auto* editor = WidgetAs<QTreeWidget>(window, listView).viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr) << "No label is being edited.";
  editor->setText(ToQt(text));
  QTest::keyClick(editor, Qt::Key_Return);
  Settle();
}

void QtContractHost::ClickNode(Window& window, std::string_view tree, const std::string& key) {
  auto& widget = WidgetAs<QTreeView>(window, tree);
  const QRect node = NodeRect(window, tree, key);
  ClickAt(*widget.viewport(), {CheckRect(widget, node).right() + 24, node.center().y()});
  Settle();
}

void QtContractHost::CheckNode(Window& window, std::string_view tree, const std::string& key) {
  auto& widget = WidgetAs<QTreeView>(window, tree);
  ClickAt(*widget.viewport(), CheckRect(widget, NodeRect(window, tree, key)).center());
  Settle();
}

void QtContractHost::ExpandNode(Window& window, std::string_view tree, const std::string& key) {
  auto& widget = WidgetAs<QTreeView>(window, tree);
  const QRect node = NodeRect(window, tree, key);
  ClickAt(*widget.viewport(), {node.left() - widget.indentation() / 2, node.center().y()});
  Settle();
}

void QtContractHost::ClickGridCell(Window& window, std::string_view grid, std::int64_t position,
                                   int column) {
  auto& widget = WidgetAs<RecordGrid>(window, grid);
  const QModelIndex cell = widget.model()->index(static_cast<int>(position), column);
  widget.scrollTo(cell);
  ClickAt(*widget.viewport(), widget.visualRect(cell).center());
  Settle();
}

void QtContractHost::SelectGridRows(Window& window, std::string_view grid,
                                    const std::vector<std::int64_t>& positions) {
  auto& widget = WidgetAs<RecordGrid>(window, grid);
  QHeaderView& header = *widget.verticalHeader();
  Qt::KeyboardModifiers modifiers;
  for (const std::int64_t position : positions) {
    const int row = static_cast<int>(position);
    widget.scrollTo(widget.model()->index(row, 0));
    const int middle = header.sectionViewportPosition(row) + header.sectionSize(row) / 2;
    ClickAt(*header.viewport(), {header.width() / 2, middle}, modifiers);
    modifiers = Qt::ControlModifier;
  }
  Settle();
}

void QtContractHost::ChooseMenu(Window& window, std::string_view command) {
  auto& frame = dynamic_cast<QMainWindow&>(*AsQt(window).Root().window());
  const QList<QAction*> path = PathTo(frame.menuBar()->actions(), ToQt(command));
  ASSERT_FALSE(path.isEmpty()) << "No menu has the command " << command;
  frame.menuBar()->setActiveAction(path.first());
  for (qsizetype at = 1; at + 1 < path.size(); ++at)
    path[at - 1]->menu()->setActiveAction(path[at]);
  ChooseFrom(*path[path.size() - 2]->menu(), std::string(command));
  while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  Settle();
}

void QtContractHost::CloseByControlBox(Window& window) {
  AsQt(window).Outer().close();
  Settle();
}

void QtContractHost::Maximize(Window& document) {
  AsQt(document).Outer().showMaximized();
  Settle();
}

void QtContractHost::OnModal(const std::string& form, std::function<void(Window&)> step) {
  answers_.OnModal(form, [this, step = std::move(step)](const QWidget& shown) {
    Window* window = desktop_.WindowOf(shown);
    ASSERT_NE(window, nullptr);
    step(*window);
  });
}

void QtContractHost::OnMessage(const std::string& text, MessageResult answer) {
  answers_.OnMessage(text, answer);
}

void QtContractHost::OnPopup(const std::string& menu, const std::string& command) {
  answers_.OnPopup(menu, command);
}

void QtContractHost::PassTime(int milliseconds) { QTest::qWait(milliseconds); }

void QtContractHost::Settle() { SettleEvents(); }

}  // namespace tessel::test
