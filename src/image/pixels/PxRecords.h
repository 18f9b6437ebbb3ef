#pragma once

// All fifteen pixel records; PxViews.h tells what each offers.

#include <type_traits>

#include "image/pixels/PxCmyk.h"
#include "image/pixels/PxField.h"
#include "image/pixels/PxGray.h"
#include "image/pixels/PxRgb48.h"
#include "image/pixels/PxViews.h"

namespace vm {

// Records whose images blend with their own kind by Composite.
template <class P>
concept Compositing = requires(P pixel, const P& src) {
  pixel.Composite(src);
  pixel.Composite(src, 1.0F);
};

// Calls `work.template operator()<P>()` for each record type, in the order of their description.
template <class Work>
void ForEachRecord(Work&& work) {
  work.template operator()<PxGrayByte>();
  work.template operator()<PxGrayABytes>();
  work.template operator()<PxAlphaByte>();
  work.template operator()<PxGrayBit>();
  work.template operator()<PxRgbBytes>();
  work.template operator()<PxRgbaBytes>();
  work.template operator()<PxRgb48>();
  work.template operator()<PxRgba64>();
  work.template operator()<PxDepthFloat>();
  work.template operator()<PxXyFixed>();
  work.template operator()<PxXyFloats>();
  work.template operator()<PxCmykBytes>();
  work.template operator()<PxCmykaBytes>();
  work.template operator()<PxCmyk64>();
  work.template operator()<PxCmyka80>();
}

}  // namespace vm
