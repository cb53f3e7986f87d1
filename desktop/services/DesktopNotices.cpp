// Notices on the desktop, by the interface that notification servers have in common. The server is
// first asked what it can do: one that takes markup would read some in plain text.

#include "desktop/services/DesktopNotices.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMainWindow>
#include <QVariantMap>

#include "desktop/base/Text.h"

namespace tessel {

namespace {

/// A window that closes leaves none active until the desktop has chosen the next one.
constexpr int betweenWindows = 500;
constexpr QLatin1String service("org.freedesktop.Notifications");
constexpr QLatin1String path("/org/freedesktop/Notifications");
constexpr QLatin1String clicked("default");  ///< The action of a click on the notice itself.

QDBusMessage Call(const char* method) {
  return QDBusMessage::createMethodCall(service, path, service, QLatin1String(method));
}

/// Title, then text, then what a click does; the server says how long it stands.
QDBusMessage NotifyCall(const QString& title, const QString& text) {
  QVariantMap hints;
  hints.insert(QStringLiteral("desktop-entry"), QGuiApplication::desktopFileName());
  hints.insert(QStringLiteral("category"), QStringLiteral("transfer.complete"));
  const QStringList actions{clicked, QStringLiteral("Show")};
  QDBusMessage call = Call("Notify");
  call << QCoreApplication::applicationName() << uint{0} << QGuiApplication::desktopFileName()
       << title << text << actions << hints << -1;
  return call;
}

/// A modal window stands above the frame, and is the one to go to.
void ActivateProgram() {
  QWidget* window = QApplication::activeModalWidget();
  for (QWidget* top : QApplication::topLevelWidgets())
    if (window == nullptr && top->isVisible()) window = qobject_cast<QMainWindow*>(top);
  if (window == nullptr) return;
  window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
  window->raise();
  window->activateWindow();
}

}  // namespace

DesktopNotices::DesktopNotices() {
  connect(qApp, &QGuiApplication::applicationStateChanged, this, [this] { left_.start(); });
}

DesktopNotices::DesktopNotices(const QDBusConnection& bus) : DesktopNotices() { bus_ = bus; }

bool DesktopNotices::UserIsHere() const {
  if (QGuiApplication::applicationState() == Qt::ApplicationActive) return true;
  return left_.isValid() && left_.elapsed() < betweenWindows;
}

QDBusConnection& DesktopNotices::Bus() {
  if (!bus_) bus_ = QDBusConnection::sessionBus();
  return *bus_;
}

void DesktopNotices::WhenAnswered(const QDBusPendingCall& call,
                                  std::function<void(const QDBusPendingCall&)> handler) {
  auto* watcher = new QDBusPendingCallWatcher(call, this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this,
          [watcher, handler = std::move(handler)] {
            watcher->deleteLater();
            if (!watcher->isError()) handler(*watcher);
          });
}

void DesktopNotices::Show(const std::string& title, const std::string& text) {
  if (!Bus().isConnected()) return;
  WhenAnswered(Bus().asyncCall(Call("GetCapabilities")),
               [this, title = ToQt(title), text = ToQt(text)](const QDBusPendingCall& call) {
                 const QDBusPendingReply<QStringList> abilities = call;
                 Send(title, text, abilities.value().contains(QLatin1String("body-markup")));
               });
}

void DesktopNotices::Send(const QString& title, const QString& text, bool textIsMarkup) {
  if (shown_.empty())
    Bus().connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(Invoked(uint, QString)));
  WhenAnswered(Bus().asyncCall(NotifyCall(title, textIsMarkup ? text.toHtmlEscaped() : text)),
               [this](const QDBusPendingCall& call) {
                 const QDBusPendingReply<uint> id = call;
                 shown_.insert(id.value());
               });
}

void DesktopNotices::Invoked(uint id, const QString& action) {
  if (shown_.contains(id) && action == clicked) ActivateProgram();
}

}  // namespace tessel
