// All nested running of the event loop, for dialogs, pop-up menus and long operations. The tricky
// part is to keep the rest of the program out meanwhile: input is blocked, a window may vanish
// while its loop runs, and the end of the session ends every loop.

#include "desktop/services/EventLoops.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <memory>
#include <vector>

#include "desktop/services/InputBlock.h"

namespace tessel {

namespace {

/// How long a new window may take to come up on the screen before the program goes on without it.
constexpr int exposeMilliseconds = 200;
/// Milliseconds from one round of pending events to the next: a loop may ask after every record.
constexpr qint64 betweenRounds = 4;
constexpr const char* awaitedProperty = "tesselAwaited";

bool IsAwaited(QWindow& window) {
  return window.isVisible() && !window.isExposed() && !window.property(awaitedProperty).toBool();
}

bool AnyAwaited() {
  for (QWindow* window : QGuiApplication::topLevelWindows())
    if (IsAwaited(*window)) return true;
  return false;
}

/// A window that did not come up in time (it may stand on another desktop) is not waited for again.
void GiveUpWaiting() {
  for (QWindow* window : QGuiApplication::topLevelWindows())
    if (IsAwaited(*window)) window->setProperty(awaitedProperty, true);
}

/// Keeps input from every window that there is now.
class AllInputBlock {
 public:
  AllInputBlock() {
    for (QWidget* window : QApplication::topLevelWidgets())
      blocks_.emplace_back(std::make_unique<InputBlock>(*window))->Set(true);
  }

 private:
  std::vector<std::unique_ptr<InputBlock>> blocks_;
};

/// Ends a loop when a dialog is hidden.
class HideWatch final : public QObject {
 public:
  HideWatch(QDialog& dialog, QEventLoop& loop) : loop_(loop) { dialog.installEventFilter(this); }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Hide && !event->spontaneous()) loop_.quit();
    return false;
  }

 private:
  QEventLoop& loop_;
};

}  // namespace

class EventLoops::Running {
 public:
  explicit Running(EventLoops& loops) : loops_(loops) { ++loops_.depth_; }
  ~Running() {
    --loops_.depth_;
    if (loops_.depth_ == 0 && loops_.becameIdle) loops_.becameIdle();
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  EventLoops& loops_;
};

void EventLoops::EndAll() {
  ending_ = true;
  while (QWidget* menu = QApplication::activePopupWidget())
    if (!menu->close()) break;
  for (QEventLoop* loop : running_) loop->exit(0);
}

int EventLoops::Exec(QEventLoop& loop) {
  running_.push_back(&loop);
  const int result = loop.exec();
  running_.pop_back();
  return result;
}

/// Unlike QDialog::exec this also returns when the dialog is hidden while it is being shown.
int EventLoops::Run(QDialog& dialog) {
  if (ending_) return QDialog::Rejected;
  const Running running(*this);
  const QPointer<QDialog> alive(&dialog);
  QEventLoop loop;
  const HideWatch watch(dialog, loop);
  dialog.setResult(QDialog::Rejected);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  if (alive != nullptr && dialog.isVisible()) Exec(loop);
  if (alive == nullptr) return QDialog::Rejected;
  dialog.hide();
  dialog.setWindowModality(Qt::NonModal);
  return dialog.result();
}

int EventLoops::RunLater(QDialog& dialog, int milliseconds) {
  if (ending_) return QDialog::Rejected;
  const Running running(*this);
  const QPointer<QDialog> alive(&dialog);
  {
    const AllInputBlock block;
    QEventLoop wait;
    awaited_ = &dialog;
    wait_ = &wait;
    QTimer::singleShot(milliseconds, &wait, [&wait] { wait.exit(1); });
    const bool isLong = Exec(wait) != 0;
    awaited_ = nullptr;
    wait_ = nullptr;
    if (!isLong || alive == nullptr) return QDialog::Rejected;
  }
  return Run(dialog);
}

void EventLoops::EndWait(const QDialog& dialog) {
  if (awaited_ == &dialog) wait_->exit(0);
}

void EventLoops::Run(QMenu& menu, const QPoint& place) {
  if (ending_) return;
  const Running running(*this);
  menu.exec(place);
}

void EventLoops::ProcessPending() {
  if (sinceRound_.isValid() && sinceRound_.elapsed() < betweenRounds) return;
  const Running running(*this);
  QCoreApplication::processEvents();
  const QDeadlineTimer deadline(exposeMilliseconds);
  while (AnyAwaited() && !deadline.hasExpired())
    QCoreApplication::processEvents(QEventLoop::AllEvents,
                                    static_cast<int>(deadline.remainingTime()));
  GiveUpWaiting();
  sinceRound_.start();
}

void EventLoops::AwaitPlace(const QWidget& window) {
  QWindow* handle = window.windowHandle();
  if (handle == nullptr || !IsAwaited(*handle)) return;
  const AllInputBlock block;
  ProcessPending();
}

}  // namespace tessel
