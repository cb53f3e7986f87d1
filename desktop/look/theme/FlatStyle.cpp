// The style asks its own functions first and the toolkit's for the rest: here stands which piece is
// drawn by whom, and how large things are.

#include "desktop/look/theme/FlatStyle.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QScrollBar>
#include <QTabBar>
#include <algorithm>
#include <optional>

#include "desktop/look/Colors.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Scale.h"
#include "desktop/look/Tokens.h"
#include "desktop/look/theme/FlatControls.h"
#include "desktop/look/theme/FlatDrawing.h"

namespace tessel {

namespace {

// In pixels at the ordinary font; they grow with it.
constexpr int buttonWidth = 80;
constexpr int fieldPadding = 10;  ///< Above and below the text of a button or a field, together.
constexpr int rowGain = 4;        ///< How much lower than a field an entry of a list is.
constexpr int iconSide = 20;
constexpr int messageIconSide = 40;
constexpr int dialogMargin = 12;
constexpr int dialogSpacing = 8;
constexpr int scrollFrame = 2;  ///< Room for the ring around a list; this does not grow.
constexpr int scrollBarExtent = 14;
constexpr int shortestSlider = 28;
constexpr int tickSide = 16;  ///< Of the box, and of an icon beside it.
constexpr int tickSpacing = 4;

int Pixels(int drawn) { return Scale().OfForm(QSize(drawn, drawn)).width(); }

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

std::optional<Qt::ArrowType> ArrowOf(QStyle::PrimitiveElement element) {
  switch (element) {
    case QStyle::PE_IndicatorArrowDown: return Qt::DownArrow;
    case QStyle::PE_IndicatorArrowUp: return Qt::UpArrow;
    case QStyle::PE_IndicatorArrowLeft: return Qt::LeftArrow;
    case QStyle::PE_IndicatorArrowRight: return Qt::RightArrow;
    default: return std::nullopt;
  }
}

/// The mark of a branch that can be opened; nothing stands for the lines between branches.
void DrawBranch(QPainter& painter, const QStyleOption& option) {
  if (!option.state.testFlag(QStyle::State_Children)) return;
  const bool open = option.state.testFlag(QStyle::State_Open);
  DrawChevron(painter, option.rect, open ? Qt::DownArrow : Qt::RightArrow, CurrentTokens().muted);
}

void DrawSortArrow(QPainter& painter, const QStyleOption& option) {
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  if (header == nullptr || header->sortIndicator == QStyleOptionHeader::None) return;
  const bool up = header->sortIndicator == QStyleOptionHeader::SortUp;
  DrawChevron(painter, option.rect, up ? Qt::UpArrow : Qt::DownArrow, CurrentTokens().muted);
}

/// Boxes, buttons and frames; false for what is none of these.
bool DrawAsBox(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
  const Tokens& tokens = CurrentTokens();
  switch (element) {
    case QStyle::PE_Frame: DrawBox(painter, option.rect, FrameLook(option)); return true;
    case QStyle::PE_FrameLineEdit: DrawBox(painter, option.rect, FieldLook(option)); return true;
    case QStyle::PE_FrameGroupBox: DrawBox(painter, option.rect, {{}, tokens.line}); return true;
    case QStyle::PE_PanelButtonCommand:
      DrawBox(painter, option.rect, PushButtonLook(option));
      return true;
    case QStyle::PE_PanelButtonTool:
      DrawBox(painter, option.rect, ToolButtonLook(option));
      return true;
    case QStyle::PE_PanelMenu: painter.fillRect(option.rect, tokens.base); return true;
    case QStyle::PE_FrameMenu:
      painter.setPen(tokens.edge);
      painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
      return true;
    case QStyle::PE_PanelTipLabel:
      painter.fillRect(option.rect, tokens.base);
      painter.setPen(tokens.edge);
      painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
      return true;
    default: return false;
  }
}

/// The marks within a control; false for what is none.
bool DrawAsMark(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
  switch (element) {
    case QStyle::PE_FrameFocusRect: DrawFocusLine(painter, option.rect); return true;
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck: DrawCheckBox(painter, option); return true;
    case QStyle::PE_IndicatorRadioButton: DrawRadioButton(painter, option); return true;
    case QStyle::PE_IndicatorBranch: DrawBranch(painter, option); return true;
    case QStyle::PE_IndicatorHeaderArrow: DrawSortArrow(painter, option); return true;
    default: break;
  }
  const std::optional<Qt::ArrowType> arrow = ArrowOf(element);
  if (!arrow) return false;
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  DrawChevron(painter, option.rect, *arrow,
              enabled ? option.palette.color(QPalette::ButtonText) : CurrentTokens().muted);
  return true;
}

/// Whether a button has a ground of the user's own, on which an icon's colours could not be seen.
bool StandsOnOwnGround(const QStyleOptionToolButton& button) {
  return !button.icon.isNull() && button.state.testFlag(QStyle::State_Enabled) &&
         button.palette.color(QPalette::ButtonText) != CurrentTokens().text;
}

/// The icon of a button in the one colour of its text.
QIcon InOneColor(const QStyleOptionToolButton& button, double ratio) {
  QPixmap pixmap = button.icon.pixmap(button.iconSize, ratio);
  QPainter painter(&pixmap);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(pixmap.rect(), button.palette.color(QPalette::ButtonText));
  painter.end();
  return pixmap;
}

/// A line between two parts of a window, drawn as one however the form calls it.
bool IsLine(const QStyleOptionFrame& frame) {
  return frame.frameShape == QFrame::HLine || frame.frameShape == QFrame::VLine;
}

void DrawLine(QPainter& painter, const QStyleOptionFrame& frame) {
  const QPoint middle = frame.rect.center();
  const QRect& rect = frame.rect;
  const QRect line = frame.frameShape == QFrame::HLine
                         ? QRect(rect.left(), middle.y(), rect.width(), 1)
                         : QRect(middle.x(), rect.top(), 1, rect.height());
  painter.fillRect(line, CurrentTokens().line);
}

/// Whole controls that are simple; false for any other.
bool DrawAsControl(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter) {
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(&option);
  const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(&option);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
  if (element == QStyle::CE_Splitter) return true;
  if (element == QStyle::CE_HeaderEmptyArea || element == QStyle::CE_MenuBarEmptyArea)
    painter.fillRect(option.rect, CurrentTokens().window);
  else if (element == QStyle::CE_ProgressBarGroove) DrawProgressGroove(painter, option.rect);
  else if (element == QStyle::CE_ProgressBarContents && bar != nullptr) DrawProgress(painter, *bar);
  else if (element == QStyle::CE_HeaderSection && header != nullptr)
    DrawHeaderSection(painter, *header);
  else if (element == QStyle::CE_TabBarTabShape && tab != nullptr) DrawTab(painter, *tab);
  else if (element == QStyle::CE_ShapedFrame && frame != nullptr && IsLine(*frame))
    DrawLine(painter, *frame);
  else return false;
  return true;
}

/// The title under the keyboard's mark has the same ground as one whose menu is open.
void DrawMenuTitle(QPainter& painter, const QStyleOptionMenuItem& title, bool underlines,
                   const QStyle& style) {
  const Tokens& tokens = CurrentTokens();
  const bool chosen =
      title.state.testFlag(QStyle::State_Selected) || title.state.testFlag(QStyle::State_Sunken);
  painter.fillRect(title.rect, tokens.window);
  if (chosen) DrawBox(painter, title.rect.adjusted(0, 1, 0, -1), {tokens.selection, {}});
  const int mnemonic = underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
  style.drawItemText(&painter, title.rect, Qt::AlignCenter | Qt::TextSingleLine | mnemonic,
                     title.palette, title.state.testFlag(QStyle::State_Enabled), title.text,
                     QPalette::ButtonText);
}

/// The name of the program's own icon for one of the toolkit's; empty without one.
QString NameOf(QStyle::StandardPixmap icon) {
  switch (icon) {
    case QStyle::SP_MessageBoxInformation: return QStringLiteral("message-information");
    case QStyle::SP_MessageBoxWarning: return QStringLiteral("message-warning");
    case QStyle::SP_MessageBoxCritical: return QStringLiteral("message-critical");
    case QStyle::SP_MessageBoxQuestion: return QStringLiteral("message-question");
    case QStyle::SP_ArrowBack:
    case QStyle::SP_FileDialogBack:
    case QStyle::SP_ArrowLeft: return QStringLiteral("go-previous");
    case QStyle::SP_ArrowForward:
    case QStyle::SP_ArrowRight: return QStringLiteral("go-next");
    case QStyle::SP_ArrowUp:
    case QStyle::SP_FileDialogToParent: return QStringLiteral("go-up");
    case QStyle::SP_ArrowDown: return QStringLiteral("go-down");
    case QStyle::SP_DirHomeIcon: return QStringLiteral("go-home");
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirOpenIcon:
    case QStyle::SP_DirClosedIcon: return QStringLiteral("document-open");
    case QStyle::SP_FileIcon: return QStringLiteral("document-file");
    case QStyle::SP_FileDialogNewFolder: return QStringLiteral("list-add");
    case QStyle::SP_LineEditClearButton:
    case QStyle::SP_TabCloseButton: return QStringLiteral("window-close");
    default: return {};
  }
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr)
    return DrawBox(*painter, option->rect, FieldLook(*option));
  if (DrawAsBox(element, *option, *painter) || DrawAsMark(element, *option, *painter)) return;
  const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
  if (element == PE_PanelItemViewItem && item != nullptr) return DrawItemGround(*painter, *item);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (element == PE_PanelLineEdit && frame != nullptr && frame->lineWidth > 0)
    return DrawBox(*painter, option->rect, FieldLook(*option));
  const bool isBevel = element == PE_FrameDefaultButton || element == PE_FrameTabWidget ||
                       element == PE_FrameStatusBarItem || element == PE_FrameTabBarBase;
  if (!isBevel) QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  if (DrawAsControl(element, *option, *painter)) return;
  const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option);
  const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
  const auto* title = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (element == CE_MenuBarItem && title != nullptr && title->icon.isNull()) {
    const bool underlines = styleHint(SH_UnderlineShortcut, option, widget, nullptr) != 0;
    return DrawMenuTitle(*painter, *title, underlines, *this);
  }
  if (element == CE_HeaderLabel && header != nullptr) {
    QStyleOptionHeader muted = *header;
    muted.palette.setColor(QPalette::ButtonText, CurrentTokens().muted);
    return QProxyStyle::drawControl(element, &muted, painter, widget);
  }
  if (element == CE_ToolButtonLabel && button != nullptr && StandsOnOwnGround(*button)) {
    QStyleOptionToolButton plain = *button;
    plain.icon = InOneColor(*button, widget == nullptr ? 1 : widget->devicePixelRatioF());
    return QProxyStyle::drawControl(element, &plain, painter, widget);
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
      control == CC_TitleBar && bar != nullptr && HidesItsButtons(*bar)) {
    const QStyleOptionTitleBar readable = WithWhiteButtons(*bar);
    return QProxyStyle::drawComplexControl(control, &readable, painter, widget);
  }
  if (const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
      control == CC_ToolButton && button != nullptr)
    return DrawToolButton(*button, *painter, widget);
  if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
      control == CC_ComboBox && box != nullptr)
    return DrawCombo(*box, *painter, widget);
  if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
      control == CC_ScrollBar && slider != nullptr)
    return DrawScrollBar(*painter, *slider,
                         subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget));
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

