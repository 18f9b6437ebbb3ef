#include "platform/os/Clipboard.h"

#include <map>

#include "platform/os/Memory.h"
#include "platform/os/posix/ClipboardScript.h"

namespace os {
namespace {

struct Contents {
  bool open = false;
  std::map<uint32_t, MemoryHandle> blocks;
};

Contents& TheContents() {
  static Contents contents;
  return contents;
}

void Record(const char* call) {
  posix::ClipboardScript* const script = posix::ClipboardScript::Current();
  if (script == nullptr)
    return;
  script->calls.emplace_back(call);
  if (script->onCall)
    script->onCall(call);
}

}  // namespace

namespace posix {
namespace {

constinit ClipboardScript* gCurrent = nullptr;

}  // namespace

ClipboardScript::ClipboardScript() : mPrevious(gCurrent) {
  gCurrent = this;
}

ClipboardScript::~ClipboardScript() {
  gCurrent = mPrevious;
}

ClipboardScript* ClipboardScript::Current() {
  return gCurrent;
}

bool IsClipboardOpen() {
  return TheContents().open;
}

}  // namespace posix

bool IsClipboardFormatThere(uint32_t format) {
  Record("available");
  return TheContents().blocks.count(format) != 0;
}

bool OpenSystemClipboard() {
  Record("open");
  const posix::ClipboardScript* const script = posix::ClipboardScript::Current();
  if (script != nullptr && script->heldByAnotherProgram)
    return false;
  TheContents().open = true;
  return true;
}

bool EmptySystemClipboard() {
  Record("empty");
  if (!TheContents().open)
    return false;
  for (const auto& [format, block] : TheContents().blocks)
    FreeMemory(block);
  TheContents().blocks.clear();
  return true;
}

void CloseSystemClipboard() {
  Record("close");
  TheContents().open = false;
}

bool PutClipboardBlock(uint32_t format, MemoryHandle block) {
  Record("put");
  if (!TheContents().open)
    return false;
  MemoryHandle& place = TheContents().blocks[format];
  if (place != nullptr && place != block)
    FreeMemory(place);
  place = block;
  return true;
}

MemoryHandle GetClipboardBlock(uint32_t format) {
  Record("get");
  if (!TheContents().open)
    return nullptr;
  const auto found = TheContents().blocks.find(format);
  return found == TheContents().blocks.end() ? nullptr : found->second;
}

}  // namespace os
