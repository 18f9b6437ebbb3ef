// From the host's pixel buffers to images of our own.

#include <cstdlib>
#include <memory>

#include "host/HostImageMode.h"
#include "host/ZVHostPhotoshop.h"
#include "image/ZvPixelLoops.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

namespace {

// What travels with a picture and tells the effects application what the host's document is.
constexpr uint8_t kColorTypeRgba = 1;
constexpr uint8_t kColorTypeRgb = 2;
constexpr uint8_t kColorTypeCmyka = 3;
constexpr uint8_t kColorTypeCmyk = 4;
constexpr uint8_t kColorTypeGray = 6;

// Planes to ask for when the host refuses all that it has.
constexpr int16_t kFallbackPlanes = 3;

// Pixels as the host delivers them: interleaved, top row first.
struct HostPixels {
  int32_t width;
  int32_t height;
  int32_t rowBytes;
  void* data;
};

// A view of the host's pixels as records of type P.
template <class P>
ZvSmartPtr<ZvTypedImage<P>> Wrap(const HostPixels& pixels) {
  return ZvSmartPtr<ZvTypedImage<P>>::Adopt(
      new ZvTypedImage<P>(pixels.width, pixels.height, pixels.rowBytes, pixels.data));
}

template <class P>
ZvSmartPtr<ZvImage> NewTiled(const HostPixels& pixels) {
  return ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<P>(pixels.width, pixels.height));
}

// A picture of records `Own`, converted from the host's records.
template <class Own, class HostRecord>
ZvSmartPtr<ZvImage> CopyConverted(const HostPixels& pixels) {
  const auto wrapper = Wrap<HostRecord>(pixels);
  ZvSmartPtr<ZvImage> image = NewTiled<Own>(pixels);
  image->CopyImage(wrapper.Get());
  return image;
}

// The same for inks: the host stores full ink as 0, and its own buffer is turned round first.
template <class P>
ZvSmartPtr<ZvImage> CopyInverted(const HostPixels& pixels) {
  const auto wrapper = Wrap<P>(pixels);
  vm::InvertChannels(*wrapper, pixels.width, pixels.height);
  ZvSmartPtr<ZvImage> image = NewTiled<P>(pixels);
  image->CopyImage(wrapper.Get());
  return image;
}

// The same record for record. The views couldn't do it: four byte-wide inks can't be written from a
// colour.
ZvSmartPtr<ZvImage> MoveInvertedCmykBytes(const HostPixels& pixels) {
  const auto wrapper = Wrap<PxCmykBytes>(pixels);
  vm::InvertChannels(*wrapper, pixels.width, pixels.height);
  ZvSmartPtr<ZvImage> image = NewTiled<PxCmykBytes>(pixels);
  const std::unique_ptr<void, void (*)(void*)> row(wrapper->NewRow(pixels.width), &std::free);
  for (int32_t y = 0; y < pixels.height && row; ++y) {
    wrapper->GetRow(row.get(), 0, y, pixels.width);
    image->PutRow(row.get(), 0, y, pixels.width);
  }
  return image;
}

// Records that the host stores as we do.
template <class P>
ZvSmartPtr<ZvImage> Import(const HostPixels& pixels) {
  ZvSmartPtr<ZvImage> image = NewTiled<P>(pixels);
  image->ImportBuffer(pixels.data, pixels.rowBytes);
  return image;
}

