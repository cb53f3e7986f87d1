// The window's layout and how its parts work together: contents, index and search at the left ask
// the help book for pages, and the page that a person chooses opens at the right.

#include "desktop/help/HelpWindow.h"
#include "desktop/help/HelpPage.h"
#include "desktop/look/Icons.h"
#include "desktop/window/ScreenRoom.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tessel {

namespace {

constexpr int pageRole = Qt::UserRole;
constexpr QSize firstSize(900, 620);
constexpr int listWidth = 260;

QTreeWidgetItem* ItemOf(const HelpTopic& topic) {
  auto* item = new QTreeWidgetItem({topic.title});
  item->setData(0, pageRole, topic.page);
  for (const HelpTopic& below : topic.below) item->addChild(ItemOf(below));
  return item;
}

void Fill(QListWidget& list, const std::vector<HelpTopic>& topics) {
  list.clear();
  for (const HelpTopic& topic : topics) {
    auto* item = new QListWidgetItem(topic.title, &list);
    item->setData(pageRole, topic.page);
  }
}

std::vector<HelpTopic> Beginning(const std::vector<HelpTopic>& words, const QString& typed) {
  std::vector<HelpTopic> found;
  for (const HelpTopic& word : words)
    if (word.title.contains(typed, Qt::CaseInsensitive)) found.push_back(word);
  return found;
}

}  // namespace

HelpWindow::HelpWindow() : QWidget(nullptr, Qt::Window), browser_(new HelpPage) {
  setWindowTitle(book_.Title());
  resize(WithinScreenOf(*this, firstSize));
  tabs_ = new QTabWidget;
  tabs_->setObjectName(QStringLiteral("tabs"));
  tabs_->addTab(MakeContents(), tr("&Contents"));
  tabs_->addTab(MakeList(indexLine_, tr("Find in the index"),
                         [this](const QString& typed) { return Beginning(book_.Index(), typed); }),
                tr("I&ndex"));
  tabs_->addTab(MakeList(searchLine_, tr("Words to search for"),
                         [this](const QString& typed) { return book_.Search(typed); }),
                tr("&Search"));
  browser_->setObjectName(QStringLiteral("page"));
  browser_->setAccessibleName(tr("Help page"));
  auto* halves = new QSplitter;
  halves->addWidget(tabs_);
  halves->addWidget(browser_);
  halves->setStretchFactor(1, 1);
  halves->setSizes({listWidth, firstSize.width() - listWidth});
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(MakeButtons());
  layout->addWidget(halves, 1);
  Open(book_.StartPage());
}

QWidget* HelpWindow::MakeButtons() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](const QString& name, const char* icon, int key, auto action) {
    auto* button = new QToolButton;
    button->setIcon(NamedIcon(icon));
    button->setText(name);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAccessibleName(name);
    const QKeySequence keys(Qt::ALT | Qt::Key(key));
    button->setToolTip(name + " (" + keys.toString() + ")");
    connect(new QShortcut(keys, this), &QShortcut::activated, button, &QToolButton::click);
    connect(button, &QToolButton::clicked, this, action);
    layout->addWidget(button);
    return button;
  };
  auto* back = add(tr("Back"), "go-previous", Qt::Key_Left, [this] { browser_->backward(); });
  auto* forward = add(tr("Forward"), "go-next", Qt::Key_Right, [this] { browser_->forward(); });
  add(tr("Home"), "go-home", Qt::Key_Home, [this] { Open(book_.StartPage()); });
  layout->addStretch(1);
  for (QToolButton* button : {back, forward}) button->setEnabled(false);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
  return row;
}

QWidget* HelpWindow::MakeContents() {
  auto* tree = new QTreeWidget;
  tree->setObjectName(QStringLiteral("contents"));
  tree->setHeaderHidden(true);
  tree->setAccessibleName(tr("Contents"));
  for (const HelpTopic& topic : book_.Contents()) tree->addTopLevelItem(ItemOf(topic));
  connect(tree, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    if (item != nullptr) Open(item->data(0, pageRole).toString());
  });
  return tree;
}

/// A line to type in and the list of what fits it.
QWidget* HelpWindow::MakeList(QLineEdit*& line, const QString& hint, const Lookup& lookup) {
  auto* half = new QWidget;
  auto* layout = new QVBoxLayout(half);
  line = new QLineEdit;
  line->setPlaceholderText(hint);
  line->setAccessibleName(hint);
  line->setClearButtonEnabled(true);
  auto* list = new QListWidget;
  list->setAccessibleName(tr("Pages found"));
  layout->addWidget(line);
  layout->addWidget(list, 1);
  Fill(*list, lookup({}));
  connect(line, &QLineEdit::textChanged, list,
          [list, lookup](const QString& typed) { Fill(*list, lookup(typed)); });
  connect(line, &QLineEdit::returnPressed, list, [list] {
    list->setCurrentRow(0);
    list->setFocus();
  });
  connect(list, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
    if (item != nullptr) Open(item->data(pageRole).toString());
  });
  return half;
}

void HelpWindow::ShowContents() {
  tabs_->setCurrentIndex(0);
  Open(book_.StartPage());
  ComeUp();
}

void HelpWindow::ShowIndex() {
  tabs_->setCurrentIndex(1);
  ComeUp();
  indexLine_->setFocus();
}

void HelpWindow::ShowPage(const QString& page) {
  Open(page);
  ComeUp();
  browser_->scrollToAnchor(QUrl(page).fragment());  // Once more, in the window's size.
}

void HelpWindow::Open(const QString& page) {
  browser_->setSource(QUrl(HelpBook::ResourceOf(page)));
}

/// Only the windows of a modal one can be used while it is shown.
void HelpWindow::ComeUp() {
  if (!isVisible()) browser_->clearHistory();
  PutAbove(QApplication::activeModalWidget());
  show();
  raise();
  activateWindow();
}

void HelpWindow::PutAbove(QWidget* owner) {
  if (owner == parentWidget() || owner == this) return;
  if (parentWidget() != nullptr) parentWidget()->removeEventFilter(this);
  const bool placed = testAttribute(Qt::WA_Moved);
  const QPoint place = pos();
  setParent(owner, Qt::Window);
  if (placed) move(place);
  if (owner != nullptr) owner->installEventFilter(this);
}

/// When the window below goes, this one stays.
bool HelpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched != parentWidget() || event->type() != QEvent::Hide || event->spontaneous())
    return false;
  const bool shown = isVisible();
  PutAbove(QApplication::activeModalWidget());
  if (shown) show();
  return false;
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
  else QWidget::keyPressEvent(event);
}

}  // namespace tessel
