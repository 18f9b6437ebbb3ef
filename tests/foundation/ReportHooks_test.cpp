#include "foundation/ReportHooks.h"

#include <gtest/gtest.h>

#include "foundation/CP_DebugAssert.h"
#include "support/ReportRecorder.h"
#include "support/UnexpectedReports.h"

namespace {

// This program links no operating system backend.
TEST(ReportHooks, WithoutABackendABoxGoesToStandardErrorAndIsAnsweredWithOk) {
  testing::internal::CaptureStderr();
  const int32_t answer = vm::HooksAtStart().showBox("one\rtwo", "Title", vm::kReportBoxStyle);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[Title] one\ntwo\n");
  EXPECT_EQ(answer, vm::kReportAnswerOk);
}

TEST(ReportHooks, WithoutABackendADebuggerLineGoesToStandardError) {
  testing::internal::CaptureStderr();
  vm::HooksAtStart().debuggerLine("line");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "line\n");
}

TEST(ReportHooks, WithoutABackendNothingBreaksAndNoMenusAreUpdated) {
  vm::HooksAtStart().debugBreak();
  vm::HooksAtStart().updateMenus();
  SUCCEED() << "both came back";
}

// Handles and strings in static storage may report while the program starts.
const bool kReportedDuringStart = [] {
  const vm::ReportHooks saved = vm::CurrentReportHooks();
  static int32_t lines;
  vm::CurrentReportHooks().showBox = [](const char*, const char*, uint32_t) {
    return vm::kReportAnswerOk;
  };
  vm::CurrentReportHooks().debuggerLine = [](const char*) { ++lines; };
  CP_DebugAssert("f", 1, "c");
  vm::CurrentReportHooks() = saved;
  return lines == 1;
}();

TEST(ReportHooks, AreReadyBeforeMain) {
  EXPECT_TRUE(kReportedDuringStart);
}

TEST(ReportRecorder, TheYoungestOneIsInForceAndTheOthersComeBack) {
  vm::ReportRecorder outer;
  CP_DebugAssert("f", 1, "c");
  {
    vm::ReportRecorder inner;
    CP_DebugAssert("f", 2, "c");
    EXPECT_EQ(inner.Lines(), vm::Reports({"f(2) : c"}));
  }
  CP_DebugAssert("f", 3, "c");
  EXPECT_EQ(outer.Lines(), vm::Reports({"f(1) : c", "f(3) : c"}));
}

}  // namespace
