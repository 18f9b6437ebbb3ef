#pragma once

#include "layers/ZvLayer.h"

namespace compose {

// A tree of layers over a drawn landscape, `width` by `height` pixels: the landscape, a coloured
// sheet seen through a mask, a half transparent group of circles, and a line of text with its
// shadow. The creator owns it.
ZvSmartPtr<ZvLayer> MakeLayeredPicture(int32_t width, int32_t height);

}  // namespace compose
