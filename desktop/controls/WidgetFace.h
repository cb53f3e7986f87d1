#pragma once

#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "contract/desktop/controls/Control.h"
#include "desktop/look/Scale.h"

namespace tessel {

/// What a control of a window is made from.
struct ControlSite {
  QWidget& widget;  ///< Owned by the window.
  FailureSink& failures;
  const Scale& scale;  ///< Outlives the control.
};

/// The part of every adapter that does not depend on its kind: the common properties of Control on
/// a widget. It is also the context of the adapter's signal connections, which end with it.
class WidgetFace : public QObject {
 public:
  explicit WidgetFace(const ControlSite& site);

  [[nodiscard]] const Scale& TheScale() const { return scale_; }
  [[nodiscard]] bool Visible() const { return !widget_->isHidden(); }
  void SetVisible(bool visible);
  [[nodiscard]] bool Enabled() const;
  void SetEnabled(bool enabled) { widget_->setEnabled(enabled); }
  [[nodiscard]] const std::string& ToolTip() const { return toolTip_; }
  void SetToolTip(std::string_view text);
  /// What SetBounds was given as long as the widget stands where it was put, so that nothing is
  /// lost by rounding.
  [[nodiscard]] Rect Bounds() const;
  /// A widget that a layout places keeps its place; its width becomes fixed at the one given.
  void SetBounds(const Rect& bounds);
  [[nodiscard]] Color BackColor() const { return back_.value_or(ordinaryBack_); }
  void SetBackColor(Color color);
  [[nodiscard]] Color ForeColor() const { return fore_.value_or(ordinaryFore_); }
  void SetForeColor(Color color);
  void SetMousePointer(MousePointer pointer);
  [[nodiscard]] bool TabStop() const { return (widget_->focusPolicy() & Qt::TabFocus) != 0; }
  void SetFocus();
  [[nodiscard]] bool HasFocus() const;

  /// Called when the widget's size has changed, by whatever.
  std::function<void()> sizeChanged;
  /// Replaces the ordinary way of showing the colours, which is the widget's palette.
  std::function<void()> applyColors;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ApplyColors();
  void NoteSize();

  QPointer<QWidget> widget_;
  const Scale& scale_;
  QPalette formPalette_;
  Color ordinaryBack_;
  Color ordinaryFore_ = color::windowText;
  std::optional<Color> back_;
  std::optional<Color> fore_;
  bool applying_ = false;
  bool fillsByItself_;
  std::string toolTip_;
  QSize notedSize_;
  Rect given_;
  QRect placed_;  ///< Where `given_` put the widget; null before.
};

}  // namespace tessel
