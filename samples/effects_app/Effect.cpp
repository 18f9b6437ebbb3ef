#include "effects_app/Effect.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "foundation/FourCharCode.h"
#include "image/ZvImage.h"

namespace effects_app {

namespace {

// Where the colours of a pixel stand in its storage form.
struct ColourLayout {
  int32_t bytesPerSample;
  int32_t samples;                  // in a pixel, alpha included
  int32_t colours;                  // 1 gray, 3 red green blue or cyan magenta yellow
  std::array<int32_t, 3> position;  // of each colour among the samples
  int32_t black = -1;               // of the black ink; the colours are then inks too

  bool Ink() const { return black >= 0; }
  int32_t Full() const { return bytesPerSample == 1 ? 255 : 65535; }
};

std::optional<ColourLayout> LayoutOf(uint32_t pixelKind) {
  switch (pixelKind) {
    case FourCC("GraB"):
      return ColourLayout{1, 1, 1, {0}};
    case FourCC("GraA"):
      return ColourLayout{1, 2, 1, {0}};
    case FourCC("RG24"):
      return ColourLayout{1, 3, 3, {2, 1, 0}};
    case FourCC("Rgba"):
      return ColourLayout{1, 4, 3, {2, 1, 0}};
    case FourCC("RG48"):
      return ColourLayout{2, 3, 3, {2, 1, 0}};
    case FourCC("Rg64"):
      return ColourLayout{2, 4, 3, {0, 1, 2}};
    case FourCC("Cmyk"):
      return ColourLayout{1, 4, 3, {0, 1, 2}, 3};
    case FourCC("Cmya"):
      return ColourLayout{1, 5, 3, {0, 1, 2}, 3};
    case FourCC("Cm64"):
      return ColourLayout{2, 4, 3, {0, 1, 2}, 3};
    case FourCC("Cm80"):
      return ColourLayout{2, 5, 3, {0, 1, 2}, 3};
    default:
      return std::nullopt;
  }
}

// One row of an image: its bytes in storage form, and its colours as light, colour after colour.
class Row {
 public:
  Row(const ColourLayout& layout, int32_t width)
      : mLayout(layout),
        mWidth(width),
        mBytes(static_cast<std::size_t>(width * layout.samples * layout.bytesPerSample)),
        mLight(static_cast<std::size_t>(width * layout.colours)) {}

  void Load(const ZvImage& image, int32_t y) {
    image.GetRow(mBytes.data(), 0, y, mWidth);
    for (int32_t colour = 0; colour < mLayout.colours; ++colour) {
      for (int32_t x = 0; x < mWidth; ++x) {
        const int32_t value = Sample(x, Position(colour));
        Light(colour)[x] =
            mLayout.Ink() ? std::max(0, mLayout.Full() - value - Sample(x, mLayout.black)) : value;
      }
    }
  }

  // Puts `light` (laid out as here) in the place of the colours and stores the row.
  void Store(ZvImage& image, int32_t y, const std::vector<int32_t>& light) {
    for (int32_t x = 0; x < mWidth; ++x) {
      const auto at = [&](int32_t colour) {
        return light[static_cast<std::size_t>(colour * mWidth + x)];
      };
      int32_t paper = 0;  // light that the black ink leaves
      if (mLayout.Ink()) {
        // As much black as before, unless the brightest colour needs more light.
        const int32_t brightest = std::max({at(0), at(1), at(2)});
        paper = std::max(mLayout.Full() - Sample(x, mLayout.black), brightest);
        SetSample(x, mLayout.black, mLayout.Full() - paper);
      }
      for (int32_t colour = 0; colour < mLayout.colours; ++colour) {
        SetSample(x, Position(colour), mLayout.Ink() ? paper - at(colour) : at(colour));
      }
    }
    image.PutRow(mBytes.data(), 0, y, mWidth);
  }

  int32_t* Light(int32_t colour) { return mLight.data() + colour * mWidth; }
  const int32_t* Light(int32_t colour) const { return mLight.data() + colour * mWidth; }

 private:
  int32_t Position(int32_t colour) const {
    return mLayout.position[static_cast<std::size_t>(colour)];
  }
  std::size_t Offset(int32_t x, int32_t position) const {
    return static_cast<std::size_t>((x * mLayout.samples + position) * mLayout.bytesPerSample);
  }
  int32_t Sample(int32_t x, int32_t position) const {
    if (mLayout.bytesPerSample == 1) {
      return mBytes[Offset(x, position)];
    }
    uint16_t word = 0;
    std::memcpy(&word, mBytes.data() + Offset(x, position), sizeof(word));
    return word;
  }
  void SetSample(int32_t x, int32_t position, int32_t value) {
    if (mLayout.bytesPerSample == 1) {
      mBytes[Offset(x, position)] = static_cast<uint8_t>(value);
      return;
    }
    const auto word = static_cast<uint16_t>(value);
    std::memcpy(mBytes.data() + Offset(x, position), &word, sizeof(word));
  }

