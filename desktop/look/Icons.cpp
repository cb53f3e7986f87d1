#include "desktop/look/Icons.h"

#include <QAbstractButton>
#include <QAction>
#include <QEvent>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QPushButton>
#include <QSvgRenderer>
#include <algorithm>
#include <utility>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr double disabledStrength = 0.45;

/// Colours that mean something are drawn as they look on a light ground; these stand for them on a
/// dark one.
struct Meaning {
  const char* onLight;
  const char* onDark;
};
constexpr Meaning meanings[] = {
    {"#1a7f37", "#56c271"},  // Goes ahead.
    {"#b42318", "#ff8f85"},  // Stops, deletes, fails.
    {"#1f6fd0", "#5aa2ff"},  // The accent.
    {"#9a6700", "#e3b341"},  // Warns.
};

QString FileOf(const QString& name) { return QStringLiteral(":/icons/%1.svg").arg(name); }

/// The drawing with the colours of the ground in use. The program's own sign has none to fill in.
QByteArray DrawingOf(const QString& name) {
  QFile file(FileOf(name));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QByteArray drawing = file.readAll();
  if (!drawing.contains("currentColor") && !name.startsWith(QLatin1String("message-")))
    return drawing;
  const Tokens& tokens = CurrentTokens();
  drawing.replace("currentColor", tokens.text.name().toLatin1());
  if (IsDark(tokens.window))
    for (const Meaning& meaning : meanings) drawing.replace(meaning.onLight, meaning.onDark);
  return drawing;
}

QPixmap Drawn(const QString& name, const QSize& size, bool enabled) {
  QPixmap pixmap(size);
  pixmap.fill(Qt::transparent);
  QSvgRenderer renderer(DrawingOf(name));
  QPainter painter(&pixmap);
  if (!enabled) painter.setOpacity(disabledStrength);
  const int side = std::min(size.width(), size.height());
  renderer.render(&painter,
                  QRectF((size.width() - side) / 2, (size.height() - side) / 2, side, side));
  return pixmap;
}

/// Draws the icon when it is asked for, in the colours of that moment.
class DrawnIcon final : public QIconEngine {
 public:
  explicit DrawnIcon(QString name) : name_(std::move(name)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const double ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/,
                       qreal /*scale*/) override {
    if (size.isEmpty()) return {};
    const bool enabled = mode != QIcon::Disabled;
    const Tokens& tokens = CurrentTokens();
    const QString key = QStringLiteral("tessel/%1/%2x%3/%4/%5%6")
                            .arg(name_)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(enabled)
                            .arg(tokens.text.name(), tokens.window.name());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = Drawn(name_, size, enabled);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }
  QIconEngine* clone() const override { return new DrawnIcon(name_); }
  QString key() const override { return QStringLiteral("tessel"); }
  QString iconName() override { return name_; }
  bool isNull() override { return !QFile::exists(FileOf(name_)); }

 private:
  QString name_;
};

}  // namespace

/// The folder of the icons is a theme by itself: it holds an index of them.
void UseOwnIconSet() {
  QIcon::setThemeSearchPaths({QStringLiteral(":/")});
  QIcon::setThemeName(QStringLiteral("icons"));
}

QIcon NamedIcon(const QString& name) { return QIcon(new DrawnIcon(name)); }

void DrawIconsOf(QWidget& form) {
  const auto draw = [](auto& holder) {
    const QString name = holder.icon().name();
    if (!name.isEmpty()) holder.setIcon(NamedIcon(name));
  };
  for (auto* button : form.findChildren<QAbstractButton*>()) {
    if (qobject_cast<QPushButton*>(button) != nullptr) button->setIcon({});
    else draw(*button);
  }
  for (auto* action : form.findChildren<QAction*>()) draw(*action);
  const QString name = form.windowIcon().name();
  if (!name.isEmpty()) form.setWindowIcon(NamedIcon(name));
}

IconLabel::IconLabel(QIcon icon, int side, QWidget* parent)
    : QLabel(parent), icon_(std::move(icon)), side_(side) {
  Show();
}

void IconLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Show();
}

void IconLabel::Show() { setPixmap(icon_.pixmap(QSize(side_, side_), devicePixelRatioF())); }

}  // namespace tessel