/// The toolkit's ring lies over the icon; this one goes around it.
void FlatStyle::DrawToolButton(const QStyleOptionToolButton& button, QPainter& painter,
                               const QWidget* widget) const {
  QStyleOptionToolButton plain = button;
  plain.state.setFlag(State_HasFocus, false);
  QProxyStyle::drawComplexControl(CC_ToolButton, &plain, &painter, widget);
  if (button.state.testFlag(State_HasFocus)) DrawFocusRing(painter, button.rect);
}

void FlatStyle::DrawCombo(const QStyleOptionComboBox& box, QPainter& painter,
                          const QWidget* widget) const {
  const QRect arrow = subControlRect(CC_ComboBox, &box, SC_ComboBoxArrow, widget);
  if (box.frame) return DrawComboBox(painter, box, arrow);
  painter.fillRect(box.rect, box.palette.brush(QPalette::Base));
  DrawChevron(painter, arrow, Qt::DownArrow, box.palette.color(QPalette::Text));
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
      control == CC_ScrollBar && bar != nullptr)
    return visualRect(bar->direction, bar->rect, ScrollBarPart(*bar, part, Pixels(shortestSlider)));
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const int height = option->fontMetrics.height() + Pixels(fieldPadding);
  switch (type) {
    case CT_PushButton: size.setWidth(std::max(size.width(), Pixels(buttonWidth))); [[fallthrough]];
    case CT_LineEdit:
    case CT_ComboBox: size.setHeight(std::max(height, contents.height())); break;
    case CT_ItemViewItem: size.setHeight(std::max(size.height(), height - Pixels(rowGain))); break;
    default: break;
  }
  return size;
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr)
    return scrollFrame;
  if (metric == PM_ButtonIconSize && qobject_cast<const QCheckBox*>(widget) != nullptr)
    return Pixels(tickSide);
  switch (metric) {
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing: return tickSpacing;
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
    case PM_ToolBarIconSize: return Pixels(iconSide);
    case PM_MessageBoxIconSize: return Pixels(messageIconSide);
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin: return Pixels(dialogMargin);
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing: return Pixels(dialogSpacing);
    case PM_ScrollBarExtent: return Pixels(scrollBarExtent);
    case PM_ScrollBarSliderMin: return Pixels(shortestSlider);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight: return Pixels(tickSide);
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ButtonDefaultIndicator: return 0;
    case PM_MenuPanelWidth: return 1;
    default: return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* data) const {
  switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons: return 0;
    case SH_EtchDisabledText: return 0;
    default: return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

QIcon FlatStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                              const QWidget* widget) const {
  const QString name = NameOf(icon);
  return name.isEmpty() ? QProxyStyle::standardIcon(icon, option, widget) : NamedIcon(name);
}

/// What reacts to the mouse must hear of it.
void FlatStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  const bool reacts = qobject_cast<QScrollBar*>(widget) != nullptr ||
                      qobject_cast<QTabBar*>(widget) != nullptr ||
                      qobject_cast<QComboBox*>(widget) != nullptr;
  if (reacts) widget->setAttribute(Qt::WA_Hover);
}

}  // namespace tessel
