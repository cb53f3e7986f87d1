#include "desktop/look/ReadableStyle.h"

#include <QPainter>
#include <QStyleOption>

#include "desktop/look/Colors.h"

namespace tessel {

namespace {

constexpr qreal cornerRadius = 2;

bool IsField(QStyle::PrimitiveElement element) {
  return element == QStyle::PE_Frame || element == QStyle::PE_FrameLineEdit ||
         element == QStyle::PE_IndicatorCheckBox ||
         element == QStyle::PE_IndicatorItemViewItemCheck ||
         element == QStyle::PE_IndicatorRadioButton;
}

/// Of a frame that has the focus, where the style makes no difference: the
/// accent. Else between the window and its text; paler for what is disabled.
QColor OutlineOn(const QStyleOption& option) {
  if (option.state.testFlag(QStyle::State_HasFocus)) return option.palette.color(QPalette::Link);
  QColor outline = option.palette.color(QPalette::WindowText);
  outline.setAlphaF(option.state.testFlag(QStyle::State_Enabled) ? 0.5F : 0.25F);
  return outline;
}

/// Whether the style draws a ring of its own around what has the focus: always around a line of
/// text, around buttons once the keyboard is used, never around a list or a text of many lines.
bool HasOwnRing(QStyle::PrimitiveElement element, const QStyleOption& option) {
  if (!option.state.testFlag(QStyle::State_HasFocus) || element == QStyle::PE_Frame) return false;
  return element == QStyle::PE_FrameLineEdit ||
         option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

bool NeedsOutline(QStyle::PrimitiveElement element, const QStyleOption& option) {
  return IsField(element) && !HasOwnRing(element, option) &&
         IsDark(option.palette.color(QPalette::Window));
}

void DrawOutline(QPainter& painter, const QStyleOption& option, bool round) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(OutlineOn(option));
  painter.setBrush(Qt::NoBrush);
  const QRectF rect = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (round) painter.drawEllipse(rect);
  else painter.drawRoundedRect(rect, cornerRadius, cornerRadius);
  painter.restore();
}

/// The style draws the buttons of an inactive window in black, whatever their ground.
bool HidesItsButtons(const QStyleOptionTitleBar& bar) {
  return (bar.titleBarState & QStyle::State_Active) == 0 &&
         IsDark(bar.palette.color(QPalette::Window));
}

/// An active bar has white buttons; it stands on the ground of an inactive one here.
QStyleOptionTitleBar WithWhiteButtons(QStyleOptionTitleBar bar) {
  bar.titleBarState |= QStyle::State_Active;
  bar.palette.setColor(QPalette::Highlight, bar.palette.color(QPalette::Window));
  return bar;
}

}  // namespace

ReadableStyle::ReadableStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (NeedsOutline(element, *option))
    DrawOutline(*painter, *option, element == PE_IndicatorRadioButton);
}

void ReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control == CC_TitleBar && bar != nullptr && HidesItsButtons(*bar)) {
    const QStyleOptionTitleBar readable = WithWhiteButtons(*bar);
    return QProxyStyle::drawComplexControl(control, &readable, painter, widget);
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_ComboBox && NeedsOutline(PE_FrameLineEdit, *option))
    DrawOutline(*painter, *option, false);
}

}  // namespace tessel
