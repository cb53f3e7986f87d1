// Bytes and pictures on real widgets: what is painted, how fast, and which pictures are read.

#include <QBuffer>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QImageReader>
#include <QImageWriter>
#include <QScrollBar>
#include <QTest>
#include <cstdlib>
#include <span>
#include <vector>

#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/values/HexBox.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "desktop/controls/values/HexView.h"
#include "desktop/controls/values/PictureReader.h"
#include "desktop/controls/values/PictureView.h"
#include "desktop/look/Tokens.h"
#include "desktop/look/theme/Theme.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

// --- pictures of each kind -----------------------------------------------------------------------

QByteArray PictureIn(const char* format, const QSize& size = {12, 7}) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::darkGreen);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, format);
  EXPECT_TRUE(writer.write(image)) << format << ": " << writer.errorString().toStdString();
  return bytes;
}

/// One pixel, in two frames.
const QByteArray movingGif = QByteArray::fromHex("47494638396101000100800000000000FFFFFF"
                                                 "21F90400000000002C0000000001000100000202440100"
                                                 "21F90400000000002C0000000001000100000202440100"
                                                 "3B");

void ExpectShown(const QByteArray& bytes, const char* format, const QSize& size) {
  const ReadImage picture = ReadImageOf(bytes);
  EXPECT_EQ(picture.facts.state, PictureState::Shown) << format << ": " << picture.facts.failure;
  EXPECT_EQ(picture.facts.format, format);
  EXPECT_EQ(picture.facts.width, size.width()) << format;
  EXPECT_EQ(picture.facts.height, size.height()) << format;
  EXPECT_FALSE(picture.image.isNull()) << format;
}

std::string FailureOf(const QByteArray& bytes) {
  const ReadImage picture = ReadImageOf(bytes);
  EXPECT_EQ(picture.facts.state, PictureState::Failed);
  EXPECT_TRUE(picture.image.isNull());
  return picture.facts.failure;
}

TEST(PictureReaderTest, ReadsEachKindAndTellsItsSize) {
  ExpectShown(PictureIn("png"), "PNG", {12, 7});
  ExpectShown(PictureIn("jpeg"), "JPEG", {12, 7});
  ExpectShown(PictureIn("bmp"), "BMP", {12, 7});
  ExpectShown("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\"/>", "SVG",
              {30, 20});
}

TEST(PictureReaderTest, ReadsWebPWhereTheDesktopCan) {
  if (!QImageReader::supportedImageFormats().contains("webp"))
    GTEST_SKIP() << "qt6-image-formats-plugins is not installed";
  ExpectShown(PictureIn("webp"), "WEBP", {12, 7});
}

TEST(PictureReaderTest, OfAMovingPictureTheFirstFrameIsShown) {
  const ReadImage picture = ReadImageOf(movingGif);
  EXPECT_EQ(picture.facts.format, "GIF");
  EXPECT_EQ(picture.facts.state, PictureState::Shown) << picture.facts.failure;
  EXPECT_EQ(picture.facts.frames, 2);
}

TEST(PictureReaderTest, BrokenPicturesSayThatTheyAre) {
  for (const char* format : {"png", "jpeg"}) {
    const QByteArray whole = PictureIn(format, {100, 100});
    EXPECT_NE(FailureOf(whole.left(60)).find("broken"), std::string::npos) << format;
  }
  EXPECT_EQ(FailureOf("no picture"), "The bytes are no picture that can be shown here.");
  EXPECT_FALSE(FailureOf("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"3\"><g>").empty());
}

TEST(PictureReaderTest, AnEnormousPictureTakesNoMemory) {
  const QByteArray bytes = QByteArray::fromHex(
      "89504e470d0a1a0a0000000d4948445200007530000075300802000000e9456fed0000000c494441"
      "54789c6360a03d00000064000186643c350000000049454e44ae426082");
  EXPECT_EQ(FailureOf(bytes), "This picture of 30000 x 30000 pixels is too large to be shown.");
}

TEST(PictureReaderTest, ADrawingIsDrawnInASizeOfItsOwn) {
  const ReadImage picture =
      ReadImageOf("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"900000\" height=\"450000\"/>");
  EXPECT_EQ(picture.facts.state, PictureState::Shown) << picture.facts.failure;
  EXPECT_EQ(picture.image.size(), QSize(2048, 1024));
}

