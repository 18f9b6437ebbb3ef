#include "foundation/ZvString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr uint32_t kAll = ZvString::npos;

// Runs `operation`, which must throw an `Exception` with exactly this text.
template <class Exception, class Operation>
void ExpectThrow(const char* text, Operation operation) {
  try {
    operation();
    ADD_FAILURE() << "nothing thrown, expected: " << text;
  } catch (const Exception& exception) {
    EXPECT_STREQ(exception.what(), text);
  }
}

// The contents, with a check of what holds for every string: a NUL behind the last character, and a
// capacity that holds the length.
std::string Contents(const ZvString& string) {
  EXPECT_EQ(string.c_str()[string.length()], '\0');
  EXPECT_LE(string.length(), string.capacity());
  return std::string(string.c_str(), string.length());
}

TEST(String, ADefaultOneIsEmptyHoldsNothingAndGivesANonNullText) {
  const ZvString string;
  EXPECT_EQ(string.length(), 0U);
  EXPECT_EQ(string.capacity(), 0U);
  ASSERT_NE(string.c_str(), nullptr);
  EXPECT_STREQ(string.c_str(), "");
}

TEST(String, IsMadeFromACStringUpToItsNul) {
  EXPECT_EQ(Contents(ZvString("abc\0def")), "abc");
  EXPECT_EQ(Contents(ZvString(static_cast<const char*>(nullptr))), "");
}

TEST(String, IsMadeFromCharactersWithNulBytesAmongThem) {
  EXPECT_EQ(Contents(ZvString("a\0b", 3)), std::string("a\0b", 3));
}

TEST(String, AConstructionOfLengthMinusOneThrows) {
  ExpectThrow<std::length_error>("string constructor: n > max_size",
                                 [] { ZvString("abc", 0xFFFFFFFF); });
}

TEST(String, ConstructionFitsTheCapacityToTheLength) {
  // length + 3 - (length mod 4)
  EXPECT_EQ(ZvString("").capacity(), 3U);
  EXPECT_EQ(ZvString("a").capacity(), 3U);
  EXPECT_EQ(ZvString("abc").capacity(), 3U);
  EXPECT_EQ(ZvString("abcd").capacity(), 7U);
  EXPECT_EQ(ZvString(std::string(64, 'x').c_str()).capacity(), 67U);
}

TEST(String, ACopyIsDeep) {
  ZvString original("abc");
  const ZvString copy(original);
  original.append("d");
  EXPECT_EQ(Contents(copy), "abc");
  EXPECT_NE(copy.c_str(), original.c_str());
}

TEST(String, ACopyOfADefaultOneIsADefaultOne) {
  const ZvString original;
  const ZvString copy(original);  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(copy.capacity(), 0U);
  EXPECT_STREQ(copy.c_str(), "");
}

TEST(String, MovingLeavesNoCharactersShared) {
  ZvString source("abc");
  ZvString target(std::move(source));
  EXPECT_EQ(Contents(target), "abc");
  EXPECT_EQ(Contents(source), "");  // NOLINT(bugprone-use-after-move)
  ZvString other("other");
  other = std::move(target);
  EXPECT_EQ(Contents(other), "abc");
}

TEST(String, CopyAssignmentReplacesTheContents) {
  const ZvString source("abcd");
  ZvString target("something longer");
  const uint32_t capacity = target.capacity();
  target = source;
  EXPECT_EQ(Contents(target), "abcd");
  EXPECT_EQ(target.capacity(), capacity);
  ZvString& same = target;
  target = same;
  EXPECT_EQ(Contents(target), "abcd");
  target = "xyz";
  EXPECT_EQ(Contents(target), "xyz");
}

