// The operations that scale, recolour or mask what they transfer.
// Not written yet: the declarations hold their slots and transfer nothing.

#include "image/pixels/PxRecords.h"
#include "image/RunImage.h"

namespace vm {

void RunImage::CopyScaled(const ZvImage*, const ZvRect&, const ZvRect&, int32_t, const ZvRect*) {}
void RunImage::CopyAdjusted(const ZvImage*, const ZvRect&, const ZvRect&, float, float, float, int32_t,
                            const ZvRect*) {}
void RunImage::BlendMasked(const ZvImage*, const ZvImage*, const ZvRect&, const ZvPoint&, float,
                           const ZvRect*) {}
void RunImage::BlendScaled(const ZvImage*, const ZvRect&, const ZvRect&, float, int32_t, const ZvRect*) {}
void RunImage::BlendAdjusted(const ZvImage*, const ZvRect&, const ZvRect&, float, float, float, float,
                             int32_t, const ZvRect*) {}
void RunImage::PaintMasked(const PxRgba64&, const ZvImage*, const ZvRect&, const ZvPoint&, float,
                           const ZvRect*) {}

}  // namespace vm
