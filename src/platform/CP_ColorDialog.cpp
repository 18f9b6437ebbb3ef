#include "platform/CP_ColorDialog.h"

#include <array>
#include <cstdint>

#include "platform/CP_Globals.h"
#include "platform/CP_RGBColor.h"
#include "platform/os/ColorDialog.h"

namespace {

std::array<uint32_t, 16> gCustomColors{};

// REQUIRED: the colour that the dialog opens on is never updated, neither from the caller's colour
// nor from the user's last choice.
constexpr uint32_t kStartColor = 0;

}  // namespace

bool ChooseColorDialog(const char*, const CP_RGBColor&, CP_RGBColor& outResult) {
  uint32_t chosen = 0;
  if (!os::RunColorDialog(gDialogOwner, kStartColor, gCustomColors, chosen))
    return false;
  outResult.SetFromPlatform(chosen);
  return true;
}
