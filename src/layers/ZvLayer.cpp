#include "layers/ZvLayer.h"

#include <algorithm>
#include <utility>

#include "foundation/CP_DebugAssert.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"
#include "layers/LayerNesting.h"
#include "layers/ZvLayerIterator.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvGeometryStreaming.h"
#include "persistence/ZvStream.h"

namespace {

const vm::ClassRegistration<ZvLayer> kRegistration;

// Below this version a stream holds the fixed form.
constexpr float kMemberTableVersion = 1.0F;

// A layer writes its sublayers twice into such a stream, once in each form, so the size doubles
// with every level.
constexpr int32_t kMaxFixedFormNesting = 16;

ZvSmartPtr<ZvImage> CopyOf(const ZvSmartPtr<ZvImage>& image) {
  return image ? ZvSmartPtr<ZvImage>::Adopt(image->NewLike(true, 0, 0)) : ZvSmartPtr<ZvImage>();
}

}  // namespace

ZvLayer::ZvLayer()
    : mOffset(this, "Offset", ZvPoint()),
      mCropping(this, "Cropping", ZvRect(0, 0, 1000, 1000)),
      mCropChanged(this, "CropChanged", false),
      mRetain(this, "Retain", ZvRetainLevel::kStandard),
      mName(this, "Name", ZvString()),
      mOpacity(this, "LayerOpacity", 1.0F),
      mSubLayers(this, "SubLayers") {
  ZvLayer::SetDirty(true, true);
}

// Takes the tree below apart without recursion.
ZvLayer::~ZvLayer() {
  ZvLayerList doomed = std::move(SubLayers());
  SubLayers().clear();
  while (!doomed.empty()) {
    const ZvSmartPtr<ZvLayer> layer = std::move(doomed.back());
    doomed.pop_back();
    if (layer && layer.Get()->GetRefCount() == 1) {
      ZvLayerList& below = layer.Get()->SubLayers();
      doomed.insert(doomed.end(), below.begin(), below.end());
      below.clear();
    }
  }
}

void ZvLayer::ClassName(ZvString& outName) const {
  outName = kClassName;
}

void ZvLayer::SetDirty(bool dirty, bool addBounds) {
  mDirty = dirty;
  if (!dirty) {
    SetDirtyRect(kEmptyRect, false);
  } else if (addBounds) {
    ZvRect bounds;
    GetBounds(bounds);
    AddDirtyRect(bounds);
  }
}

void ZvLayer::SetDirtyFlag(bool dirty, bool addBounds) {
  SetDirty(dirty, addBounds);
}

void ZvLayer::MarkDirty(bool dirty) {
  SetDirty(dirty, true);
}

bool ZvLayer::IsDirty() {
  return mHasDirtyRect || mDirty;
}

bool ZvLayer::NeedsRender() {
  return mVisible && (IsDirty() || AnySubLayerNeedsRender() || mHasDirtyRect);
}

bool ZvLayer::AnySubLayerNeedsRender() {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return false;
  }
  return std::any_of(SubLayers().begin(), SubLayers().end(), [](const ZvSmartPtr<ZvLayer>& layer) {
    return layer && (*layer).NeedsRender();
  });
}

bool ZvLayer::GetDirtyRect(ZvRect& outRect) {
  outRect = mDirtyRect;
  return mHasDirtyRect;
}

void ZvLayer::SetDirtyRect(const ZvRect& rect, bool valid) {
  mDirtyRect = rect;
  mHasDirtyRect = valid;
}

void ZvLayer::AddDirtyRect(const ZvRect& rect) {
  if (mHasDirtyRect) {
    mDirtyRect.Union(rect);
  } else {
    mDirtyRect = rect;
    mHasDirtyRect = true;
  }
}

ZvLayer* ZvLayer::Duplicate() {
  auto* const copy = new ZvLayer;
  CopyTo(*copy);
  return copy;
}

