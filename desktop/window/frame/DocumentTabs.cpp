#include "desktop/window/frame/DocumentTabs.h"

#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>

#include "desktop/look/Tokens.h"
#include "desktop/window/frame/DocumentStyle.h"

namespace tessel {

namespace {

constexpr int markHeight = 16;
constexpr int markWidth = 4;

/// A title in the toolkit's own form as a plain text that a tab shows to the letter.
QString TabText(QString title) {
  title.replace(QLatin1String("[*][*]"), QLatin1String("[*]"));
  return title.replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace

DocumentTabs::DocumentTabs(QMdiArea& area) : QTabBar(area.viewport()), area_(area) {
  setObjectName(QStringLiteral("qt_documentTabs"));
  setAccessibleName(tr("Documents"));
  setDocumentMode(true);
  setDrawBase(false);
  setExpanding(false);
  setTabsClosable(true);
  setElideMode(Qt::ElideRight);
  setFocusPolicy(Qt::NoFocus);
  hide();
  connect(this, &QTabBar::currentChanged, this, [this](int tab) {
    if (tab >= 0 && tab < documents_.size()) area_.setActiveSubWindow(documents_[tab]);
  });
  connect(this, &QTabBar::tabCloseRequested, this, [this](int tab) { documents_[tab]->close(); });
  connect(&area_, &QMdiArea::subWindowActivated, this,
          [this](const QMdiSubWindow* active) { ShowCurrent(active); });
}

void DocumentTabs::ShowFor(const QList<QMdiSubWindow*>& documents, const QRect& place) {
  const QSignalBlocker silence(this);
  documents_ = documents;
  while (count() > documents_.size()) removeTab(count() - 1);
  while (count() < documents_.size()) addTab(QString());
  for (const QMdiSubWindow* document : documents_) Rename(*document);
  setGeometry(place);
  show();
  ShowCurrent(area_.currentSubWindow());
}

void DocumentTabs::Clear() {
  documents_.clear();
  hide();
}

void DocumentTabs::Forget(const QMdiSubWindow& document) {
  const auto tab = documents_.indexOf(&document);
  if (tab < 0) return;
  const QSignalBlocker silence(this);
  documents_.removeAt(tab);
  removeTab(static_cast<int>(tab));
}

void DocumentTabs::Rename(const QMdiSubWindow& document) {
  const auto tab = static_cast<int>(documents_.indexOf(&document));
  if (tab < 0) return;
  setTabText(tab, TabText(document.windowTitle()));
  setTabIcon(tab, MarkOf(document));
}

void DocumentTabs::ShowCurrent(const QMdiSubWindow* active) {
  const auto tab = static_cast<int>(documents_.indexOf(active));
  if (tab < 0) return;
  const QSignalBlocker silence(this);
  setCurrentIndex(tab);
}

/// A stripe in its colour, with a thin outline that keeps a pale one in sight.
QIcon DocumentTabs::MarkOf(const QMdiSubWindow& document) {
  const auto mark = document.property(DocumentStyle::markProperty).value<QColor>();
  if (!mark.isValid()) return {};
  QPixmap stripe(markHeight, markHeight);
  stripe.fill(Qt::transparent);
  QPainter painter(&stripe);
  painter.setPen(CurrentTokens().edge);
  painter.setBrush(mark);
  painter.drawRect((markHeight - markWidth) / 2 - 1, 0, markWidth + 1, markHeight - 1);
  return stripe;
}

}  // namespace tessel
