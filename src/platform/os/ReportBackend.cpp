// Connects the reports of the foundation to this system's box and debugger.

#include "foundation/ReportHooks.h"
#include "platform/os/Box.h"
#include "platform/os/Debugger.h"

// Nothing refers to this object file by itself: whoever links the library asks the linker for this
// name (see the CMakeLists.txt of src/platform). The priority puts it before the static
// initialisers of all other code, whose reports then arrive where they belong.
extern "C" __attribute__((constructor(101))) void vm_install_report_backend();

extern "C" void vm_install_report_backend() {
  vm::ReportHooks& hooks = vm::CurrentReportHooks();
  hooks.showBox = os::ShowBox;
  hooks.debuggerLine = os::WriteDebuggerLine;
  hooks.debugBreak = os::BreakIntoDebugger;
}
