#include "logic/text/TextFile.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

using namespace std::string_literals;

TEST(DecodeTextTest, KeepsUtf8ByteForByte) {
  const std::string text = "SELECT 'é😀'\r\nFROM x\n\0y"s;
  const DecodedText decoded = DecodeText(text);
  EXPECT_EQ(decoded.text, text);
  EXPECT_EQ(decoded.encoding, TextEncoding::Utf8);
  EXPECT_EQ(EncodeText(decoded.text, decoded.encoding), text);
}

TEST(DecodeTextTest, KeepsAByteOrderMarkForTheNextSave) {
  const DecodedText decoded = DecodeText("\xEF\xBB\xBFSELECT 1");
  EXPECT_EQ(decoded.text, "SELECT 1");
  EXPECT_EQ(EncodeText(decoded.text, decoded.encoding), "\xEF\xBB\xBFSELECT 1");
  EXPECT_FALSE(ChangesEncoding(decoded.encoding));
}

TEST(DecodeTextTest, ReadsInvalidUtf8AsWindows1252) {
  const DecodedText decoded = DecodeText("caf\xE9 \x80 \x81");
  EXPECT_EQ(decoded.text, "café € \u0081");
  EXPECT_TRUE(ChangesEncoding(decoded.encoding));
  EXPECT_EQ(EncodingName(decoded.encoding), "Windows-1252");
}

TEST(DecodeTextTest, ReadsUtf16OfEitherByteOrder) {
  EXPECT_EQ(DecodeText("\xFF\xFE\x41\x00\x3D\xD8\x00\xDE"s).text, "A😀");
  EXPECT_EQ(DecodeText("\xFE\xFF\x00\x41\xD8\x3D\xDE\x00"s).text, "A😀");
}

TEST(DecodeTextTest, MarksHalvesOfUtf16CharactersInsteadOfDroppingThem) {
  EXPECT_EQ(DecodeText("\xFF\xFE\x3D\xD8\x41\x00\x42"s).text, "\uFFFDA\uFFFD");
}

TEST(DecodeTextTest, ReadsAnEmptyFileAsAnEmptyText) { EXPECT_EQ(DecodeText("").text, ""); }

}  // namespace
}  // namespace tessel
