#include "foundation/CP_Exceptions.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "support/ReportRecorder.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

static_assert(std::is_base_of_v<CP_BaseException, CP_RuntimeException>);
static_assert(std::is_base_of_v<CP_RuntimeException, CP_MemoryException>);
static_assert(std::is_base_of_v<CP_RuntimeException, CP_PlfrmErrorException>);
static_assert(std::has_virtual_destructor_v<CP_BaseException>);

TEST(BaseException, ATextOf300CharactersIsStoredAsItsFirst254) {
  const std::string text = std::string(253, 'a') + "b" + std::string(46, 'c');
  const CP_BaseException exception(text.c_str(), "f", 1);
  EXPECT_EQ(exception.GetText(), std::string(253, 'a') + "b");
}

TEST(BaseException, ATextOf254CharactersIsStoredWhole) {
  const std::string text(254, 'a');
  EXPECT_EQ(CP_BaseException(text.c_str(), "f", 1).GetText(), text);
}

TEST(BaseException, ANullTextIsEmpty) {
  EXPECT_STREQ(CP_BaseException(static_cast<const char*>(nullptr), "f", 1).GetText(), "");
}

TEST(BaseException, OneMadeFromATextHasNoErrorCode) {
  EXPECT_EQ(CP_BaseException("text", "f", 1).GetPlatformError(), 0);
}

TEST(BaseException, OneMadeFromAnErrorCodeHasNoText) {
  const CP_BaseException exception(-36, "f", 1);
  EXPECT_EQ(exception.GetPlatformError(), -36);
  EXPECT_STREQ(exception.GetText(), "");
}

TEST(BaseException, ACopyKeepsTextAndCodeAndPlace) {
  const CP_MemoryException original("text", "Some_File", 70000);
  const CP_MemoryException copy = original;  // NOLINT(performance-unnecessary-copy-initialization)
  ReportRecorder reports;
  copy.Report();
  EXPECT_STREQ(copy.GetText(), "text");
  EXPECT_EQ(reports.Lines(), Reports({"Some_File(70000) : text"}));
  EXPECT_EQ(CP_PlfrmErrorException(CP_PlfrmErrorException(5, "f", 1)).GetPlatformError(), 5);
}

TEST(BaseException, ReportShowsFileLineAndTextPartedByCarriageReturns) {
  ReportRecorder reports;
  CP_RuntimeException("it broke", "Some_File", 12).Report();
  ASSERT_EQ(reports.Boxes().size(), 1U);
  EXPECT_EQ(reports.Boxes()[0],
            (vm::ShownBox{"Exception thrown\rFile: Some_File\rLine:12\rException: it broke",
                          "CP_Exception", 17}));
  EXPECT_EQ(reports.Lines(), Reports({"Some_File(12) : it broke"}));
}

TEST(BaseException, ReportUpdatesTheMenusAfterwards) {
  ReportRecorder reports;
  CP_RuntimeException("it broke", "f", 1).Report();
  EXPECT_EQ(reports.MenuUpdates(), 1);
  EXPECT_EQ(reports.Breaks(), 0);
}

TEST(BaseException, CancellingTheReportBreaksIntoTheDebuggerAndStillUpdatesTheMenus) {
  ReportRecorder reports;
  reports.Answer(vm::kReportAnswerCancel);
  CP_RuntimeException("it broke", "f", 1).Report();
  EXPECT_EQ(reports.Breaks(), 1);
  EXPECT_EQ(reports.MenuUpdates(), 1);
}

TEST(BaseException, TheLineOfAReportHas32Bits) {
  ReportRecorder reports;
  CP_RuntimeException("t", "f", 2147483647).Report();
  CP_RuntimeException("t", "f", -2147483647 - 1).Report();
  EXPECT_EQ(reports.Lines(), Reports({"f(2147483647) : t", "f(-2147483648) : t"}));
}

// REQUIRED: the code appears nowhere; who wants it asks GetPlatformError.
TEST(PlatformErrorException, ReportEndsInAnEmptyExceptionText) {
  ReportRecorder reports;
  CP_PlfrmErrorException(-36, "CP_File", 238).Report();
  ASSERT_EQ(reports.Boxes().size(), 1U);
  EXPECT_EQ(reports.Boxes()[0].text, "Exception thrown\rFile: CP_File\rLine:238\rException: ");
  EXPECT_EQ(reports.Boxes()[0].title, "CP_Exception");
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(238) : "}));
  EXPECT_EQ(reports.MenuUpdates(), 1);
}

TEST(ThrowIfNull, DoesNothingForAPointer) {
  int something = 0;
  EXPECT_NO_THROW(CP_ThrowIfNull(&something, "f", 1));
}

TEST(ThrowIfNull, ThrowsAMemoryExceptionThatNamesThePlace) {
  ReportRecorder reports;
  try {
    CP_ThrowIfNull(nullptr, "f", 70000);
    FAIL() << "nothing thrown";
  } catch (const CP_MemoryException& exception) {
    EXPECT_STREQ(exception.GetText(), "NULL Pointer");
    EXPECT_EQ(exception.GetPlatformError(), 0);
    EXPECT_TRUE(reports.Empty());
    exception.Report();
  }
  EXPECT_EQ(reports.Lines(), Reports({"f(70000) : NULL Pointer"}));
}

TEST(ThrowIfError, DoesNothingForZero) {
  EXPECT_NO_THROW(CP_ThrowIfError(0, "f", 1));
}

TEST(ThrowIfError, ThrowsAPlatformErrorExceptionWithTheCodeAndNoText) {
  try {
    CP_ThrowIfError(131, "f", 1);
    FAIL() << "nothing thrown";
  } catch (const CP_PlfrmErrorException& exception) {
    EXPECT_EQ(exception.GetPlatformError(), 131);
    EXPECT_STREQ(exception.GetText(), "");
  }
}

TEST(ThrowIfError, TheExceptionIsCaughtByEachOfItsBases) {
  EXPECT_THROW(CP_ThrowIfError(-36, "f", 1), CP_RuntimeException);
  EXPECT_THROW(CP_ThrowIfError(-36, "f", 1), CP_BaseException);
}

}  // namespace
