#include "desktop/window/frame/DocumentStyle.h"

#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

// At the ordinary font, in pixels.
constexpr int titleHeight = 26;
constexpr int titleOfMinimized = 26;
constexpr int stripeWidth = 4;
constexpr int beforeCaption = 8;
constexpr int buttonWidth = 28;
constexpr int glyphSide = 9;
constexpr int frameWidth = 1;

/// What the toolkit adds to the height of a title.
constexpr int addedToTitle = 4;
constexpr int addedToMinimizedTitle = 8;

/// A stripe that can hardly be told from its ground gets an outline.
constexpr double leastContrast = 1.5;

constexpr QStyle::SubControl buttons[] = {
    QStyle::SC_TitleBarMinButton, QStyle::SC_TitleBarNormalButton, QStyle::SC_TitleBarMaxButton,
    QStyle::SC_TitleBarCloseButton};

bool IsActive(const QStyleOptionTitleBar& bar) {
  return (bar.titleBarState & QStyle::State_Active) != 0;
}

bool IsIn(const QStyleOptionTitleBar& bar, Qt::WindowState state) {
  return (bar.titleBarState & state) != 0;
}

/// The place of a button counted from the right; negative: it does not show. The button that
/// restores a window stands where the one stood that changed it.
int SlotOf(const QStyleOptionTitleBar& bar, QStyle::SubControl part) {
  const bool minimized = IsIn(bar, Qt::WindowMinimized);
  const bool maximized = IsIn(bar, Qt::WindowMaximized);
  switch (part) {
    case QStyle::SC_TitleBarCloseButton: return 0;
    case QStyle::SC_TitleBarMaxButton: return maximized ? -1 : 1;
    case QStyle::SC_TitleBarMinButton: return minimized ? -1 : 2;
    case QStyle::SC_TitleBarNormalButton: return maximized ? 1 : minimized ? 2 : -1;
    default: return -1;
  }
}

void DrawGlyph(QPainter& painter, QStyle::SubControl part, const QRectF& glyph) {
  switch (part) {
    case QStyle::SC_TitleBarMinButton:
      painter.drawLine(QPointF(glyph.left(), glyph.bottom()), glyph.bottomRight());
      break;
    case QStyle::SC_TitleBarMaxButton: painter.drawRect(glyph); break;
    case QStyle::SC_TitleBarNormalButton:
      painter.drawRect(glyph.adjusted(0, 2, -2, 0));
      painter.drawPolyline(QPolygonF(
          {glyph.topLeft() + QPointF(2, 2), glyph.topLeft() + QPointF(2, 0), glyph.topRight(),
           glyph.bottomRight() - QPointF(0, 2), glyph.bottomRight() - QPointF(2, 2)}));
      break;
    default:
      painter.drawLine(glyph.topLeft(), glyph.bottomRight());
      painter.drawLine(glyph.topRight(), glyph.bottomLeft());
  }
}

}  // namespace

DocumentStyle::DocumentStyle(const Scale& scale)
    : QProxyStyle(QStringLiteral("fusion")), scale_(scale) {}

int DocumentStyle::Pixels(int drawn) const { return scale_.OfForm(QSize(drawn, drawn)).width(); }

int DocumentStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const {
  if (metric == PM_MdiSubWindowFrameWidth) return frameWidth;
  if (metric != PM_TitleBarHeight) return QProxyStyle::pixelMetric(metric, option, widget);
  if (widget != nullptr && widget->property(untitledProperty).toBool())
    return frameWidth - addedToTitle;
  const bool minimized = widget != nullptr && widget->isMinimized();
  return minimized ? Pixels(titleOfMinimized) - addedToMinimizedTitle
                   : Pixels(titleHeight) - addedToTitle;
}

int DocumentStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* mask) const {
  if (hint == SH_TitleBar_NoBorder || hint == SH_WindowFrame_Mask) return 0;
  return QProxyStyle::styleHint(hint, option, widget, mask);
}

/// The toolkit asks for the places of buttons without telling the document, too; what it gives then
/// leaves out a border on either side.
QRect DocumentStyle::TitleOf(const QStyleOption& bar, const QWidget* document) const {
  if (document != nullptr && document->property(untitledProperty).toBool()) return {};
  const int width =
      document == nullptr ? bar.rect.width() + 2 * bar.rect.left() : document->width();
  return {frameWidth, frameWidth, width - 2 * frameWidth, Pixels(titleHeight) - 2 * frameWidth};
}

