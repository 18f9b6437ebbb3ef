#include "image/support/RandomImages.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

namespace vm {
namespace {

constexpr int32_t kAround = 20;  // pixels around a tiled image that are compared too

template <class Image>
ZvImage* Make(int32_t width, int32_t height) {
  return new Image(width, height);
}

template <class Image, class P>
void Mix255(ZvImage& image, const PxRgba64& colour, float t, int32_t x, int32_t y) {
  auto& typed = static_cast<Image&>(image);
  P narrowed{};
  narrowed.PutRgba64(colour);
  P pixel{};
  typed.GetPixel(pixel, x, y);
  pixel.Mix255(narrowed, t);
  typed.PutPixel(pixel, x, y);
}

size_t ChannelBytes(const ZvImage& image) {
  return static_cast<size_t>(image.BitsPerChannel() + 7) / 8;
}

// Random bytes, the ends of the range more often than chance has it; floats within what the views
// can tell apart.
RawPixel RandomPixel(const ZvImage& image, RandomSource& random) {
  RawPixel pixel;
  const size_t bytes = ChannelBytes(image);
  for (int32_t channel = 0; channel < image.ChannelCount(); ++channel) {
    uint8_t* const place = pixel.bytes + static_cast<size_t>(channel) * bytes;
    if (bytes == 4) {
      const float top = image.ChannelCount() == 1 ? 1.0F : 255.0F;
      const float value = top * static_cast<float>(random.Between(0, 4096)) / 4096;
      std::memcpy(place, &value, sizeof value);
      continue;
    }
    const int32_t extreme = random.Between(0, 7);
    for (size_t i = 0; i < bytes; ++i)
      place[i] = static_cast<uint8_t>(extreme == 0   ? 0
                                      : extreme == 1 ? 255
                                                     : random.Between(0, 255));
  }
  return pixel;
}

ZvRect Neighbourhood(const ZvImage& image) {
  ZvRect area = image.Bounds();
  if (image.IsTiled()) {
    area.fLeft -= kAround;
    area.fTop -= kAround;
    area.fRight += kAround;
    area.fBottom += kAround;
  }
  return area;
}

template <class Work>
void ForEachPixel(const ZvRect& area, Work&& work) {
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight; ++x)
      work(x, y);
  }
}

std::string Describe(const RawPixel& pixel) {
  std::ostringstream text;
  for (const uint8_t byte : pixel.bytes)
    text << static_cast<int>(byte) << ' ';
  return text.str();
}

std::vector<ZvImageBlock> BlocksOf(const ZvImage& image) {
  std::vector<ZvImageBlock> blocks;
  image.AppendBlocks(blocks, Neighbourhood(image));
  return blocks;
}

}  // namespace

const std::vector<ImageClass>& ImageClasses() {
  static const std::vector<ImageClass> classes = [] {
    std::vector<ImageClass> list;
    ForEachRecord([&]<class P>() {
      list.push_back({std::string("tiled ") + P::kName, true, Make<ZvTiledImage<P>>,
                      Mix255<ZvTiledImage<P>, P>});
    });
    const auto row = [&]<class P>() {
      list.push_back({std::string("row ") + P::kName, false, Make<ZvTypedImage<P>>,
                      Mix255<ZvTypedImage<P>, P>});
    };
    row.template operator()<PxGrayByte>();
    row.template operator()<PxGrayABytes>();
    row.template operator()<PxAlphaByte>();
    row.template operator()<PxRgbBytes>();
    row.template operator()<PxRgbaBytes>();
    row.template operator()<PxRgb48>();
    row.template operator()<PxRgba64>();
    row.template operator()<PxCmykBytes>();
    row.template operator()<PxCmykaBytes>();
    row.template operator()<PxCmyk64>();
    row.template operator()<PxCmyka80>();
    return list;
  }();
  return classes;
}

const ImageClass& ImageClassNamed(const std::string& name) {
  const auto& classes = ImageClasses();
  return *std::find_if(classes.begin(), classes.end(),
                       [&](const ImageClass& c) { return c.name == name; });
}

int32_t RandomSource::Between(int32_t low, int32_t high) {
  // Not the library's distribution: that one differs from library to library.
  const auto count = static_cast<uint64_t>(int64_t{high} - low + 1);
  return static_cast<int32_t>(low + static_cast<int64_t>(mEngine() % count));
}

ZvRect RandomSource::RectWithin(const ZvRect& area) {
  const int32_t x0 = Between(area.fLeft, area.fRight);
  const int32_t x1 = Between(area.fLeft, area.fRight);
  const int32_t y0 = Between(area.fTop, area.fBottom);
  const int32_t y1 = Between(area.fTop, area.fBottom);
  return {std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)};
}

RawPixel GetRaw(const ZvImage& image, int32_t x, int32_t y) {
  RawPixel pixel;
  for (int32_t channel = 0; channel < image.ChannelCount(); ++channel)
    image.GetChannel(pixel.bytes + static_cast<size_t>(channel) * ChannelBytes(image), x, y,
                     channel);
  return pixel;
}

void PutRaw(ZvImage& image, const RawPixel& pixel, int32_t x, int32_t y) {
  for (int32_t channel = 0; channel < image.ChannelCount(); ++channel)
    image.PutChannel(pixel.bytes + static_cast<size_t>(channel) * ChannelBytes(image), x, y,
                     channel);
}

ZvSmartPtr<ZvImage> RandomImage(const ImageClass& imageClass, int32_t width, int32_t height,
                                RandomSource& random) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(imageClass.make(width, height));
  const bool sparse = random.OneIn(3);
  ForEachPixel(Neighbourhood(*image), [&](int32_t x, int32_t y) {
    const bool present = !sparse || (((x >> 7) + (y >> 7)) & 1) == 0;
    if (!image->IsTiled() || present)
      PutRaw(*image, RandomPixel(*image, random), x, y);
  });
  return image;
}

ZvSmartPtr<ZvImage> Twin(const ImageClass& imageClass, const ZvImage& image) {
  auto twin = ZvSmartPtr<ZvImage>::Adopt(imageClass.make(image.Width(), image.Height()));
  ZvRect clip;
  image.GetClip(clip);
  twin->SetClip(clip);
  for (const ZvImageBlock& block : BlocksOf(image)) {
    if (block.pixels != nullptr)
      ForEachPixel(block.rect,
                   [&](int32_t x, int32_t y) { PutRaw(*twin, GetRaw(image, x, y), x, y); });
  }
  return twin;
}

::testing::AssertionResult SamePixels(const ZvImage& expected, const ZvImage& actual) {
  const ZvRect area = Neighbourhood(expected);
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight; ++x) {
      const RawPixel wanted = GetRaw(expected, x, y);
      const RawPixel found = GetRaw(actual, x, y);
      if (!(wanted == found))
        return ::testing::AssertionFailure() << "at " << x << ", " << y << ": expected "
                                             << Describe(wanted) << "found " << Describe(found);
    }
  }
  const auto wantedBlocks = BlocksOf(expected);
  const auto foundBlocks = BlocksOf(actual);
  for (size_t i = 0; i < wantedBlocks.size(); ++i) {
    if ((wantedBlocks[i].pixels == nullptr) != (foundBlocks[i].pixels == nullptr))
      return ::testing::AssertionFailure()
             << "the tile at " << wantedBlocks[i].rect.fLeft << ", " << wantedBlocks[i].rect.fTop
             << (foundBlocks[i].pixels == nullptr ? " is missing" : " was made");
  }
  return ::testing::AssertionSuccess();
}

}  // namespace vm
