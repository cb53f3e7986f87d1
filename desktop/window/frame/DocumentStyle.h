#pragma once

#include <QProxyStyle>
#include <QStyleOptionTitleBar>

#include "desktop/look/Scale.h"

namespace tessel {

/// How the frame around a document is drawn: a thin flat title with the caption at the left and
/// three buttons at the right, and a line of one pixel around all. The active document's title
/// stands on the ground of its text, those of others on that of a dialog. A document with the
/// property `markProperty` has a stripe in that colour before its caption; one with
/// `untitledProperty` has no title.
class DocumentStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  static constexpr const char* markProperty = "mark";
  static constexpr const char* untitledProperty = "untitled";

  /// `scale` outlives it.
  explicit DocumentStyle(const Scale& scale);

  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* mask) const override;
  [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl part, const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

 private:
  [[nodiscard]] int Pixels(int drawn) const;
  [[nodiscard]] QRect TitleOf(const QStyleOption& bar, const QWidget* document) const;
  [[nodiscard]] QRect ButtonRect(const QStyleOptionTitleBar& bar, SubControl part,
                                 const QWidget* document) const;
  void PaintCaption(QPainter& painter, const QStyleOptionTitleBar& bar,
                    const QWidget& document) const;
  void PaintMark(QPainter& painter, const QRect& title, const QColor& mark) const;
  void PaintButton(QPainter& painter, const QStyleOptionTitleBar& bar, SubControl part,
                   const QWidget& document) const;

  const Scale& scale_;
};

}  // namespace tessel
