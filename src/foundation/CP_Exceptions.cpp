#include "foundation/CP_Exceptions.h"

#include <cstring>

#include "foundation/ReportHooks.h"
#include "foundation/ReportText.h"

namespace {

constexpr size_t kMaxTextLength = 254;

void ReportException(const char* text, const char* file, int32_t line) {
  const ZvString number = vm::DecimalText(line);
  const ZvString debuggerLine = vm::Joined({file, "(", number.c_str(), ") : ", text});
  vm::CurrentReportHooks().debuggerLine(debuggerLine.c_str());
  vm::ShowReportBox(vm::Joined({"Exception thrown", "\rFile: ", file, "\rLine:", number.c_str(),
                                "\rException: ", text}),
                    "CP_Exception");
  vm::CurrentReportHooks().updateMenus();
}

}  // namespace

CP_BaseException::CP_BaseException(const char* text, const char* file, int32_t line)
    : fText{}, fFile(file), fLine(line), fPlatformError(0) {
  if (text != nullptr)
    std::memcpy(fText, text, strnlen(text, kMaxTextLength));
}

CP_BaseException::CP_BaseException(int32_t error, const char* file, int32_t line)
    : fText{}, fFile(file), fLine(line), fPlatformError(error) {}

CP_BaseException::~CP_BaseException() = default;

const char* CP_BaseException::GetText() const {
  return fText;
}

int32_t CP_BaseException::GetPlatformError() const {
  return fPlatformError;
}

void CP_BaseException::Report() const {
  ReportException(fText, fFile, fLine);
}

CP_RuntimeException::~CP_RuntimeException() = default;

CP_MemoryException::~CP_MemoryException() = default;

CP_PlfrmErrorException::~CP_PlfrmErrorException() = default;

// REQUIRED: a report of its own that says no more than the base's does: the error code stays out of
// both the debugger line and the box, and the text behind "Exception: " is empty. Handlers that
// need the code ask `GetPlatformError`.
void CP_PlfrmErrorException::Report() const {
  CP_RuntimeException::Report();
}

void CP_ThrowIfNull(const void* pointer, const char* file, int32_t line) {
  if (pointer == nullptr)
    throw CP_MemoryException("NULL Pointer", file, line);
}

void CP_ThrowIfError(int32_t error, const char* file, int32_t line) {
  if (error != 0)
    throw CP_PlfrmErrorException(error, file, line);
}
