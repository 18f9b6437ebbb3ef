#include "foundation/CP_Utility.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/ReportRecorder.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

TEST(CopyBytes, MovesTheBytes) {
  const char source[] = "abcdef";
  char target[] = "......";
  CP_Utility::CopyBytes(source + 1, target + 2, 3);
  EXPECT_STREQ(target, "..bcd.");
}

TEST(CopyBytes, RegionsMayOverlapInEitherDirection) {
  char text[] = "abcdef";
  CP_Utility::CopyBytes(text, text + 1, 5);
  EXPECT_STREQ(text, "aabcde");
  CP_Utility::CopyBytes(text + 1, text, 5);
  EXPECT_STREQ(text, "abcdee");
}

TEST(CopyBytes, ACountOfZeroDoesNothingAndReportsNothing) {
  char target[] = "x";
  ReportRecorder reports;
  CP_Utility::CopyBytes("a", target, 0);
  EXPECT_STREQ(target, "x");
  EXPECT_TRUE(reports.Empty());
}

TEST(CopyBytes, ReportsANullSourceAndDoesNothing) {
  char target[] = "x";
  ReportRecorder reports;
  CP_Utility::CopyBytes(nullptr, target, 1);
  EXPECT_STREQ(target, "x");
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(53) : srcPtr != NULL"}));
}

TEST(CopyBytes, ReportsANullTargetAndDoesNothing) {
  ReportRecorder reports;
  CP_Utility::CopyBytes("a", nullptr, 1);
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(54) : dstPtr != NULL"}));
}

TEST(CopyBytes, ReportsANegativeCountAndDoesNothing) {
  char target[] = "x";
  ReportRecorder reports;
  CP_Utility::CopyBytes("a", target, -1);
  EXPECT_STREQ(target, "x");
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(55) : inBytesToCopy >= 0"}));
}

TEST(CopyBytes, MakesItsChecksInOrder) {
  ReportRecorder reports;
  CP_Utility::CopyBytes(nullptr, nullptr, -1);
  EXPECT_EQ(reports.Lines(),
            Reports({"CP_Utility(53) : srcPtr != NULL", "CP_Utility(54) : dstPtr != NULL",
                     "CP_Utility(55) : inBytesToCopy >= 0"}));
}

TEST(FillBytes, StoresTheByteInEachPlace) {
  char text[] = "abcdef";
  CP_Utility::FillBytes(text + 1, 4, 'x');
  EXPECT_STREQ(text, "axxxxf");
  unsigned char byte = 0;
  CP_Utility::FillBytes(&byte, 1, 0xFF);
  EXPECT_EQ(byte, 0xFF);
}

TEST(FillBytes, ACountOfZeroDoesNothingAndReportsNothing) {
  char text[] = "a";
  ReportRecorder reports;
  CP_Utility::FillBytes(text, 0, 'x');
  EXPECT_STREQ(text, "a");
  EXPECT_TRUE(reports.Empty());
}

TEST(FillBytes, ReportsMisuseInOrderAndDoesNothing) {
  char text[] = "a";
  ReportRecorder reports;
  CP_Utility::FillBytes(text, -1, 'x');
  EXPECT_STREQ(text, "a");
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(80) : inNumBytes >= 0"}));
  reports.Clear();
  CP_Utility::FillBytes(nullptr, -1, 'x');
  EXPECT_EQ(reports.Lines(),
            Reports({"CP_Utility(79) : srcPtr != NULL", "CP_Utility(80) : inNumBytes >= 0"}));
}

TEST(StringLength, CountsTheCharactersBeforeTheNul) {
  EXPECT_EQ(CP_Utility::StringLength(""), 0);
  EXPECT_EQ(CP_Utility::StringLength("abc\0def"), 3);
}

TEST(StringLength, ReportsNullAndYieldsZero) {
  ReportRecorder reports;
  EXPECT_EQ(CP_Utility::StringLength(nullptr), 0);
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(191) : inString != NULL"}));
}

