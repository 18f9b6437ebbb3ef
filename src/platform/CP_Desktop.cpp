#include "platform/CP_Desktop.h"

namespace {

std::vector<std::vector<CP_Window*>*>& AllLists() {
  static std::vector<std::vector<CP_Window*>*> lists;
  return lists;
}

}  // namespace

CP_WindowList::CP_WindowList() {
  AllLists().push_back(&fWindows);
}

CP_WindowList::~CP_WindowList() {
  std::erase(AllLists(), &fWindows);
}

void CP_WindowList::Add(CP_Window* inWindow) {
  fWindows.push_back(inWindow);
}

void CP_WindowList::RemoveFromAll(const CP_Window* inWindow) {
  for (std::vector<CP_Window*>* windows : AllLists())
    std::erase(*windows, inWindow);
}

bool CP_WindowList::AttemptCloseAll(uint32_t inKindFlags) {
  bool allAgreed = true;
  for (size_t left = fWindows.size(); left > 0 && !fWindows.empty(); --left) {
    // REQUIRED: always the first window, even when it is one that stayed: such a window is asked
    // again, and hides those behind it from the walk.
    CP_Window* const window = fWindows.front();
    if (window == nullptr || !window->IsOfKind(inKindFlags))
      continue;
    if (window->AttemptClose()) {
      RemoveFromAll(window);
    } else {
      allAgreed = false;
    }
  }
  return allAgreed;
}
