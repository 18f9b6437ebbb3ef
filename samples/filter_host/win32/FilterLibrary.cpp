#include "filter_host/win32/FilterLibrary.h"

#include <windows.h>

#include <cstdio>
#include <memory>

#include "filter_host/Picture.h"

namespace filter_host {

namespace {

std::string LastErrorText() {
  const DWORD error = GetLastError();
  char text[300] = "";
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, 0, text, sizeof(text), nullptr);
  std::string message(text, length);
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r' ||
                              message.back() == ' ' || message.back() == '.')) {
    message.pop_back();
  }
  return message.empty() ? "error " + std::to_string(error) : message;
}

// With its folder, so that the loader doesn't look elsewhere.
std::string FullPath(const std::string& path) {
  char full[MAX_PATH];
  const DWORD length = GetFullPathNameA(path.c_str(), sizeof(full), full, nullptr);
  return length == 0 || length >= sizeof(full) ? path : std::string(full, length);
}

BOOL CALLBACK TakeFirst(HMODULE, LPCSTR, LPSTR name, LONG_PTR out) {
  *reinterpret_cast<std::string*>(out) =
      IS_INTRESOURCE(name)
          ? "#" + std::to_string(static_cast<unsigned>(reinterpret_cast<ULONG_PTR>(name)))
          : std::string(name);
  return FALSE;
}

#if !defined(__i386__)
#error "the guard below installs a 32-bit x86 exception handler"
#endif

// What a handler finds of the call it guards. The first two fields are the platform's registration
// record, by whose address the handler is called.
struct GuardFrame {
  EXCEPTION_REGISTRATION_RECORD registration;
  void* resume[5];  // for __builtin_longjmp
  DWORD code;
  void* address;
};

EXCEPTION_DISPOSITION CDECL OnException(EXCEPTION_RECORD* record,
                                        EXCEPTION_REGISTRATION_RECORD* established, CONTEXT*,
                                        void*) {
  constexpr DWORD kUnwinding = 0x2 | 0x4;
  if ((record->ExceptionFlags & kUnwinding) != 0) {
    return ExceptionContinueSearch;
  }
  auto* frame = reinterpret_cast<GuardFrame*>(established);
  frame->code = record->ExceptionCode;
  frame->address = record->ExceptionAddress;
  // Lets the frames between here and there clean up, and takes their handlers off the chain. It
  // doesn't keep the registers of its caller, which nothing needs after the jump.
  RtlUnwind(established, nullptr, record, nullptr);
  __builtin_longjmp(frame->resume, 1);
}

EXCEPTION_REGISTRATION_RECORD* TopOfChain() {
  EXCEPTION_REGISTRATION_RECORD* top = nullptr;
  __asm__ volatile("movl %%fs:0, %0" : "=r"(top));
  return top;
}

void SetTopOfChain(EXCEPTION_REGISTRATION_RECORD* top) {
  __asm__ volatile("movl %0, %%fs:0" : : "r"(top) : "memory");
}

// True when the call returned. Owns nothing with a destructor, as it may be left by a jump.
__attribute__((noinline)) bool CallInFrame(const std::function<void()>& call, GuardFrame& frame) {
  frame.registration.Next = TopOfChain();
  frame.registration.Handler = reinterpret_cast<PEXCEPTION_ROUTINE>(&OnException);
  if (__builtin_setjmp(frame.resume) != 0) {
    SetTopOfChain(frame.registration.Next);
    return false;
  }
  SetTopOfChain(&frame.registration);
  call();
  SetTopOfChain(frame.registration.Next);
  return true;
}

const char* ExceptionName(DWORD code) {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
      return "access violation";
    case EXCEPTION_STACK_OVERFLOW:
      return "stack overflow";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return "division by zero";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return "illegal instruction";
    case EXCEPTION_BREAKPOINT:
      return "breakpoint";
    default:
      return "structured exception";
  }
}

// The library that holds an address, and the offset in it.
std::string Place(void* address) {
  HMODULE module = nullptr;
  char path[MAX_PATH] = "";
  char text[MAX_PATH + 40];
  if (GetModuleHandleExA(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          static_cast<LPCSTR>(address), &module) != 0 &&
      GetModuleFileNameA(module, path, sizeof(path)) != 0) {
    const std::string whole(path);
    const std::size_t slash = whole.find_last_of("\\/");
    const std::string name = slash == std::string::npos ? whole : whole.substr(slash + 1);
    std::snprintf(text, sizeof(text), "%s+0x%lx", name.c_str(),
                  static_cast<unsigned long>(reinterpret_cast<ULONG_PTR>(address) -
                                             reinterpret_cast<ULONG_PTR>(module)));
  } else {
    std::snprintf(text, sizeof(text), "%p", address);
  }
  return text;
}

}  // namespace

std::vector<uint8_t> ReadPiplResource(const std::string& path) {
  const std::unique_ptr<std::remove_pointer_t<HMODULE>, decltype(&FreeLibrary)> module(
      LoadLibraryExA(FullPath(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE), &FreeLibrary);
  if (module == nullptr) {
    throw Error("cannot load '" + path + "': " + LastErrorText());
  }
  std::string name;
  EnumResourceNamesA(module.get(), "PIPL", &TakeFirst, reinterpret_cast<LONG_PTR>(&name));
  HRSRC found = name.empty() ? nullptr : FindResourceA(module.get(), name.c_str(), "PIPL");
  if (found == nullptr) {
    throw Error("'" + path + "' is no filter: it has no PIPL resource");
  }
  HGLOBAL loaded = LoadResource(module.get(), found);
  const auto* bytes = loaded == nullptr ? nullptr : static_cast<uint8_t*>(LockResource(loaded));
  if (bytes == nullptr) {
    throw Error("cannot read the PIPL resource of '" + path + "'");
  }
  return std::vector<uint8_t>(bytes, bytes + SizeofResource(module.get(), found));
}

FilterLibrary::FilterLibrary(const std::string& path, const std::string& entryPoint)
    : mModule(nullptr), mEntry(nullptr) {
  HMODULE module = LoadLibraryExA(FullPath(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) {
    throw Error("cannot load '" + path + "': " + LastErrorText());
  }
  mModule = module;
  mEntry = reinterpret_cast<PlugInEntryPoint>(
      reinterpret_cast<void*>(GetProcAddress(module, entryPoint.c_str())));
  if (mEntry == nullptr) {
    FreeLibrary(module);
    throw Error("'" + path + "' does not export '" + entryPoint +
                "', which its PIPL resource names as its entry point");
  }
}

FilterLibrary::~FilterLibrary() {
  FreeLibrary(static_cast<HMODULE>(mModule));
}

std::string CallGuardingStructuredExceptions(const std::function<void()>& call) {
  GuardFrame frame{};
  if (CallInFrame(call, frame)) {
    return {};
  }
  char text[80];
  std::snprintf(text, sizeof(text), "%s 0x%08lX at ", ExceptionName(frame.code),
                static_cast<unsigned long>(frame.code));
  return text + Place(frame.address);
}

}  // namespace filter_host
