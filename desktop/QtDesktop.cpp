// Here the parts of the desktop are put together: the application object, what all windows share,
// the services and the help window, in the order in which they depend on each other. The windows
// are made here by the kind that their form names, and the program's end begins here.

#include "desktop/QtDesktop.h"

#include <QApplication>
#include <QPointer>
#include <QSessionManager>
#include <QSocketNotifier>

#include "contract/base/Error.h"
#include "contract/base/Keys.h"
#include "desktop/FormRegistry.h"
#include "desktop/access/Access.h"
#include "desktop/base/MenuKey.h"
#include "desktop/base/Text.h"
#include "desktop/base/Typing.h"
#include "desktop/dialogs/MessageDialog.h"
#include "desktop/help/HelpWindow.h"
#include "desktop/look/Icons.h"
#include "desktop/look/theme/Theme.h"
#include "desktop/services/DesktopNotices.h"
#include "desktop/services/KeyboardReturn.h"
#include "desktop/services/QtServices.h"
#include "desktop/window/DesktopCore.h"
#include "desktop/window/DialogWindow.h"
#include "desktop/window/frame/DocumentWindow.h"
#include "desktop/window/frame/FrameWindow.h"

namespace tessel {

namespace {

/// Commands of ShowHelp.
constexpr int contentsCommand = 1;
constexpr int indexCommand = 2;
constexpr int topicCommand = 15;

std::unique_ptr<QApplication> ApplicationUnlessMade(int& argc, char** argv) {
  if (QCoreApplication::instance() != nullptr) return nullptr;
  return std::make_unique<QApplication>(argc, argv);
}

std::string DescriptionOf(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const Error& error) {
    return error.Description();
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "An unknown error occurred.";
  }
}

}  // namespace

/// In the order in which they are made; gone in the opposite order.
struct QtDesktop::Parts {
  Parts(int& argc, char** argv, std::function<void(std::exception_ptr)> showFailure)
      : application(ApplicationUnlessMade(argc, argv)), core(std::move(showFailure)) {
    InstallAccess();
    core.showHelpOn = [this](const Window& window) {
      ShowTopic(window.FormName(), window.HelpContext());
    };
    QCoreApplication::instance()->installEventFilter(&heldKeys);
    QCoreApplication::instance()->installEventFilter(&menuKey);
  }
  ~Parts() { delete help; }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;

  HelpWindow& Help() {
    if (help == nullptr) help = new HelpWindow;
    return *help;
  }
  /// The page of a context number, else that of a form, else the contents.
  void ShowTopic(const std::string& form, int context) {
    const HelpBook& book = Help().Book();
    QString page = book.PageOfContext(context);
    if (page.isEmpty()) page = book.PageOfForm(ToQt(form));
    if (page.isEmpty()) Help().ShowContents();
    else Help().ShowPage(page);
  }

  std::unique_ptr<QApplication> application;
  DesktopCore core;
  HeldKeysFilter heldKeys;
  MenuKeyFilter menuKey;
  KeyboardReturn keyboardReturn;
  SystemTheme theme;
  QtClipboard clipboard;
  QtClock clock;
  QtEventQueue events;
  DesktopNotices notices;
  QPointer<HelpWindow> help;  ///< Made at its first use.
  std::unique_ptr<QSocketNotifier> endNotifier;
};

QtDesktop::QtDesktop(int& argc, char** argv)
    : parts_(std::make_unique<Parts>(argc, argv, [this](const std::exception_ptr& failure) {
        Message message;
        message.text = DescriptionOf(failure);
        message.icon = MessageIcon::Exclamation;
        ShowMessage(message);
      })) {
  QApplication::setApplicationName(QStringLiteral("Tessel"));
  QGuiApplication::setDesktopFileName(QStringLiteral("org.tessel.Tessel"));
  QApplication::setWindowIcon(NamedIcon(QStringLiteral("tessel")));
  QApplication::setQuitOnLastWindowClosed(false);
  QObject::connect(qApp, &QGuiApplication::commitDataRequest, &parts_->core.deferred,
                   [this](QSessionManager& session) {
                     session.setRestartHint(QSessionManager::RestartNever);
                     if (!CommitSession(session.allowsInteraction())) session.cancel();
                     session.release();
                   });
}

