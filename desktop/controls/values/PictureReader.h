#pragma once

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>

#include "contract/desktop/controls/values/ImageBox.h"

namespace tessel {

/// A picture as it came out of bytes.
struct ReadImage {
  QImage image;  ///< Null when it could not be read.
  PictureFacts facts;
};

/// Reads a picture on the calling thread. Its size is looked at first; what is larger than
/// ImageBox allows is not read, and a drawing is made at most `mostDrawn` pixels wide and high.
[[nodiscard]] ReadImage ReadImageOf(const QByteArray& bytes);

/// Reads pictures on a thread beside the window's, one at a time: of those that are asked for
/// meanwhile only the last is read. UI thread.
class PictureReader : public QObject {
  Q_OBJECT

 public:
  explicit PictureReader(QObject* parent = nullptr);

  /// Pixels of the longer side of a drawing, which has no size of its own.
  static constexpr int mostDrawn = 2048;
  /// Milliseconds after which a reading counts as failed.
  static constexpr int patience = 15'000;

  /// Begins to read; `read` follows from the event loop unless Forget or Read comes before.
  void Read(QByteArray bytes);
  void Forget();

 signals:
  void read(const tessel::ReadImage& picture);

 private:
  void Start(const QByteArray& bytes);
  void Ended(std::uint64_t reading, const ReadImage& picture);
  void GiveUp();

  std::uint64_t reading_ = 0;       ///< The number of the one under way or the last one.
  bool busy_ = false;               ///< A thread works on it.
  bool wanted_ = false;             ///< Somebody still waits for it.
  std::optional<QByteArray> next_;  ///< To be read behind it.
  QTimer giveUp_;
};

}  // namespace tessel
