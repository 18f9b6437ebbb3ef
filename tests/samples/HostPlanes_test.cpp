#include "filter_host/HostPlanes.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/TempDirectory.h"

using namespace filter_host;

namespace {

Picture Pixel(std::vector<uint8_t> samples) {
  const auto channels = static_cast<int32_t>(samples.size());
  return Picture{1, 1, channels, 1, 72.0, std::move(samples)};
}

std::vector<int32_t> Samples(const HostPlanes& planes) {
  std::vector<int32_t> samples;
  for (int32_t y = 0; y < planes.height; ++y) {
    for (int32_t x = 0; x < planes.width; ++x) {
      for (int32_t plane = 0; plane < planes.format.planes; ++plane) {
        samples.push_back(planes.Sample(x, y, plane));
      }
    }
  }
  return samples;
}

std::vector<int32_t> Converted(std::vector<uint8_t> pixel, const char* format) {
  return Samples(PlanesFromPicture(Pixel(std::move(pixel)), *FindPlaneFormat(format)));
}

using V = std::vector<int32_t>;

}  // namespace

TEST(PlaneFormats, StandForTheModesAndPlaneCountsOfTheHost) {
  const struct {
    const char* name;
    int mode, planes, bytes;
    bool alpha;
  } rows[] = {
      {"gray", 1, 1, 1, false},    {"graya", 1, 2, 1, true},    {"gray16", 10, 1, 2, false},
      {"graya32", 10, 2, 2, true}, {"rgb", 3, 3, 1, false},     {"rgba", 3, 4, 1, true},
      {"rgb48", 11, 3, 2, false},  {"rgba64", 11, 4, 2, true},  {"cmyk", 4, 4, 1, false},
      {"cmyka", 4, 5, 1, true},    {"cmyk64", 13, 4, 2, false}, {"cmyka80", 13, 5, 2, true}};
  ASSERT_EQ(PlaneFormats().size(), std::size(rows));
  for (const auto& row : rows) {
    const PlaneFormat* format = FindPlaneFormat(row.name);
    ASSERT_NE(format, nullptr) << row.name;
    EXPECT_EQ(format->imageMode, row.mode) << row.name;
    EXPECT_EQ(format->planes, row.planes) << row.name;
    EXPECT_EQ(format->bytesPerSample, row.bytes) << row.name;
    EXPECT_EQ(format->HasAlpha(), row.alpha) << row.name;
  }
  EXPECT_EQ(FindPlaneFormat("lab"), nullptr);
}

TEST(PlanesFromPicture, KeepRgbAndAddOpaqueAlpha) {
  EXPECT_EQ(Converted({10, 20, 30}, "rgb"), (V{10, 20, 30}));
  EXPECT_EQ(Converted({10, 20, 30}, "rgba"), (V{10, 20, 30, 255}));
  EXPECT_EQ(Converted({10, 20, 30, 40}, "rgba"), (V{10, 20, 30, 40}));
}

TEST(PlanesFromPicture, SixteenBitChannelsSpanZeroTo32768) {
  // 255 is white; 10 of 255 is 1285.02 of 32768.
  EXPECT_EQ(Converted({255, 10, 0}, "rgb48"), (V{32768, 1285, 0}));
  EXPECT_EQ(Converted({255, 10, 0}, "rgba64"), (V{32768, 1285, 0, 32768}));
  EXPECT_EQ(Converted({255}, "gray16"), (V{32768}));
}

TEST(PlanesFromPicture, GrayIsTheLuma) {
  EXPECT_EQ(Converted({200, 100, 50}, "gray"), (V{124}));  // 59.8 + 58.7 + 5.7 = 124.2
  EXPECT_EQ(Converted({77}, "gray"), (V{77}));
  EXPECT_EQ(Converted({77}, "rgb"), (V{77, 77, 77}));
  EXPECT_EQ(Converted({77, 99}, "graya"), (V{77, 99}));
}

TEST(PlanesFromPicture, CmykHoldsLightAndAsMuchBlackAsThereIs) {
  // Red 200, green 100, blue 50: black ink 55, cyan 0, magenta 100, yellow 150; stored is 255 -
  // ink.
  EXPECT_EQ(Converted({200, 100, 50}, "cmyk"), (V{255, 155, 105, 200}));
  EXPECT_EQ(Converted({200, 100, 50}, "cmyka"), (V{255, 155, 105, 200, 255}));
  EXPECT_EQ(Converted({255, 255, 255}, "cmyk64"), (V{32768, 32768, 32768, 32768}));
  EXPECT_EQ(Converted({0, 0, 0}, "cmyka80"), (V{32768, 32768, 32768, 0, 32768}));
}

TEST(PlanesFromPicture, WithoutAlphaThePictureLiesOverWhite) {
  // 100 at alpha 51 (a fifth) over white: 255 - (155 * 51) / 255 = 224.
  EXPECT_EQ(Converted({100, 51}, "gray"), (V{224}));
  EXPECT_EQ(Converted({9, 9, 9, 0}, "rgb"), (V{255, 255, 255}));
}

