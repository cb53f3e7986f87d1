#include "desktop/editor/FileDrops.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "desktop/base/Text.h"

namespace tessel {

FileDrops::FileDrops(QObject& owner, QAbstractScrollArea& area, std::function<bool()> wanted,
                     std::function<void(const std::vector<std::string>&)> dropped)
    : QObject(&owner), area_(area), wanted_(std::move(wanted)), dropped_(std::move(dropped)) {
  area.installEventFilter(this);
  area.viewport()->installEventFilter(this);
}

/// The window is known when the area is shown in it.
void FileDrops::WatchWindow() {
  QWidget* window = area_.window();
  if (window == window_ || !wanted_()) return;
  if (window_ != nullptr) window_->removeEventFilter(this);
  window_ = window;
  window->setAcceptDrops(true);
  window->installEventFilter(this);
}

bool FileDrops::Takes(const QDropEvent& event) const {
  const QWidget* modal = QApplication::activeModalWidget();
  const QList<QUrl> urls = event.mimeData()->urls();
  return !urls.isEmpty() && std::ranges::all_of(urls, &QUrl::isLocalFile) && wanted_() &&
         (modal == nullptr || modal == area_.window());
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
      if (watched == &area_) WatchWindow();
      return false;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: break;
    default: return false;
  }
  auto& drop = *static_cast<QDropEvent*>(event);
  if (!Takes(drop)) return false;
  drop.setDropAction(Qt::CopyAction);
  drop.accept();
  if (event->type() != QEvent::Drop) return true;
  std::vector<std::string> paths;
  for (const QUrl& url : drop.mimeData()->urls()) paths.push_back(FromQt(url.toLocalFile()));
  dropped_(paths);
  return true;
}

}  // namespace tessel
