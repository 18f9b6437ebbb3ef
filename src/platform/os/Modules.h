#pragma once

#include <cstdint>

namespace os {

// Writes the path of the file that a loaded module came from, NUL terminated and cut to `size` - 1
// characters (`size` is at least 1). A null `module` means the program. Yields the number of
// characters written; 0 on failure.
//
// `module` is the system's handle of the module; on systems other than Windows any address inside
// the module.
uint32_t ModuleFileName(void* module, char* buffer, uint32_t size);

}  // namespace os
