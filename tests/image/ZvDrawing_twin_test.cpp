// The fast drawing operations against their slow twins, on random images of every class, shapes,
// clips and masks.

#include "image/support/RandomImages.h"
#include "image/support/SlowDrawing.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

const std::vector<int32_t> kSizes = {1, 2, 7, 40, 127, 128, 129, 150};
const std::vector<int32_t> kDashes = {0, 0, 1, 2, 3, 4, 7, -3};
const std::vector<float> kFeathers = {0.0F, 0.009F, 1.0F, 2.5F, 8.0F, 40.0F, 20000.0F, -3.0F};
constexpr PxRgba64 kColour{0xA55A, 0x3CC3, 0x0FF0, 0xC0DE};

class DrawingCase {
 public:
  DrawingCase(const ImageClass& imageClass, uint32_t seed) : random(seed) {
    expected = RandomImage(imageClass, random.Of(kSizes), random.Of(kSizes), random);
    if (random.OneIn(2))
      expected->SetClip(random.RectWithin(Around(5)));
    actual = Twin(imageClass, *expected);
    xorMode = random.OneIn(2);
    filled = random.OneIn(2);
    if (random.OneIn(3)) {
      const ImageClass& maskClass =
          random.OneIn(2) ? ImageClassNamed("tiled PxAlphaByte") : random.Of(ImageClasses());
      // A row image that is narrower than the image wraps: its pixels are those of the next row.
      const int32_t width = std::max(1, expected->Width() - (random.OneIn(4) ? 3 : 0));
      expectedMask = RandomImage(maskClass, width, expected->Height(), random);
      actualMask = Twin(maskClass, *expectedMask);
    }
  }

  ZvRect Around(int32_t margin) const {
    return {-margin, -margin, expected->Width() - 1 + margin, expected->Height() - 1 + margin};
  }
  ZvPoint Point() {
    const ZvRect area = Around(random.OneIn(2) ? 0 : 30);
    return {random.Between(area.fLeft, area.fRight), random.Between(area.fTop, area.fBottom)};
  }

  RandomSource random;
  ZvSmartPtr<ZvImage> expected;
  ZvSmartPtr<ZvImage> actual;
  ZvSmartPtr<ZvImage> expectedMask;
  ZvSmartPtr<ZvImage> actualMask;
  bool xorMode;
  bool filled;
  ReportRecorder reports;
};

class EveryClassDraws : public ::testing::TestWithParam<ImageClass> {
 protected:
  template <class Work>
  void ForEachCase(uint32_t firstSeed, Work&& work) {
    for (uint32_t seed = firstSeed; seed < firstSeed + 16; ++seed) {
      DrawingCase c(GetParam(), seed);
      work(c);
      ASSERT_TRUE(SamePixels(*c.expected, *c.actual)) << "seed " << seed;
      if (c.expectedMask) {
        ASSERT_TRUE(SamePixels(*c.expectedMask, *c.actualMask)) << "mask, seed " << seed;
      }
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Twins, EveryClassDraws, ::testing::ValuesIn(ImageClasses()),
                         [](const auto& info) {
                           std::string name = info.param.name;
                           name[name.find(' ')] = '_';
                           return name;
                         });

TEST_P(EveryClassDraws, LinesLikeItsTwin) {
  ForEachCase(100, [](DrawingCase& c) {
    for (int32_t i = 0; i < 8; ++i) {
      const ZvPoint from = c.Point();
      const ZvPoint to = c.Point();
      const int32_t dash = c.random.Of(kDashes);
      slow::DrawLine(GetParam(), *c.expected, from, to, kColour, c.xorMode, c.expectedMask.Get(),
                     dash);
      c.actual->DrawLine(from, to, kColour, c.xorMode, c.actualMask.Get(), dash);
    }
  });
}

TEST_P(EveryClassDraws, OvalsLikeItsTwin) {
  ForEachCase(200, [](DrawingCase& c) {
    for (int32_t i = 0; i < 4; ++i) {
      const ZvRect rect = c.random.RectWithin(c.Around(30));
      slow::DrawOval(GetParam(), *c.expected, rect, kColour, c.filled, c.xorMode,
                     c.expectedMask.Get());
      c.actual->DrawOval(rect, kColour, c.filled, c.xorMode, c.actualMask.Get());
    }
  });
}

TEST_P(EveryClassDraws, PolygonsLikeItsTwin) {
  ForEachCase(300, [](DrawingCase& c) {
    std::vector<ZvPoint> points;
    for (int32_t i = c.random.Between(0, 9); i > 0; --i)
      points.push_back(c.random.OneIn(6) && !points.empty() ? points.back() : c.Point());
    const bool skipFirst = c.random.OneIn(2);
    const bool clampToImage = c.random.OneIn(2);
    const bool closed = c.random.OneIn(2);
    const int32_t dash = c.random.Of(kDashes);
    const float feather = c.random.Of(kFeathers);
    const ZvRect clipRect = c.random.RectWithin(c.Around(5));
    const ZvRect* const clip = c.random.OneIn(3) ? &clipRect : nullptr;
    slow::DrawPolygon(GetParam(), *c.expected, points, kColour, c.filled, c.xorMode, skipFirst,
                      clampToImage, closed, dash, feather, c.expectedMask.Get(), clip);
    c.actual->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kColour, c.filled,
                          c.xorMode, skipFirst, clampToImage, closed, dash, feather,
                          c.actualMask.Get(), clip);
  });
}

}  // namespace
}  // namespace vm
