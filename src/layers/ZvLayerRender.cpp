// How a tree of layers becomes one image. ZvLayer.h tells the idea.

#include <algorithm>

#include "foundation/CP_DebugAssert.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvImageFactory.h"
#include "image/ZvImageOps.h"
#include "layers/LayerNesting.h"
#include "layers/ZvLayer.h"

namespace {

constexpr PxRgba64 kTransparentWhite{0xFFFF, 0xFFFF, 0xFFFF, 0};

constexpr ZvRect kCanvas{-kMaxCanvasExtent, -kMaxCanvasExtent, kMaxCanvasExtent - 1,
                         kMaxCanvasExtent - 1};

ZvRect Moved(ZvRect rect, const ZvPoint& origin) {
  rect -= origin;
  return rect;
}

}  // namespace

void ZvLayer::Render(ZvSmartPtr<ZvImage>& outResult, ZvRenderContext& context) {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    outResult = context.mTarget;
    return;
  }
  if (context.mTarget && context.mTarget == mComposite) {
    // The context comes from the last render of this layer: its own result is not what lies below
    // it.
    context.mTarget = nullptr;
    context.mOrigin = ZvPoint();
  }

  const bool overAnother = context.mTarget && !(context.mTarget == mBackdrop);
  if (!context.mHasTouchedRect && !overAnother && mComposite && !NeedsRender() &&
      !AnySubLayerNeedsRender()) {
    context.mTarget = mComposite;
    context.mOrigin = mCompositeOrigin;
    outResult = mComposite;
    return;
  }

  if (context.mTarget) {
    const ZvRect extent = PlacedRect(context.mTarget.Get(), context.mOrigin);
    if (context.mClip.IsEmpty()) {
      context.mClip = extent;
    } else {
      context.mClip.Intersect(extent);
    }
  }
  Composite(context);

  if (mComposite) {
    context.mTarget = mComposite;
    context.mOrigin = mCompositeOrigin;
  } else if (mImage) {
    context.mTarget = mImage;
    context.mOrigin = ImagePlace();
  }
  if (mHasDirtyRect) {
    context.AddTouchedRect(mDirtyRect);
  }
  SetDirty(false, true);
  outResult = context.mTarget;
}

int32_t ZvLayer::CountRenderable(ZvRenderContext& context) {
  const vm::LayerNesting nesting;
  if (nesting.TooDeep()) {
    return 0;
  }
  if (context.mTarget == nullptr) {
    context.mTarget = mImage;
  }
  if (!context.mHasTouchedRect && !NeedsRender() && mComposite && !AnySubLayerNeedsRender()) {
    return 0;
  }
  int32_t count = 0;
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    if (layer->IsShown()) {
      count += layer->CountRenderable(context);
    }
  }
  return count;
}

void ZvLayer::Prepare(ZvRenderContext&) {}

void ZvLayer::Finish() {}

void ZvLayer::TakeOverBackdrop(const ZvRenderContext& context) {
  ZvRect changed = context.mHasTouchedRect ? context.mTouchedRect : kEmptyRect;
  const bool sameBackdrop =
      context.mTarget == mBackdrop && (!mBackdrop || context.mOrigin == mBackdropOrigin);
  if (!sameBackdrop) {
    changed.Union(PlacedRect(context.mTarget.Get(), context.mOrigin));
    changed.Union(PlacedRect(mBackdrop.Get(), mBackdropOrigin));
    mBackdrop = context.mTarget;
    mBackdropOrigin = context.mOrigin;
  }
  if (!changed.IsEmpty()) {
    AddDirtyRect(changed);
  }
}

void ZvLayer::NotePlace(const ZvRect& place) {
  if (!mMergedRect.IsEmpty() && !(mMergedRect == place)) {
    AddDirtyRect(mMergedRect);
  }
  if (mDirty && !place.IsEmpty()) {
    AddDirtyRect(place);
  }
}