void ZvLayer::CopyTo(ZvLayer& copy) {
  copy.mOffset.mValue = mOffset.mValue;
  copy.mCropping.mValue = mCropping.mValue;
  copy.mCropChanged.mValue = mCropChanged.mValue;
  copy.mRetain.mValue = mRetain.mValue;
  copy.mName.mValue = mName.mValue;
  copy.mOpacity.mValue = mOpacity.mValue;
  copy.mKind = mKind;
  copy.mComposite = CopyOf(mComposite);
  copy.mCompositeOrigin = mCompositeOrigin;
  copy.mMergedRect = mMergedRect;
  copy.mImage = CopyOf(mImage);
  copy.mTransform = mTransform;
  copy.mHasColor = mHasColor;
  copy.mColor = mColor;
  copy.mFlagLocked = mFlagLocked;
  copy.mVisible = mVisible;
  copy.mFlagHidden = mFlagHidden;
  copy.mFlagSelected = mFlagSelected;
  copy.mDirty = mDirty;
  copy.mHasDirtyRect = mHasDirtyRect;
  copy.mDirtyRect = mDirtyRect;
  copy.mFlags = mFlags;
  copy.mPath = mPath;

  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    copy.SubLayers().push_back(ZvSmartPtr<ZvLayer>::Adopt(layer->Duplicate()));
  }
}

// Places and sizes.

void ZvLayer::SetOffsetOnly(const ZvPoint& offset) {
  mOffset.mValue = offset;
}

ZvPoint& ZvLayer::GetOffsetRef() {
  return mOffset.mValue;
}

void ZvLayer::SetCropping(const ZvRect& cropping, bool changed) {
  mCropping.mValue = cropping;
  mCropChanged.mValue = changed;
}

bool ZvLayer::GetCropping(ZvRect& outCropping) {
  outCropping = mCropping.mValue;
  return mCropChanged.mValue;
}

void ZvLayer::MoveTo(const ZvPoint& position) {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  const ZvPoint delta = position - mTransform.mPosition;
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    ZvPoint moved;
    layer->GetPosition(moved);
    moved += delta;
    layer->MoveTo(moved);
  }
  mTransform.mPosition = position;
  AddDirtyRect(OwnRect());
  MarkDirty(true);
}

void ZvLayer::GetPosition(ZvPoint& outPosition) {
  outPosition = mTransform.mPosition;
}

void ZvLayer::Nudge(const ZvPoint& delta) {
  AddDirtyRect(OwnRect());
  if (mImage) {
    mImage->Offset(delta);
  } else {
    mTransform.mPosition += delta;
  }
  AddDirtyRect(OwnRect());
  MarkDirty(true);
}

void ZvLayer::GetSize(ZvPoint& outSize) {
  outSize = ZvPoint();
  const ZvImage* const image = mImage ? mImage.Get() : mComposite.Get();
  if (image != nullptr) {
    image->GetSize(outSize.x, outSize.y);
  }
}

// Saturates where a far place and a large picture would leave the number range.
ZvRect ZvLayer::PlacedRect(const ZvImage* image, const ZvPoint& at) {
  if (image == nullptr) {
    return kEmptyRect;
  }
  const auto last = [](int32_t first, int32_t extent) {
    return static_cast<int32_t>(std::min<int64_t>(int64_t{first} + extent - 1, INT32_MAX));
  };
  return {at.x, at.y, last(at.x, image->Width()), last(at.y, image->Height())};
}

ZvPoint ZvLayer::ImagePlace() const {
  ZvPoint place = mTransform.mPosition;
  place += mOffset.mValue;
  return place;
}

ZvRect ZvLayer::OwnRect() {
  ZvPoint size;
  ZvPoint at;
  GetSize(size);
  GetPosition(at);
  const auto last = [](int32_t first, int32_t extent) {
    return static_cast<int32_t>(
        std::clamp<int64_t>(int64_t{first} + extent - 1, INT32_MIN, INT32_MAX));
  };
  return {at.x, at.y, last(at.x, size.x), last(at.y, size.y)};
}

void ZvLayer::GetBounds(ZvRect& outBounds) {
  outBounds = OwnRect();
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    ZvRect bounds;
    (*layer).GetBounds(bounds);
    outBounds.Union(bounds);
  }
}

ZvRect ZvLayer::CoveredRect() {
  ZvRect covered;
  GetBounds(covered);
  for (ZvLayerIterator iter(this, true); !iter.AtEnd(); iter.Previous()) {
    covered.Union(iter.Current()->mMergedRect);
    covered.Union(iter.Current()->mDirtyRect);
  }
  return covered;
}

void ZvLayer::GetImageBounds(ZvRect& outBounds) {
  GetBounds(outBounds);
  ZvPoint at = mCompositeOrigin;
  at += mOffset.mValue;
  outBounds.Union(PlacedRect(mComposite.Get(), at));
}

