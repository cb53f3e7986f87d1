// The two boxes that show bytes: as hexadecimal digits, and as a picture.

#include <gtest/gtest.h>

#include <string>

#include "contract/desktop/controls/values/HexBox.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "tests/contract/desktop/ContractTools.h"

namespace tessel::test {

namespace {

using namespace std::string_literals;

std::span<const std::byte> AsBytes(const std::string& text) {
  return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}

/// The window of a value with bytes in its hex box.
struct HexFixture {
  explicit HexFixture(ContractHost& theHost)
      : host(theHost), window(ShowForm(host, "frmValue")), box(&window->Find<HexBox>("hexValue")) {
    window->SetBounds({1000, 1000, 13'000, 6'000});
    window->Find<Control>("txtValue").SetVisible(false);
    box->SetVisible(true);
    box->SetSource([this] { return AsBytes(content); });
    box->SetFocus();
    box->CaretMoved = record.Noting("moved");
    host.Settle();
    static_cast<void>(record.Take());
  }
  ~HexFixture() { box->SetSource(nullptr); }
  void Press(int keyCode, int shift = shiftState::none) { host.PressKey(*window, keyCode, shift); }

  ContractHost& host;
  std::string content = std::string(100, 'x') + "\0\x7F\xFFyz"s;
  std::unique_ptr<Window> window;
  HexBox* box;
  Record record;
};

void BytesStandInLines(ContractHost& host) {
  HexFixture test(host);
  EXPECT_EQ(test.box->Size(), 105);
  ASSERT_EQ(test.box->LineLength(), 16);
  EXPECT_EQ(test.box->LineText(0),
            "00000000  78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78  xxxxxxxxxxxxxxxx");
  EXPECT_EQ(test.box->LineText(6),
            "00000060  78 78 78 78 00 7F FF 79 7A                       xxxx...yz");
  EXPECT_EQ(test.box->LineText(7), "");
  EXPECT_EQ(test.box->LineText(-1), "");
}

void KeysMoveAmongBytes(ContractHost& host) {
  HexFixture test(host);
  test.Press(key::right);
  EXPECT_EQ(test.record.Take(), Seen{"moved"});
  test.Press(key::down);
  EXPECT_EQ(test.box->Caret(), 17);
  test.Press(key::end);
  EXPECT_EQ(test.box->Caret(), 31);
  test.Press(key::home);
  EXPECT_EQ(test.box->Caret(), 16);
  test.Press(key::up);
  test.Press(key::up);
  EXPECT_EQ(test.box->Caret(), 0) << "up in the first line stays";
  test.Press(key::left);
  static_cast<void>(test.record.Take());
  test.Press(key::left);
  EXPECT_EQ(test.record.Take(), Seen{});
  test.Press(key::end, shiftState::ctrl);
  EXPECT_EQ(test.box->Caret(), 104);
  test.Press(key::right);
  EXPECT_EQ(test.box->Caret(), 104);
  test.Press(key::home, shiftState::ctrl);
  EXPECT_EQ(test.box->Caret(), 0);
  test.Press(key::pageDown);
  EXPECT_GT(test.box->Caret(), 16);
  test.Press(key::pageUp);
  EXPECT_LT(test.box->Caret(), 16);
}

void ShiftExtendsTheSelection(ContractHost& host) {
  HexFixture test(host);
  test.box->Select(20, 1);
  test.Press(key::right, shiftState::shift);
  test.Press(key::right, shiftState::shift);
  EXPECT_EQ(test.box->SelStart(), 20);
  EXPECT_EQ(test.box->SelLength(), 3);
  test.Press(key::up, shiftState::shift);
  EXPECT_EQ(test.box->SelStart(), 6);
  EXPECT_EQ(test.box->SelLength(), 15) << "from where it began, back to here";
  test.Press(key::left);
  EXPECT_EQ(test.box->SelLength(), 1);
  test.Press('A', shiftState::ctrl);
  EXPECT_EQ(test.box->SelStart(), 0);
  EXPECT_EQ(test.box->SelLength(), 105);
}

void SelectingStaysInside(ContractHost& host) {
  HexFixture test(host);
  test.box->Select(100, 1000);
  EXPECT_EQ(test.box->SelStart(), 100);
  EXPECT_EQ(test.box->SelLength(), 5);
  EXPECT_EQ(test.box->Caret(), 104);
  test.box->Select(-5, 0);
  EXPECT_EQ(test.box->SelStart(), 0);
  EXPECT_EQ(test.box->SelLength(), 1);
  EXPECT_EQ(test.record.Take(), (Seen{"moved", "moved"}));
}

void BytesThatGoTakePlacesAlong(ContractHost& host) {
  HexFixture test(host);
  test.box->Select(100, 3);
  test.content.resize(50);
  test.box->Refresh();
  EXPECT_EQ(test.box->Caret(), 49);
  EXPECT_EQ(test.box->SelLength(), 1);
  test.box->SetSource(nullptr);
  EXPECT_EQ(test.box->Size(), 0);
  EXPECT_EQ(test.box->Caret(), 0);
  EXPECT_EQ(test.box->SelLength(), 0);
  test.Press(key::right);
  test.Press('A', shiftState::ctrl);
  EXPECT_EQ(test.box->SelLength(), 0);
  test.host.Settle();
}

void HexHasTheZoomOfGrids(ContractHost& host) {
  const HexFixture test(host);
  EXPECT_EQ(test.box->Zoom(), ordinaryZoom);
  test.box->SetZoom(131);
  EXPECT_EQ(test.box->Zoom(), 125);
}

// --- pictures ------------------------------------------------------------------------------------

/// The picture of two by three pixels that follows, as PNG.
const std::string smallPng =
    "\x89\x50\x4e\x47\x0d\x0a\x1a\x0a\x00\x00\x00\x0d\x49\x48\x44\x52\x00\x00\x00\x02\x00\x00\x00"
    "\x03"
    "\x08\x02\x00\x00\x00\x36\x88\x49\xd6\x00\x00\x00\x0b\x49\x44\x41\x54\x78\x9c\x63\x60\xc0\x02"
    "\x00"
    "\x00\x15\x00\x01\xaa\x65\x97\xc4\x00\x00\x00\x00\x49\x45\x4e\x44\xae\x42\x60\x82"s;

struct ImageFixture {
  explicit ImageFixture(ContractHost& theHost)
      : host(theHost),
        window(ShowForm(host, "frmValue")),
        box(&window->Find<ImageBox>("imgValue")) {
    box->SetVisible(true);
    box->Read = record.Noting("read");
  }
  /// What came of it, once it is read.
  const PictureFacts& Show(const std::string& content) {
    box->SetPicture(AsBytes(content));
    for (int waited = 0; box->Facts().state == PictureState::Reading && waited < 500; ++waited)
      host.PassTime(10);
    return box->Facts();
  }

