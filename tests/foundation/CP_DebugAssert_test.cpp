#include "foundation/CP_DebugAssert.h"

#include <gtest/gtest.h>

#include "foundation/ReportHooks.h"
#include "support/ReportRecorder.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

TEST(DebugAssert, ShowsConditionFileAndLinePartedByCarriageReturns) {
  ReportRecorder reports;
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  ASSERT_EQ(reports.Boxes().size(), 1U);
  EXPECT_EQ(reports.Boxes()[0].text, "Assertion thrown\rError: IsOpen()\rFile: CP_File\rLine:256");
  EXPECT_EQ(reports.Boxes()[0].title, "CP_Debug");
}

TEST(DebugAssert, BoxHasOkAndCancelButtonsAndTheErrorIcon) {
  constexpr uint32_t kOkCancelButtons = 0x1;
  constexpr uint32_t kErrorIcon = 0x10;
  ReportRecorder reports;
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  EXPECT_EQ(reports.Boxes().at(0).style, kOkCancelButtons | kErrorIcon);
}

TEST(DebugAssert, TheDebuggerGetsOneLineWithoutALineBreak) {
  ReportRecorder reports;
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(256) : IsOpen()"}));
}

TEST(DebugAssert, TheDebuggerHearsOfItBeforeTheUser) {
  static std::string order;
  order.clear();
  const vm::ReportHooks saved = vm::CurrentReportHooks();
  vm::CurrentReportHooks() = {[](const char*, const char*, uint32_t) {
                                order += "box,";
                                return vm::kReportAnswerCancel;
                              },
                              [](const char*) { order += "line,"; }, [] { order += "break,"; },
                              [] { order += "menus,"; }};
  CP_DebugAssert("f", 1, "c");
  vm::CurrentReportHooks() = saved;
  EXPECT_EQ(order, "line,box,break,");
}

TEST(DebugAssert, OkGoesOnBehindTheCheckWithoutABreak) {
  ReportRecorder reports;
  reports.Answer(vm::kReportAnswerOk);
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  EXPECT_EQ(reports.Breaks(), 0);
}

TEST(DebugAssert, CancelBreaksIntoTheDebuggerAndThenGoesOnBehindTheCheck) {
  ReportRecorder reports;
  reports.Answer(2);
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  EXPECT_EQ(reports.Breaks(), 1);
}

TEST(DebugAssert, DoesNotUpdateTheMenus) {
  ReportRecorder reports;
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  EXPECT_EQ(reports.MenuUpdates(), 0);
}

TEST(DebugAssert, LinesHave16BitsWithASign) {
  ReportRecorder reports;
  CP_DebugAssert("f", 32767, "c");
  CP_DebugAssert("f", static_cast<int16_t>(32768), "c");
  EXPECT_EQ(reports.Lines(), Reports({"f(32767) : c", "f(-32768) : c"}));
  EXPECT_EQ(reports.Boxes().at(1).text, "Assertion thrown\rError: c\rFile: f\rLine:-32768");
}

TEST(DebugAssert, LongTextsAreNotCut) {
  const std::string condition(5000, 'c');
  ReportRecorder reports;
  CP_DebugAssert("f", 1, condition.c_str());
  EXPECT_EQ(reports.Lines(), Reports({"f(1) : " + condition}));
  EXPECT_EQ(reports.Boxes().at(0).text,
            "Assertion thrown\rError: " + condition + "\rFile: f\rLine:1");
}

TEST(Check, SaysWhetherItHeldAndReportsOnlyIfNot) {
  ReportRecorder reports;
  EXPECT_TRUE(CP_Check(true, "f", 1, "good"));
  EXPECT_TRUE(reports.Empty());
  EXPECT_FALSE(CP_Check(false, "f", 2, "bad"));
  EXPECT_EQ(reports.Lines(), Reports({"f(2) : bad"}));
}

}  // namespace
