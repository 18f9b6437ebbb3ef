#include "filter_host/HostPlanes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "filter_host/OutputFile.h"
#include "host/FilterRecord.h"

namespace filter_host {

static_assert(std::endian::native == std::endian::little,
              "two-byte samples are read and written as they stand in memory");

namespace {

constexpr std::array<PlaneFormat, 12> kFormats = {{
    {"gray", plugInModeGrayScale, 1, 1, ColourFamily::kGray},
    {"graya", plugInModeGrayScale, 2, 1, ColourFamily::kGray},
    {"gray16", plugInModeGray16, 1, 2, ColourFamily::kGray},
    {"graya32", plugInModeGray16, 2, 2, ColourFamily::kGray},
    {"rgb", plugInModeRGBColor, 3, 1, ColourFamily::kRgb},
    {"rgba", plugInModeRGBColor, 4, 1, ColourFamily::kRgb},
    {"rgb48", plugInModeRGB48, 3, 2, ColourFamily::kRgb},
    {"rgba64", plugInModeRGB48, 4, 2, ColourFamily::kRgb},
    {"cmyk", plugInModeCMYKColor, 4, 1, ColourFamily::kCmyk},
    {"cmyka", plugInModeCMYKColor, 5, 1, ColourFamily::kCmyk},
    {"cmyk64", plugInModeCMYK64, 4, 2, ColourFamily::kCmyk},
    {"cmyka80", plugInModeCMYK64, 5, 2, ColourFamily::kCmyk},
}};

// Largest `.planes` file that is read, header included.
constexpr std::size_t kMaxPlanesFile = std::size_t{1} << 30;

int32_t ReadSample(const uint8_t* row, std::size_t index, int32_t bytes) {
  if (bytes == 1) {
    return row[index];
  }
  uint16_t value = 0;
  std::memcpy(&value, row + index * 2, sizeof(value));
  return value;
}

void WriteSample(uint8_t* row, std::size_t index, int32_t bytes, int32_t value) {
  if (bytes == 1) {
    row[index] = static_cast<uint8_t>(value);
    return;
  }
  const auto word = static_cast<uint16_t>(value);
  std::memcpy(row + index * 2, &word, sizeof(word));
}

// value * numerator / denominator to the nearest, for values up to 65535 on both sides.
int32_t Rescale(int32_t value, int32_t numerator, int32_t denominator) {
  return static_cast<int32_t>((static_cast<int64_t>(value) * numerator + denominator / 2) /
                              denominator);
}

struct Colour {
  int32_t red;
  int32_t green;
  int32_t blue;
  int32_t alpha;
};

// A picture's pixel in the range 0 to `white`.
Colour PicturePixel(const Picture& picture, int32_t x, int32_t y, int32_t white) {
  const uint8_t* row = picture.Row(y);
  const std::size_t first =
      static_cast<std::size_t>(x) * static_cast<std::size_t>(picture.channels);
  const int32_t full = picture.bytesPerSample == 1 ? 255 : 65535;
  const auto channel = [&](int32_t index) {
    return Rescale(ReadSample(row, first + static_cast<std::size_t>(index), picture.bytesPerSample),
                   white, full);
  };
  Colour colour{};
  colour.red = channel(0);
  colour.green = picture.channels >= 3 ? channel(1) : colour.red;
  colour.blue = picture.channels >= 3 ? channel(2) : colour.red;
  colour.alpha = picture.HasAlpha() ? channel(picture.channels - 1) : white;
  return colour;
}

int32_t OverWhite(int32_t value, int32_t alpha, int32_t white) {
  return white - Rescale(white - value, alpha, white);
}

int32_t Luma(const Colour& colour) {
  return (299 * colour.red + 587 * colour.green + 114 * colour.blue + 500) / 1000;
}

}  // namespace

std::span<const PlaneFormat> PlaneFormats() {
  return kFormats;
}

const PlaneFormat* FindPlaneFormat(const std::string& name) {
  const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                  [&](const PlaneFormat& format) { return name == format.name; });
  return found == kFormats.end() ? nullptr : &*found;
}

int32_t HostPlanes::Sample(int32_t x, int32_t y, int32_t plane) const {
  return ReadSample(Row(y), static_cast<std::size_t>(x * format.planes + plane),
                    format.bytesPerSample);
}

