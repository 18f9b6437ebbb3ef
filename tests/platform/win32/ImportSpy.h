#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace vm {

// The entry through which this program calls an imported function; null when it doesn't import it.
inline void** FindImport(const char* function) {
  auto* const base = reinterpret_cast<uint8_t*>(GetModuleHandleA(nullptr));
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* module =
      reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  for (; module->Name != 0; ++module) {
    const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + module->OriginalFirstThunk);
    auto* entry = reinterpret_cast<IMAGE_THUNK_DATA*>(base + module->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++entry) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
        continue;
      const auto* const byName =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
      if (std::strcmp(reinterpret_cast<const char*>(byName->Name), function) == 0)
        return reinterpret_cast<void**>(&entry->u1.Function);
    }
  }
  return nullptr;
}

// Everything that the living spies saw, in order, by the names of the functions.
inline std::vector<std::string>& SpiedCalls() {
  static std::vector<std::string> calls;
  return calls;
}

// While one exists, calls of a Windows function from this program are recorded with their arguments
// and passed on, or answered by `replacement` when that is set. `Tag` makes one type for each
// function.
template <class Tag, class Function>
class ImportSpy;

template <class Tag, class Result, class... Arguments>
class ImportSpy<Tag, Result WINAPI(Arguments...)> {
 public:
  ImportSpy() : mEntry(FindImport(Tag::kName)) {
    EXPECT_NE(mEntry, nullptr) << "the program doesn't call " << Tag::kName;
    if (mEntry == nullptr)
      return;
    sCurrent = this;
    mOriginal = *mEntry;
    Store(reinterpret_cast<void*>(&Spy));
  }
  ImportSpy(const ImportSpy&) = delete;
  ImportSpy& operator=(const ImportSpy&) = delete;
  ~ImportSpy() {
    if (mEntry == nullptr)
      return;
    Store(mOriginal);
    sCurrent = nullptr;
  }

  std::vector<std::tuple<Arguments...>> calls;
  std::function<Result(Arguments...)> replacement;

  Result PassOn(Arguments... arguments) {
    return reinterpret_cast<Result(WINAPI*)(Arguments...)>(mOriginal)(arguments...);
  }

 private:
  static Result WINAPI Spy(Arguments... arguments) {
    ImportSpy& spy = *sCurrent;
    SpiedCalls().push_back(Tag::kName);
    spy.calls.emplace_back(arguments...);
    return spy.replacement ? spy.replacement(arguments...) : spy.PassOn(arguments...);
  }

  void Store(void* address) {
    DWORD protection;
    VirtualProtect(mEntry, sizeof(*mEntry), PAGE_READWRITE, &protection);
    *mEntry = address;
    VirtualProtect(mEntry, sizeof(*mEntry), protection, &protection);
  }

  static inline ImportSpy* sCurrent = nullptr;
  void** mEntry;
  void* mOriginal = nullptr;
};

// VM_SPY(GlobalAlloc) declares a spy of that name with `Spy` behind it: `GlobalAllocSpy`.
#define VM_SPY(function)                            \
  struct function##Tag {                            \
    static constexpr const char* kName = #function; \
  };                                                \
  using function##Spy = ::vm::ImportSpy<function##Tag, decltype(function)>

}  // namespace vm
