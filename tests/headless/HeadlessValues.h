#pragma once

#include <cstdint>

#include "contract/desktop/controls/values/HexBox.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

/// Shows ten lines at once.
class HeadlessHexBox final : public Headless<HexBox> {
 public:
  using Headless::Headless;
  [[nodiscard]] int LineLength() const override { return longestLine; }
  [[nodiscard]] int Zoom() const override { return zoom_; }
  void SetZoom(int percent) override { zoom_ = NearestZoom(percent); }
  bool TakeKey(int keyCode, int shift) override;

 protected:
  void WriteShown() override {}
  void WriteInSight() override {}

 private:
  int zoom_ = ordinaryZoom;
};

/// Knows one kind of picture, PNG, by its first bytes and its last ones, and reads it at once.
class HeadlessImageBox final : public Headless<ImageBox> {
 public:
  using Headless::Headless;
  [[nodiscard]] int Zoom() const override { return zoom_; }
  void SetZoom(int percent) override {
    zoom_ = percent == fitZoom ? percent : NearestZoom(percent);
  }

 protected:
  void WritePicture(std::span<const std::byte> bytes) override;
  void WriteNothing() override {}

 private:
  int zoom_ = fitZoom;
};

}  // namespace tessel::test