TEST(CopyString, CutsA20CharacterTextTo9CharactersAndANul) {
  char target[] = "............";
  CP_Utility::CopyString("abcdefghijklmnopqrst", target, 10);
  EXPECT_EQ(std::string(target, sizeof target), std::string("abcdefghi\0..\0", 13));
}

TEST(CopyString, ATextOfMaximumLengthMinusOneIsKeptWhole) {
  char target[4];
  CP_Utility::CopyString("abc", target, 4);
  EXPECT_STREQ(target, "abc");
}

// REQUIRED: the count copied is the field's whole size, whatever the text's length.
TEST(CopyString, CopiesTheWholeFieldAlsoBehindAShorterText) {
  const char source[8] = {'a', 'b', '\0', 'd', 'e', 'f', 'g', 'h'};
  char target[] = "........";
  CP_Utility::CopyString(source, target, 6);
  EXPECT_EQ(std::string(target, 8), std::string("ab\0def..", 8));
}

TEST(CopyString, AFieldOfOneByteHoldsTheNulOnly) {
  char target[] = "xy";
  CP_Utility::CopyString("ab", target, 1);
  EXPECT_EQ(std::string(target, 2), std::string("\0y", 2));
}

TEST(CopyString, AFieldOfNoBytesIsLeftAloneSilently) {
  char target[] = "xy";
  ReportRecorder reports;
  CP_Utility::CopyString("ab", target + 1, 0);
  EXPECT_STREQ(target, "xy");
  EXPECT_TRUE(reports.Empty());
}

TEST(CopyString, ANegativeFieldIsReportedByTheByteCopyAndLeftAlone) {
  char target[] = "xyz";
  ReportRecorder reports;
  CP_Utility::CopyString("ab", target + 2, -1);
  EXPECT_STREQ(target, "xyz");
  EXPECT_EQ(reports.Lines(), Reports({"CP_Utility(55) : inBytesToCopy >= 0"}));
}

TEST(CopyString, ReportsANullTextAndStoresAnEmptyOne) {
  char target[] = "xyz";
  ReportRecorder reports;
  CP_Utility::CopyString(nullptr, target, 3);
  EXPECT_EQ(std::string(target, 3), std::string("\0yz", 3));
  ASSERT_FALSE(reports.Empty());
  EXPECT_EQ(reports.Lines().front(), "CP_Utility(214) : inString != NULL");
}

TEST(CopyString, ReportsANullTargetAndStoresNothing) {
  ReportRecorder reports;
  CP_Utility::CopyString("ab", nullptr, 3);
  ASSERT_FALSE(reports.Empty());
  EXPECT_EQ(reports.Lines().front(), "CP_Utility(215) : inDestString != NULL");
}

TEST(StringToInteger, ReadsTheDecimalValueAtTheStart) {
  EXPECT_EQ(CP_Utility::StringToInteger("0"), 0);
  EXPECT_EQ(CP_Utility::StringToInteger("  -42xyz"), -42);
  EXPECT_EQ(CP_Utility::StringToInteger("+7"), 7);
  EXPECT_EQ(CP_Utility::StringToInteger("0x10"), 0);
  EXPECT_EQ(CP_Utility::StringToInteger("010"), 10);
  EXPECT_EQ(CP_Utility::StringToInteger("abc"), 0);
  EXPECT_EQ(CP_Utility::StringToInteger(""), 0);
  EXPECT_EQ(CP_Utility::StringToInteger("2147483647"), 2147483647);
}

TEST(StringToInteger, LimitsAValueOutOfRangeAndTakesNullForZero) {
  EXPECT_EQ(CP_Utility::StringToInteger("99999999999"), 2147483647);
  EXPECT_EQ(CP_Utility::StringToInteger("-99999999999"), -2147483647 - 1);
  EXPECT_EQ(CP_Utility::StringToInteger("99999999999999999999999"), 2147483647);
  EXPECT_EQ(CP_Utility::StringToInteger(nullptr), 0);
}

}  // namespace
