#pragma once

#include <cstdint>

#include "image/ZvImage.h"

// Images by name and by number.
//
// The class name under which an image is written (ZvImage::ClassName) and the name under which its
// creator is registered are two lists. REQUIRED: the lists don't match, and both are part of the
// file format. Tiled PxCmyk64 is written as "ZvImageCmyka64" while "ZvImageCmyk64" is registered;
// tiled PxGrayABytes, PxDepthFloat, PxXyFixed and PxXyFloats are written under their type names,
// such as "ZvTiledImage<PxDepthFloat>"; tiled PxCmyka80 and the row images of words and inks have
// no registered name at all. Such images can be written and not read back.

// A new image for a codec, width by height pixels, owned by the caller; null for 16 bits per pixel
// of a kind other than "GraB". `tiled` chooses the family, except that gray with 8 bits (every kind
// but "AlpB") and gray with alpha are always row images. Depths that are not listed give
// PxRgbaBytes.
ZvImage* CreateImageForDepth(int32_t width, int32_t height, int32_t bitsPerPixel,
                             uint32_t pixelKind, bool tiled);

// The pixel kind for an image that merges the four (any may be null): "Rg64" if one of the last
// three has more than 8 bits per channel, else "Rgba". The first one doesn't count.
uint32_t ChooseLayerKind(const ZvImage* image1, const ZvImage* image2, const ZvImage* image3,
                         const ZvImage* image4);

// A new tiled image, owned by the caller: PxRgba64 for "Rg64", PxRgbaBytes for every other kind.
ZvImage* CreateLayerImage(uint32_t pixelKind, int32_t width, int32_t height, bool clear);

// Class names that copies look for.
extern const ZvString gImageClassName;           // "ZvImage"
extern const ZvString gImageGrayBitClassName;    // "ZvImageGrayBit"
extern const ZvString gImageRgbaBytesClassName;  // "ZvImageRgbaBytes"
extern const ZvString gImageRgbBytesClassName;   // "ZvImageRgbBytes"

namespace vm {

// The streaming name for a run-time type name such as "ZvTiledImage<PxRgbBytes>"; a name that is
// not listed is its own.
const char* StreamingNameOf(const char* typeName);

}  // namespace vm