  const ColourLayout mLayout;
  int32_t mWidth;
  std::vector<uint8_t> mBytes;
  std::vector<int32_t> mLight;
};

// value * percent / 100, towards zero.
int32_t Percent(int32_t value, int32_t percent) {
  return static_cast<int32_t>(static_cast<int64_t>(value) * percent / 100);
}

// Adds the difference to the mean of the 3 by 3 neighbourhood; the edge repeats outside the image.
void Sharpen(const Row& above, const Row& here, const Row& below, int32_t colour, int32_t width,
             int32_t percent, int32_t full, int32_t* out) {
  const int32_t* rows[3] = {above.Light(colour), here.Light(colour), below.Light(colour)};
  for (int32_t x = 0; x < width; ++x) {
    const int32_t left = std::max(x - 1, 0);
    const int32_t right = std::min(x + 1, width - 1);
    int32_t sum = 0;
    for (const int32_t* row : rows) {
      sum += row[left] + row[x] + row[right];
    }
    const int32_t value = rows[1][x];
    out[x] = std::clamp(value + Percent(9 * value - sum, percent) / 9, 0, full);
  }
}

// Saturation, brightness and balance of one pixel's light, in place.
void Grade(std::array<int32_t, 3>& light, int32_t colours, const EffectSettings& settings,
           const std::array<int32_t, 3>& balance, int32_t full) {
  if (colours == 3) {
    const int32_t gray = (light[0] + light[1] + light[2]) / 3;
    for (std::size_t i = 0; i < 3; ++i) {
      const int32_t saturated = gray + Percent(light[i] - gray, 100 + settings.saturation);
      light[i] = std::clamp(Percent(std::clamp(saturated, 0, full), 100 + balance[i]), 0, full);
    }
  }
  for (std::size_t i = 0; i < static_cast<std::size_t>(colours); ++i) {
    light[i] = std::clamp(Percent(light[i], 100 + settings.brightness), 0, full);
  }
}

}  // namespace

void ApplyEffect(ZvImage& image, const ZvImage* mask, const EffectSettings& settings,
                 bool redAndBlueExchanged) {
  const std::optional<ColourLayout> layout = LayoutOf(image.PixelKind());
  if (!layout.has_value()) {
    return;
  }
  const int32_t width = image.Width();
  const int32_t height = image.Height();
  const int32_t full = layout->Full();
  std::array<int32_t, 3> balance = {settings.red, settings.green, settings.blue};
  if (redAndBlueExchanged) {
    std::swap(balance[0], balance[2]);
  }
  if (mask != nullptr && (mask->Width() != width || mask->Height() != height)) {
    mask = nullptr;
  }

  // Rows above and below are needed as they were, so the three that are at hand move down the
  // image.
  std::array<Row, 3> rows = {Row(*layout, width), Row(*layout, width), Row(*layout, width)};
  Row* above = &rows[0];
  Row* here = &rows[1];
  Row* below = &rows[2];
  above->Load(image, 0);
  here->Load(image, 0);
  std::vector<int32_t> result(static_cast<std::size_t>(width * layout->colours));
  for (int32_t y = 0; y < height; ++y) {
    below->Load(image, std::min(y + 1, height - 1));
    for (int32_t colour = 0; colour < layout->colours; ++colour) {
      Sharpen(*above, *here, *below, colour, width, settings.sharpen, full,
              result.data() + colour * width);
    }
    for (int32_t x = 0; x < width; ++x) {
      std::array<int32_t, 3> light{};
      for (int32_t colour = 0; colour < layout->colours; ++colour) {
        light[static_cast<std::size_t>(colour)] =
            result[static_cast<std::size_t>(colour * width + x)];
      }
      Grade(light, layout->colours, settings, balance, full);
      uint8_t coverage = 255;
      if (mask != nullptr) {
        mask->GetByte(coverage, x, y);
      }
      for (int32_t colour = 0; colour < layout->colours; ++colour) {
        const int32_t before = here->Light(colour)[x];
        const int32_t after = light[static_cast<std::size_t>(colour)];
        result[static_cast<std::size_t>(colour * width + x)] =
            (before * (255 - coverage) + after * coverage + 127) / 255;
      }
    }
    here->Store(image, y, result);
    Row* const spare = above;
    above = here;
    here = below;
    below = spare;
  }
}

}  // namespace effects_app
