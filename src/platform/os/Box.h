#pragma once

#include <cstdint>

namespace os {

// Shows a modal message box without an owner window and says which button ended it. `style` and the
// answer have the numbers of the Windows message box: style 17 is OK and Cancel with the error
// icon, answer 1 is OK, 2 is Cancel. In `text` a carriage return starts a new line.
int32_t ShowBox(const char* text, const char* title, uint32_t style);

}  // namespace os
