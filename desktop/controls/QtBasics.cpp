#include "desktop/controls/QtBasics.h"

#include <algorithm>
#include <utility>

#include "desktop/look/Icons.h"

namespace tessel {

namespace {

/// Steps of the toolkit's bar, which knows whole numbers only.
constexpr int barSteps = 10000;
/// A form's label with this property shows the icon of that name in place of a text.
constexpr const char* iconProperty = "iconName";

void ShowIcon(QLabel& label) {
  const QString name = label.property(iconProperty).toString();
  if (name.isEmpty()) return;
  label.setPixmap(NamedIcon(name).pixmap(label.minimumSize(), label.devicePixelRatioF()));
}

/// Of a form's label: a hint that stands back behind the rest.
constexpr const char* mutedProperty = "muted";

}  // namespace

QtLabel::QtLabel(QLabel& widget, const ControlSite& site)
    : ControlOf(widget, site), caption_(FromQt(widget.text())), name_(widget.accessibleName()) {
  widget.setTextFormat(Qt::PlainText);
  if (widget.property(mutedProperty).toBool()) widget.setForegroundRole(QPalette::PlaceholderText);
  ShowIcon(widget);
}

void QtLabel::SetCaption(std::string_view caption) {
  caption_ = caption;
  TheWidget().setText(ToQt(caption));
  const QString text = ToQt(caption);
  const bool alone = name_.isEmpty() || caption.empty();
  if (!alone && text.startsWith(name_)) TheWidget().setAccessibleName(text);
  else TheWidget().setAccessibleName(alone ? name_ : name_ + QStringLiteral(": ") + text);
}

QtPictureBox::QtPictureBox(QWidget& widget, const ControlSite& site) : ControlOf(widget, site) {
  Face().sizeChanged = [this] { Raise(Resize); };
}

QtProgressBar::QtProgressBar(QProgressBar& widget, const ControlSite& site)
    : ControlOf(widget, site), max_(widget.maximum()), value_(widget.value()) {
  Show();
}

void QtProgressBar::SetMax(double max) {
  max_ = max;
  SetValue(value_);
}

void QtProgressBar::SetValue(double value) {
  value_ = std::clamp(value, 0.0, std::max(max_, 0.0));
  Show();
}

void QtProgressBar::Show() {
  const int step = max_ > 0 ? static_cast<int>(value_ / max_ * barSteps + 0.5) : 0;
  if (std::exchange(step_, step) == step) return;
  TheWidget().setRange(0, barSteps);
  TheWidget().setValue(step);
}

QtTimer::QtTimer(FailureSink& failures) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_,
                   [this, sink = &failures] { Tick.Raise(sink); });
}

void QtTimer::SetEnabled(bool enabled) {
  if (enabled == timer_.isActive()) return;
  if (enabled) timer_.start();
  else timer_.stop();
}

}  // namespace tessel
