#pragma once

#include <QProxyStyle>

namespace tessel {

/// The toolkit's own style with outlines that can be seen on dark grounds too: it draws those of
/// check boxes and edit fields darker than the window, which on a dark one leaves nothing.
class ReadableStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  ReadableStyle();
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

}  // namespace tessel
