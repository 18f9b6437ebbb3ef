#include "foundation/ReportHooks.h"

#include <cstdio>

namespace vm {
namespace {

int32_t PrintBox(const char* text, const char* title, uint32_t) {
  std::fprintf(stderr, "[%s] ", title);
  for (const char* c = text; *c != '\0'; ++c)
    std::fputc(*c == '\r' ? '\n' : *c, stderr);
  std::fputc('\n', stderr);
  return kReportAnswerOk;
}

void PrintLine(const char* line) {
  std::fprintf(stderr, "%s\n", line);
}

void DoNothing() {}

constinit ReportHooks gReportHooks{PrintBox, PrintLine, DoNothing, DoNothing};

}  // namespace

ReportHooks& CurrentReportHooks() {
  return gReportHooks;
}

}  // namespace vm
