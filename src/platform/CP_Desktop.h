#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Kinds of windows, as bits.
inline constexpr uint32_t kCP_WindowKindRegular = 1;

// A window as the desktop sees it.
class CP_Window {
 public:
  explicit CP_Window(uint32_t inKindFlags) : fKindFlags(inKindFlags) {}
  CP_Window(const CP_Window&) = delete;
  CP_Window& operator=(const CP_Window&) = delete;

  virtual ~CP_Window() = default;
  // Asks the window to close. True when it agrees; it may then be gone already.
  virtual bool AttemptClose() = 0;

  bool IsOfKind(uint32_t inKindFlags) const { return (fKindFlags & inKindFlags) != 0; }

 private:
  uint32_t fKindFlags;
};

// A list of windows, front first, which are not owned. `gDesktop` is the one of the desktop; a
// program may keep others.
class CP_WindowList {
 public:
  CP_WindowList();
  CP_WindowList(const CP_WindowList&) = delete;
  CP_WindowList& operator=(const CP_WindowList&) = delete;
  ~CP_WindowList();

  void Add(CP_Window* inWindow);
  size_t Count() const { return fWindows.size(); }

  // Takes the window out of every list there is, as often as it stands in them.
  static void RemoveFromAll(const CP_Window* inWindow);

  // Asks windows of the kind to close, as many times as there are windows, and each time the one
  // that stands first then. False when one refused.
  bool AttemptCloseAll(uint32_t inKindFlags);

 private:
  std::vector<CP_Window*> fWindows;
};
