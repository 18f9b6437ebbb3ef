#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "foundation/ZvSmartPtr.h"
#include "gtest/gtest.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

namespace vm {

inline constexpr PxRgba64 kOpaqueWhite{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};

// A handle that owns a freshly made image.
inline ZvSmartPtr<ZvImage> Own(ZvImage* image) {
  return ZvSmartPtr<ZvImage>::Adopt(image);
}
template <class Image, class... Arguments>
ZvSmartPtr<Image> New(Arguments... arguments) {
  return ZvSmartPtr<Image>::Adopt(new Image(arguments...));
}

using Random = std::mt19937;

// A record with random contents that every rule is defined for.
template <class P>
P RandomRecord(Random& random) {
  P pixel;
  if constexpr (std::is_same_v<P, PxDepthFloat>) {
    pixel.depth = static_cast<float>(random() % 1001) / 1000.0f;
  } else if constexpr (std::is_same_v<P, PxXyFloats>) {
    pixel = {static_cast<float>(random() % 2550) / 10.0f,
             static_cast<float>(random() % 2550) / 10.0f};
  } else if constexpr (std::is_same_v<P, PxGrayBit>) {
    pixel.value = random() & 1;
  } else {
    uint8_t bytes[sizeof(P)];
    for (uint8_t& byte : bytes) {
      // Full and empty channels are where the rules have their corners.
      const uint32_t kind = random() % 4;
      byte = kind == 0 ? 0 : kind == 1 ? 255 : static_cast<uint8_t>(random());
    }
    std::memcpy(static_cast<void*>(&pixel), bytes, sizeof(P));
  }
  return pixel;
}

template <class P>
bool SameBytes(const P& a, const P& b) {
  return std::memcmp(&a, &b, sizeof(P)) == 0;
}

template <class P>
std::string Hex(const P& pixel) {
  static constexpr char kDigits[] = "0123456789abcdef";
  uint8_t bytes[sizeof(P)];
  std::memcpy(bytes, &pixel, sizeof(P));
  std::string text;
  for (const uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

// The pixel types' class templates as one: `Image::Record` is P.
template <class P>
struct Tiled {
  using Record = P;
  using Image = ZvTiledImage<P>;
};
template <class P>
struct Typed {
  using Record = P;
  using Image = ZvTypedImage<P>;
};

// All 26 image classes.
using AllImages =
    ::testing::Types<Tiled<PxGrayByte>, Tiled<PxGrayABytes>, Tiled<PxAlphaByte>, Tiled<PxGrayBit>,
                     Tiled<PxRgbBytes>, Tiled<PxRgbaBytes>, Tiled<PxRgb48>, Tiled<PxRgba64>,
                     Tiled<PxDepthFloat>, Tiled<PxXyFixed>, Tiled<PxXyFloats>, Tiled<PxCmykBytes>,
                     Tiled<PxCmykaBytes>, Tiled<PxCmyk64>, Tiled<PxCmyka80>, Typed<PxGrayByte>,
                     Typed<PxGrayABytes>, Typed<PxAlphaByte>, Typed<PxRgbBytes>, Typed<PxRgbaBytes>,
                     Typed<PxRgb48>, Typed<PxRgba64>, Typed<PxCmykBytes>, Typed<PxCmykaBytes>,
                     Typed<PxCmyk64>, Typed<PxCmyka80>>;

using AllTiled =
    ::testing::Types<Tiled<PxGrayByte>, Tiled<PxGrayABytes>, Tiled<PxAlphaByte>, Tiled<PxGrayBit>,
                     Tiled<PxRgbBytes>, Tiled<PxRgbaBytes>, Tiled<PxRgb48>, Tiled<PxRgba64>,
                     Tiled<PxDepthFloat>, Tiled<PxXyFixed>, Tiled<PxXyFloats>, Tiled<PxCmykBytes>,
                     Tiled<PxCmykaBytes>, Tiled<PxCmyk64>, Tiled<PxCmyka80>>;

using AllTyped =
    ::testing::Types<Typed<PxGrayByte>, Typed<PxGrayABytes>, Typed<PxAlphaByte>, Typed<PxRgbBytes>,
                     Typed<PxRgbaBytes>, Typed<PxRgb48>, Typed<PxRgba64>, Typed<PxCmykBytes>,
                     Typed<PxCmykaBytes>, Typed<PxCmyk64>, Typed<PxCmyka80>>;

// Names the instances of a typed test.
struct ImageTestNames {
  template <class T>
  static std::string GetName(int) {
    const bool tiled = std::is_same_v<typename T::Image, ZvTiledImage<typename T::Record>>;
    return std::string(tiled ? "Tiled_" : "Typed_") + T::Record::kName;
  }
};

// Random records in every pixel.
template <class P, class Image>
void Randomize(Image& image, Random& random) {
  for (int32_t y = 0; y < image.Height(); ++y) {
    for (int32_t x = 0; x < image.Width(); ++x)
      image.PutPixel(RandomRecord<P>(random), x, y);
  }
}

template <class P, class Image>
P PixelAt(const Image& image, int32_t x, int32_t y) {
  P pixel;
  image.GetPixel(pixel, x, y);
  return pixel;
}

template <class P>
inline constexpr bool kHasRowImage =
    !std::is_same_v<P, PxGrayBit> && !std::is_same_v<P, PxDepthFloat> &&
    !std::is_same_v<P, PxXyFixed> && !std::is_same_v<P, PxXyFloats>;

// The record at (x, y) of an image of P in either family; null for an image of another pixel type.
template <class P>
std::optional<P> RecordAt(const ZvImage& image, int32_t x, int32_t y) {
  if (const auto* const tiled = dynamic_cast<const ZvTiledImage<P>*>(&image))
    return PixelAt<P>(*tiled, x, y);
  if constexpr (kHasRowImage<P>) {
    if (const auto* const typed = dynamic_cast<const ZvTypedImage<P>*>(&image))
      return PixelAt<P>(*typed, x, y);
  }
  return std::nullopt;
}

// The records of an area, row by row, read one by one.
template <class P, class Image>
std::vector<P> Records(const Image& image, const ZvRect& area) {
  std::vector<P> records;
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight; ++x)
      records.push_back(PixelAt<P>(image, x, y));
  }
  return records;
}

// Compares an image with what `expected(x, y)` says, and shows the first difference.
template <class P, class Image, class Expected>
::testing::AssertionResult Holds(const Image& image, const ZvRect& area, Expected&& expected) {
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight; ++x) {
      const P actual = PixelAt<P>(image, x, y);
      const P wanted = expected(x, y);
      if (!SameBytes(actual, wanted))
        return ::testing::AssertionFailure() << P::kName << " at (" << x << ", " << y << ") is "
                                             << Hex(actual) << ", not " << Hex(wanted);
    }
  }
  return ::testing::AssertionSuccess();
}

