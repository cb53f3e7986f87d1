#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

#include "desktop/look/Tokens.h"
#include "desktop/look/theme/PortalColorScheme.h"

namespace tessel {

/// The colours for a desktop with this palette, if it has one of its own, that says this of its
/// ground, if it says anything. Its palette goes first where it can be read and is as light or dark
/// as the desktop says; the program's own colours stand in for it.
[[nodiscard]] Tokens TokensFor(const std::optional<QPalette>& desktop, std::optional<Shade> said);

/// Keeps the application's palette in line with the desktop's colours: those of its platform theme
/// at once, and what its portal says as soon as that is known. UI thread.
class SystemTheme final : public QObject {
  Q_OBJECT

 public:
  SystemTheme();

  /// Asks the portal of this bus from now on; one that is slow or absent delays nothing.
  void Follow(const QDBusConnection& bus);
  /// As above, on the bus of the user's session, where there is one.
  void FollowSession();

  /// Shows the program dark or light whatever the desktop says; for screenshots and tests.
  static void Force(bool dark);

  /// The platform theme tells each window when it has changed.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Apply();

  std::unique_ptr<PortalColorScheme> portal_;
  QTimer applySoon_;
};

}  // namespace tessel
