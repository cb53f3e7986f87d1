#include "contract/desktop/controls/values/ImageBox.h"

#include <utility>

namespace tessel {

void ImageBox::SetPicture(std::span<const std::byte> bytes) {
  facts_ = {};
  WriteNothing();
  if (bytes.empty()) return;
  if (bytes.size() > mostBytes)
    return Told({PictureState::Failed, "", 0, 0, 1,
                 "The value has " + std::to_string(bytes.size()) +
                     " bytes: too many for a picture that is shown here."});
  facts_.state = PictureState::Reading;
  WritePicture(bytes);
}

void ImageBox::Told(PictureFacts facts) {
  facts_ = std::move(facts);
  Raise(Read);
}

}  // namespace tessel
