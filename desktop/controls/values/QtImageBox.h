#pragma once

#include "contract/desktop/controls/values/ImageBox.h"
#include "desktop/controls/ControlOf.h"
#include "desktop/controls/values/PictureReader.h"
#include "desktop/controls/values/PictureView.h"

namespace tessel {

class QtImageBox final : public ControlOf<ImageBox, PictureView> {
 public:
  QtImageBox(PictureView& widget, const ControlSite& site);
  [[nodiscard]] int Zoom() const override { return TheWidget().Zoom(); }
  void SetZoom(int percent) override { TheWidget().SetZoom(percent); }

 protected:
  void WritePicture(std::span<const std::byte> bytes) override;
  void WriteNothing() override;

 private:
  void Show(const ReadImage& picture);

  PictureReader reader_;
};

}  // namespace tessel
