#include "foundation/CP_DebugAssert.h"

#include "foundation/ReportHooks.h"
#include "foundation/ReportText.h"

void CP_DebugAssert(const char* file, int16_t line, const char* condition) {
  const ZvString number = vm::DecimalText(line);
  const ZvString debuggerLine = vm::Joined({file, "(", number.c_str(), ") : ", condition});
  vm::CurrentReportHooks().debuggerLine(debuggerLine.c_str());
  vm::ShowReportBox(vm::Joined({"Assertion thrown", "\rError: ", condition, "\rFile: ", file,
                                "\rLine:", number.c_str()}),
                    "CP_Debug");
}
