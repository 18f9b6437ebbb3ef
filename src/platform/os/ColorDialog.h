// The platform's dialog for choosing a colour. Colours are numbers with 8 bits a channel in the low
// three bytes, red lowest.
#pragma once

#include <array>
#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

// Opens on `start`. True when the user pressed OK; only then `out` is set. `customColors` are the
// user's own, shown and changed by the dialog.
bool RunColorDialog(WindowHandle owner, uint32_t start, std::array<uint32_t, 16>& customColors,
                    uint32_t& out);

}  // namespace os