QtDesktop::~QtDesktop() = default;

int QtDesktop::Run() { return QApplication::exec(); }

void QtDesktop::FollowColors() { parts_->theme.FollowSession(); }

void QtDesktop::EndWhenReadable(int descriptor) {
  parts_->endNotifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(parts_->endNotifier.get(), &QSocketNotifier::activated, [this] {
    parts_->endNotifier->setEnabled(false);
    EndSession();
  });
}

/// A modal window or a handler under way is no place for the questions.
bool QtDesktop::CommitSession(bool mayAsk) {
  const DesktopCore& core = parts_->core;
  const bool asks = mayAsk && core.frame != nullptr && core.loops.Depth() == 0;
  if (asks) return core.frame->CloseAsByUser();
  EndSession();
  return true;
}

/// What is unsaved is copied before anything is closed. The frame goes when the handlers that are
/// under way have returned.
void QtDesktop::EndSession() {
  DesktopCore& core = parts_->core;
  if (core.loops.Ending()) return;
  core.loops.EndAll();
  SessionEnds.Raise(nullptr);
  core.deferred.Add([&core] {
    if (core.frame != nullptr) core.frame->EndWithSession();
    else QCoreApplication::quit();
  });
}

std::unique_ptr<Window> QtDesktop::MakeWindow(std::string_view formName) {
  std::unique_ptr<QWidget> form = MakeForm(formName);
  const std::string name(formName);
  if (form == nullptr)
    throw Error(errorNumber::itemNotFound, "Tessel", "There is no form '" + name + "'.");
  const QString kind = form->property("kind").toString();
  if (kind == QLatin1String("document"))
    return std::make_unique<DocumentWindow>(name, std::move(form), parts_->core);
  if (kind != QLatin1String("frame"))
    return std::make_unique<DialogWindow>(name, std::move(form), parts_->core);
  auto frame = std::make_unique<FrameWindow>(name, std::move(form), parts_->core);
  frame->unloaded = [] {
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
  };
  return frame;
}

MessageResult QtDesktop::ShowMessage(const Message& message) {
  Message guarded = message;
  if (message.help) {
    guarded.help = [this, help = message.help] {
      try {
        help();
      } catch (...) {
        parts_->core.showFailure(std::current_exception());
      }
    };
  }
  return ShowMessageBox(guarded, QApplication::activeWindow(), parts_->core.loops);
}

Clipboard& QtDesktop::TheClipboard() { return parts_->clipboard; }

EventQueue& QtDesktop::Events() { return parts_->events; }

const Clock& QtDesktop::TheClock() const { return parts_->clock; }

Notifications& QtDesktop::TheNotifications() { return parts_->notices; }

bool QtDesktop::IsKeyDown(int keyCode) const {
  const Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
  switch (keyCode) {
    case key::shift: return held.testFlag(Qt::ShiftModifier);
    case key::control: return held.testFlag(Qt::ControlModifier);
    case key::alt: return held.testFlag(Qt::AltModifier);
    default: return false;
  }
}

void QtDesktop::ProcessPending() { parts_->core.loops.ProcessPending(); }

void QtDesktop::Defer(std::function<void()> action) {
  parts_->core.deferred.Add(std::move(action));
}

void QtDesktop::StartProcess(const std::string& path) { StartDetached(path); }

bool QtDesktop::ShowHelp(const std::string& /*helpFile*/, int command, int data) {
  switch (command) {
    case contentsCommand: parts_->Help().ShowContents(); return true;
    case indexCommand: parts_->Help().ShowIndex(); return true;
    case topicCommand: parts_->ShowTopic({}, data); return true;
    default: return false;
  }
}

void QtDesktop::ShowHelpOn(const Window& window) {
  parts_->ShowTopic(window.FormName(), window.HelpContext());
}

}  // namespace tessel
