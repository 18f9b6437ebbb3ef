#include "platform/os/Process.h"

#include <spawn.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "platform/os/posix/NativePath.h"
#include "platform/os/posix/ProcessScript.h"

namespace os {
namespace posix {
namespace {

constinit const ProcessScript* gCurrent = nullptr;

}  // namespace

ProcessScript::ProcessScript(Starter inStarter)
    : starter(std::move(inStarter)), mPrevious(gCurrent) {
  gCurrent = this;
}

ProcessScript::~ProcessScript() {
  gCurrent = mPrevious;
}

const ProcessScript* ProcessScript::Current() {
  return gCurrent;
}

}  // namespace posix

bool StartProcess(const char* programPath, const char* directory) {
  if (const posix::ProcessScript* const script = posix::ProcessScript::Current()) {
    return script->starter(programPath, directory);
  }
  std::string program = posix::NativePath(programPath);
  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0)
    return false;
  char* const arguments[] = {program.data(), nullptr};
  pid_t process;
  const bool started =
      posix_spawn_file_actions_addchdir_np(&actions, posix::NativePath(directory).c_str()) == 0 &&
      posix_spawn(&process, program.c_str(), &actions, nullptr, arguments, environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  return started;
}

}  // namespace os
