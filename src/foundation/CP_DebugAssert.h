#pragma once

#include <cstdint>

// Reports a failed check: a line for the debugger, `file(line) : condition`, and a modal box. Comes
// back whatever the user answers (Cancel breaks into the debugger first), so the code behind a
// check runs on and has to protect itself.
//
// `file` and `line` are the fixed place that identifies the check to whoever reads the report; they
// are given at each check and don't follow the layout of the source.
void CP_DebugAssert(const char* file, int16_t line, const char* condition);

// Reports unless `ok`; yields `ok`.
inline bool CP_Check(bool ok, const char* file, int16_t line, const char* condition) {
  if (!ok) [[unlikely]] {
    CP_DebugAssert(file, line, condition);
  }
  return ok;
}
