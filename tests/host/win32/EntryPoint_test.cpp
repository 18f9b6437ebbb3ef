// What leaves the entry point on Windows, and how it bears a foreign caller's stack.

#include <windows.h>

#include <gtest/gtest.h>

#include <csetjmp>
#include <cstring>

#include "host/HostGlobals.h"
#include "host/PlugInMain.h"

namespace vm {
namespace {

// A host that gets the structured exception: the first handler in the row takes it and leaves the
// call.
jmp_buf gHostFrame;
DWORD gCode = 0;
DWORD gFlags = 0;
DWORD gParameters = 0;
ULONG_PTR gFirstParameter = 0;
ZVHost* gHostObjectSeen = nullptr;

LONG CALLBACK TakeException(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode != kUnhandledExceptionCode)
    return EXCEPTION_CONTINUE_SEARCH;
  gCode = record.ExceptionCode;
  gFlags = record.ExceptionFlags;
  gParameters = record.NumberParameters;
  gFirstParameter = record.NumberParameters > 0 ? record.ExceptionInformation[0] : 0;
  gHostObjectSeen = gHost;
  longjmp(gHostFrame, 1);
}

int16_t VM_HOST_CALL Refuse() {
  throw 1;
}
uint8_t VM_HOST_CALL Abort() {
  return 0;
}
void VM_HOST_CALL Progress(int32_t, int32_t) {}
OSErr VM_HOST_CALL Display(const PSPixelMap*, const VRect*, int32_t, int32_t, void*) {
  return 0;
}

PIWriteDescriptor VM_HOST_CALL ThrowingOpen() {
  throw 1;
}

TEST(EntryPoint, AnExceptionLeavesItAsOneFixedStructuredExceptionAfterOurFramesAreUnwound) {
  // The exception comes from a callback that Finish makes.
  FilterRecord record{};
  WriteDescriptorProcs procs{};
  procs.openWriteDescriptorProc = &ThrowingOpen;
  PIDescriptorParameters parameters{};
  parameters.writeDescriptorProcs = &procs;
  record.descriptorParameters = &parameters;
  gScriptState.TakeOver(new ZvMemoryStream);
  int16_t result = 4711;

  void* const handler = AddVectoredExceptionHandler(1, &TakeException);
  gCode = 0;
  if (setjmp(gHostFrame) == 0) {
    PlugInMain(filterSelectorFinish, &record, nullptr, &result);
    ADD_FAILURE() << "the entry point returned";
  }
  RemoveVectoredExceptionHandler(handler);
  gScriptState.Clear();

  EXPECT_EQ(gCode, 0xE0564D01u);
  EXPECT_EQ(gFlags & EXCEPTION_NONCONTINUABLE, static_cast<DWORD>(EXCEPTION_NONCONTINUABLE));
  EXPECT_EQ(gParameters, 1u);
  EXPECT_EQ(gFirstParameter, 0u) << "no exception of the framework";
  EXPECT_EQ(gHostObjectSeen, nullptr) << "the host object was still alive";
  EXPECT_EQ(result, 4711);
}

TEST(EntryPoint, ACallerWithAStackAlignedTo4BytesIsServed) {
  FilterRecord record{};
  record.imageMode = plugInModeLabColor;
  record.abortProc = &Abort;
  record.progressProc = &Progress;
  record.displayPixels = &Display;
  record.advanceState = &Refuse;
  for (uint32_t offset = 0; offset < 16; offset += 4) {
    int16_t result = 4711;
    // Moves the stack pointer to each of the four places that a caller may have it at.
    asm volatile(
        "pushl %%ebx\n\t"
        "movl %%esp, %%ebx\n\t"
        "andl $-16, %%esp\n\t"
        "subl %[offset], %%esp\n\t"
        "pushl %[result]\n\t"
        "pushl $0\n\t"
        "pushl %[record]\n\t"
        "pushl $3\n\t"
        "call _PlugInMain\n\t"
        "movl %%ebx, %%esp\n\t"
        "popl %%ebx\n\t"
        :
        : [offset] "S"(offset), [record] "D"(&record), [result] "a"(&result)
        : "ecx", "edx", "memory", "cc");
    EXPECT_EQ(result, userCanceledErr) << "offset " << offset;
  }
}

}  // namespace
}  // namespace vm
