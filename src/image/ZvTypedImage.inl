#pragma once

#include "image/PixelImage.inl"
#include "image/ZvTypedImage.h"

template <class P>
ZvTypedImage<P>::ZvTypedImage(int32_t width, int32_t height, int32_t rowBytes, void* pixels)
    : vm::PixelImage<vm::RowImage, P>(width, height, rowBytes, static_cast<uint8_t*>(pixels),
                                      vm::RecordOpsOf<P>(), vm::ImageTypeName<P>::kTyped.data()) {}

template <class P>
ZvImage* ZvTypedImage<P>::NewLike(bool copyPixels, int32_t width, int32_t height) const {
  auto* const image =
      new ZvTypedImage(width != 0 ? width : this->mWidth, height != 0 ? height : this->mHeight);
  if (copyPixels)
    image->CopyImage(this);
  return image;
}
