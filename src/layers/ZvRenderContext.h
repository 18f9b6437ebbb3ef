#pragma once

#include <cstdint>

#include "foundation/ZvGeometry.h"
#include "foundation/ZvSmartPtr.h"
#include "image/ZvImage.h"

// What one render hands from layer to layer. The caller makes a fresh one for each render of a
// tree; a layer makes one from it for its sublayers.
//
// Positions are pixels of the canvas. An image in the context has its pixel (0, 0) at `mOrigin` of
// the canvas.
struct ZvRenderContext {
  // What the layers below made; null when there is nothing below. Layers replace it by what they
  // make.
  ZvSmartPtr<ZvImage> mTarget;
  // The last layer made something other than its own picture.
  bool mChanged = false;
  // The area that results of sublayers are cut to; empty for no cut. Cut to the target by each
  // render.
  ZvRect mClip = kEmptyRect;
  ZvRect mWorkArea = kEmptyRect;
  // The mask that was merged last, when what was merged last is a mask.
  ZvSmartPtr<ZvImage> mLatestMerge;
  ZvPoint mOrigin;
  ZvFloatPoint mScale{1.0F, 1.0F};
  int32_t mReserved1 = 0;
  int32_t mReserved2 = 0;
  ZvPoint mCanvasOrigin;
  double mCanvasScale = 640.0;
  // The part of the canvas that cached composites may cover; empty for no limit.
  ZvRect mLimit = kEmptyRect;
  // What this render has changed so far, in front of the layer that looks.
  bool mHasTouchedRect = false;
  ZvRect mTouchedRect = kEmptyRect;
  ZvSmartPtr<ZvImage> mShared1;
  ZvSmartPtr<ZvImage> mShared2;
  // A mask through which everything is merged, at the coordinates of what is merged; null for none.
  ZvSmartPtr<ZvImage> mBlendSource;

  ZvRenderContext() = default;

  // The context for the sublayers: the same target and what is known of its place, nothing touched.
  ZvRenderContext ForSubLayers() const {
    ZvRenderContext child;
    child.mTarget = mTarget;
    child.mOrigin = mOrigin;
    child.mClip = mClip;
    child.mWorkArea = mWorkArea;
    child.mLimit = mLimit;
    child.mScale = mScale;
    return child;
  }

  void AddTouchedRect(const ZvRect& rect) {
    if (rect.IsEmpty()) {
      return;
    }
    mTouchedRect.Union(rect);
    mHasTouchedRect = true;
  }
};
