#include "foundation/ReportText.h"

#include <cstdio>

#include "foundation/ReportHooks.h"

namespace vm {

ZvString DecimalText(int32_t number) {
  char digits[12];
  std::snprintf(digits, sizeof digits, "%d", static_cast<int>(number));
  return ZvString(digits);
}

ZvString Joined(std::initializer_list<const char*> pieces) {
  ZvString text;
  for (const char* piece : pieces)
    text.append(piece);
  return text;
}

void ShowReportBox(const ZvString& text, const char* title) {
  const ReportHooks& hooks = CurrentReportHooks();
  if (hooks.showBox(text.c_str(), title, kReportBoxStyle) == kReportAnswerCancel) {
    hooks.debugBreak();
  }
}

}  // namespace vm
