// The host's colour picker service.

#include "host/ZVHost.h"
#include "host/ZVHostPhotoshop.h"
#include "image/pixels/PxViews.h"
#include "platform/CP_ColorDialog.h"
#include "platform/CP_RGBColor.h"

namespace {

#ifdef _WIN32
static_assert(sizeof(ColorServicesInfo) == 36);
#endif

int16_t HighByte(uint16_t channel) {
  return static_cast<int16_t>(channel >> 8);
}

// The low byte of the component in both bytes of the channel.
uint16_t WidenComponent(int16_t component) {
  return static_cast<uint16_t>((component & 0xFF) * 0x101);
}

void PickFromHost(const FilterRecord& record, PxRgba64& ioColor) {
  ColorServicesInfo info{};  // no gamut answers, no reserved data, no prompt
  info.infoSize = sizeof(info);
  info.selector = plugIncolorServicesChooseColor;
  info.sourceSpace = plugIncolorServicesRGBSpace;
  info.resultSpace = plugIncolorServicesRGBSpace;
  info.colorComponents[0] = HighByte(ioColor.red);
  info.colorComponents[1] = HighByte(ioColor.green);
  info.colorComponents[2] = HighByte(ioColor.blue);
  info.colorComponents[3] = 255;
  if (record.colorServices(&info) != noErr)
    return;
  ioColor.red = WidenComponent(info.colorComponents[0]);
  ioColor.green = WidenComponent(info.colorComponents[1]);
  ioColor.blue = WidenComponent(info.colorComponents[2]);
  ioColor.alpha = 0xFFFF;
}

void PickFromDialog(PxRgba64& ioColor) {
  const CP_RGBColor initial(ioColor.red, ioColor.green, ioColor.blue);
  CP_RGBColor result(0, 0, 0);
  if (!ChooseColorDialog("Select Color", initial, result))
    return;
  ioColor.red = result.GetRed();
  ioColor.green = result.GetGreen();
  ioColor.blue = result.GetBlue();
}

}  // namespace

bool ZVHost::PickColor(PxRgba64* color) {
  if (color == nullptr)
    return false;
  const auto* const photoshop = dynamic_cast<const ZVHostPhotoshop*>(this);
  const FilterRecord* const record = photoshop == nullptr ? nullptr : photoshop->GetFilterRecord();
  if (record != nullptr && record->colorServices != nullptr) {
    PickFromHost(*record, *color);
  } else {
    PickFromDialog(*color);
  }
  // REQUIRED: false on every path, also when a colour was chosen. Callers look at the colour.
  return false;
}
