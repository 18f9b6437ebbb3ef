#include "foundation/FourCharCode.h"

#include <gtest/gtest.h>

TEST(FourCharCode, FirstCharacterIsTheMostSignificantByte) {
  static_assert(FourCC("RG24") == 0x52473234);
  EXPECT_EQ(FourCC("EVen"), 0x4556656EU);
}

TEST(FourCharCode, CharactersAbove127DoNotSpreadTheirSign) {
  EXPECT_EQ(FourCC("a\xFF\x80z"), 0x61FF807AU);
}
