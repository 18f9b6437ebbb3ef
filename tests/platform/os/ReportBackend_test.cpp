#include <gtest/gtest.h>

#include "foundation/CP_DebugAssert.h"
#include "platform/os/Box.h"
#include "platform/os/Debugger.h"
#include "support/UnexpectedReports.h"

namespace {

// Nothing in a program needs to name the backend for its reports to reach the system.
TEST(ReportBackend, ReportsReachTheSystemsBoxAndDebuggerFromTheStart) {
  EXPECT_EQ(vm::HooksAtStart().showBox, &os::ShowBox);
  EXPECT_EQ(vm::HooksAtStart().debuggerLine, &os::WriteDebuggerLine);
  EXPECT_EQ(vm::HooksAtStart().debugBreak, &os::BreakIntoDebugger);
}

// The hooks as this file's static initialisers found them.
const bool kInstalledBeforeStaticInitialisers = vm::CurrentReportHooks().showBox == &os::ShowBox;

TEST(ReportBackend, IsInForceBeforeOtherStaticInitialisersRun) {
  EXPECT_TRUE(kInstalledBeforeStaticInitialisers);
}

}  // namespace
