#include "layers/ZvImageLayer.h"

#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvStream.h"

namespace {

const vm::ClassRegistration<ZvImageLayer> kRegistration;

template <class P>
void ReplaceByTiled(ZvSmartPtr<ZvImage>& image) {
  auto replacement =
      ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<P>(image->Width(), image->Height()));
  replacement->CopyImage(image.Get());
  image = std::move(replacement);
}

}  // namespace

ZvImageLayer::ZvImageLayer() {
  mName.mValue = "ImageLayer";
}

void ZvImageLayer::ClassName(ZvString& outName) const {
  outName = kClassName;
}

void ZvImageLayer::WriteTo(ZvStream& stream) {
  ZvLayer::WriteTo(stream);
  stream.WriteBool(mImage != nullptr, nullptr, true);
  if (mImage) {
    stream.WriteObject(mImage.Get());
  }
}

void ZvImageLayer::ReadFrom(ZvStream& stream) {
  ZvLayer::ReadFrom(stream);
  if (!stream.ReadBool()) {
    return;
  }
  ZvStreamable* const object = stream.ReadObject();
  if (auto* const image = dynamic_cast<ZvImage*>(object)) {
    mImage.TakeOver(image);
  } else {
    delete object;
  }
}

ZvLayer* ZvImageLayer::Duplicate() {
  auto* const copy = new ZvImageLayer;
  CopyTo(*copy);
  return copy;
}

void ZvImageLayer::GetSize(ZvPoint& outSize) {
  ZvLayer::GetSize(outSize);
}

void ZvImageLayer::GetBounds(ZvRect& outBounds) {
  ZvLayer::GetBounds(outBounds);
}

void ZvImageLayer::GetPixel(PxRgbaBytes& outColor, const ZvPoint& point) {
  ZvLayer::GetPixel(outColor, point);
}

void ZvImageLayer::FitCropToImage() {
  if (!mCropChanged.mValue && mImage) {
    mCropping.mValue = PlacedRect(mImage.Get(), mOffset.mValue);
  }
}

void ZvImageLayer::Composite(ZvRenderContext& context) {
  if (!mVisible) {
    return;
  }
  if (mImage == nullptr && !HasSubLayers()) {
    LeaveOut(context);
    return;
  }
  TakeOverBackdrop(context);
  FitCropToImage();
  if (!NeedsRender() && mComposite && !mHasDirtyRect) {
    context.mTarget = mComposite;
    context.mOrigin = mCompositeOrigin;
  } else {
    ZvLayer::Composite(context);
  }
  if (mHasDirtyRect) {
    context.AddTouchedRect(mDirtyRect);
  }
  context.mChanged = !(context.mTarget == mImage);
  SetDirty(false, true);
  SetDirtyRect(kEmptyRect, false);
}

void ZvImageLayer::Finish() {
  if (mImage) {
    mImage->FillClip(PxRgba64{0xFFFF, 0xFFFF, 0xFFFF, 0});
  }
  SetDirty(true, true);
}

void ZvImageLayer::ConvertForOutput() {
  if (mImage) {
    if (mImage->PixelKind() == PxRgbBytes::kInfo.kind) {
      ReplaceByTiled<PxRgbaBytes>(mImage);
    } else if (mImage->PixelKind() == PxRgb48::kInfo.kind) {
      ReplaceByTiled<PxRgba64>(mImage);
    }
  }
  ZvLayer::ConvertForOutput();
}
