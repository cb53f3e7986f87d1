#include "desktop/controls/WidgetFace.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLayout>
#include <QLineEdit>
#include <QProgressBar>

#include "desktop/base/Text.h"
#include "desktop/look/Colors.h"

namespace tessel {

namespace {

constexpr QPalette::ColorRole groundRoles[] = {QPalette::Base, QPalette::Window, QPalette::Button};
constexpr QPalette::ColorRole textRoles[] = {QPalette::Text, QPalette::WindowText,
                                             QPalette::ButtonText};

/// Widgets that show data on the ground of an edit field; all others stand on that of a dialog.
bool ShowsData(const QWidget& widget) {
  return widget.inherits("QAbstractScrollArea") || widget.inherits("QLineEdit") ||
         widget.inherits("QComboBox") || widget.inherits("QProgressBar");
}

bool IsLaidOut(QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  return parent != nullptr && parent->layout() != nullptr &&
         parent->layout()->indexOf(&widget) >= 0;
}

}  // namespace

WidgetFace::WidgetFace(const ControlSite& site)
    : widget_(&site.widget),
      scale_(site.scale),
      formPalette_(site.widget.testAttribute(Qt::WA_SetPalette) ? site.widget.palette()
                                                                : QPalette()),
      ordinaryBack_(ShowsData(site.widget) ? color::windowBackground : color::buttonFace),
      fillsByItself_(ShowsData(site.widget)),
      toolTip_(FromQt(site.widget.toolTip())),
      notedSize_(site.widget.size()) {
  if (formPalette_.isBrushSet(QPalette::Active, QPalette::Text))
    ordinaryFore_ = FromQColor(formPalette_.color(QPalette::Text));
  widget_->setToolTip(AsPlainToolTip(toolTip_));
  widget_->installEventFilter(this);
}

void WidgetFace::SetVisible(bool visible) {
  widget_->setVisible(visible);
  if (visible && !IsLaidOut(*widget_)) widget_->raise();
}

bool WidgetFace::Enabled() const { return widget_->isEnabledTo(widget_->parentWidget()); }

void WidgetFace::SetToolTip(std::string_view text) {
  toolTip_ = text;
  widget_->setToolTip(AsPlainToolTip(text));
}

Rect WidgetFace::Bounds() const {
  return widget_->geometry() == placed_ ? given_ : scale_.Twips(widget_->geometry());
}

void WidgetFace::SetBounds(const Rect& bounds) {
  const QRect pixels = scale_.Pixels(bounds);
  if (IsLaidOut(*widget_)) {
    widget_->setFixedWidth(pixels.width());
    widget_->resize(pixels.width(), widget_->height());
  } else {
    widget_->setGeometry(pixels);
    given_ = bounds;
    placed_ = pixels;
  }
  NoteSize();
}

void WidgetFace::SetBackColor(Color color) {
  back_ = color;
  ApplyColors();
}

void WidgetFace::SetForeColor(Color color) {
  fore_ = color;
  ApplyColors();
}

void WidgetFace::SetMousePointer(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::Default: return widget_->unsetCursor();
    case MousePointer::SizeWestEast: return widget_->setCursor(Qt::SizeHorCursor);
    case MousePointer::Wait: return widget_->setCursor(Qt::WaitCursor);
  }
}

void WidgetFace::SetFocus() {
  if (Visible() && Enabled()) widget_->setFocus(Qt::OtherFocusReason);
}

bool WidgetFace::HasFocus() const {
  const QWidget* holder = QApplication::focusWidget();
  if (holder == nullptr) return false;
  return holder == widget_ || holder->focusProxy() == widget_ || holder == widget_->focusProxy();
}

bool WidgetFace::eventFilter(QObject* watched, QEvent* event) {
  if (watched != widget_) return false;
  if (event->type() == QEvent::Resize) NoteSize();
  if (event->type() == QEvent::PaletteChange && (back_ || fore_)) ApplyColors();
  return false;
}

/// The text keeps the palette's own colour while the control is disabled.
void WidgetFace::ApplyColors() {
  if (applying_) return;
  applying_ = true;
  if (applyColors) {
    applyColors();
  } else {
    const QPalette system = QApplication::palette();
    QPalette palette = formPalette_;
    const bool ownGround = back_ && back_ != ordinaryBack_;
    const bool ownText = fore_ && fore_ != color::windowText;
    if (ownGround)
      for (const auto role : groundRoles) palette.setColor(role, ToQColor(*back_, system));
    if (ownText || (ownGround && !IsSystemColor(*back_)))
      for (const auto role : textRoles) {
        const QColor text = TextColor(ForeColor(), BackColor(), system);
        palette.setColor(QPalette::Active, role, text);
        palette.setColor(QPalette::Inactive, role, text);
      }
    widget_->setPalette(palette);
    if (!fillsByItself_) widget_->setAutoFillBackground(ownGround);
  }
  applying_ = false;
}

void WidgetFace::NoteSize() {
  if (widget_->size() == notedSize_) return;
  notedSize_ = widget_->size();
  if (sizeChanged) sizeChanged();
}

}  // namespace tessel
