#pragma once

#include <cstdint>

// The places where reporting (assertions and exceptions) leaves this library. The operating system
// backend fills in the first three, the menu code the last one. Until then a report goes to
// standard error and counts as answered with OK.
namespace vm {

// Style of every report box: OK and Cancel buttons with the error icon.
inline constexpr uint32_t kReportBoxStyle = 17;

inline constexpr int32_t kReportAnswerOk = 1;
inline constexpr int32_t kReportAnswerCancel = 2;

struct ReportHooks {
  // Shows a modal box that has no owner window and says which button was chosen.
  int32_t (*showBox)(const char* text, const char* title, uint32_t style);
  // Hands a line, which has no line break, to an attached debugger.
  void (*debuggerLine)(const char* line);
  // Stops in the debugger. May come back.
  void (*debugBreak)();
  // Runs after an exception was reported.
  void (*updateMenus)();
};

// The hooks in force. They are usable from static initialisers on; no pointer in them is ever null
// unless somebody stores one.
ReportHooks& CurrentReportHooks();

}  // namespace vm