// The picture in the form that its mode and number of planes call for; null, with the colour type
// untouched, for a pair that has no such form.
ZvSmartPtr<ZvImage> MakeImage(int32_t mode, int32_t planes, const HostPixels& pixels,
                              uint8_t& colorType) {
  const int32_t width = pixels.width;
  const int32_t height = pixels.height;
  ZvSmartPtr<ZvImage> image;
  switch (vm::ModeAndPlanes(mode, planes)) {
    case vm::ModeAndPlanes(plugInModeGrayScale, 1):
      image = CopyConverted<PxGrayByte, PxGrayByte>(pixels);
      colorType = kColorTypeGray;
      break;
    case vm::ModeAndPlanes(plugInModeGrayScale, 2):
      // REQUIRED: gray with transparency becomes RGBA and is called gray all the same.
      image = CopyConverted<PxRgbaBytes, PxGrayABytes>(pixels);
      colorType = kColorTypeGray;
      break;

    // Byte records have blue first, the host red.
    case vm::ModeAndPlanes(plugInModeRGBColor, 3):
      image = CopyConverted<PxRgbaBytes, PxRgbBytes>(pixels);
      vm::SwapChannels02(*image, width, height);
      colorType = kColorTypeRgb;
      break;
    case vm::ModeAndPlanes(plugInModeRGBColor, 4):
      image = CopyConverted<PxRgbaBytes, PxRgbaBytes>(pixels);
      vm::SwapChannels02(*image, width, height);
      colorType = kColorTypeRgba;
      break;

    // The host's 16-bit channels end at 32768, ours at 65535.
    case vm::ModeAndPlanes(plugInModeRGB48, 3):
      // REQUIRED: no swap. The record has blue first, so the picture travels with red and blue
      // exchanged; the way back takes it so.
      image = CopyConverted<PxRgba64, PxRgb48>(pixels);
      vm::ScaleChannels(*image, width, height, 3);
      colorType = kColorTypeRgb;
      break;
    case vm::ModeAndPlanes(plugInModeRGB48, 4):
      image = Import<PxRgba64>(pixels);
      vm::ScaleChannels(*image, width, height, 4);
      colorType = kColorTypeRgba;
      break;

    case vm::ModeAndPlanes(plugInModeCMYKColor, 4):
      image = MoveInvertedCmykBytes(pixels);
      colorType = kColorTypeCmyk;
      break;
    case vm::ModeAndPlanes(plugInModeCMYKColor, 5):
      image = CopyInverted<PxCmykaBytes>(pixels);
      colorType = kColorTypeCmyka;
      break;
    case vm::ModeAndPlanes(plugInModeCMYK64, 4):
      // REQUIRED: three channels of four are scaled, and inverted values may wrap there.
      image = CopyInverted<PxCmyk64>(pixels);
      vm::ScaleChannels(*image, width, height, 3);
      colorType = kColorTypeCmyk;
      break;
    case vm::ModeAndPlanes(plugInModeCMYK64, 5):
      // REQUIRED: the copy is inverted, the host's buffer stays; and nothing is scaled.
      image = Import<PxCmyka80>(pixels);
      vm::InvertChannels(*image, width, height);
      colorType = kColorTypeCmyka;
      break;
    default:
      break;
  }
  return image;
}

}  // namespace

bool ZVHostPhotoshop::GetSourceImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask,
                                     uint8_t& colorType) {
  FilterRecord& record = *mFilterRecord;

  SetWholeImageRects();
  Rect whole;
  GetWholeImageRect(whole);
  SetDataPointers(nullptr);
  if (RequestRects(whole, record.inRowBytes, 1.0) != noErr) {
    // REQUIRED: the record keeps the three planes, also when they are refused too.
    record.planes = kFallbackPlanes;
    const int16_t error = RequestRects(whole, record.inRowBytes, 1.0);
    if (error != noErr) {
      *mResult = error;
      return false;
    }
  }

  if (record.haveMask != 0 && record.maskData != nullptr) {
    mask = Wrap<PxAlphaByte>({record.maskRect.right - record.maskRect.left,
                              record.maskRect.bottom - record.maskRect.top, record.maskRowBytes,
                              record.maskData});
  }

  const HostPixels pixels = {record.inRect.right - record.inRect.left,
                             record.inRect.bottom - record.inRect.top, record.inRowBytes,
                             record.inData};
  ZvSmartPtr<ZvImage> made =
      MakeImage(record.imageMode, record.inHiPlane - record.inLoPlane + 1, pixels, colorType);
  if (made)
    image = made;

  // The same rectangles once more, so the mask's memory stays what it was. What the host answers is
  // not looked at.
  HostDone();
  SetWholeImageRects();
  SetDataPointers(nullptr);
  RequestRects(whole, record.inRowBytes, 1.0);
  return static_cast<bool>(made);
}
