#include "platform/os/Process.h"

#include <windows.h>

namespace os {

bool StartProcess(const char* programPath, const char* directory) {
  // REQUIRED: all of it zero, the size field too.
  STARTUPINFOA startup{};
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessA(programPath, nullptr, nullptr, nullptr, FALSE, 0, nullptr,
                                      directory, &startup, &process);
  static_cast<void>(GetLastError());
  // REQUIRED: the process and thread handles stay open; nobody keeps them.
  return started != FALSE;
}

}  // namespace os
