#include "desktop/look/theme/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QStyle>

#include "desktop/look/Colors.h"
#include "desktop/look/Icons.h"
#include "desktop/look/theme/FlatStyle.h"

namespace tessel {

namespace {

Shade ShadeOf(const Tokens& tokens) { return IsDark(tokens.base) ? Shade::Dark : Shade::Light; }

/// The palette that the platform theme gives; that of the toolkit's style stands for none. To be
/// seen, it must not lie under the program's.
std::optional<QPalette> PaletteOfDesktop() {
  QApplication::setPalette(QPalette());
  const QPalette palette = QApplication::palette();
  if (palette == QApplication::style()->standardPalette()) return std::nullopt;
  return palette;
}

/// Whether there is a bus to ask. Without this the D-Bus library would try to start one.
bool HasSessionBus() {
  if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return true;
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return !folder.isEmpty() && QFile::exists(folder + QStringLiteral("/bus"));
}

}  // namespace

Tokens TokensFor(const std::optional<QPalette>& desktop, std::optional<Shade> said) {
  Shade wanted = said.value_or(Shade::Light);
  if (desktop) {
    const Tokens tokens = TokensOfDesktop(*desktop);
    if (!said) wanted = ShadeOf(tokens);
    if (ShadeOf(tokens) == wanted && AreReadable(tokens)) return tokens;
  }
  return wanted == Shade::Dark ? DarkTokens() : LightTokens();
}

/// A desktop with a style of its own keeps it. The icons are the same on every one.
SystemTheme::SystemTheme() {
  UseOwnIconSet();
  const QString style = QApplication::style()->name();
  if (style.compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0)
    QApplication::setStyle(new FlatStyle);
  applySoon_.setSingleShot(true);
  connect(&applySoon_, &QTimer::timeout, this, &SystemTheme::Apply);
  Apply();
}

void SystemTheme::Follow(const QDBusConnection& bus) {
  portal_ = std::make_unique<PortalColorScheme>(bus);
  connect(portal_.get(), &PortalColorScheme::changed, this, &SystemTheme::Apply);
  qApp->installEventFilter(this);
}

void SystemTheme::FollowSession() {
  if (HasSessionBus()) Follow(QDBusConnection::sessionBus());
}

void SystemTheme::Force(bool dark) {
  QApplication::setPalette(PaletteOf(dark ? DarkTokens() : LightTokens()));
}

bool SystemTheme::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::ThemeChange) applySoon_.start();
  return false;
}

void SystemTheme::Apply() {
  const std::optional<Shade> said = portal_ ? portal_->Said() : std::nullopt;
  QApplication::setPalette(PaletteOf(TokensFor(PaletteOfDesktop(), said)));
}

}  // namespace tessel
