// From a finished picture to the host's output buffer. In outline the way of SourceImage.cpp back;
// the differences are part of what hosts and documents have been given for years.

#include <algorithm>
#include <limits>

#include "host/HostImageMode.h"
#include "host/ZVHostPhotoshop.h"
#include "image/ZvPixelLoops.h"
#include "image/ZvTypedImage.h"

namespace {

// White in every record, and opaque where a record has alpha.
constexpr PxRgba64 kOpaqueWhite = {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};

// The host's output buffer and the picture that goes there. The buffer is as wide and as high as
// the picture.
struct Output {
  ZvImage& picture;
  int32_t width;
  int32_t height;
  int32_t rowBytes;  // 0 for the default pitch of a row image
  uint8_t* data;     // null when the host delivered none
};

// A view of `rows` rows of the buffer from row `top` on.
template <class P>
ZvSmartPtr<ZvTypedImage<P>> Wrap(const Output& out, int32_t top, int32_t rows) {
  const int64_t pitch =
      out.rowBytes != 0 ? out.rowBytes : vm::DefaultRowBytes(P::kInfo.bitsPerPixel, out.width);
  uint8_t* const data =
      out.data != nullptr ? out.data + static_cast<ptrdiff_t>(top * pitch) : nullptr;
  return ZvSmartPtr<ZvTypedImage<P>>::Adopt(
      new ZvTypedImage<P>(out.width, rows, out.rowBytes, data));
}

// Calls `work(wrapper, rows)` for one stripe of the buffer after the other, `rows` being the
// stripe's place in the picture. The passes of one row over a large picture find the stripe in the
// processor's caches.
template <class P, class Work>
void ForEachStripe(const Output& out, Work&& work) {
  constexpr int32_t kStripeRows = 32;
  for (int32_t top = 0; top < out.height; top += kStripeRows) {
    const int32_t rows = std::min(kStripeRows, out.height - top);
    const ZvSmartPtr<ZvTypedImage<P>> wrapper = Wrap<P>(out, top, rows);
    work(*wrapper, ZvRect(0, top, out.width - 1, top + rows - 1));
  }
}

constexpr ZvPoint kOrigin = {0, 0};

// White, and the picture blended over it.
void BlendOverWhite(ZvImage& wrapper, const Output& out, const ZvRect& rows) {
  wrapper.FillClip(kOpaqueWhite);
  wrapper.BlendRect(&out.picture, rows, kOrigin, 1.0f, nullptr);
}

void Copy(ZvImage& wrapper, const Output& out, const ZvRect& rows) {
  wrapper.CopyFrom(&out.picture, rows, kOrigin, nullptr);
}

// REQUIRED: every 8-bit CMYK result carries these, always: for each ink a strip ten pixels wide in
// which it rises from 0 to 255, one step a row. In a picture with fewer rows each pixel below the
// last is reported; in one with fewer columns the strips wrap into the next row.
void DrawTestRamps(ZvTypedImage<PxCmykBytes>& image) {
  constexpr int32_t kTop = 10;
  constexpr int32_t kSteps = 256;
  constexpr int32_t kStripWidth = 10;
  for (int32_t step = 0; step < kSteps; ++step) {
    const auto ink = static_cast<uint8_t>(step);
    const struct {
      int32_t left;
      PxCmykBytes pixel;
    } strips[] = {
        {10, {ink, 0, 0, 0}}, {30, {0, ink, 0, 0}}, {50, {0, 0, ink, 0}}, {70, {0, 0, 0, ink}}};
    for (const auto& strip : strips) {
      for (int32_t x = strip.left; x < strip.left + kStripWidth; ++x)
        image.PutPixel(strip.pixel, x, kTop + step);
    }
  }
}

// Fills the host's buffer in the form of its mode and number of planes; a pair that has no form
// leaves it alone.
void Transfer(int32_t mode, int32_t planes, const Output& out) {
  switch (vm::ModeAndPlanes(mode, planes)) {
    case vm::ModeAndPlanes(plugInModeGrayScale, 1):
      ForEachStripe<PxGrayByte>(
          out, [&](ZvImage& wrapper, const ZvRect& rows) { BlendOverWhite(wrapper, out, rows); });
      break;
    case vm::ModeAndPlanes(plugInModeGrayScale, 2):
      ForEachStripe<PxGrayABytes>(
          out, [&](ZvImage& wrapper, const ZvRect& rows) { Copy(wrapper, out, rows); });
      break;
    case vm::ModeAndPlanes(plugInModeRGBColor, 3):
      ForEachStripe<PxRgbBytes>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        BlendOverWhite(wrapper, out, rows);
        vm::SwapChannels02(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    case vm::ModeAndPlanes(plugInModeRGBColor, 4):
      // REQUIRED: the returned picture itself is changed, not the copy.
      vm::SwapChannels02(out.picture, out.width, out.height);
      ForEachStripe<PxRgbaBytes>(
          out, [&](ZvImage& wrapper, const ZvRect& rows) { Copy(wrapper, out, rows); });
      break;
    case vm::ModeAndPlanes(plugInModeRGB48, 3):
      ForEachStripe<PxRgb48>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        BlendOverWhite(wrapper, out, rows);
        vm::HalveChannels(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    case vm::ModeAndPlanes(plugInModeRGB48, 4):
      ForEachStripe<PxRgba64>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        BlendOverWhite(wrapper, out, rows);
        vm::HalveChannels(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    case vm::ModeAndPlanes(plugInModeCMYKColor, 4): {
      // In one piece, since the ramps may wrap from any row into the next.
      const auto wrapper = Wrap<PxCmykBytes>(out, 0, out.height);
      BlendOverWhite(*wrapper, out, {0, 0, out.width - 1, out.height - 1});
      DrawTestRamps(*wrapper);
      vm::InvertChannels(*wrapper, out.width, out.height);
      break;
    }
    case vm::ModeAndPlanes(plugInModeCMYKColor, 5):
      ForEachStripe<PxCmykaBytes>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        Copy(wrapper, out, rows);
        vm::InvertChannels(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    // REQUIRED: 16-bit inks are not halved, although three of them were scaled on the way out.
    case vm::ModeAndPlanes(plugInModeCMYK64, 4):
      ForEachStripe<PxCmyk64>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        BlendOverWhite(wrapper, out, rows);
        vm::InvertChannels(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    case vm::ModeAndPlanes(plugInModeCMYK64, 5):
      ForEachStripe<PxCmyka80>(out, [&](ZvImage& wrapper, const ZvRect& rows) {
        Copy(wrapper, out, rows);
        vm::InvertChannels(wrapper, wrapper.Width(), wrapper.Height());
      });
      break;
    default:
      break;
  }
}

// The host's rectangles have 16 bits; a picture beyond that is taken as far as they reach.
int16_t RectCoordinate(int32_t size) {
  return static_cast<int16_t>(std::min<int32_t>(size, std::numeric_limits<int16_t>::max()));
}

}  // namespace

bool ZVHostPhotoshop::PutResultImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask) {
  FilterRecord& record = *mFilterRecord;
  const int32_t planes = record.inHiPlane - record.inLoPlane + 1;
  const int32_t mode = record.imageMode;
  if (mode == plugInModeCMYKColor && planes == 4)
    mask.Clear();
  if (!image) {
    *mResult = userCanceledErr;
    return false;
  }

  const int16_t width = RectCoordinate(image->Width());
  const int16_t height = RectCoordinate(image->Height());
  SetOutRect({.top = 0, .left = 0, .bottom = height, .right = width});
  SetDataPointers(nullptr);
  AdvanceState();

  // Without a buffer the transfer goes to memory of its own and is lost. A picture that is larger
  // than the document doesn't get that memory: its size may be a damaged file's invention.
  const int64_t documentPixels = int64_t{GetImageWidth()} * GetImageHeight();
  if (record.outData != nullptr || int64_t{width} * height <= documentPixels)
    Transfer(mode, planes,
             {*image, width, height, record.outRowBytes, static_cast<uint8_t*>(record.outData)});
  return true;
}
