#include "platform/os/Resources.h"

#include "platform/os/win32/ResourceModule.h"

namespace os {
namespace {

HMODULE gResourceModule = nullptr;

}  // namespace

namespace win32 {

HMODULE ResourceModule() {
  return gResourceModule;
}

}  // namespace win32

void SetResourceModule(void* module) {
  gResourceModule = static_cast<HMODULE>(module);
}

std::span<const uint8_t> FindResourceBytes(const char* type, int16_t number) {
  const HRSRC resource =
      FindResourceA(gResourceModule, MAKEINTRESOURCEA(static_cast<uint16_t>(number)), type);
  if (resource == nullptr)
    return {};
  const HGLOBAL loaded = LoadResource(gResourceModule, resource);
  if (loaded == nullptr)
    return {};
  const void* const bytes = LockResource(loaded);
  if (bytes == nullptr)
    return {};
  return {static_cast<const uint8_t*>(bytes), SizeofResource(gResourceModule, resource)};
}

}  // namespace os
