// A contact sheet of what the image operations do.
#pragma once

#include "foundation/ZvSmartPtr.h"
#include "image/ZvImage.h"

namespace gallery {

// Every resampling mode on a photograph-like picture, down and up, recoloured and masked transfers,
// and every drawing primitive. Opaque PxRgbaBytes; the same each time.
ZvSmartPtr<ZvImage> MakeGallery();

}  // namespace gallery
