#pragma once

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QObject>
#include <functional>
#include <optional>
#include <set>

#include "contract/desktop/Notifications.h"

class QDBusPendingCall;

namespace tessel {

/// Notices shown by the desktop's notification server, reached over the session bus. Every call is
/// sent without waiting for its answer: a server that hangs is as good as none.
class DesktopNotices final : public QObject, public Notifications {
  Q_OBJECT

 public:
  /// On the session bus; it is connected to at the first notice.
  DesktopNotices();
  /// On a bus of the caller's own.
  explicit DesktopNotices(const QDBusConnection& bus);

  [[nodiscard]] bool UserIsHere() const override;
  void Show(const std::string& title, const std::string& text) override;

 private slots:
  void Invoked(uint id, const QString& action);

 private:
  [[nodiscard]] QDBusConnection& Bus();
  void WhenAnswered(const QDBusPendingCall& call,
                    std::function<void(const QDBusPendingCall&)> handler);
  void Send(const QString& title, const QString& text, bool textIsMarkup);

  std::optional<QDBusConnection> bus_;
  QElapsedTimer left_;    ///< Since no window of the program is active.
  std::set<uint> shown_;  ///< Numbers that the server gave to notices of this program.
};

}  // namespace tessel
