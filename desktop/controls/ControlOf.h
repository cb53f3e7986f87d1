#pragma once

#include <string>
#include <string_view>

#include "desktop/base/Text.h"
#include "desktop/controls/WidgetFace.h"

namespace tessel {

/// The common properties of a control of any kind, passed on to the face of its widget.
template <class Kind, class Widget>
class ControlOf : public Kind {
 public:
  ControlOf(Widget& widget, const ControlSite& site)
      : Kind(FromQt(widget.objectName()), site.failures), widget_(&widget), face_(site) {}

  [[nodiscard]] bool Visible() const override { return face_.Visible(); }
  void SetVisible(bool visible) override { face_.SetVisible(visible); }
  [[nodiscard]] bool Enabled() const override { return face_.Enabled(); }
  void SetEnabled(bool enabled) override { face_.SetEnabled(enabled); }
  [[nodiscard]] std::string ToolTip() const override { return face_.ToolTip(); }
  void SetToolTip(std::string_view text) override { face_.SetToolTip(text); }
  [[nodiscard]] Rect Bounds() const override { return face_.Bounds(); }
  void SetBounds(const Rect& bounds) override { face_.SetBounds(bounds); }
  [[nodiscard]] Color BackColor() const override { return face_.BackColor(); }
  void SetBackColor(Color color) override { face_.SetBackColor(color); }
  [[nodiscard]] Color ForeColor() const override { return face_.ForeColor(); }
  void SetForeColor(Color color) override { face_.SetForeColor(color); }
  void SetMousePointer(MousePointer pointer) override { face_.SetMousePointer(pointer); }
  [[nodiscard]] bool TabStop() const override { return face_.TabStop(); }
  void SetFocus() override { face_.SetFocus(); }
  [[nodiscard]] bool HasFocus() const override { return face_.HasFocus(); }

 protected:
  [[nodiscard]] Widget& TheWidget() const { return *widget_; }
  [[nodiscard]] Widget* WidgetIfAlive() const { return widget_; }
  [[nodiscard]] WidgetFace& Face() { return face_; }
  [[nodiscard]] const WidgetFace& Face() const { return face_; }

 private:
  QPointer<Widget> widget_;
  WidgetFace face_;
};

}  // namespace tessel
