// A picture to try a filter on when nobody brings one.
#pragma once

#include <cstdint>

#include "filter_host/Picture.h"

namespace pictures {

// A photograph-like landscape, the same for the same size every time: a lake below mountains on a
// hazy evening, with clouds, fog, trees, reflections, and the softness and grain of a camera. 8-bit
// RGB.
filter_host::Picture MakeScene(int32_t width, int32_t height);

// Left half from `before`, right half from `after`, with a white line between. Both are of one
// size; colours are 8-bit RGB whatever they were.
filter_host::Picture JoinHalves(const filter_host::Picture& before,
                                const filter_host::Picture& after);

}  // namespace pictures
