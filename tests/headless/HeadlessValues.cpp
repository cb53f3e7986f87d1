#include "tests/headless/HeadlessValues.h"

#include <string_view>

namespace tessel::test {

namespace {

constexpr std::int64_t linesShown = 10;
constexpr std::string_view signature = "\x89PNG\r\n\x1a\n";
constexpr std::string_view ending = "IEND\xAE\x42\x60\x82";
constexpr std::size_t widthAt = 16;
constexpr std::size_t heightAt = 20;

int NumberAt(std::string_view bytes, std::size_t place) {
  int number = 0;
  for (const char byte : bytes.substr(place, 4))
    number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

PictureFacts FactsOf(std::string_view bytes) {
  PictureFacts facts{PictureState::Failed};
  if (!bytes.starts_with(signature)) {
    facts.failure = "The bytes are no picture that can be shown here.";
    return facts;
  }
  facts.format = "PNG";
  facts.width = NumberAt(bytes, widthAt);
  facts.height = NumberAt(bytes, heightAt);
  if (std::int64_t{facts.width} * facts.height > ImageBox::mostPixels)
    facts.failure = "This picture of " + std::to_string(facts.width) + " x " +
                    std::to_string(facts.height) + " pixels is too large to be shown.";
  else if (!bytes.ends_with(ending)) facts.failure = "The picture is broken: its end is missing.";
  else facts.state = PictureState::Shown;
  return facts;
}

}  // namespace

bool HeadlessHexBox::TakeKey(int keyCode, int shift) {
  return TakeMove(keyCode, shift, linesShown);
}

void HeadlessImageBox::WritePicture(std::span<const std::byte> bytes) {
  Told(FactsOf({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

}  // namespace tessel::test