void HostPlanes::SetSample(int32_t x, int32_t y, int32_t plane, int32_t value) {
  WriteSample(Row(y), static_cast<std::size_t>(x * format.planes + plane), format.bytesPerSample,
              value);
}

HostPlanes PlanesFromPicture(const Picture& picture, const PlaneFormat& format) {
  HostPlanes planes;
  planes.width = picture.width;
  planes.height = picture.height;
  planes.format = format;
  planes.dotsPerInch = picture.dotsPerInch;
  planes.samples.resize(planes.RowBytes() * static_cast<std::size_t>(planes.height));
  const int32_t white = format.White();
  for (int32_t y = 0; y < picture.height; ++y) {
    for (int32_t x = 0; x < picture.width; ++x) {
      Colour colour = PicturePixel(picture, x, y, white);
      if (!format.HasAlpha()) {
        colour.red = OverWhite(colour.red, colour.alpha, white);
        colour.green = OverWhite(colour.green, colour.alpha, white);
        colour.blue = OverWhite(colour.blue, colour.alpha, white);
      } else {
        planes.SetSample(x, y, format.planes - 1, colour.alpha);
      }
      switch (format.family) {
        case ColourFamily::kGray:
          planes.SetSample(x, y, 0, Luma(colour));
          break;
        case ColourFamily::kRgb:
          planes.SetSample(x, y, 0, colour.red);
          planes.SetSample(x, y, 1, colour.green);
          planes.SetSample(x, y, 2, colour.blue);
          break;
        case ColourFamily::kCmyk: {
          // black ink = white - brightest; the other inks cover what is darker than that.
          const int32_t brightest = std::max({colour.red, colour.green, colour.blue});
          planes.SetSample(x, y, 0, white - (brightest - colour.red));
          planes.SetSample(x, y, 1, white - (brightest - colour.green));
          planes.SetSample(x, y, 2, white - (brightest - colour.blue));
          planes.SetSample(x, y, 3, brightest);
          break;
        }
        case ColourFamily::kOther:
          break;
      }
    }
  }
  return planes;
}

Picture PictureFromPlanes(const HostPlanes& planes, std::size_t* outClamped) {
  const PlaneFormat& format = planes.format;
  if (format.family == ColourFamily::kOther) {
    throw Error("image mode " + std::to_string(format.imageMode) + " with " +
                std::to_string(format.planes) + " planes cannot be written as a PNG file");
  }
  Picture picture;
  picture.width = planes.width;
  picture.height = planes.height;
  picture.channels = (format.family == ColourFamily::kGray ? 1 : 3) + (format.HasAlpha() ? 1 : 0);
  picture.bytesPerSample = format.bytesPerSample;
  picture.dotsPerInch = planes.dotsPerInch;
  picture.samples.resize(picture.RowBytes() * static_cast<std::size_t>(picture.height));
  const int32_t white = format.White();
  const int32_t full = format.bytesPerSample == 1 ? 255 : 65535;
  std::size_t clamped = 0;
  for (int32_t y = 0; y < planes.height; ++y) {
    uint8_t* row = picture.Row(y);
    for (int32_t x = 0; x < planes.width; ++x) {
      const auto light = [&](int32_t plane) {
        const int32_t value = planes.Sample(x, y, plane);
        if (value > white) {
          ++clamped;
          return white;
        }
        return value;
      };
      const std::size_t first =
          static_cast<std::size_t>(x) * static_cast<std::size_t>(picture.channels);
      const auto put = [&](int32_t channel, int32_t value) {
        WriteSample(row, first + static_cast<std::size_t>(channel), picture.bytesPerSample,
                    Rescale(value, full, white));
      };
      if (format.family == ColourFamily::kCmyk) {
        const int32_t black = white - light(3);
        for (int32_t channel = 0; channel < 3; ++channel) {
          put(channel, std::max(0, light(channel) - black));
        }
      } else {
        for (int32_t channel = 0; channel < (format.family == ColourFamily::kGray ? 1 : 3);
             ++channel) {
          put(channel, light(channel));
        }
      }
      if (format.HasAlpha()) {
        put(picture.channels - 1, light(format.planes - 1));
      }
    }
  }
  if (outClamped != nullptr) {
    *outClamped = clamped;
  }
  return picture;
}

