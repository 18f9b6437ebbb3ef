#pragma once

#include "image/PixelImage.h"

// The contiguous image: one block of rows of P, top row first, each packed, with a stride that is a
// multiple of four bytes unless the caller gives another. It owns its block or wraps one of the
// caller's, and is meant for exchange with host and codec buffers and for small images. There are
// eleven of them: no PxGrayBit, PxDepthFloat, PxXyFixed or PxXyFloats.
//
// A row image has no outside and no default pixel: an x outside the row is a pixel of a
// neighbouring row. A y outside the image is reported by GetPixel, PutPixel, GetChannel, PutChannel
// and all loops ("y >= 0", "y < mHeight" in `ZvImage`). Whatever then lies outside the block reads
// as zero and is not written.
//
// Resize keeps the block when it can; see there. Duplicate refers to the same block.
template <class P>
class ZvTypedImage final : public vm::PixelImage<vm::RowImage, P> {
 public:
  ZvTypedImage() : ZvTypedImage(1, 1) {}
  // Sizes in pixels, below 1 become 1. rowBytes 0 is the default stride. Null `pixels` allocates a
  // zeroed block that the image owns; a given block is wrapped: the caller keeps it alive and big
  // enough, also for a Resize.
  ZvTypedImage(int32_t width, int32_t height, int32_t rowBytes = 0, void* pixels = nullptr);

  ZvImage* NewLike(bool copyPixels, int32_t width, int32_t height) const override;
};

// Each class is compiled in a source file of its own, under instances/.
extern template class ZvTypedImage<PxGrayByte>;
extern template class ZvTypedImage<PxGrayABytes>;
extern template class ZvTypedImage<PxAlphaByte>;
extern template class ZvTypedImage<PxRgbBytes>;
extern template class ZvTypedImage<PxRgbaBytes>;
extern template class ZvTypedImage<PxRgb48>;
extern template class ZvTypedImage<PxRgba64>;
extern template class ZvTypedImage<PxCmykBytes>;
extern template class ZvTypedImage<PxCmykaBytes>;
extern template class ZvTypedImage<PxCmyk64>;
extern template class ZvTypedImage<PxCmyka80>;
