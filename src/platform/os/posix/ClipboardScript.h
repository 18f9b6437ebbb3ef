#pragma once

#include <functional>
#include <string>
#include <vector>

namespace os::posix {

// While one exists, the calls to the clipboard are recorded, and the clipboard can be held by
// another program. The youngest script is the one in force.
class ClipboardScript {
 public:
  ClipboardScript();
  ClipboardScript(const ClipboardScript&) = delete;
  ClipboardScript& operator=(const ClipboardScript&) = delete;
  ~ClipboardScript();

  static ClipboardScript* Current();

  bool heldByAnotherProgram = false;
  // "available", "open", "empty", "put", "get", "close".
  std::vector<std::string> calls;
  // Runs at each call, after it is recorded; may throw.
  std::function<void(const std::string& call)> onCall;

 private:
  ClipboardScript* mPrevious;
};

// What another program sees.
bool IsClipboardOpen();

}  // namespace os::posix
