#include <windows.h>

#include "foundation/CP_Exceptions.h"
#include "host/PlugInMain.h"

namespace {

// The platform error code of an exception that ended the selector, or nothing.
struct Outcome {
  bool failed = false;
  ULONG_PTR platformError = 0;
};

// A function of its own, so that every object of ours is gone before the host gets to see the
// exception.
__attribute__((noinline)) Outcome RunGuarded(int16_t selector, FilterRecord* filterRecord,
                                             int16_t* result) {
  try {
    vm::RunSelector(selector, filterRecord, result);
    return {};
  } catch (const CP_BaseException& exception) {
    return {true, static_cast<ULONG_PTR>(exception.GetPlatformError())};
  } catch (...) {
    return {true, 0};
  }
}

}  // namespace

// Hosts call with a stack that is aligned to 4 bytes only.
__attribute__((force_align_arg_pointer)) void __cdecl PlugInMain(int16_t selector,
                                                                 FilterRecord* filterRecord,
                                                                 intptr_t* /*data*/,
                                                                 int16_t* result) {
  const Outcome outcome = RunGuarded(selector, filterRecord, result);
  if (outcome.failed)
    RaiseException(vm::kUnhandledExceptionCode, EXCEPTION_NONCONTINUABLE, 1,
                   &outcome.platformError);
}

extern "C" __attribute__((force_align_arg_pointer)) BOOL WINAPI DllMain(HINSTANCE module,
                                                                        DWORD reason,
                                                                        LPVOID /*reserved*/) {
  return vm::NoteModule(module, reason);
}