std::vector<uint8_t> CoverageFromPicture(const Picture& picture) {
  std::vector<uint8_t> coverage;
  coverage.reserve(static_cast<std::size_t>(picture.width) *
                   static_cast<std::size_t>(picture.height));
  for (int32_t y = 0; y < picture.height; ++y) {
    for (int32_t x = 0; x < picture.width; ++x) {
      const Colour colour = PicturePixel(picture, x, y, 255);
      coverage.push_back(static_cast<uint8_t>(Rescale(Luma(colour), colour.alpha, 255)));
    }
  }
  return coverage;
}

HostPlanes ReadPlanes(const std::string& path) {
  const std::string contents = ReadWholeFile(path, kMaxPlanesFile);
  int width = 0;
  int height = 0;
  int planeCount = 0;
  int bytesPerSample = 0;
  int mode = 0;
  int length = 0;
  const int fields = std::sscanf(contents.substr(0, 200).c_str(), "planes 1 %d %d %d %d %d%n",
                                 &width, &height, &planeCount, &bytesPerSample, &mode, &length);
  const auto headerBytes = static_cast<std::size_t>(length);
  if (fields != 5 || headerBytes >= contents.size() || contents[headerBytes] != '\n' || width < 1 ||
      width > 32767 || height < 1 || height > 32767 || planeCount < 1 || planeCount > 56 ||
      (bytesPerSample != 1 && bytesPerSample != 2) || mode < 0 || mode > 32767) {
    throw Error("cannot read '" + path + "': it does not begin as a file of host planes");
  }
  HostPlanes planes;
  planes.width = width;
  planes.height = height;
  planes.format = {"", static_cast<int16_t>(mode), static_cast<int16_t>(planeCount),
                   static_cast<int16_t>(bytesPerSample), ColourFamily::kOther};
  for (const PlaneFormat& format : kFormats) {
    if (format.imageMode == mode && format.planes == planeCount &&
        format.bytesPerSample == bytesPerSample) {
      planes.format = format;
    }
  }
  const std::size_t expected = planes.RowBytes() * static_cast<std::size_t>(height);
  if (contents.size() - headerBytes - 1 != expected) {
    throw Error("cannot read '" + path + "': it holds " +
                std::to_string(contents.size() - headerBytes - 1) + " bytes of samples where " +
                std::to_string(expected) + " should stand");
  }
  planes.samples.assign(contents.begin() + length + 1, contents.end());
  return planes;
}

void WritePlanes(const std::string& path, const HostPlanes& planes) {
  OutputFile file(path);
  const PlaneFormat& format = planes.format;
  char header[120];
  const int length = std::snprintf(header, sizeof(header), "planes 1 %d %d %d %d %d\n",
                                   static_cast<int>(planes.width), static_cast<int>(planes.height),
                                   format.planes, format.bytesPerSample, format.imageMode);
  file.Write(header, static_cast<std::size_t>(length));
  file.Write(planes.samples.data(), planes.samples.size());
  file.Commit();
}

void ApplyMatte(HostPlanes& planes, double matte) {
  if (!planes.format.HasAlpha()) {
    return;
  }
  const int32_t white = planes.format.White();
  const auto target = static_cast<int32_t>(std::lround(matte * white));
  const int32_t alphaPlane = planes.format.planes - 1;
  for (int32_t y = 0; y < planes.height; ++y) {
    for (int32_t x = 0; x < planes.width; ++x) {
      const int32_t alpha = std::min(planes.Sample(x, y, alphaPlane), white);
      for (int32_t plane = 0; plane < alphaPlane; ++plane) {
        const int32_t value = planes.Sample(x, y, plane);
        planes.SetSample(x, y, plane,
                         Rescale(value, alpha, white) + Rescale(target, white - alpha, white));
      }
    }
  }
}

void RestrictToSelection(HostPlanes& result, const HostPlanes& source,
                         std::span<const uint8_t> coverage) {
  for (int32_t y = 0; y < result.height; ++y) {
    for (int32_t x = 0; x < result.width; ++x) {
      const int32_t weight =
          coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(result.width) +
                   static_cast<std::size_t>(x)];
      for (int32_t plane = 0; plane < result.format.planes; ++plane) {
        const int32_t before = source.Sample(x, y, plane);
        const int32_t after = result.Sample(x, y, plane);
        result.SetSample(x, y, plane, (before * (255 - weight) + after * weight + 127) / 255);
      }
    }
  }
}

}  // namespace filter_host
