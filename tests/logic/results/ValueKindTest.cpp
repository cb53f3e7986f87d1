#include "logic/results/values/ValueKind.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

using namespace std::string_literals;

TEST(ValueKindTest, BytesAreKnownByHowTheyBegin) {
  EXPECT_EQ(KindOfBytes("\x89PNG\r\n\x1a\n...."s).name, "PNG picture");
  EXPECT_EQ(KindOfBytes("\xFF\xD8\xFF\xE0"s).name, "JPEG picture");
  EXPECT_EQ(KindOfBytes("GIF89a...."s).name, "GIF picture");
  EXPECT_EQ(KindOfBytes("RIFF\0\0\0\0WEBPVP8L"s).name, "WebP picture");
  EXPECT_EQ(KindOfBytes("\xEF\xBB\xBF<?xml?>\n<!-- x --><svg"s).name, "SVG picture");
  EXPECT_EQ(KindOfBytes("PK\3\4"s).name, "ZIP archive");
  EXPECT_TRUE(KindOfBytes("GIF87a"s).isPicture);
  EXPECT_FALSE(KindOfBytes("%PDF-1.7"s).isPicture);
  EXPECT_EQ(KindOfBytes("").name, "Binary");
  EXPECT_EQ(KindOfBytes("<html>").name, "Binary");
  EXPECT_EQ(KindOfBytes("\x89PN").name, "Binary") << "cut off";
}

TEST(ValueKindTest, TypedBytesAreDigitsOrText) {
  EXPECT_EQ(BytesMeant("50 4B"), "PK");
  EXPECT_EQ(BytesMeant(" 0x504b "), "PK");
  EXPECT_EQ(BytesMeant("00ff"), "\0\xFF"s);
  EXPECT_EQ(BytesMeant("\"50 4B\""), "50 4B");
  EXPECT_EQ(BytesMeant("'ab'"), "ab");
  EXPECT_EQ(BytesMeant("504"), "504") << "half a byte";
  EXPECT_EQ(BytesMeant("hello"), "hello");
  EXPECT_EQ(BytesMeant("  "), std::nullopt);
}

TEST(ValueKindTest, TypedOffsetsLieInTheValue) {
  EXPECT_EQ(OffsetMeant("16", 17), 16U);
  EXPECT_EQ(OffsetMeant(" 0x10 ", 17), 16U);
  EXPECT_EQ(OffsetMeant("17", 17), std::nullopt);
  EXPECT_EQ(OffsetMeant("-1", 17), std::nullopt);
  EXPECT_EQ(OffsetMeant("", 17), std::nullopt);
  EXPECT_EQ(OffsetMeant("0x", 17), std::nullopt);
  EXPECT_EQ(OffsetMeant("99999999999999999999999", 17), std::nullopt);
}

TEST(ValueKindTest, BytesBecomeDigits) { EXPECT_EQ(HexText("\x0A\xFF"), "0A FF"); }

}  // namespace
}  // namespace tessel
