#pragma once

#include <QProxyStyle>
#include <QStyleOption>

namespace tessel {

/// The program's look: flat, with thin lines, in the colours of CurrentTokens(); what has the focus
/// is ringed in the accent. What it does not draw itself is the toolkit's own style. Its measures
/// grow with the application's font.
class FlatStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  FlatStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                     const QWidget* widget) const override;
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;

 private:
  void DrawToolButton(const QStyleOptionToolButton& button, QPainter& painter,
                      const QWidget* widget) const;
  void DrawCombo(const QStyleOptionComboBox& box, QPainter& painter, const QWidget* widget) const;
};

}  // namespace tessel
