#include "image/ZvImage.h"

#include <algorithm>
#include <limits>

#include "foundation/FourCharCode.h"
#include "image/ImageReports.h"
#include "image/ViewRows.h"
#include "image/ZvImageFactory.h"

ZvImage::ZvImage(int32_t width, int32_t height, int32_t bitsPerPixel, const char* typeName)
    : mBitsPerPixel(bitsPerPixel),
      mWidth(std::max(width, 1)),
      mHeight(std::max(height, 1)),
      mClippingRect(0, 0, mWidth - 1, mHeight - 1),
      mTypeName(typeName) {}

ZvImage::~ZvImage() = default;

void ZvImage::CopyBaseFields(const ZvImage& other) {
  mPixelKind = other.mPixelKind;
  mColorModel = other.mColorModel;
  mBitsPerPixel = other.mBitsPerPixel;
  mWidth = other.mWidth;
  mHeight = other.mHeight;
  mClippingRect = other.mClippingRect;
  mXRes = other.mXRes;
  mYRes = other.mYRes;
  mTiled = other.mTiled;
}

void ZvImage::ClassName(ZvString& outName) const {
  outName = vm::StreamingNameOf(mTypeName);
}

void ZvImage::GetSize(int32_t& outWidth, int32_t& outHeight) const {
  outWidth = mWidth;
  outHeight = mHeight;
}

void ZvImage::BlendImage(const ZvImage* from) {
  if (from != nullptr)
    BlendRect(from, from->Bounds(), {0, 0}, 1.0f, nullptr);
}

void ZvImage::CopyImage(const ZvImage* from) {
  ZvRect common = Bounds();
  if (from != nullptr)
    common.Intersect(from->Bounds());
  CopyFrom(from, common, {0, 0}, nullptr);
}

void ZvImage::CopyAlpha(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect,
                        int32_t mode, const ZvRect* clip) {
  if (!CP_Check(from != nullptr, vm::kReportImage, vm::kLineCopyAlpha, "from != nil"))
    return;
  ZvRect target = toRect;
  target.Intersect(Bounds());
  if (clip != nullptr)
    target.Intersect(*clip);

  const int64_t fromWidth = int64_t{fromRect.fRight} - fromRect.fLeft;
  const int64_t fromHeight = int64_t{fromRect.fBottom} - fromRect.fTop;
  const int64_t toWidth = int64_t{toRect.fRight} - toRect.fLeft;
  const int64_t toHeight = int64_t{toRect.fBottom} - toRect.fTop;
  const bool unscaled = mode == kResampleNone || (fromWidth == toWidth && fromHeight == toHeight);
  // REQUIRED: the ratio is the quotient of the extents in integers, so that any fraction is lost
  // before it becomes a float: 7 over 4 reads the source at 0, 1, 2, 3.
  const auto ratio = [](int64_t fromExtent, int64_t toExtent) {
    return static_cast<float>((fromExtent != 0 ? fromExtent : 1) / (toExtent != 0 ? toExtent : 1));
  };
  const float ratioX = unscaled ? 1.0f : ratio(fromWidth, toWidth);
  const float ratioY = unscaled ? 1.0f : ratio(fromHeight, toHeight);
  const auto place = [](int32_t origin, int64_t offset, float by) {
    return vm::WrappingSum(origin, vm::TruncToInt32(static_cast<float>(offset) * by));
  };
  const bool sampled = !unscaled && mode != kResampleNearest;

  vm::ViewReader fromReader(*from);
  vm::ViewReader toReader(*this);
  vm::ViewWriter toWriter(*this);
  vm::ForEachRewrite(*this, target, [&](int32_t x, int32_t y, int32_t count) {
    uint8_t alpha[vm::kViewPixels];
    const int64_t offsetX = int64_t{x} - toRect.fLeft;
    const int64_t offsetY = int64_t{y} - toRect.fTop;
    if (unscaled) {
      fromReader.Bytes(static_cast<int32_t>(fromRect.fLeft + offsetX),
                       static_cast<int32_t>(fromRect.fTop + offsetY), count, alpha);
    } else {
      const int32_t fromY = place(fromRect.fTop, offsetY, ratioY);
      for (int32_t i = 0; i < count; ++i) {
        const int32_t fromX = place(fromRect.fLeft, offsetX + i, ratioX);
        if (sampled)
          from->SampleByte(alpha[i], static_cast<float>(fromX), static_cast<float>(fromY));
        else
          from->GetByte(alpha[i], fromX, fromY);
      }
    }
    PxRgbaBytes pixels[vm::kViewPixels];
    toReader.Rgba(x, y, count, pixels);
    for (int32_t i = 0; i < count; ++i)
      pixels[i].alpha = alpha[i];
    toWriter.Rgba(x, y, count, pixels);
  });
}