// Sublayers that aren't shown are owed what changed while they were skipped; they pay when they are
// shown again.
void ZvLayer::RenderSubLayers(ZvRenderContext& child, const ZvRect& owed) {
  bool first = true;
  for (const ZvSmartPtr<ZvLayer>& layer : SubLayers()) {
    if (!layer->IsShown()) {
      ZvRect missed = owed;
      missed.Union(child.mTouchedRect);
      if (!missed.IsEmpty()) {
        layer->AddDirtyRect(missed);
      }
      continue;
    }
    if (first && !owed.IsEmpty()) {
      layer->AddDirtyRect(owed);
    }
    first = false;
    MatchMaskSize(child.mLatestMerge.Get(), child.mTarget.Get());
    ZvSmartPtr<ZvImage> result;
    layer->Render(result, child);
  }
}

void ZvLayer::Composite(ZvRenderContext& context) {
  if (!mVisible) {
    return;
  }
  const ZvSmartPtr<ZvImage> input = context.mTarget;
  const ZvPoint inputOrigin = context.mOrigin;
  TakeOverBackdrop(context);
  const ZvRect place = PlacedRect(mImage.Get(), ImagePlace());
  NotePlace(place);

  ZvRenderContext child = context.ForSubLayers();
  const ZvRect owed = mHasDirtyRect ? mDirtyRect : kEmptyRect;
  ZvSmartPtr<ZvImage> result;
  ZvPoint resultOrigin;
  if (owed.IsEmpty() && !AnySubLayerNeedsRender()) {
    if (ZvLayer* const last = LastShownSubLayer()) {
      result = last->mComposite;
      resultOrigin = last->mCompositeOrigin;
    }
  } else {
    RenderSubLayers(child, owed);
    if (!(child.mTarget == input)) {
      result = child.mTarget;
      resultOrigin = child.mOrigin;
    }
  }

  if (child.mHasTouchedRect) {
    AddDirtyRect(child.mTouchedRect);
  }
  if (result) {
    ZvRect clip = mHasDirtyRect ? mDirtyRect : kEmptyRect;
    if (mComposite == nullptr) {
      clip.Union(PlacedRect(result.Get(), resultOrigin));
    }
    if (!context.mClip.IsEmpty()) {
      clip.Intersect(context.mClip);
    }
    if (!clip.IsEmpty()) {
      // The sublayers were rendered over the context's image, so their result holds it already.
      ZvRenderContext alone = context;
      if (context.mBlendSource == nullptr) {
        alone.mTarget = nullptr;
      }
      Merge(alone, *result, resultOrigin, &clip, 1.0F);
      context.mLatestMerge = alone.mLatestMerge;
    }
  }

  if (mHasDirtyRect) {
    context.AddTouchedRect(mDirtyRect);
  }
  // A mask set hands its sublayers' result on; any other layer works on with it, or with what it
  // was given.
  context.mTarget = result ? result : input;
  context.mOrigin = result ? resultOrigin : inputOrigin;

  if (mHasDirtyRect) {
    if (mImage) {
      Merge(context, *mImage, ImagePlace(), &mDirtyRect, mOpacity.mValue);
    } else if (result == nullptr && mComposite) {
      RestoreBackdrop(context, mDirtyRect);
    }
    mMergedRect = place;
  }

  ZvString className;
  ClassName(className);
  if (className == kClassName) {
    SetDirty(false, true);
  }
}

