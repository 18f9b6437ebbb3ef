#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "foundation/ZvSmartPtr.h"
#include "gtest/gtest.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvImage.h"

// Images of all 26 classes behind the public interface, for tests that compare an operation with a
// slow twin.
namespace vm {

struct ImageClass {
  std::string name;  // "tiled PxRgbBytes"
  bool tiled;
  ZvImage* (*make)(int32_t width, int32_t height);
  // Mix255 of a colour into one pixel of an image of this class.
  void (*mix255)(ZvImage& image, const PxRgba64& colour, float t, int32_t x, int32_t y);
};

const std::vector<ImageClass>& ImageClasses();
// The class with this name; it must exist.
const ImageClass& ImageClassNamed(const std::string& name);

class RandomSource {
 public:
  explicit RandomSource(uint32_t seed) : mEngine(seed) {}

  // Both ends are possible.
  int32_t Between(int32_t low, int32_t high);
  bool OneIn(int32_t n) { return Between(1, n) == 1; }
  ZvRect RectWithin(const ZvRect& area);
  template <class T>
  const T& Of(const std::vector<T>& list) {
    return list[static_cast<size_t>(Between(0, static_cast<int32_t>(list.size()) - 1))];
  }

 private:
  std::mt19937 mEngine;
};

// A new image with random pixels. Of a tiled one some tiles may be absent, and some pixels lie
// outside the image.
ZvSmartPtr<ZvImage> RandomImage(const ImageClass& imageClass, int32_t width, int32_t height,
                                RandomSource& random);
// A second image of the same class with the same pixels, in and around the image, and the same
// tiles.
ZvSmartPtr<ZvImage> Twin(const ImageClass& imageClass, const ZvImage& image);

// Compares every channel of every pixel, for tiled images also around the image, and the tiles that
// exist.
::testing::AssertionResult SamePixels(const ZvImage& expected, const ZvImage& actual);

// One pixel's channels as they are stored.
struct RawPixel {
  uint8_t bytes[20] = {};

  bool operator==(const RawPixel&) const = default;
};
RawPixel GetRaw(const ZvImage& image, int32_t x, int32_t y);
void PutRaw(ZvImage& image, const RawPixel& pixel, int32_t x, int32_t y);

}  // namespace vm