TEST(StringAssign, TakesUpToCountCharactersFromAPosition) {
  const ZvString source("abcdef");
  ZvString target;
  EXPECT_EQ(Contents(target.assign(source, 2, 3)), "cde");
  EXPECT_EQ(Contents(target.assign(source, 2, 100)), "cdef");
  EXPECT_EQ(Contents(target.assign(source, 2, kAll)), "cdef");
  EXPECT_EQ(Contents(target.assign(source, 6, kAll)), "");
}

TEST(StringAssign, APartOfItselfErasesWhatStandsAroundThePart) {
  ZvString string("abcdef");
  const char* const buffer = string.c_str();
  EXPECT_EQ(Contents(string.assign(string, 2, 3)), "cde");
  EXPECT_EQ(string.c_str(), buffer);
  EXPECT_EQ(string.capacity(), 7U);
  EXPECT_EQ(Contents(string.assign(string, 0, kAll)), "cde");
  EXPECT_EQ(Contents(string.assign(string, 3, kAll)), "");
}

TEST(StringAssign, APositionBeyondTheLengthThrows) {
  const ZvString source("abc");
  ZvString target("x");
  ExpectThrow<std::out_of_range>("basic_string::assign pos out of range",
                                 [&] { target.assign(source, 4, 0); });
  EXPECT_EQ(Contents(target), "x");
}

