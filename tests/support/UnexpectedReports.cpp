#include "support/UnexpectedReports.h"

#include <gtest/gtest.h>

namespace vm {
namespace {

ReportHooks gHooksAtStart;

int32_t FailForBox(const char* text, const char* title, uint32_t) {
  ADD_FAILURE() << "Unexpected box \"" << title << "\": " << text;
  return kReportAnswerOk;
}

void FailForLine(const char* line) {
  ADD_FAILURE() << "Unexpected report: " << line;
}

void FailForBreak() {
  ADD_FAILURE() << "Unexpected break into the debugger";
}

void DoNothing() {}

}  // namespace

const ReportHooks& HooksAtStart() {
  return gHooksAtStart;
}

void FailOnUnexpectedReports() {
  gHooksAtStart = CurrentReportHooks();
  CurrentReportHooks() = {FailForBox, FailForLine, FailForBreak, DoNothing};
}

}  // namespace vm
