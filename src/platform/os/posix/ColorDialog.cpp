#include "platform/os/ColorDialog.h"

#include "platform/os/posix/ColorDialogScript.h"

namespace os {
namespace posix {
namespace {

constinit ColorDialogScript* gCurrent = nullptr;

}  // namespace

ColorDialogScript::ColorDialogScript() : mPrevious(gCurrent) {
  gCurrent = this;
}

ColorDialogScript::~ColorDialogScript() {
  gCurrent = mPrevious;
}

ColorDialogScript* ColorDialogScript::Current() {
  return gCurrent;
}

}  // namespace posix

bool RunColorDialog(WindowHandle owner, uint32_t start, std::array<uint32_t, 16>& customColors,
                    uint32_t& out) {
  posix::ColorDialogScript* const script = posix::ColorDialogScript::Current();
  if (script == nullptr)
    return false;
  script->owner = owner;
  script->start = start;
  script->customColors = customColors;
  ++script->count;
  if (script->firstCustomColor)
    customColors[0] = *script->firstCustomColor;
  if (!script->choice)
    return false;
  out = *script->choice;
  return true;
}

}  // namespace os