TEST(PictureFromPlanes, GivesEveryEightBitColourBackInEveryColourFormat) {
  for (const char* name :
       {"rgb", "rgba", "rgb48", "rgba64", "cmyk", "cmyka", "cmyk64", "cmyka80"}) {
    const PlaneFormat& format = *FindPlaneFormat(name);
    for (int step = 0; step < 256; ++step) {
      const std::vector<uint8_t> rgb = {static_cast<uint8_t>(step),
                                        static_cast<uint8_t>(255 - step),
                                        static_cast<uint8_t>(step * 7)};
      const Picture back = PictureFromPlanes(PlanesFromPicture(Pixel(rgb), format));
      for (std::size_t i = 0; i < 3; ++i) {
        const int value = back.bytesPerSample == 1
                              ? back.samples[i]
                              : back.samples[2 * i] + 256 * back.samples[2 * i + 1];
        // 8 bits come back as they were; 16 as value * 257 to the nearest that 32769 steps allow.
        if (back.bytesPerSample == 1) {
          ASSERT_EQ(value, rgb[i]) << name << " " << step;
        } else {
          ASSERT_NEAR(value, rgb[i] * 257, 2) << name << " " << step;
        }
      }
    }
  }
}

TEST(PictureFromPlanes, CountsSamplesAboveWhiteAndWritesThemAsWhite) {
  HostPlanes planes{1, 1, *FindPlaneFormat("rgb48"), 72.0, {0x01, 0x80, 0xFF, 0xFF, 0x00, 0x80}};
  std::size_t clamped = 0;
  const Picture picture = PictureFromPlanes(planes, &clamped);
  EXPECT_EQ(clamped, 2u);  // 32769 and 65535; 32768 is white itself
  EXPECT_EQ(picture.samples, std::vector<uint8_t>(6, 0xFF));
}

TEST(PictureFromPlanes, RefusesAnUnknownFormat) {
  HostPlanes planes{1, 1, {"", 9, 3, 1, ColourFamily::kOther}, 72.0, {1, 2, 3}};
  EXPECT_THROW(PictureFromPlanes(planes), Error);
}

TEST(Coverage, IsGrayTimesAlpha) {
  EXPECT_EQ(CoverageFromPicture(Pixel({255})), (std::vector<uint8_t>{255}));
  EXPECT_EQ(CoverageFromPicture(Pixel({255, 128})), (std::vector<uint8_t>{128}));
  EXPECT_EQ(CoverageFromPicture(Pixel({0, 0, 0, 255})), (std::vector<uint8_t>{0}));
}

TEST(PlanesFile, HoldsALineAndTheSamples) {
  const vm::TempDirectory folder;
  const HostPlanes planes{
      2, 1, *FindPlaneFormat("rgb48"), 72.0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
  WritePlanes(folder.Native("a.planes").string(), planes);
  std::ifstream file(folder.Native("a.planes").string(), std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(bytes, "planes 1 2 1 3 2 11\n\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C");
  const HostPlanes back = ReadPlanes(folder.Native("a.planes").string());
  EXPECT_EQ(back.width, 2);
  EXPECT_EQ(back.height, 1);
  EXPECT_STREQ(back.format.name, "rgb48");
  EXPECT_EQ(back.samples, planes.samples);
}

TEST(PlanesFile, MayHoldAnyModeAndPlaneCount) {
  const vm::TempDirectory folder;
  std::ofstream(folder.Native("a.planes").string(), std::ios::binary)
      << "planes 1 1 2 7 1 9\n12345678901234";
  const HostPlanes planes = ReadPlanes(folder.Native("a.planes").string());
  EXPECT_EQ(planes.format.imageMode, 9);
  EXPECT_EQ(planes.format.planes, 7);
  EXPECT_EQ(planes.format.family, ColourFamily::kOther);
  EXPECT_EQ(planes.Sample(0, 1, 6), '4');
}

TEST(PlanesFile, RefusesWhatIsCutLongOrAbsurd) {
  const vm::TempDirectory folder;
  for (const char* contents :
       {"", "planes 1 2 1 3 2 11", "planes 1 1 1 3 1 3\n12", "planes 1 1 1 3 1 3\n1234",
        "planes 2 1 1 3 1 3\n123", "planes 1 0 1 3 1 3\n", "planes 1 99999 1 3 1 3\n",
        "planes 1 1 1 3 4 3\n123", "planes 1 1 1 3 1 -3\n123", "planes 1 32767 32767 56 2 3\nx"}) {
    std::ofstream(folder.Native("a.planes").string(), std::ios::binary) << contents;
    EXPECT_THROW(ReadPlanes(folder.Native("a.planes").string()), Error) << contents;
  }
}

TEST(Matte, BlendsTransparentColoursAndLeavesAlpha) {
  HostPlanes planes = PlanesFromPicture(Pixel({100, 0, 200, 51}), *FindPlaneFormat("rgba"));
  ApplyMatte(planes, 1.0);
  EXPECT_EQ(Samples(planes), (V{224, 204, 244, 51}));  // 20 + 204, 0 + 204, 40 + 204
  planes = PlanesFromPicture(Pixel({100, 0, 200, 51}), *FindPlaneFormat("rgba"));
  ApplyMatte(planes, 0.0);
  EXPECT_EQ(Samples(planes), (V{20, 0, 40, 51}));
  planes = PlanesFromPicture(Pixel({100, 0, 200}), *FindPlaneFormat("rgb"));
  ApplyMatte(planes, 1.0);
  EXPECT_EQ(Samples(planes), (V{100, 0, 200}));
}

TEST(Selection, RestrictsAResultByCoverage) {
  HostPlanes source =
      PlanesFromPicture(Picture{3, 1, 1, 1, 72.0, {10, 10, 10}}, *FindPlaneFormat("gray"));
  HostPlanes result =
      PlanesFromPicture(Picture{3, 1, 1, 1, 72.0, {110, 110, 110}}, *FindPlaneFormat("gray"));
  RestrictToSelection(result, source, std::vector<uint8_t>{0, 51, 255});
  EXPECT_EQ(Samples(result), (V{10, 30, 110}));
}
