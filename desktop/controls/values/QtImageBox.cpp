#include "desktop/controls/values/QtImageBox.h"

namespace tessel {

QtImageBox::QtImageBox(PictureView& widget, const ControlSite& site) : ControlOf(widget, site) {
  QObject::connect(&reader_, &PictureReader::read, &Face(),
                   [this](const ReadImage& picture) { Show(picture); });
}

void QtImageBox::WritePicture(std::span<const std::byte> bytes) {
  reader_.Read(QByteArray(reinterpret_cast<const char*>(bytes.data()),
                          static_cast<qsizetype>(bytes.size())));
}

void QtImageBox::WriteNothing() {
  reader_.Forget();
  TheWidget().ShowText({});
}

/// What assistive tools are told of it goes with what is shown.
void QtImageBox::Show(const ReadImage& picture) {
  const PictureFacts& facts = picture.facts;
  if (facts.state == PictureState::Shown)
    TheWidget().ShowPicture(picture.image, {facts.width, facts.height});
  else TheWidget().ShowText(ToQt(facts.failure));
  const QString size =
      QStringLiteral("%1, %2 x %3 pixels")
          .arg(ToQt(facts.format), QString::number(facts.width), QString::number(facts.height));
  TheWidget().setAccessibleDescription(facts.failure.empty() ? size : ToQt(facts.failure));
  Told(facts);
}

}  // namespace tessel
