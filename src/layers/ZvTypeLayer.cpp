#include "layers/ZvTypeLayer.h"

#include "persistence/ZvClassRegistry.h"

namespace {

const vm::ClassRegistration<ZvTypeLayer> kRegistration;

}  // namespace

ZvTypeLayer::ZvTypeLayer() {
  mName.mValue = "Type";
}

ZvTypeLayer::~ZvTypeLayer() {
  if (mTextObject) {
    mTextObject->LayerGone(*this);
  }
}

void ZvTypeLayer::ClassName(ZvString& outName) const {
  outName = kClassName;
}

ZvLayer* ZvTypeLayer::Duplicate() {
  auto* const copy = new ZvTypeLayer;
  CopyTo(*copy);
  copy->mTextObject = mTextObject;
  return copy;
}

void ZvTypeLayer::Finish() {}

ZvSmartPtr<ZvImage> ZvTypeLayer::GetResultImage() {
  return mTextObject ? ZvSmartPtr<ZvImage>(mTextObject->GetPicture()) : ZvSmartPtr<ZvImage>();
}

void ZvTypeLayer::SetTextObject(ZvTextObject* textObject) {
  // Kept until the end of the call: the object that is let go may be the one that is set.
  const ZvSmartPtr<ZvTextObject> kept(textObject);
  if (mTextObject) {
    mTextObject->LayerGone(*this);
  }
  mTextObject = textObject;
  SyncFromTextObject();
  if (mTextObject == nullptr) {
    MarkDirty(true);
  }
}

ZvTextObject* ZvTypeLayer::GetTextObject() {
  return mTextObject.Get();
}

void ZvTypeLayer::SyncFromTextObject() {
  if (mTextObject == nullptr) {
    return;
  }
  ZvPoint position;
  mTextObject->GetPosition(position);
  MoveTo(position);
  const CP_RGBColor color = mTextObject->GetColor();
  mTextObject->SetColor(PxRgba64{color.GetRed(), color.GetGreen(), color.GetBlue(), 0xFFFF}, false);
}

void ZvTypeLayer::Composite(ZvRenderContext& context) {
  if (mDirty) {
    SyncFromTextObject();
  }
  if (!mVisible) {
    return;
  }
  if (mTextObject == nullptr) {
    LeaveOut(context);
    return;
  }
  TakeOverBackdrop(context);
  const ZvSmartPtr<ZvImage> picture = GetResultImage();
  ZvRect crop = mCropping.mValue;
  crop += mTransform.mPosition;
  ZvRect place = PlacedRect(picture.Get(), ImagePlace());
  place.Intersect(crop);
  NotePlace(place);
  if (NeedsRender()) {
    AddDirtyRect(place);
    ZvLayer::Composite(context);
  }
  if (picture) {
    Merge(context, *picture, ImagePlace(), &crop, mOpacity.mValue);
    mMergedRect = place;
  }
  context.mChanged = !(context.mTarget == picture);
  SetDirty(false, true);
}

void ZvTypeLayer::GetPixel(PxRgbaBytes& outColor, const ZvPoint& point) {
  outColor = PxRgbaBytes();
  if (mDirty) {
    SyncFromTextObject();
  }
  const ZvSmartPtr<ZvImage> picture = GetResultImage();
  if (picture == nullptr) {
    return;
  }
  const int64_t x = int64_t{point.x} - mTransform.mPosition.x;
  const int64_t y = int64_t{point.y} - mTransform.mPosition.y;
  if (x >= 0 && y >= 0 && x < picture->Width() && y < picture->Height()) {
    picture->GetRgba(outColor, static_cast<int32_t>(x), static_cast<int32_t>(y));
  }
}
