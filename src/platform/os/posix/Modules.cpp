#include "platform/os/Modules.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <utility>

#include "platform/os/posix/ModuleScript.h"
#include "platform/os/posix/NativePath.h"

namespace os {
namespace posix {
namespace {

constinit const ModuleScript* gCurrent = nullptr;

}  // namespace

ModuleScript::ModuleScript(std::string name) : fileName(std::move(name)), mPrevious(gCurrent) {
  gCurrent = this;
}

ModuleScript::~ModuleScript() {
  gCurrent = mPrevious;
}

const ModuleScript* ModuleScript::Current() {
  return gCurrent;
}

}  // namespace posix

namespace {

std::string NativeModulePath(void* module) {
  Dl_info info{};
  // The program itself is listed under the name it was called by, which may be relative.
  if (module != nullptr && dladdr(module, &info) != 0 && info.dli_fname != nullptr &&
      info.dli_fname[0] == '/') {
    return info.dli_fname;
  }
  char program[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", program, sizeof program);
  return length > 0 ? std::string(program, static_cast<size_t>(length)) : std::string();
}

}  // namespace

uint32_t ModuleFileName(void* module, char* buffer, uint32_t size) {
  const posix::ModuleScript* const script = posix::ModuleScript::Current();
  const std::string path =
      script != nullptr ? script->fileName : posix::FrameworkPath(NativeModulePath(module));
  const size_t kept = std::min<size_t>(path.size(), size - 1);
  std::memcpy(buffer, path.data(), kept);
  buffer[kept] = '\0';
  return static_cast<uint32_t>(kept);
}

}  // namespace os