namespace {

// Limited add or subtract of two views, channel by channel.
template <class Channel>
Channel AddLimited(Channel a, Channel b) {
  const int sum = a + b;
  return static_cast<Channel>(std::min<int>(sum, std::numeric_limits<Channel>::max()));
}
template <class Channel>
Channel SubtractLimited(Channel a, Channel b) {
  return static_cast<Channel>(a > b ? a - b : 0);
}

template <class Combine>
void CombineBytes(ZvImage& to, const ZvImage& from, const ZvRect& area, Combine combine) {
  vm::ViewReader fromReader(from);
  vm::ViewReader toReader(to);
  vm::ViewWriter toWriter(to);
  vm::ForEachPiece(area, [&](int32_t x, int32_t y, int32_t count) {
    uint8_t source[vm::kViewPixels];
    uint8_t target[vm::kViewPixels];
    fromReader.Bytes(x, y, count, source);
    // Where the source has nothing the target isn't touched at all.
    if (std::all_of(source, source + count, [](uint8_t byte) { return byte == 0; }))
      return;
    toReader.Bytes(x, y, count, target);
    for (int32_t i = 0; i < count; ++i)
      target[i] = combine(target[i], source[i]);
    toWriter.Bytes(x, y, count, target);
  });
}

template <class Combine>
void CombineWords(ZvImage& to, const ZvImage& from, const ZvRect& area, Combine combine) {
  vm::ViewReader fromReader(from);
  vm::ViewReader toReader(to);
  vm::ViewWriter toWriter(to);
  vm::ForEachRewrite(to, area, [&](int32_t x, int32_t y, int32_t count) {
    PxRgba64 source[vm::kViewPixels];
    PxRgba64 target[vm::kViewPixels];
    fromReader.Rgba64(x, y, count, source);
    toReader.Rgba64(x, y, count, target);
    for (int32_t i = 0; i < count; ++i) {
      target[i].red = combine(target[i].red, source[i].red);
      target[i].green = combine(target[i].green, source[i].green);
      target[i].blue = combine(target[i].blue, source[i].blue);
      target[i].alpha = combine(target[i].alpha, source[i].alpha);
    }
    toWriter.Rgba64(x, y, count, target);
  });
}

bool IsTiledDepth(const vm::RunImage* image) {
  return image != nullptr && image->IsTiled() &&
         &image->Record() == &vm::RecordOpsOf<PxDepthFloat>();
}

void AddDepths(vm::RunImage& to, const vm::RunImage& from, const ZvRect& area) {
  vm::RunReader reader(from);
  vm::ForEachRun(to, area, [&](vm::Run run, int32_t x, int32_t y) {
    auto* const target = reinterpret_cast<PxDepthFloat*>(run.pixels);
    for (int32_t done = 0; done < run.count;) {
      const vm::ConstRun part = reader.At(x + done, y, run.count - done);
      const auto* const source = reinterpret_cast<const PxDepthFloat*>(part.pixels);
      for (int32_t i = 0; i < part.count; ++i)
        target[done + i].depth += source[i].depth;
      done += part.count;
    }
  });
}

bool AreBothAlpha(const ZvImage& a, const ZvImage& b) {
  return a.PixelKind() == FourCC("AlpB") && b.PixelKind() == FourCC("AlpB");
}

}  // namespace

void ZvImage::AddImage(const ZvImage* fromImage) {
  if (!CP_Check(fromImage != nullptr, vm::kReportImage, vm::kLineAddImage, "fromImage != nil"))
    return;
  ZvRect common = Bounds();
  common.Intersect(fromImage->Bounds());
  vm::RunImage* const to = vm::AsRunImage(this);
  const vm::RunImage* const from = vm::AsRunImage(fromImage);
  if (AreBothAlpha(*this, *fromImage))
    CombineBytes(*this, *fromImage, common, AddLimited<uint8_t>);
  else if (IsTiledDepth(to) && IsTiledDepth(from))
    AddDepths(*to, *from, common);
  else
    CombineWords(*this, *fromImage, common, AddLimited<uint16_t>);
}

void ZvImage::SubtractImage(const ZvImage* fromImage) {
  if (!CP_Check(fromImage != nullptr, vm::kReportImage, vm::kLineSubtractImage, "fromImage != nil"))
    return;
  ZvRect common = Bounds();
  common.Intersect(fromImage->Bounds());
  if (AreBothAlpha(*this, *fromImage))
    CombineBytes(*this, *fromImage, common, SubtractLimited<uint8_t>);
  else
    CombineWords(*this, *fromImage, common, SubtractLimited<uint16_t>);
}

ZvRect ZvImage::VisibleBounds() const {
  constexpr uint8_t kHardlyVisible = 9;
  const int32_t right = mWidth - 1;
  const int32_t bottom = mHeight - 1;
  int visibleCorners = 0;
  for (const ZvPoint& corner :
       {ZvPoint(0, 0), ZvPoint(right, 0), ZvPoint(0, bottom), ZvPoint(right, bottom)}) {
    PxRgbaBytes pixel;
    GetRgba(pixel, corner.x, corner.y);
    visibleCorners += pixel.alpha > kHardlyVisible ? 1 : 0;
  }
  // REQUIRED: three corners decide, whatever the rest of the image holds.
  if (visibleCorners >= 3)
    return Bounds();

  ZvRect visible(mWidth, mHeight, -1, -1);
  vm::ViewReader reader(*this);
  vm::ForEachPiece(Bounds(), [&](int32_t x, int32_t y, int32_t count) {
    PxRgbaBytes pixels[vm::kViewPixels];
    reader.Rgba(x, y, count, pixels);
    for (int32_t i = 0; i < count; ++i) {
      if (pixels[i].alpha <= kHardlyVisible)
        continue;
      visible.fLeft = std::min(visible.fLeft, x + i);
      visible.fRight = std::max(visible.fRight, x + i);
      visible.fTop = std::min(visible.fTop, y);
      visible.fBottom = y;
    }
  });
  return visible.fRight < 0 ? kEmptyRect : visible;
}

void ZvImage::SetClip(const ZvRect& rect) {
  mClippingRect.Set(std::max(rect.fLeft, 0), std::max(rect.fTop, 0),
                    std::min(rect.fRight, mWidth - 1), std::min(rect.fBottom, mHeight - 1));
}

void ZvImage::GetClip(ZvRect& outRect) const {
  outRect = mClippingRect;
}

void ZvImage::ResetClip() {
  mClippingRect = Bounds();
}