  ContractHost& host;
  std::unique_ptr<Window> window;
  ImageBox* box;
  Record record;
};

void APictureTellsItsKindAndSize(ContractHost& host) {
  ImageFixture test(host);
  EXPECT_EQ(test.box->Facts(), PictureFacts());
  const PictureFacts& facts = test.Show(smallPng);
  EXPECT_EQ(facts.state, PictureState::Shown) << facts.failure;
  EXPECT_EQ(facts.format, "PNG");
  EXPECT_EQ(facts.width, 2);
  EXPECT_EQ(facts.height, 3);
  EXPECT_EQ(test.record.Take(), Seen{"read"});
  test.box->SetPicture({});
  EXPECT_EQ(test.box->Facts(), PictureFacts());
  EXPECT_EQ(test.record.Take(), Seen{});
}

void WhatIsNoPictureSaysSo(ContractHost& host) {
  ImageFixture test(host);
  EXPECT_EQ(test.Show("text").state, PictureState::Failed);
  EXPECT_EQ(test.box->Facts().failure, "The bytes are no picture that can be shown here.");
  EXPECT_EQ(test.record.Take(), Seen{"read"});
  EXPECT_EQ(test.Show(smallPng.substr(0, 45)).state, PictureState::Failed);
  EXPECT_TRUE(test.box->Facts().failure.starts_with("The picture is broken: "))
      << test.box->Facts().failure;
}

void AnEnormousPictureIsNotRead(ContractHost& host) {
  ImageFixture test(host);
  std::string enormous = smallPng;
  enormous.replace(16, 8, "\0\x01\x86\xA0\0\x01\x86\xA0"s);
  enormous.replace(29, 4, "\x27\x30\x9c\x9f"s);
  const PictureFacts& facts = test.Show(enormous);
  EXPECT_EQ(facts.state, PictureState::Failed);
  EXPECT_EQ(facts.width, 100'000);
  EXPECT_EQ(facts.failure, "This picture of 100000 x 100000 pixels is too large to be shown.");
}

void APictureFitsAtFirst(ContractHost& host) {
  const ImageFixture test(host);
  EXPECT_EQ(test.box->Zoom(), ImageBox::fitZoom);
  test.box->SetZoom(199);
  EXPECT_EQ(test.box->Zoom(), 200);
  test.box->SetZoom(ImageBox::fitZoom);
  EXPECT_EQ(test.box->Zoom(), ImageBox::fitZoom);
}

}  // namespace

std::vector<ContractCase> ValueContract() {
  return {{"BytesStandInLines", &BytesStandInLines},
          {"KeysMoveAmongBytes", &KeysMoveAmongBytes},
          {"ShiftExtendsTheSelection", &ShiftExtendsTheSelection},
          {"SelectingStaysInside", &SelectingStaysInside},
          {"BytesThatGoTakePlacesAlong", &BytesThatGoTakePlacesAlong},
          {"HexHasTheZoomOfGrids", &HexHasTheZoomOfGrids},
          {"APictureTellsItsKindAndSize", &APictureTellsItsKindAndSize},
          {"WhatIsNoPictureSaysSo", &WhatIsNoPictureSaysSo},
          {"AnEnormousPictureIsNotRead", &AnEnormousPictureIsNotRead},
          {"APictureFitsAtFirst", &APictureFitsAtFirst}};
}

}  // namespace tessel::test