// A class to make images of at run time.
struct AnyClass {
  std::string name;
  bool tiled;
  bool cmykBytes;
  // Width, height, seed of the contents.
  std::function<ZvSmartPtr<ZvImage>(int32_t, int32_t, uint32_t)> make;
};

template <class Image, class P>
AnyClass AnyClassOf(bool tiled) {
  return {std::string(tiled ? "Tiled " : "Typed ") + P::kName, tiled,
          std::is_same_v<P, PxCmykBytes>, [](int32_t width, int32_t height, uint32_t seed) {
            auto image = New<Image>(width, height);
            Random random(seed);
            Randomize<P>(*image, random);
            return ZvSmartPtr<ZvImage>(image);
          }};
}

// All 26 classes.
inline std::vector<AnyClass> EveryClass() {
  std::vector<AnyClass> classes;
  ForEachRecord([&]<class P>() { classes.push_back(AnyClassOf<ZvTiledImage<P>, P>(true)); });
  const auto typed = [&]<class P>() { classes.push_back(AnyClassOf<ZvTypedImage<P>, P>(false)); };
  typed.template operator()<PxGrayByte>();
  typed.template operator()<PxGrayABytes>();
  typed.template operator()<PxAlphaByte>();
  typed.template operator()<PxRgbBytes>();
  typed.template operator()<PxRgbaBytes>();
  typed.template operator()<PxRgb48>();
  typed.template operator()<PxRgba64>();
  typed.template operator()<PxCmykBytes>();
  typed.template operator()<PxCmykaBytes>();
  typed.template operator()<PxCmyk64>();
  typed.template operator()<PxCmyka80>();
  return classes;
}

inline PxRgbaBytes RgbaAt(const ZvImage& image, int32_t x, int32_t y) {
  PxRgbaBytes pixel;
  image.GetRgba(pixel, x, y);
  return pixel;
}
inline PxRgba64 Rgba64At(const ZvImage& image, int32_t x, int32_t y) {
  PxRgba64 pixel;
  image.GetRgba64(pixel, x, y);
  return pixel;
}
inline uint8_t ByteAt(const ZvImage& image, int32_t x, int32_t y) {
  uint8_t byte = 0;
  image.GetByte(byte, x, y);
  return byte;
}

inline std::string ClassNameOf(const ZvImage& image) {
  ZvString name;
  image.ClassName(name);
  return name.c_str();
}

}  // namespace vm

inline void PrintTo(const ZvRect& rect, std::ostream* out) {
  *out << '(' << rect.fLeft << ", " << rect.fTop << ", " << rect.fRight << ", " << rect.fBottom
       << ')';
}
inline void PrintTo(const PxRgbaBytes& p, std::ostream* out) {
  *out << "r" << int{p.red} << " g" << int{p.green} << " b" << int{p.blue} << " a" << int{p.alpha};
}
inline void PrintTo(const PxRgba64& p, std::ostream* out) {
  *out << "r" << p.red << " g" << p.green << " b" << p.blue << " a" << p.alpha;
}