bool ZvLayer::HoldInComposite(ZvRenderContext& context, const ZvImage* source, const ZvRect& area) {
  const auto onCanvas = [&context](ZvRect rect) {
    if (!context.mLimit.IsEmpty()) {
      rect.Intersect(context.mLimit);
    }
    rect.Intersect(kCanvas);
    return rect;
  };
  ZvRect hold = onCanvas(area);
  hold.Union(onCanvas(PlacedRect(context.mTarget.Get(), context.mOrigin)));
  if (hold.IsEmpty()) {
    return false;
  }

  const ZvPoint corner(std::min(0, hold.fLeft), std::min(0, hold.fTop));
  if (mComposite == nullptr) {
    mCompositeOrigin = corner;
    const uint32_t kind = ChooseLayerKind(source, context.mTarget.Get(), nullptr, nullptr);
    mComposite.TakeOver(
        CreateLayerImage(kind, hold.fRight - corner.x + 1, hold.fBottom - corner.y + 1, true));
    return true;
  }

  ZvRect covered = PlacedRect(mComposite.Get(), mCompositeOrigin);
  if (hold.IsOutside(covered)) {
    covered.Union(hold);
    mComposite->Resize(covered.fRight - covered.fLeft + 1, covered.fBottom - covered.fTop + 1, true,
                       kResampleNone, kRgba64Clear);
    const ZvPoint grownOrigin(covered.fLeft, covered.fTop);
    const ZvPoint shift = mCompositeOrigin - grownOrigin;
    if (!(shift == ZvPoint())) {
      mComposite->Offset(shift);
      mCompositeOrigin = grownOrigin;
    }
  }
  return false;
}

void ZvLayer::LeaveOut(ZvRenderContext& context) {
  TakeOverBackdrop(context);
  NotePlace(kEmptyRect);
  mMergedRect = kEmptyRect;
  if (mHasDirtyRect && mComposite) {
    context.AddTouchedRect(mDirtyRect);
    RestoreBackdrop(context, mDirtyRect);
  }
}

void ZvLayer::RestoreBackdrop(ZvRenderContext& context, const ZvRect& clip) {
  if (mComposite == nullptr) {
    return;
  }
  const ZvRect covered = PlacedRect(mComposite.Get(), mCompositeOrigin);
  ZvRect area = clip;
  area.Intersect(covered);
  if (area.IsEmpty()) {
    return;
  }
  mComposite->ResetClip();
  const ZvImage* const below = context.mTarget.Get();
  if (below == nullptr || area.IsOutside(PlacedRect(below, context.mOrigin))) {
    mComposite->DrawRect(Moved(area, mCompositeOrigin), kTransparentWhite, true, false, nullptr);
  }
  if (below != nullptr) {
    const ZvRect inComposite = Moved(area, mCompositeOrigin);
    mComposite->CopyFrom(below, below->Bounds(), context.mOrigin - mCompositeOrigin, &inComposite);
  }
}

void ZvLayer::Merge(ZvRenderContext& context, ZvImage& source, const ZvPoint& at,
                    const ZvRect* clip, float opacity) {
  CP_Check(!context.mTarget || context.mTarget->PixelKind() != PxRgbBytes::kInfo.kind, "ZvLayer",
           970, "0");

  ZvRect area;
  if (clip != nullptr) {
    area = *clip;
  } else {
    GetBounds(area);
  }
  ZvRect work = PlacedRect(&source, at);
  work.Intersect(area);

  const bool anew = HoldInComposite(context, &source, work);
  if (mComposite == nullptr) {
    return;
  }
  // A new composite takes over all that lies below, an old one what the clip says.
  if (anew && context.mTarget) {
    RestoreBackdrop(context, PlacedRect(mComposite.Get(), mCompositeOrigin));
  } else {
    RestoreBackdrop(context, anew ? work : area);
  }

  work.Intersect(PlacedRect(mComposite.Get(), mCompositeOrigin));
  if (!work.IsEmpty()) {
    const ZvRect inComposite = Moved(work, mCompositeOrigin);
    const ZvPoint place = at - mCompositeOrigin;
    if (context.mBlendSource) {
      mComposite->BlendMasked(&source, context.mBlendSource.Get(), source.Bounds(), place, opacity,
                              &inComposite);
    } else {
      mComposite->BlendRect(&source, source.Bounds(), place, opacity, &inComposite);
    }
  }
  // Only a mask can be outgrown by the target and made to match it; a picture keeps its size.
  context.mLatestMerge = source.PixelKind() == PxAlphaByte::kInfo.kind ? &source : nullptr;
  context.mTarget = mComposite;
  context.mOrigin = mCompositeOrigin;
}