void ZvLayer::GetOpaqueBounds(ZvRect& outBounds) {
  outBounds = kEmptyRect;
  const bool own = mImage != nullptr;
  const ZvImage* const source = own ? mImage.Get() : mComposite.Get();
  if (source == nullptr) {
    return;
  }
  outBounds = source->VisibleBounds();
  if (!outBounds.IsEmpty()) {
    outBounds += own ? mTransform.mPosition : mCompositeOrigin;
  }
}

void ZvLayer::SetScale(float x, float y) {
  mTransform.mScale = ZvFloatPoint(x, y);
}

void ZvLayer::GetScale(ZvFloatPoint& outScale) {
  outScale = mTransform.mScale;
}

void ZvLayer::SetRetain(ZvRetainLevel level) {
  mRetain.mValue = level;
}

ZvRetainLevel ZvLayer::GetRetain() {
  return mRetain.mValue;
}

// Pictures.

void ZvLayer::SetComposite(ZvImage* image) {
  mComposite = image;
  mCompositeOrigin = ZvPoint();
  SetDirty(false, true);
}

ZvSmartPtr<ZvImage> ZvLayer::GetComposite() {
  return mComposite;
}

ZvSmartPtr<ZvImage>& ZvLayer::GetCompositeRef() {
  return mComposite;
}

ZvSmartPtr<ZvImage> ZvLayer::GetBackdrop() {
  return mBackdrop;
}

void ZvLayer::SetBackdrop(ZvImage* image) {
  mBackdrop = image;
  mBackdropOrigin = ZvPoint();
}

void ZvLayer::SetImage(ZvImage* image) {
  mImage = image;
  SetDirty(true, true);
}

ZvSmartPtr<ZvImage>& ZvLayer::GetImageRef() {
  return mImage;
}

ZvSmartPtr<ZvImage>& ZvLayer::EnsureImage(const ZvRect& rect, uint32_t pixelKind) {
  if (mImage == nullptr) {
    const auto extent = [](int32_t last) { return last == INT32_MAX ? last : last + 1; };
    const int32_t width = extent(rect.fRight);
    const int32_t height = extent(rect.fBottom);
    if (pixelKind == PxAlphaByte::kInfo.kind) {
      mImage.TakeOver(new ZvTiledImage<PxAlphaByte>(width, height));
    } else {
      mImage.TakeOver(new ZvTiledImage<PxRgbaBytes>(width, height));
    }
    mImage->Clear();
  }
  return mImage;
}

ZvSmartPtr<ZvImage> ZvLayer::GetResultImage() {
  if (mKind == kLayerKindGroup && HasSubLayers()) {
    const vm::LayerNesting nesting;
    if (ZvSmartPtr<ZvImage> result =
            nesting.TooDeep() ? nullptr : SubLayers().front()->GetResultImage()) {
      return result;
    }
  }
  return mComposite ? mComposite : mImage;
}

ZvSmartPtr<ZvImage> ZvLayer::GetAlphaImage() {
  return nullptr;
}

ZvSmartPtr<ZvImage> ZvLayer::GetTopResultImage() {
  if (mKind == kLayerKindGroup) {
    if (ZvLayer* const last = LastShownSubLayer()) {
      const vm::LayerNesting nesting;
      return nesting.TooDeep() ? nullptr : last->GetResultImage();
    }
  }
  return mImage ? mImage : mComposite;
}

void ZvLayer::GetPixel(PxRgbaBytes& outColor, const ZvPoint& point) {
  outColor = PxRgbaBytes();
  if (mImage == nullptr) {
    return;
  }
  const int64_t x = int64_t{point.x} - mTransform.mPosition.x;
  const int64_t y = int64_t{point.y} - mTransform.mPosition.y;
  if (x >= 0 && y >= 0 && x < mImage->Width() && y < mImage->Height()) {
    mImage->GetRgba(outColor, static_cast<int32_t>(x), static_cast<int32_t>(y));
  }
}

void ZvLayer::ConvertForOutput() {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    layer->ConvertForOutput();
  }
}

// The tree.

bool ZvLayer::HasSubLayers() {
  return !SubLayers().empty();
}

ZvLayer* ZvLayer::LastShownSubLayer() {
  const auto last =
      std::find_if(SubLayers().rbegin(), SubLayers().rend(),
                   [](const ZvSmartPtr<ZvLayer>& layer) { return layer && layer->IsShown(); });
  return last == SubLayers().rend() ? nullptr : last->Get();
}