TEST(StringAssign, CharactersAndALengthReplaceTheContents) {
  ZvString string("something");
  EXPECT_EQ(Contents(string.assign("a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(Contents(string.assign("", 0U)), "");
  string.assign("abcdef", 6);
  EXPECT_EQ(Contents(string.assign(string.c_str() + 3, 2)), "de");
}

TEST(StringAssign, GrowsByDoubling) {
  ZvString string;
  EXPECT_EQ(string.assign("abcd", 4).capacity(), 7U);
  EXPECT_EQ(string.assign(std::string(20, 'x').c_str(), 20).capacity(), 31U);
}

TEST(StringAppend, AddsBehindTheContents) {
  ZvString string;
  EXPECT_EQ(Contents(string.append("ab", 2)), "ab");
  EXPECT_EQ(Contents(string.append("c\0d", 3)), std::string("abc\0d", 5));
  EXPECT_EQ(Contents(ZvString("ab").append("cd")), "abcd");
}

TEST(StringAppend, ALengthOfZeroDoesNothing) {
  ZvString string;
  string.append("abc", 0U);
  EXPECT_EQ(string.capacity(), 0U);
  string.append(0, 'x');
  EXPECT_EQ(string.capacity(), 0U);
}

TEST(StringAppend, TakesUpToCountCharactersOfAnotherString) {
  const ZvString source("abcdef");
  ZvString string("-");
  EXPECT_EQ(Contents(string.append(source, 1, 2)), "-bc");
  EXPECT_EQ(Contents(string.append(source, 4, kAll)), "-bcef");
  EXPECT_EQ(Contents(string.append(source, 6, kAll)), "-bcef");
}

TEST(StringAppend, OfItselfReadsTheOldContentsAlsoWhenTheBufferMoves) {
  ZvString string("abc");
  ASSERT_EQ(string.capacity(), 3U);
  EXPECT_EQ(Contents(string.append(string, 0, kAll)), "abcabc");
  EXPECT_EQ(Contents(string.append(string, 1, 1)), "abcabcb");
}

TEST(StringAppend, APositionBeyondTheLengthThrows) {
  const ZvString source("abc");
  ZvString string("x");
  ExpectThrow<std::out_of_range>("basic_string::append pos out of range",
                                 [&] { string.append(source, 4, 0); });
  EXPECT_EQ(Contents(string), "x");
}

TEST(StringAppend, AddsCopiesOfACharacter) {
  EXPECT_EQ(Contents(ZvString("a").append(3, 'x')), "axxx");
}

TEST(StringAppend, AResultThatIsTooLongThrowsAndChangesNothing) {
  ZvString string("a");
  ExpectThrow<std::length_error>("basic_string::append results in string > max_size",
                                 [&] { string.append(0xFFFFFFFE, 'x'); });
  ExpectThrow<std::length_error>("basic_string::append results in string > max_size",
                                 [&] { string.append("bc", 0xFFFFFFFF); });
  EXPECT_EQ(Contents(string), "a");
}

TEST(StringAppend, CapacitiesRun3And7And15And31And63) {
  ZvString string;
  std::string capacities;
  uint32_t last = 0;
  for (uint32_t i = 0; i < 60; ++i) {
    string.append(1, 'x');
    if (string.capacity() != last)
      capacities += std::to_string(string.capacity()) + " ";
    last = string.capacity();
  }
  EXPECT_EQ(capacities, "3 7 15 31 63 ");
}

TEST(StringResize, KeepsTheFirstCharactersAndFillsWithNulBytes) {
  ZvString string("abcdef");
  string.resize(3, true);
  EXPECT_EQ(Contents(string), "abc");
  string.resize(5, true);
  EXPECT_EQ(Contents(string), std::string("abc\0\0", 5));
  string.resize(40, true);
  EXPECT_EQ(Contents(string), "abc" + std::string(37, '\0'));
}

TEST(StringResize, WithoutKeepingAllBytesAreNul) {
  ZvString string("abcdef");
  string.resize(3, false);
  EXPECT_EQ(Contents(string), std::string(3, '\0'));
  string.resize(20, false);
  EXPECT_EQ(Contents(string), std::string(20, '\0'));
}

TEST(StringResize, ADefaultOneToZeroStaysWithoutABuffer) {
  ZvString string;
  string.resize(0, true);
  EXPECT_EQ(string.capacity(), 0U);
  EXPECT_STREQ(string.c_str(), "");
}

TEST(StringResize, GrowsByDoublingFromTheCapacityItHas) {
  ZvString string;
  string.resize(1, true);
  EXPECT_EQ(string.capacity(), 3U);
  string.resize(33, true);
  EXPECT_EQ(string.capacity(), 63U);
  ZvString fitted(std::string(9, 'x').c_str());
  ASSERT_EQ(fitted.capacity(), 11U);
  fitted.resize(12, true);
  EXPECT_EQ(fitted.capacity(), 23U);  // 2 x 11 + 3 - (22 mod 4)
}

TEST(StringResize, TheCapacityNeverFalls) {
  ZvString string(std::string(100, 'x').c_str());
  const uint32_t capacity = string.capacity();
  string.resize(0, false);
  string.assign("a", 1);
  string.replace(0, 1, 0, ' ');
  EXPECT_EQ(string.capacity(), capacity);
}

TEST(StringResize, ALengthOfMinusOneThrows) {
  ZvString string("abc");
  // Two blanks behind the period.
  ExpectThrow<std::length_error>("basic_string::length error.  Resizing out of range",
                                 [&] { string.resize(0xFFFFFFFF, true); });
  EXPECT_EQ(Contents(string), "abc");
}

TEST(StringReplace, PutsCopiesOfACharacterInThePlaceOfAPart) {
  EXPECT_EQ(Contents(ZvString("abcdef").replace(2, 2, 3, 'x')), "abxxxef");
  EXPECT_EQ(Contents(ZvString("abcdef").replace(0, 1, 1, 'x')), "xbcdef");
  EXPECT_EQ(Contents(ZvString("abc").replace(3, 0, 2, 'x')), "abcxx");
  EXPECT_EQ(Contents(ZvString("abc").replace(1, kAll, 2, 'x')), "axx");
}

TEST(StringReplace, ErasesWithNoCopies) {
  EXPECT_EQ(Contents(ZvString("abcdef").replace(1, 2, 0, ' ')), "adef");
  EXPECT_EQ(Contents(ZvString("abcdef").replace(0, kAll, 0, ' ')), "");
  ZvString empty;
  EXPECT_EQ(Contents(empty.replace(0, 5, 0, ' ')), "");
  EXPECT_EQ(empty.capacity(), 0U);
}

TEST(StringReplace, FitsATooSmallBufferToTheNewLength) {
  // new length + 3 - (new length mod 4), not the doubling of the other operations
  ZvString string("abc");
  EXPECT_EQ(string.replace(3, 0, 17, 'x').capacity(), 23U);
  ZvString empty;
  EXPECT_EQ(Contents(empty.replace(0, 0, 5, 'x')), "xxxxx");
  EXPECT_EQ(empty.capacity(), 7U);
}

TEST(StringReplace, APositionBeyondTheLengthThrows) {
  ZvString string("abc");
  ExpectThrow<std::out_of_range>("basic_string::replace pos out of range",
                                 [&] { string.replace(4, 0, 0, 'x'); });
  EXPECT_EQ(Contents(string), "abc");
}

TEST(StringReplace, AResultThatIsTooLongThrows) {
  ZvString string("abc");
  ExpectThrow<std::length_error>("basic_string::replace length error",
                                 [&] { string.replace(0, 1, 0xFFFFFFFE, 'x'); });
  EXPECT_EQ(Contents(string), "abc");
}

TEST(StringFind, YieldsTheFirstIndexAtOrBehindThePosition) {
  const ZvString string("abcabc");
  EXPECT_EQ(string.find('b', 0), 1U);
  EXPECT_EQ(string.find('b', 1), 1U);
  EXPECT_EQ(string.find('b', 2), 4U);
  EXPECT_EQ(string.find('x', 0), 0xFFFFFFFFU);
  EXPECT_EQ(ZvString("a\0b", 3).find('b', 0), 2U);
}

TEST(StringFind, APositionAtOrBehindTheLengthFindsNothing) {
  const ZvString string("abc");
  EXPECT_EQ(string.find('c', 3), 0xFFFFFFFFU);
  EXPECT_EQ(string.find('c', 4), 0xFFFFFFFFU);
  EXPECT_EQ(string.find('\0', 3), 0xFFFFFFFFU);
  EXPECT_EQ(ZvString().find('a', 0), 0xFFFFFFFFU);
}

TEST(StringContains, ABlankInAFieldName) {
  EXPECT_TRUE(ZvString("Field Name").Contains(' '));
  EXPECT_FALSE(ZvString("FieldName").Contains(' '));
  EXPECT_FALSE(ZvString().Contains(' '));
}

TEST(StringCompare, GoesByTheBytesThenByTheLength) {
  const ZvString string("abc");
  EXPECT_EQ(string.compare(0, kAll, "abc", 3), 0);
  EXPECT_LT(string.compare(0, kAll, "abd", 3), 0);
  EXPECT_GT(string.compare(0, kAll, "abb", 3), 0);
  EXPECT_LT(string.compare(0, kAll, "abcd", 4), 0);
  EXPECT_GT(string.compare(0, kAll, "ab", 2), 0);
  EXPECT_GT(string.compare(0, kAll, "aaaaaa", 6), 0);
}

TEST(StringCompare, BytesHaveNoSign) {
  EXPECT_GT(ZvString("\x80").compare(0, kAll, "\x7F", 1), 0);
}

TEST(StringCompare, LooksAtUpToCountCharactersFromThePosition) {
  const ZvString string("abcdef");
  EXPECT_EQ(string.compare(2, 2, "cd", 2), 0);
  EXPECT_EQ(string.compare(4, 100, "ef", 2), 0);
  EXPECT_LT(string.compare(6, kAll, "a", 1), 0);
  EXPECT_EQ(string.compare(6, kAll, "", 0), 0);
  EXPECT_EQ(ZvString().compare(0, kAll, nullptr, 0), 0);
}

TEST(StringCompare, APositionBeyondTheLengthThrows) {
  ExpectThrow<std::out_of_range>("string compare: pos > len",
                                 [] { ZvString("abc").compare(4, 0, "", 0); });
}

}  // namespace
