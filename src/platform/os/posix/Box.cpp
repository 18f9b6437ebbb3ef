#include "platform/os/Box.h"

#include <csignal>
#include <cstdio>

#include "platform/os/Debugger.h"
#include "platform/os/posix/BoxScript.h"

namespace os {
namespace posix {
namespace {

constinit BoxScript* gCurrent = nullptr;

}  // namespace

BoxScript::BoxScript() : mPrevious(gCurrent) {
  gCurrent = this;
}

BoxScript::~BoxScript() {
  gCurrent = mPrevious;
}

BoxScript* BoxScript::Current() {
  return gCurrent;
}

}  // namespace posix

int32_t ShowBox(const char* text, const char* title, uint32_t style) {
  constexpr int32_t kOk = 1;
  posix::BoxScript* const script = posix::BoxScript::Current();
  if (script == nullptr) {
    std::fprintf(stderr, "[%s] ", title);
    for (const char* c = text; *c != '\0'; ++c)
      std::fputc(*c == '\r' ? '\n' : *c, stderr);
    std::fputc('\n', stderr);
    return kOk;
  }
  script->boxes.push_back({text, title, style});
  if (script->answers.empty())
    return kOk;
  const int32_t answer = script->answers.front();
  script->answers.pop_front();
  return answer;
}

void WriteDebuggerLine(const char* line) {
  if (posix::BoxScript* const script = posix::BoxScript::Current()) {
    script->debuggerLines.emplace_back(line);
  } else {
    std::fprintf(stderr, "%s\n", line);
  }
}

void BreakIntoDebugger() {
  if (posix::BoxScript* const script = posix::BoxScript::Current()) {
    ++script->breaks;
  } else {
    std::raise(SIGTRAP);
  }
}

}  // namespace os
