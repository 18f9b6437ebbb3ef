#pragma once

#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/FakeHost.h"
#include "host/HostGlobals.h"
#include "host/ZVHostPhotoshop.h"

namespace vm {

// The host object over a fake host, with its protected state in view.
class TestPlugIn : public ZVHostPhotoshop {
 public:
  explicit TestPlugIn(FakeHost& host) : ZVHostPhotoshop(gModule, &host.Record(), &host.result) {}

  bool HasScriptState() const { return mScriptState != nullptr; }
  int32_t ScriptStateSize() const { return mScriptStateSize; }
  std::vector<uint8_t> ScriptState() const {
    return mScriptState != nullptr
               ? std::vector<uint8_t>(mScriptState, mScriptState + mScriptStateSize)
               : std::vector<uint8_t>();
  }
};

// Gives the globals that outlive a selector their values at load, before and behind a test.
class FreshGlobals {
 public:
  FreshGlobals() { Reset(); }
  FreshGlobals(const FreshGlobals&) = delete;
  FreshGlobals& operator=(const FreshGlobals&) = delete;
  ~FreshGlobals() { Reset(); }

 private:
  static void Reset() {
    gFilterRecord = nullptr;
    gEffectName = ZvString();
    gScriptState.Clear();
  }
};

// Makes these bytes the block that Finish records.
inline void SetScriptState(const std::vector<uint8_t>& bytes) {
  auto stream = ZvSmartPtr<ZvMemoryStream>::Adopt(new ZvMemoryStream);
  if (!bytes.empty()) {
    void* const buffer = std::malloc(bytes.size());
    std::memcpy(buffer, bytes.data(), bytes.size());
    stream.TakeOver(new ZvMemoryStream(buffer, static_cast<uint32_t>(bytes.size()), true));
  }
  gScriptState = stream;
}

// The bytes of `gScriptState`.
inline std::vector<uint8_t> ScriptStateBytes() {
  const uint8_t* const data = gScriptState->GetBuffer();
  return data != nullptr ? std::vector<uint8_t>(data, data + gScriptState->GetLength())
                         : std::vector<uint8_t>();
}

}  // namespace vm

inline bool operator==(const Rect& a, const Rect& b) {
  return a.top == b.top && a.left == b.left && a.bottom == b.bottom && a.right == b.right;
}
