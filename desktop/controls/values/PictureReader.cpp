// Pictures are read on a thread that belongs to nobody: one that hangs in a hostile picture is left
// to itself, and the window goes on. Before memory is taken the size in the picture's head is
// looked at, and a drawing that names anything outside of itself is refused.

#include "desktop/controls/values/PictureReader.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>
#include <QPointer>
#include <QRegularExpression>
#include <algorithm>
#include <thread>
#include <utility>

#include "desktop/base/Text.h"

namespace tessel {

namespace {

/// Of memory for one picture, in MiB: four bytes for each of its pixels, and some of its own.
constexpr int allocationLimit = 320;
constexpr const char* tooMuchTime = "Reading this picture takes too long.";

bool IsDrawing(const QByteArray& format) { return format == "svg" || format == "svgz"; }

/// What a drawing names must be inside of it, or part of its own text.
bool NamesOthers(const QByteArray& drawing) {
  static const QRegularExpression other(
      QStringLiteral(R"((href|src)\s*=\s*["']\s*(?!#|data:)[^"'\s])"),
      QRegularExpression::CaseInsensitiveOption);
  return drawing.contains("<!ENTITY") || drawing.contains("<?xml-stylesheet") ||
         other.match(QString::fromLatin1(drawing)).hasMatch();
}

std::string SizeText(const QSize& size) {
  return std::to_string(size.width()) + " x " + std::to_string(size.height());
}

ReadImage Failed(PictureFacts facts, std::string why) {
  facts.state = PictureState::Failed;
  facts.failure = std::move(why);
  return {{}, std::move(facts)};
}

bool IsTooLarge(const QSize& size) {
  return static_cast<std::int64_t>(size.width()) * size.height() > ImageBox::mostPixels;
}

/// A drawing has as many pixels as one likes.
QSize DrawnSize(const QSize& own) {
  const QSize most(PictureReader::mostDrawn, PictureReader::mostDrawn);
  return own.isEmpty() ? most : own.scaled(most, Qt::KeepAspectRatio);
}

PictureFacts FactsOf(QImageReader& reader, const QSize& size) {
  PictureFacts facts;
  facts.format = FromQt(QString::fromLatin1(reader.format()).toUpper());
  facts.width = size.width();
  facts.height = size.height();
  if (reader.supportsAnimation()) facts.frames = std::max(reader.imageCount(), 1);
  return facts;
}

/// A drawing is looked at first: to tell its size it would be drawn, and fetch what it names.
ReadImage ReadFrom(QImageReader& reader, const QByteArray& bytes) {
  const bool drawing = IsDrawing(reader.format());
  if (drawing && bytes.startsWith("\x1F\x8B"))
    return Failed({}, "A compressed drawing is not drawn here.");
  if (drawing && NamesOthers(bytes))
    return Failed({}, "This drawing names files outside of it or entities, so it is not drawn.");
  const QSize size = reader.size().expandedTo({0, 0});
  PictureFacts facts = FactsOf(reader, size);
  if (!drawing && IsTooLarge(size))
    return Failed(facts, "This picture of " + SizeText(size) + " pixels is too large to be shown.");
  if (drawing) reader.setScaledSize(DrawnSize(size));
  const QImage image = reader.read();
  if (image.isNull())
    return Failed(facts, "The picture is broken: " + FromQt(reader.errorString()) + ".");
  if (size.isEmpty()) {
    facts.width = image.width();
    facts.height = image.height();
  }
  facts.state = PictureState::Shown;
  return {image, std::move(facts)};
}

}  // namespace

ReadImage ReadImageOf(const QByteArray& bytes) {
  QImageReader::setAllocationLimit(allocationLimit);
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  reader.setDecideFormatFromContent(true);
  if (!reader.canRead()) return Failed({}, "The bytes are no picture that can be shown here.");
  return ReadFrom(reader, bytes);
}

PictureReader::PictureReader(QObject* parent) : QObject(parent) {
  giveUp_.setSingleShot(true);
  giveUp_.setInterval(patience);
  connect(&giveUp_, &QTimer::timeout, this, &PictureReader::GiveUp);
}

void PictureReader::Read(QByteArray bytes) {
  wanted_ = false;
  if (busy_) next_ = std::move(bytes);
  else Start(bytes);
}

void PictureReader::Forget() {
  wanted_ = false;
  next_.reset();
}

void PictureReader::Start(const QByteArray& bytes) {
  busy_ = wanted_ = true;
  giveUp_.start();
  const QPointer<PictureReader> self(this);
  std::thread([bytes, self, reading = ++reading_] {
    ReadImage picture = ReadImageOf(bytes);
    QObject* const program = QCoreApplication::instance();
    if (program == nullptr) return;
    QMetaObject::invokeMethod(
        program,
        [self, reading, picture = std::move(picture)] {
          if (self != nullptr) self->Ended(reading, picture);
        },
        Qt::QueuedConnection);
  }).detach();
}

/// The news of a reading that was given up come to nothing.
void PictureReader::Ended(std::uint64_t reading, const ReadImage& picture) {
  if (reading != reading_ || !busy_) return;
  busy_ = false;
  giveUp_.stop();
  const bool wanted = std::exchange(wanted_, false);
  if (const std::optional<QByteArray> next = std::exchange(next_, std::nullopt)) Start(*next);
  else if (wanted) emit read(picture);
}

void PictureReader::GiveUp() { Ended(reading_, Failed({}, tooMuchTime)); }

}  // namespace tessel
