// The effect on an image, in whatever pixel format the image has.
#pragma once

#include <cstdint>

#include "effects_app/EffectSettings.h"

class ZvImage;

namespace effects_app {

// Sharpens, then saturates, brightens and balances the colours of `image` in place. Ink is taken as
// missing light, with the share of black ink kept where it can be; gray has no saturation and no
// balance; alpha stays. Images without colour (alpha, depth, coordinates) stay as they are.
//
// `redAndBlueExchanged` says that the image's red holds blue and its blue red. With a `mask` of the
// image's size the effect is weighted by the mask's coverage; a mask of another size, whose place
// in the image nobody told, is ignored. `mask` may be null.
void ApplyEffect(ZvImage& image, const ZvImage* mask, const EffectSettings& settings,
                 bool redAndBlueExchanged);

}  // namespace effects_app