bool ZvLayer::Holds(const ZvLayer* layer) {
  return ZvLayerIterator(this, true).Find(this, true, layer);
}

void ZvLayer::AddedLayer(ZvLayer& layer) {
  ZvRect bounds;
  layer.GetImageBounds(bounds);
  AddDirtyRect(bounds);
  layer.AddDirtyRect(bounds);
}

void ZvLayer::AddLayer(ZvLayer* layer) {
  if (layer == nullptr || layer->Holds(this)) {
    return;
  }
  SubLayers().push_back(layer);
  AddedLayer(*layer);
}

void ZvLayer::InsertLayer(ZvLayer* layer, ZvLayer* before) {
  if (before == nullptr) {
    AddLayer(layer);
    return;
  }
  ZvLayerIterator iter(this, true);
  if (layer == nullptr || !iter.Find(this, true, before) || iter.Parent() == nullptr) {
    return;
  }
  ZvLayer* const parent = iter.Parent();
  if (layer->Holds(parent)) {
    return;
  }
  ZvLayerList& list = parent->SubLayers();
  const auto place =
      std::find_if(list.begin(), list.end(),
                   [before](const ZvSmartPtr<ZvLayer>& entry) { return entry == before; });
  list.insert(place + 1, ZvSmartPtr<ZvLayer>(layer));
  if (parent != this) {
    ZvRect bounds;
    layer->GetImageBounds(bounds);
    parent->AddDirtyRect(bounds);
  }
  AddedLayer(*layer);
}

void ZvLayer::AddBase(ZvLayer* layer, ZvLayer* before) {
  if (layer != nullptr) {
    layer->SetKind(kLayerKindBase);
  }
  InsertLayer(layer, before);
}

bool ZvLayer::RemoveFromTree(ZvLayer* layer) {
  ZvLayerIterator iter(this, true);
  if (layer == nullptr || !iter.Find(this, true, layer)) {
    return false;
  }
  ZvLayer* const parent = iter.Parent();
  if (parent == nullptr) {
    return false;  // the root is in no list
  }
  const ZvRect bounds = layer->CoveredRect();
  if (iter.PreviousLayer() != nullptr) {
    iter.PreviousLayer()->AddDirtyRect(bounds);
  }
  parent->AddDirtyRect(bounds);
  ZvLayerList& list = parent->SubLayers();
  list.erase(std::find_if(list.begin(), list.end(),
                          [layer](const ZvSmartPtr<ZvLayer>& entry) { return entry == layer; }));
  return true;
}

void ZvLayer::InvalidateInParent(ZvLayer* layer) {
  ZvLayerIterator iter(this, true);
  if (layer == nullptr || !iter.Find(this, true, layer)) {
    return;
  }
  ZvLayer* const previous = iter.PreviousLayer();
  if (!CP_Check(previous != nullptr, "ZvLayer", 434, "iter.PreviousLayer() != nil")) {
    return;
  }
  const ZvRect bounds = layer->CoveredRect();
  previous->AddDirtyRect(bounds);

  // A place that isn't shown won't be rendered and pass the change on: then the parent has to.
  ZvLayer* const parent = iter.Parent();
  ZvLayerList& list = parent->SubLayers();
  const auto next =
      std::find_if(list.begin(), list.end(),
                   [layer](const ZvSmartPtr<ZvLayer>& entry) { return entry == layer; }) +
      1;
  ZvLayer* above = next == list.end() ? nullptr : next->Get();
  while (above != nullptr) {
    if (!above->IsShown()) {
      parent->AddDirtyRect(bounds);
      break;
    }
    above = above->HasSubLayers() ? above->SubLayers().front().Get() : nullptr;
  }
}

void ZvLayer::DropTemporaries() {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  for (size_t i = 0; i < SubLayers().size(); ++i) {
    if (SubLayers()[i]->IsTemp()) {
      SubLayers()[i]->DropTemporaries();
    }
  }
  SubLayers() = ZvLayerList(SubLayers().begin(), SubLayers().end());
}

// Plain state.

ZvString& ZvLayer::GetNameRef() {
  return mName.mValue;
}

void ZvLayer::SetOpacity(float opacity) {
  mOpacity.mValue = opacity;
  MarkDirty(true);
}

void ZvLayer::SetColor(const PxRgba64& color) {
  mColor = color;
}

PxRgba64 ZvLayer::GetColor() {
  return mColor;
}

void ZvLayer::EnableColor() {
  mHasColor = true;
}

