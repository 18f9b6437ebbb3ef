#pragma once

#include "image/PixelImage.inl"
#include "image/RecordOps.inl"
#include "image/ZvTiledImage.h"

template <class P>
ZvTiledImage<P>::ZvTiledImage(int32_t width, int32_t height)
    : vm::PixelImage<vm::TiledImage, P>(width, height, vm::RecordOpsOf<P>(),
                                        vm::ImageTypeName<P>::kTiled.data()) {}

template <class P>
ZvImage* ZvTiledImage<P>::NewLike(bool copyPixels, int32_t width, int32_t height) const {
  auto* const image =
      new ZvTiledImage(width != 0 ? width : this->mWidth, height != 0 ? height : this->mHeight);
  if (copyPixels)
    image->CopyImage(this);
  return image;
}
