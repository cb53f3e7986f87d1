#include "logic/program/Characters.h"

#include <gtest/gtest.h>

namespace tessel {
namespace {

TEST(IsIdentifierCharTest, HoldsTheClassAndNothingElse) {
  std::string members;
  for (int code = 0; code < 256; ++code)
    if (IsIdentifierChar(static_cast<char>(code))) members += static_cast<char>(code);
  EXPECT_EQ(members, "#$0123456789@ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

}  // namespace
}  // namespace tessel
