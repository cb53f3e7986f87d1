#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "contract/base/Zoom.h"
#include "contract/desktop/controls/Control.h"

namespace tessel {

/// How far a picture is.
enum class PictureState {
  None,     ///< There is none.
  Reading,  ///< It is being read, and nothing is shown yet.
  Shown,    ///< Its size and kind are known.
  Failed,   ///< It is not shown; what is known of it is told, and why.
};

/// What is known of a picture. Sizes are its own, in pixels, however large it is shown; 0 when they
/// are not known.
struct PictureFacts {
  PictureState state = PictureState::None;
  std::string format = {};   ///< In capitals, such as "PNG"; empty when it is not known.
  int width = 0;             ///< Of a drawing the size that it names for itself.
  int height = 0;            ///< The same.
  int frames = 1;            ///< More than 1: it moves, and the first one is shown.
  std::string failure = {};  ///< Why it is not shown, a sentence for the user.

  bool operator==(const PictureFacts&) const = default;
};

/// A picture out of bytes: PNG, JPEG, GIF, WebP, SVG, BMP and what else the desktop reads. Its kind
/// is told by the bytes. It is read while the window goes on: Read follows, at once or soon. What
/// is no picture, broken or too large is not shown, and the facts say why; the size is looked at
/// before memory is taken for it. Nothing that the bytes name is fetched from anywhere.
class ImageBox : public Control {
 public:
  using Control::Control;

  /// A picture of more pixels is not shown; its size is told.
  static constexpr std::int64_t mostPixels = 64'000'000;
  /// Nor is one of more bytes.
  static constexpr std::size_t mostBytes = 256U << 20U;
  /// The zoom that makes a picture as large as the box allows, but not larger than it is.
  static constexpr int fitZoom = 0;

  /// Copies the bytes and begins to read them; without any nothing is shown. A picture that is
  /// still being read is forgotten, and its Read does not come.
  void SetPicture(std::span<const std::byte> bytes);
  [[nodiscard]] const PictureFacts& Facts() const { return facts_; }

  /// In percent of the picture's own size, or fitZoom, as at first. Setting it takes the nearest
  /// that zoomSteps holds. The user changes it by Ctrl with plus and minus and the wheel, and by
  /// Ctrl+0 back to fitZoom. A part that does not fit is reached by the keys that move. Raises
  /// nothing.
  [[nodiscard]] virtual int Zoom() const = 0;
  virtual void SetZoom(int percent) = 0;

  Event<> Read;  ///< The picture is shown, or cannot be.

 protected:
  /// Begins to read; Told follows, now or later, unless it is called again before.
  virtual void WritePicture(std::span<const std::byte> bytes) = 0;
  /// Forgets the picture, one that is being read too, and shows an empty ground; raises nothing.
  virtual void WriteNothing() = 0;
  /// The reading of the last picture has ended.
  void Told(PictureFacts facts);

 private:
  PictureFacts facts_;
};

}  // namespace tessel
