#pragma once

namespace os {

// Hands a line to an attached debugger.
void WriteDebuggerLine(const char* line);

// Stops in an attached debugger; without one the system ends the process. A debugger may let the
// program go on.
void BreakIntoDebugger();

}  // namespace os
