// The fast operations against their slow twins, on random images of every class, rectangles, clips,
// modes and masks.

#include "image/support/RandomImages.h"
#include "image/support/SlowResample.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

const std::vector<int32_t> kSizes = {1, 2, 3, 7, 31, 64, 127, 128, 129, 150};
const std::vector<float> kOpacities = {1.0F, 0.99F, 0.98F, 0.75F, 0.5F, 0.1F, 0.0F, -0.3F, 1.4F};
const std::vector<float> kHues = {0.0F, 30.9F, -75.0F, 359.0F, 1000.0F};
const std::vector<float> kSaturations = {0.0F, 1.0F, 0.5F, 2.5F, -1.0F};
const std::vector<float> kLightnesses = {0.0F, 12.5F, -30.0F, 150.0F};

// One comparison: two images of one class that start alike, a source, and where to.
class TwinCase {
 public:
  TwinCase(const ImageClass& targetClass, uint32_t seed) : random(seed) {
    const auto size = [&] { return random.Of(kSizes); };
    sourceClass = random.OneIn(4) ? &targetClass : &random.Of(ImageClasses());
    source = RandomImage(*sourceClass, size(), size(), random);
    expected = RandomImage(targetClass, size(), size(), random);
    actual = Twin(targetClass, *expected);
    fromRect = random.RectWithin(Around(*source, random.OneIn(3) ? 15 : 0));
    toRect = random.RectWithin(Around(*expected, 40));
    mode = random.Between(0, 8);
    if (random.OneIn(3)) {
      clipRect = random.RectWithin(Around(*expected, 5));
      clip = &clipRect;
    }
    // Equal extents take roads of their own.
    if (random.OneIn(6))
      toRect = fromRect + ZvPoint(random.Between(-9, 9), random.Between(-9, 9));
  }

  static ZvRect Around(const ZvImage& image, int32_t margin) {
    return {-margin, -margin, image.Width() - 1 + margin, image.Height() - 1 + margin};
  }

  std::string Describe() const {
    std::ostringstream text;
    const auto rect = [](const ZvRect& r) {
      std::ostringstream out;
      out << '(' << r.fLeft << ", " << r.fTop << ", " << r.fRight << ", " << r.fBottom << ')';
      return out.str();
    };
    text << "from " << sourceClass->name << ' ' << source->Width() << 'x' << source->Height() << ' '
         << rect(fromRect) << " to " << expected->Width() << 'x' << expected->Height() << ' '
         << rect(toRect) << " mode " << mode << " clip "
         << (clip != nullptr ? rect(clipRect) : "none");
    return text.str();
  }

  RandomSource random;
  const ImageClass* sourceClass;
  ZvSmartPtr<ZvImage> source;
  ZvSmartPtr<ZvImage> expected;
  ZvSmartPtr<ZvImage> actual;
  ZvRect fromRect;
  ZvRect toRect;
  ZvRect clipRect;
  const ZvRect* clip = nullptr;
  int32_t mode;
  ReportRecorder reports;  // misuse that chance brings about is reported and goes on
};

