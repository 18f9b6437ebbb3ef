#pragma once

#include "image/ZvImage.h"

// The scaling, recolouring and masked operations once more, written pixel by pixel from their
// rules, over the virtual operations of the images alone. Slow, and without a line in common with
// the library's own.
namespace vm::slow {

void CopyScaled(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                int32_t mode, const ZvRect* clip);
void CopyAdjusted(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                  float hue, float saturation, float lightness, int32_t mode, const ZvRect* clip);
void BlendScaled(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                 float opacity, int32_t mode, const ZvRect* clip);
void BlendAdjusted(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                   float hue, float saturation, float lightness, float opacity, int32_t mode,
                   const ZvRect* clip);
void BlendMasked(ZvImage& to, const ZvImage& from, const ZvImage* mask, const ZvRect& fromRect,
                 const ZvPoint& toPoint, float opacity, const ZvRect* clip);
void PaintMasked(ZvImage& to, const PxRgba64& colour, const ZvImage& mask, const ZvRect& fromRect,
                 const ZvPoint& toPoint, float opacity, const ZvRect* clip);
void SampleKernel(const ZvImage& from, PxRgbaBytes& out, float x, float y, int32_t mode);

}  // namespace vm::slow
