#pragma once

#include "contract/desktop/controls/values/HexBox.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/controls/values/HexView.h"

namespace tessel {

class QtHexBox final : public ControlOf<HexBox, HexView>, private HexUser {
 public:
  QtHexBox(HexView& widget, const ControlSite& site) : ControlOf(widget, site) {
    widget.SetUser(this);
  }
  ~QtHexBox() override {
    if (HexView* widget = WidgetIfAlive()) widget->SetUser(nullptr);
  }
  QtHexBox(const QtHexBox&) = delete;
  QtHexBox& operator=(const QtHexBox&) = delete;

  [[nodiscard]] int LineLength() const override { return TheWidget().LineLength(); }
  [[nodiscard]] int Zoom() const override { return TheWidget().Zoom(); }
  void SetZoom(int percent) override { TheWidget().SetZoom(percent); }

 protected:
  void WriteShown() override { TheWidget().ShowAnew(); }
  void WriteInSight() override { TheWidget().ShowCurrent(); }

 private:
  // HexUser
  [[nodiscard]] std::int64_t ByteCount() const override { return Size(); }
  [[nodiscard]] std::string PaintedLine(std::int64_t line) const override { return LineText(line); }
  [[nodiscard]] std::int64_t CurrentByte() const override { return Caret(); }
  [[nodiscard]] std::int64_t SelectionStart() const override { return SelStart(); }
  [[nodiscard]] std::int64_t SelectionLength() const override { return SelLength(); }
  void GoesTo(std::int64_t offset, bool extend) override { MoveTo(offset, extend); }
  bool Moves(int keyCode, int shift, std::int64_t linesOnPage) override {
    return TakeMove(keyCode, shift, linesOnPage);
  }
};

}  // namespace tessel
