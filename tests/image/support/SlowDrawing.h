#pragma once

#include "image/support/RandomImages.h"
#include "image/ZvImage.h"

// Lines, ovals and polygons once more, written pixel by pixel from their rules. Slow, and without a
// line in common with the library's own.
namespace vm::slow {

// The operations need the class for the colour's record and its mix.
void DrawLine(const ImageClass& imageClass, ZvImage& image, const ZvPoint& from, const ZvPoint& to,
              const PxRgba64& colour, bool xorMode, ZvImage* mask, int32_t dash);
void DrawOval(const ImageClass& imageClass, ZvImage& image, const ZvRect& rect,
              const PxRgba64& colour, bool filled, bool xorMode, ZvImage* mask);
void DrawPolygon(const ImageClass& imageClass, ZvImage& image, const std::vector<ZvPoint>& points,
                 const PxRgba64& colour, bool filled, bool xorMode, bool skipFirst,
                 bool clampToImage, bool closed, int32_t dash, float feather, ZvImage* mask,
                 const ZvRect* clip);

}  // namespace vm::slow
