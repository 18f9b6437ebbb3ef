#include "platform/os/Box.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "foundation/CP_DebugAssert.h"
#include "foundation/ReportHooks.h"
#include "platform/os/Debugger.h"
#include "platform/os/posix/BoxScript.h"
#include "support/UnexpectedReports.h"

namespace {

using os::posix::BoxScript;

TEST(BoxScript, RecordsWhatWasShownAndGivesTheAnswersInOrderThenOk) {
  BoxScript script;
  script.answers = {2, 7};
  EXPECT_EQ(os::ShowBox("text", "title", 17), 2);
  EXPECT_EQ(os::ShowBox("other", "title", 0), 7);
  EXPECT_EQ(os::ShowBox("third", "title", 0), 1);
  ASSERT_EQ(script.boxes.size(), 3U);
  EXPECT_EQ(script.boxes[0].text, "text");
  EXPECT_EQ(script.boxes[0].title, "title");
  EXPECT_EQ(script.boxes[0].style, 17U);
  EXPECT_EQ(script.boxes[2].text, "third");
}

TEST(BoxScript, TheYoungestOneIsInForce) {
  BoxScript outer;
  {
    BoxScript inner;
    os::WriteDebuggerLine("inner");
    EXPECT_EQ(inner.debuggerLines, std::vector<std::string>({"inner"}));
  }
  os::WriteDebuggerLine("outer");
  EXPECT_EQ(outer.debuggerLines, std::vector<std::string>({"outer"}));
  EXPECT_EQ(BoxScript::Current(), &outer);
}

TEST(BoxScript, AnAssertionRunsThroughTheBackendFromEndToEnd) {
  const vm::ReportHooks saved = vm::CurrentReportHooks();
  vm::CurrentReportHooks() = vm::HooksAtStart();
  BoxScript script;
  script.answers = {2};
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  vm::CurrentReportHooks() = saved;
  EXPECT_EQ(script.debuggerLines, std::vector<std::string>({"CP_File(256) : IsOpen()"}));
  ASSERT_EQ(script.boxes.size(), 1U);
  EXPECT_EQ(script.boxes[0].title, "CP_Debug");
  EXPECT_EQ(script.boxes[0].style, 17U);
  EXPECT_EQ(script.breaks, 1);
}

TEST(Box, WithoutAScriptGoesToStandardErrorAndIsAnsweredWithOk) {
  testing::internal::CaptureStderr();
  const int32_t answer = os::ShowBox("one\rtwo", "Title", 17);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[Title] one\ntwo\n");
  EXPECT_EQ(answer, 1);
}

TEST(Debugger, WithoutAScriptALineGoesToStandardError) {
  testing::internal::CaptureStderr();
  os::WriteDebuggerLine("line");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "line\n");
}

volatile std::sig_atomic_t gTraps = 0;

TEST(Debugger, WithoutAScriptABreakIsATrap) {
  gTraps = 0;
  const auto previous = std::signal(SIGTRAP, [](int) { gTraps = gTraps + 1; });
  os::BreakIntoDebugger();
  std::signal(SIGTRAP, previous);
  EXPECT_EQ(gTraps, 1);
}

}  // namespace
