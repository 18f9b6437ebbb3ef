#pragma once

#include "image/ZvImage.h"

// Operations on masks, for whoever composes layers.

// True if every pixel of the area reads 255 through GetByte. A null `rect` is the whole image, any
// other is cut to it. Null `mask` is reported ("mask != nil") and is not solid.
bool IsSolidMask(const ZvImage* mask, const ZvRect* rect);

// Makes the mask at least as large as the reference in both directions, keeping its contents. The
// new margin is solid if the mask was, else transparent. Nothing happens if either is null.
void MatchMaskSize(ZvImage* mask, const ZvImage* reference);
