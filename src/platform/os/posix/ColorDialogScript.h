#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/os/Handles.h"

namespace os::posix {

// While one exists, it is the user in front of the colour dialog. Without one the dialog is
// cancelled. The youngest script is the one in force.
class ColorDialogScript {
 public:
  ColorDialogScript();
  ColorDialogScript(const ColorDialogScript&) = delete;
  ColorDialogScript& operator=(const ColorDialogScript&) = delete;
  ~ColorDialogScript();

  static ColorDialogScript* Current();

  // What the user chooses with OK; nothing is Cancel.
  std::optional<uint32_t> choice;
  // What the user puts into the first custom colour before.
  std::optional<uint32_t> firstCustomColor;

  // What the last dialog was opened with.
  WindowHandle owner = nullptr;
  uint32_t start = 0;
  std::array<uint32_t, 16> customColors{};
  int32_t count = 0;

 private:
  ColorDialogScript* mPrevious;
};

}  // namespace os::posix
