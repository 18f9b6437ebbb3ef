#pragma once

#include <cstdint>

#include "host/FilterRecord.h"

// What the host calls. The 'wx86' property of the plug-in's resources names the entry point.
//
// The entry point catches nothing: an exception that the filter doesn't handle leaves it once the
// host object and everything else of ours is unwound. On Windows this compiler's exceptions can't
// cross a foreign caller, so there it leaves as a structured exception,
// `vm::kUnhandledExceptionCode`, which a host may handle like any other. `data`, a word that the
// host keeps for the plug-in, is not used.
extern "C" void VM_HOST_CALL PlugInMain(int16_t selector, FilterRecord* filterRecord,
                                        intptr_t* data, int16_t* result);

namespace vm {

// The code of the structured exception: not continuable, with one parameter, the platform error
// code that the exception carried or 0. The upper bits mark an error that an application defines;
// the rest reads "VM", 1.
inline constexpr uint32_t kUnhandledExceptionCode = 0xE0564D01;

// Serves one selector with a host object of its own. Exceptions pass.
void RunSelector(int16_t selector, FilterRecord* filterRecord, int16_t* result);

// Why the system tells a library about itself; the numbers are those of Windows.
inline constexpr uint32_t kModuleDetached = 0;
inline constexpr uint32_t kModuleAttached = 1;

// Keeps `gModule`. Gives what the system is to be answered.
int32_t NoteModule(void* module, uint32_t reason);

}  // namespace vm