class EveryClass : public ::testing::TestWithParam<ImageClass> {
 protected:
  template <class Work>
  void ForEachCase(uint32_t firstSeed, Work&& work) {
    for (uint32_t i = 0; i < 12; ++i) {
      const uint32_t seed = firstSeed + i;
      TwinCase c(GetParam(), seed);
      work(c);
      ASSERT_TRUE(SamePixels(*c.expected, *c.actual)) << "seed " << seed << ": " << c.Describe();
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Twins, EveryClass, ::testing::ValuesIn(ImageClasses()),
                         [](const auto& info) {
                           std::string name = info.param.name;
                           name[name.find(' ')] = '_';
                           return name;
                         });

TEST_P(EveryClass, CopiesScaledLikeItsTwin) {
  ForEachCase(1000, [](TwinCase& c) {
    slow::CopyScaled(*c.expected, *c.source, c.fromRect, c.toRect, c.mode, c.clip);
    c.actual->CopyScaled(c.source.Get(), c.fromRect, c.toRect, c.mode, c.clip);
  });
}

TEST_P(EveryClass, CopiesAdjustedLikeItsTwin) {
  ForEachCase(2000, [](TwinCase& c) {
    const float h = c.random.Of(kHues);
    const float s = c.random.Of(kSaturations);
    const float l = c.random.Of(kLightnesses);
    slow::CopyAdjusted(*c.expected, *c.source, c.fromRect, c.toRect, h, s, l, c.mode, c.clip);
    c.actual->CopyAdjusted(c.source.Get(), c.fromRect, c.toRect, h, s, l, c.mode, c.clip);
  });
}

TEST_P(EveryClass, BlendsScaledLikeItsTwin) {
  ForEachCase(3000, [](TwinCase& c) {
    const float opacity = c.random.Of(kOpacities);
    slow::BlendScaled(*c.expected, *c.source, c.fromRect, c.toRect, opacity, c.mode, c.clip);
    c.actual->BlendScaled(c.source.Get(), c.fromRect, c.toRect, opacity, c.mode, c.clip);
  });
}

TEST_P(EveryClass, BlendsAdjustedLikeItsTwin) {
  ForEachCase(4000, [](TwinCase& c) {
    const float h = c.random.Of(kHues);
    const float s = c.random.Of(kSaturations);
    const float l = c.random.Of(kLightnesses);
    const float opacity = c.random.Of(kOpacities);
    slow::BlendAdjusted(*c.expected, *c.source, c.fromRect, c.toRect, h, s, l, opacity, c.mode,
                        c.clip);
    c.actual->BlendAdjusted(c.source.Get(), c.fromRect, c.toRect, h, s, l, opacity, c.mode, c.clip);
  });
}

// Half of the masks are of the class that masks usually have.
const ImageClass& MaskClass(RandomSource& random) {
  return random.OneIn(2) ? ImageClassNamed("tiled PxAlphaByte") : random.Of(ImageClasses());
}

TEST_P(EveryClass, BlendsMaskedLikeItsTwin) {
  ForEachCase(5000, [](TwinCase& c) {
    const float opacity = c.random.Of(kOpacities);
    const auto mask =
        RandomImage(MaskClass(c.random), c.random.Of(kSizes), c.random.Of(kSizes), c.random);
    const ZvImage* const given = c.random.OneIn(8) ? nullptr : mask.Get();
    const ZvPoint toPoint(c.toRect.fLeft, c.toRect.fTop);
    slow::BlendMasked(*c.expected, *c.source, given, c.fromRect, toPoint, opacity, c.clip);
    c.actual->BlendMasked(c.source.Get(), given, c.fromRect, toPoint, opacity, c.clip);
  });
}

TEST_P(EveryClass, PaintsMaskedLikeItsTwin) {
  ForEachCase(6000, [](TwinCase& c) {
    const float opacity = c.random.Of(kOpacities);
    const auto mask =
        RandomImage(MaskClass(c.random), c.random.Of(kSizes), c.random.Of(kSizes), c.random);
    const PxRgba64 colour{0x1234, 0xFEDC, 0x8000, 0x4321};
    const ZvPoint toPoint(c.toRect.fLeft, c.toRect.fTop);
    slow::PaintMasked(*c.expected, colour, *mask, c.fromRect, toPoint, opacity, c.clip);
    c.actual->PaintMasked(colour, mask.Get(), c.fromRect, toPoint, opacity, c.clip);
  });
}

TEST_P(EveryClass, SamplesItsKernelsLikeItsTwin) {
  ReportRecorder reports;
  RandomSource random(7000);
  const auto image = RandomImage(GetParam(), 33, 21, random);
  for (int32_t i = 0; i < 400; ++i) {
    const int32_t mode = random.Between(1, 5);
    const float x = static_cast<float>(random.Between(-400, 3700)) / 100;
    const float y = static_cast<float>(random.Between(-400, 2500)) / 100;
    PxRgbaBytes expected;
    PxRgbaBytes actual;
    slow::SampleKernel(*image, expected, x, y, mode);
    image->SampleKernel(actual, x, y, mode);
    ASSERT_EQ(expected, actual) << "mode " << mode << " at " << x << ", " << y;
  }
}

// The same image as source and target: each pixel meets what is written already, as the rule for
// one pixel has it.
TEST_P(EveryClass, ScalesWithinItselfLikeItsTwin) {
  for (uint32_t seed = 8000; seed < 8006; ++seed) {
    RandomSource random(seed);
    ReportRecorder reports;
    const auto expected =
        RandomImage(GetParam(), random.Between(1, 40), random.Between(1, 20), random);
    const auto actual = Twin(GetParam(), *expected);
    const ZvRect fromRect = random.RectWithin(expected->Bounds());
    const ZvRect toRect = random.RectWithin(expected->Bounds());
    const int32_t mode = random.Between(1, 7);
    slow::CopyScaled(*expected, *expected, fromRect, toRect, mode, nullptr);
    actual->CopyScaled(actual.Get(), fromRect, toRect, mode, nullptr);
    slow::BlendScaled(*expected, *expected, toRect, fromRect, 0.6F, mode, nullptr);
    actual->BlendScaled(actual.Get(), toRect, fromRect, 0.6F, mode, nullptr);
    ASSERT_TRUE(SamePixels(*expected, *actual)) << "seed " << seed << " mode " << mode;
  }
}

}  // namespace
}  // namespace vm
