#include "platform/os/Debugger.h"

#include <windows.h>

namespace os {

void WriteDebuggerLine(const char* line) {
  OutputDebugStringA(line);
}

void BreakIntoDebugger() {
  DebugBreak();
}

}  // namespace os
