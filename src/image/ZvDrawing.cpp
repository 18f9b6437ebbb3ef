// Lines, ovals and polygons.
// Not written yet: the declarations hold their slots and draw nothing.

#include "image/pixels/PxRecords.h"
#include "image/RunImage.h"

namespace vm {

void RunImage::DrawLine(const ZvPoint&, const ZvPoint&, const PxRgba64&, bool, ZvImage*, int32_t) {}
void RunImage::DrawOval(const ZvRect&, const PxRgba64&, bool, bool, ZvImage*) {}
void RunImage::DrawPolygon(int32_t, const ZvPoint*, const PxRgba64&, bool, bool, bool, bool, bool, int32_t,
                           float, ZvImage*, const ZvRect*) {}

}  // namespace vm