void ZvLayer::DisableColor() {
  mHasColor = false;
}

void ZvLayer::SetVisible(bool visible, ZvLayer* root) {
  mVisible = visible;
  if (visible) {
    AddDirtyRect(CoveredRect());
  } else if (root != nullptr) {
    root->InvalidateInParent(this);
  }
}

bool ZvLayer::IsVisible() {
  return mVisible;
}

void ZvLayer::SetHidden(bool hidden, ZvLayer* root) {
  mFlagHidden = hidden;
  if (!hidden) {
    AddDirtyRect(CoveredRect());
  } else if (root != nullptr) {
    root->InvalidateInParent(this);
  }
}

bool ZvLayer::IsHidden() {
  return mFlagHidden;
}

void ZvLayer::SetTemp(bool temp) {
  mFlagTemp = temp;
}

bool ZvLayer::IsTemp() {
  return mFlagTemp;
}

void ZvLayer::SetLocked(bool locked) {
  mFlagLocked = locked;
}

bool ZvLayer::IsLocked() {
  return mFlagLocked;
}

bool ZvLayer::IsSelected() {
  return mFlagSelected;
}

void ZvLayer::SetSelected(bool selected) {
  mFlagSelected = selected;
}

void ZvLayer::SetFlags(uint32_t bits) {
  mFlags |= bits;
}

void ZvLayer::ClearFlags(uint32_t bits) {
  mFlags &= ~bits;
}

bool ZvLayer::TestFlags(uint32_t bits) {
  return (mFlags & bits) != 0;
}

uint32_t ZvLayer::GetFlags() {
  return mFlags;
}

void ZvLayer::GetPath(ZvString& outPath) {
  outPath = mPath;
}

ZvString& ZvLayer::GetPathRef() {
  return mPath;
}

// Streams.

void ZvLayer::WriteTo(ZvStream& stream) {
  const vm::LayerNesting nesting;
  const bool fixedForm = stream.GetVersion() < kMemberTableVersion;
  const bool tooDeep = nesting.TooDeep() || (fixedForm && nesting.Depth() > kMaxFixedFormNesting);
  ZvLayerList leftOut;
  if (tooDeep) {
    leftOut.swap(SubLayers());
  }
  ZvSleekStreaming::WriteTo(stream);
  if (fixedForm) {
    WriteFixedForm(stream);
  }
  if (tooDeep) {
    leftOut.swap(SubLayers());
  }
}

void ZvLayer::WriteFixedForm(ZvStream& stream) {
  mOffset.WriteValue(stream);
  mCropping.WriteValue(stream);
  stream.WriteBool(mCropChanged.mValue, nullptr, true);
  stream.WriteSInt16(static_cast<int16_t>(mRetain.mValue), "Retain", true);
  stream.WriteString(mName.mValue, "Name", true);
  stream.WriteFloat(mOpacity.mValue, "Opacity", true);
  ::WriteTo(mTransform, stream);
  stream.WriteLineBreak();
  stream.WriteSInt32(static_cast<int32_t>(SubLayers().size()), "SubLayers", true);
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    stream.WriteObject(layer.Get());
  }
}

void ZvLayer::ReadFrom(ZvStream& stream) {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return;
  }
  ZvSleekStreaming::ReadFrom(stream);
  if (stream.GetVersion() < kMemberTableVersion) {
    ReadFixedForm(stream);
  }
}

void ZvLayer::ReadFixedForm(ZvStream& stream) {
  ::ReadFrom(mOffset.mValue, stream);
  mCropping.ReadValue(stream);
  mCropChanged.mValue = stream.ReadBool();
  mRetain.mValue = static_cast<ZvRetainLevel>(static_cast<int8_t>(stream.ReadSInt16() & 0xFF));
  stream.ReadString(mName.mValue);
  mOpacity.mValue = stream.ReadFloat();
  ::ReadFrom(mTransform, stream);
  const int32_t count = stream.ReadSInt32();
  for (int32_t i = 0; i < count && !stream.AtEnd(); ++i) {
    ZvStreamable* const object = stream.ReadObject();
    auto* const layer = dynamic_cast<ZvLayer*>(object);
    if (CP_Check(layer != nullptr, "ZvLayer", 1126, "layer != nil")) {
      SubLayers().push_back(ZvSmartPtr<ZvLayer>::Adopt(layer));
    } else {
      delete object;
    }
  }
}
