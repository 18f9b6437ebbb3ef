#pragma once

#include <cstdint>
#include <initializer_list>

#include "foundation/ZvString.h"

// Building blocks that assertions and exceptions share when they report.
namespace vm {

// A number in decimal.
ZvString DecimalText(int32_t number);

ZvString Joined(std::initializer_list<const char*> pieces);

// Shows the box and breaks into the debugger when the answer is Cancel.
void ShowReportBox(const ZvString& text, const char* title);

}  // namespace vm