QRect DocumentStyle::ButtonRect(const QStyleOptionTitleBar& bar, SubControl part,
                                const QWidget* document) const {
  const QRect title = TitleOf(bar, document);
  const int slot = SlotOf(bar, part);
  const int width = Pixels(buttonWidth);
  if (slot < 0 || title.isEmpty() || title.width() < 4 * width) return {};
  return {title.right() + 1 - (slot + 1) * width, title.top(), width, title.height()};
}

QRect DocumentStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                    SubControl part, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control != CC_TitleBar || bar == nullptr)
    return QProxyStyle::subControlRect(control, option, part, widget);
  if (part != SC_TitleBarLabel) return ButtonRect(*bar, part, widget);
  return TitleOf(*bar, widget)
      .adjusted(Pixels(stripeWidth + beforeCaption), 0, -3 * Pixels(buttonWidth), 0);
}

void DocumentStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
  if (control != CC_TitleBar || bar == nullptr || widget == nullptr)
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  const QRect title = TitleOf(*bar, widget);
  if (title.isEmpty()) return;
  const Tokens& tokens = CurrentTokens();
  painter->save();
  painter->fillRect(title, IsActive(*bar) ? tokens.base : tokens.window);
  PaintMark(*painter, title, widget->property(markProperty).value<QColor>());
  PaintCaption(*painter, *bar, *widget);
  for (const SubControl part : buttons) PaintButton(*painter, *bar, part, *widget);
  painter->restore();
}

void DocumentStyle::PaintMark(QPainter& painter, const QRect& title, const QColor& mark) const {
  if (!mark.isValid()) return;
  const Tokens& tokens = CurrentTokens();
  const QRect stripe(title.left(), title.top(), Pixels(stripeWidth), title.height());
  painter.fillRect(stripe, mark);
  if (Contrast(FromQColor(mark), FromQColor(tokens.window)) >= leastContrast) return;
  painter.fillRect(QRect(stripe.right() + 1, stripe.top(), 1, stripe.height()), tokens.edge);
}

void DocumentStyle::PaintCaption(QPainter& painter, const QStyleOptionTitleBar& bar,
                                 const QWidget& document) const {
  const Tokens& tokens = CurrentTokens();
  const QRect place = subControlRect(CC_TitleBar, &bar, SC_TitleBarLabel, &document);
  painter.setFont(document.font());
  painter.setPen(IsActive(bar) ? tokens.text : tokens.muted);
  const QString shown = document.fontMetrics().elidedText(bar.text, Qt::ElideRight, place.width());
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

/// One that the pointer is over is tinted, more so while it is pressed.
void DocumentStyle::PaintButton(QPainter& painter, const QStyleOptionTitleBar& bar, SubControl part,
                                const QWidget& document) const {
  const QRect place = ButtonRect(bar, part, &document);
  if (place.isEmpty()) return;
  const Tokens& tokens = CurrentTokens();
  if (bar.activeSubControls.testFlag(part))
    painter.fillRect(place, bar.state.testFlag(State_Sunken) ? tokens.edge : tokens.line);
  const double side = Pixels(glyphSide);
  const QRectF glyph(place.center().x() - std::floor(side / 2) + 0.5,
                     place.center().y() - std::floor(side / 2) + 0.5, side, side);
  painter.setPen(QPen(IsActive(bar) ? tokens.text : tokens.muted, std::max(1, Pixels(1))));
  painter.setBrush(Qt::NoBrush);
  DrawGlyph(painter, part, glyph);
}

void DocumentStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
  if (element != PE_FrameWindow)
    return QProxyStyle::drawPrimitive(element, option, painter, widget);
  const Tokens& tokens = CurrentTokens();
  const QRect around = widget == nullptr ? option->rect : widget->rect();
  painter->setBrush(Qt::NoBrush);
  painter->setPen(tokens.line);
  painter->drawRect(around.adjusted(0, 0, -1, -1));
  const int below = Pixels(titleHeight) - 1;
  if (widget != nullptr && !TitleOf(*option, widget).isEmpty())
    painter->drawLine(around.left(), below, around.right(), below);
}

}  // namespace tessel