TEST(PictureReaderTest, ADrawingNamesNothingOutsideOfIt) {
  const QByteArray head = "<svg xmlns=\"http://www.w3.org/2000/svg\" "
                          "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"9\" height=\"9\">";
  for (const char* hostile :
       {"<image xlink:href=\"/etc/hostname\" width=\"9\" height=\"9\"/></svg>",
        "<image xlink:href = 'file:///etc/hostname'/></svg>",
        "<image href=\"http://localhost/x.png\"/></svg>"})
    EXPECT_EQ(FailureOf(head + hostile),
              "This drawing names files outside of it or entities, so it is not drawn.")
        << hostile;
  EXPECT_FALSE(FailureOf("<?xml-stylesheet href=\"x.css\"?>" + head + "</svg>").empty());
  EXPECT_FALSE(FailureOf("<!DOCTYPE svg [<!ENTITY a \"b\">]>" + head + "</svg>").empty());
  const ReadImage inner = ReadImageOf(head + "<rect id=\"r\"/><use xlink:href=\"#r\"/></svg>");
  EXPECT_EQ(inner.facts.state, PictureState::Shown) << inner.facts.failure;
}

// --- on the screen -------------------------------------------------------------------------------

class ValuesTest : public DesktopFixture {
 protected:
  ValuesTest() : window(ShowForm("frmValue")) {
    window->SetBounds({0, 0, 12'000, 7500});
    window->Find<Control>("txtValue").SetVisible(false);
  }
  ~ValuesTest() override { SystemTheme::Force(false); }

  HexBox& ShowHex() {
    auto& box = window->Find<HexBox>("hexValue");
    box.SetVisible(true);
    box.SetSource([this] { return std::span<const std::byte>(bytes); });
    host.Settle();
    return box;
  }
  [[nodiscard]] QWidget& Widget(const char* name) { return WidgetOf(*window, name); }

  std::vector<std::byte> bytes;
  std::unique_ptr<Window> window;
};

TEST_F(ValuesTest, AHundredMegabytesOpenAndScrollAtOnce) {
  bytes.resize(100'000'000, std::byte{0x41});
  QElapsedTimer timer;
  timer.start();
  HexBox& box = ShowHex();
  Widget("hexValue").grab();
  EXPECT_LT(timer.restart(), 500);
  auto* bar = qobject_cast<QAbstractScrollArea*>(&Widget("hexValue"))->verticalScrollBar();
  EXPECT_GT(bar->maximum(), 6'000'000);
  box.Select(99'999'999, 1);
  Widget("hexValue").grab();
  EXPECT_EQ(bar->value(), bar->maximum());
  bar->setValue(bar->maximum() / 2);
  Widget("hexValue").grab();
  EXPECT_LT(timer.elapsed(), 500);
}

TEST_F(ValuesTest, ANarrowBoxHasShorterLines) {
  bytes.resize(1000);
  HexBox& box = ShowHex();
  EXPECT_EQ(box.LineLength(), 16);
  window->SetBounds({0, 0, 6000, 7500});
  host.Settle();
  EXPECT_LT(box.LineLength(), 16);
  EXPECT_EQ(box.LineText(1).substr(0, 8), "0000000" + std::to_string(box.LineLength() % 10));
}

TEST_F(ValuesTest, AClickChoosesTheByteInBothParts) {
  bytes.resize(1000);
  HexBox& box = ShowHex();
  box.SetFocus();
  QWidget& port = *qobject_cast<QAbstractScrollArea*>(&Widget("hexValue"))->viewport();
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(Widget("hexValue").font().pointSizeF());
  const double width = QFontMetricsF(font).horizontalAdvance(QLatin1Char('0'));
  const auto column = [&](double at) { return QPoint(static_cast<int>(4 + at * width), 12); };
  QTest::mouseClick(&port, Qt::LeftButton, {}, column(10.5 + 3 * 5));
  EXPECT_EQ(box.Caret(), 5);
  QTest::mouseClick(&port, Qt::LeftButton, {}, column(10 + 48 + 1 + 7.5));
  EXPECT_EQ(box.Caret(), 7);
  QTest::mouseClick(&port, Qt::LeftButton, Qt::ShiftModifier, column(10.5));
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 8);
}

TEST_F(ValuesTest, KeysAndTheWheelZoom) {
  bytes.resize(1000);
  HexBox& box = ShowHex();
  box.SetFocus();
  QTest::keyClick(&Widget("hexValue"), Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(box.Zoom(), 110);
  QTest::keyClick(&Widget("hexValue"), Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(box.Zoom(), 100);
  auto& image = window->Find<ImageBox>("imgValue");
  image.SetVisible(true);
  const QByteArray png = PictureIn("png");
  image.SetPicture(std::as_bytes(std::span(png.data(), static_cast<std::size_t>(png.size()))));
  host.PassTime(200);
  image.SetFocus();
  QTest::keyClick(&Widget("imgValue"), Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(image.Zoom(), 110) << "from the size that fits on";
  QTest::keyClick(&Widget("imgValue"), Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(image.Zoom(), ImageBox::fitZoom);
}

TEST_F(ValuesTest, BytesArePaintedInTheColoursOfTheTheme) {
  bytes.resize(200, std::byte{0x41});
  HexBox& box = ShowHex();
  box.Select(0, 20);
  for (const bool dark : {false, true}) {
    SystemTheme::Force(dark);
    host.Settle();
    const QImage picture = Widget("hexValue").grab().toImage();
    int base = 0;
    int selection = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) {
        base += picture.pixelColor(x, y) == CurrentTokens().base ? 1 : 0;
        selection += picture.pixelColor(x, y) == CurrentTokens().selection ? 1 : 0;
      }
    EXPECT_GT(base, picture.width() * picture.height() / 2) << dark;
    EXPECT_GT(selection, 1000) << dark;
  }
}

TEST_F(ValuesTest, APictureIsPaintedInTheMiddle) {
  auto& image = window->Find<ImageBox>("imgValue");
  image.SetVisible(true);
  const QByteArray png = PictureIn("png", {3000, 60});
  image.SetPicture(std::as_bytes(std::span(png.data(), static_cast<std::size_t>(png.size()))));
  host.PassTime(300);
  ASSERT_EQ(image.Facts().state, PictureState::Shown) << image.Facts().failure;
  const QImage shown = Widget("imgValue").grab().toImage();
  EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(Qt::darkGreen));
  EXPECT_EQ(shown.pixelColor(shown.width() / 2, 4), CurrentTokens().base);
  EXPECT_EQ(shown.pixelColor(2, shown.height() / 2), CurrentTokens().base) << "it fits";
}

TEST_F(ValuesTest, OnlyTheLastOfSeveralPicturesIsRead) {
  auto& image = window->Find<ImageBox>("imgValue");
  int read = 0;
  image.Read = [&] { ++read; };
  QByteArray png;
  for (int width = 1; width <= 20; ++width) {
    png = PictureIn("png", {width, 5});
    image.SetPicture(std::as_bytes(std::span(png.data(), static_cast<std::size_t>(png.size()))));
  }
  host.PassTime(300);
  EXPECT_EQ(read, 1);
  EXPECT_EQ(image.Facts().width, 20);
}

TEST_F(ValuesTest, AWindowThatGoesLeavesAPictureBehind) {
  auto& image = window->Find<ImageBox>("imgValue");
  const QByteArray png = PictureIn("png", {4000, 4000});
  image.SetPicture(std::as_bytes(std::span(png.data(), static_cast<std::size_t>(png.size()))));
  window.reset();
  host.PassTime(300);
}

/// Whether letters of about that colour are to be seen: their edges are blended with the ground.
bool ShowsColor(const QImage& picture, const QColor& wanted) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QColor seen = picture.pixelColor(x, y);
      if (seen.hsvSaturation() > 100 && std::abs(seen.hsvHue() - wanted.hsvHue()) < 10) return true;
    }
  return false;
}

TEST_F(ValuesTest, JsonAndXmlHaveColours) {
  auto& text = window->Find<EditorBox>("txtValue");
  text.SetVisible(true);
  const auto shows = [&](const QColor& color) {
    host.Settle();
    return ShowsColor(Widget("txtValue").grab().toImage(), color);
  };
  text.SetText("{\"name\": \"text\", \"number\": 12345}");
  text.SetSyntax(TextSyntax::Json);
  EXPECT_TRUE(shows(CurrentTokens().keyword));
  EXPECT_TRUE(shows(CurrentTokens().string));
  text.SetText("<name key=\"text\">12345</name>");
  text.SetSyntax(TextSyntax::Xml);
  EXPECT_TRUE(shows(CurrentTokens().keyword));
  text.SetSyntax(TextSyntax::Plain);
  EXPECT_FALSE(shows(CurrentTokens().keyword));
  EXPECT_FALSE(shows(CurrentTokens().string));
}

}  // namespace

}  // namespace tessel::test
