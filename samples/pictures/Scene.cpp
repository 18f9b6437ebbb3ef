#include "pictures/Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace pictures {

namespace {

using filter_host::Picture;

struct Colour {
  float r, g, b;
};

Colour operator*(Colour c, float f) {
  return {c.r * f, c.g * f, c.b * f};
}
Colour operator+(Colour a, Colour b) {
  return {a.r + b.r, a.g + b.g, a.b + b.b};
}
Colour Mix(Colour a, Colour b, float t) {
  return a * (1 - t) + b * t;
}

float Smooth(float low, float high, float value) {
  const float t = std::clamp((value - low) / (high - low), 0.0f, 1.0f);
  return t * t * (3 - 2 * t);
}

// A number from 0 to 1 for a lattice point.
float Hash(int32_t x, int32_t y, uint32_t seed) {
  uint32_t h = static_cast<uint32_t>(x) * 0x8DA6B343u ^ static_cast<uint32_t>(y) * 0xD8163841u ^
               seed * 0xCB1AB31Fu;
  h = (h ^ h >> 15) * 0x2C1B3C6Du;
  h = (h ^ h >> 12) * 0x297A2D39u;
  return static_cast<float>((h ^ h >> 15) >> 8) / 16777216.0f;
}

float Noise(float x, float y, uint32_t seed) {
  const float fx = std::floor(x);
  const float fy = std::floor(y);
  const auto ix = static_cast<int32_t>(fx);
  const auto iy = static_cast<int32_t>(fy);
  const float u = Smooth(0, 1, x - fx);
  const float v = Smooth(0, 1, y - fy);
  const float top = Hash(ix, iy, seed) * (1 - u) + Hash(ix + 1, iy, seed) * u;
  const float bottom = Hash(ix, iy + 1, seed) * (1 - u) + Hash(ix + 1, iy + 1, seed) * u;
  return top * (1 - v) + bottom * v;
}

// Sum of octaves, 0 to 1.
float Fractal(float x, float y, int octaves, uint32_t seed) {
  float sum = 0;
  float weight = 0.5f;
  float total = 0;
  for (int i = 0; i < octaves; ++i) {
    sum += weight * Noise(x, y, seed + static_cast<uint32_t>(i));
    total += weight;
    weight *= 0.5f;
    // Turned a little each time, so that the lattices don't line up.
    const float turned = 1.62f * x + 1.18f * y;
    y = 1.62f * y - 1.18f * x;
    x = turned;
  }
  return sum / total;
}

// Sharp crests where the noise crosses its middle.
float Ridged(float x, float y, int octaves, uint32_t seed) {
  float sum = 0;
  float weight = 0.5f;
  float total = 0;
  for (int i = 0; i < octaves; ++i) {
    const float crest = 1 - std::fabs(2 * Noise(x, y, seed + static_cast<uint32_t>(i)) - 1);
    sum += weight * crest * crest;
    total += weight;
    weight *= 0.5f;
    x = x * 2.03f + 11.3f;
    y = y * 2.03f + 7.7f;
  }
  return sum / total;
}

constexpr float kHorizon = 0.60f;  // shore line, in heights of the picture
constexpr float kSunX = 1.02f;     // in heights, as all places
constexpr float kSunY = 0.40f;

Colour Sky(float x, float y) {
  const float height = std::clamp(y / kHorizon, 0.0f, 1.0f);
  Colour sky = Mix({0.30f, 0.44f, 0.64f}, {0.62f, 0.68f, 0.76f}, Smooth(0.0f, 0.7f, height));
  sky = Mix(sky, {0.96f, 0.78f, 0.58f}, Smooth(0.45f, 1.0f, height) * 0.75f);
  const float dx = x - kSunX;
  const float dy = y - kSunY;
  const float distance = std::sqrt(dx * dx + dy * dy);
  sky = sky + Colour{0.50f, 0.34f, 0.16f} * (0.10f / (0.10f + distance * distance * 6.0f)) * 0.8f;
  sky = sky + Colour{0.9f, 0.75f, 0.5f} * Smooth(0.045f, 0.028f, distance);

  // Clouds in perspective: flatter and denser towards the horizon.
  const float depth = 0.35f / (0.75f - height * 0.62f);
  const float cx = (x - 0.75f) * depth * 3.0f + 3.0f;
  const float cy = depth * 6.0f;
  const float density =
      Fractal(cx, cy * 1.6f, 6, 11) * 0.75f + Fractal(cx * 3, cy * 5, 4, 31) * 0.25f;
  const float cover = Smooth(0.46f, 0.72f, density) * Smooth(1.02f, 0.75f, height);
  const float towardsSun = Fractal(cx + 0.12f, cy * 1.6f + 0.10f, 5, 11);
  const float lit = std::clamp(0.55f + (density - towardsSun) * 2.2f, 0.0f, 1.0f);
  const Colour shade = Mix({0.50f, 0.52f, 0.60f}, {0.72f, 0.62f, 0.60f}, height);
  const Colour light = Mix({0.97f, 0.94f, 0.90f}, {1.0f, 0.82f, 0.62f}, height);
  return Mix(sky, Mix(shade, light, lit), cover * 0.9f);
}

// One chain of hills: its sky line and the colour of its face.
struct Chain {
  float base;   // height of the sky line above the shore, in heights of the picture
  float range;  // how far it goes up and down
  float scale;  // peaks in one height of the picture
  uint32_t seed;
  float haze;   // 0 near, 1 lost in the air
  float trees;  // height of the trees on its crest
  Colour rock;
  Colour growth;
};

constexpr std::array<Chain, 5> kChains = {{
    {0.165f, 0.200f, 1.45f, 101, 0.70f, 0.000f, {0.44f, 0.43f, 0.46f}, {0.40f, 0.42f, 0.44f}},
    {0.105f, 0.150f, 2.10f, 202, 0.52f, 0.000f, {0.40f, 0.38f, 0.38f}, {0.30f, 0.36f, 0.33f}},
    {0.060f, 0.100f, 3.10f, 303, 0.33f, 0.003f, {0.34f, 0.31f, 0.28f}, {0.20f, 0.28f, 0.20f}},
    {0.024f, 0.062f, 4.60f, 404, 0.16f, 0.008f, {0.26f, 0.23f, 0.18f}, {0.13f, 0.21f, 0.11f}},
    {0.002f, 0.038f, 6.50f, 505, 0.05f, 0.020f, {0.19f, 0.16f, 0.11f}, {0.08f, 0.13f, 0.06f}},
}};

float SkyLine(const Chain& chain, float x) {
  float line =
      chain.base + chain.range * (Ridged(x * chain.scale, chain.scale, 7, chain.seed) - 0.25f);
  if (chain.trees > 0) {
    // Spires of different heights, side by side.
    const float place = x * 0.9f / chain.trees;
    const auto tree = static_cast<int32_t>(std::floor(place));
    for (int32_t i = tree - 1; i <= tree + 1; ++i) {
      const float middle = static_cast<float>(i) + 0.2f + 0.6f * Hash(i, 1, chain.seed);
      const float tall = chain.trees * (0.35f + 0.9f * Hash(i, 2, chain.seed));
      const float width = 0.45f + 0.25f * Hash(i, 3, chain.seed);
      const float ragged = 0.12f * Noise(place * 9, tall * 40, chain.seed + 9);
      line = std::max(line, line + tall * (1 - (std::fabs(place - middle) + ragged) / width));
    }
  }
  return line;
}

// What stands above the shore at a place; `skyLines` are those of the chains at x.
Colour Land(float x, float y, const std::array<float, kChains.size()>& skyLines) {
  const float up = kHorizon - y;
  Colour colour = Sky(x, y);
  for (std::size_t i = 0; i < kChains.size(); ++i) {
    const Chain& chain = kChains[i];
    const float below = skyLines[i] - up;
    if (below < -0.004f) {
      continue;
    }
    // Light from the right side picks out the folds of the face.
    const float s = chain.scale;
    const float fold = Ridged(x * s * 2.2f + up * 3.0f, up * s * 5.0f, 6, chain.seed + 50);
    const float foldBeside = Ridged((x - 0.004f) * s * 2.2f + (up - 0.002f) * 3.0f,
                                    (up - 0.002f) * s * 5.0f, 6, chain.seed + 50);
    const float lit = std::clamp(0.62f + (fold - foldBeside) * (1.9f - chain.haze), 0.15f, 1.25f);
    const float patches = Smooth(0.40f, 0.62f, Fractal(x * s * 4, up * s * 9, 5, chain.seed + 70));
    const float leaves = Fractal(x * 160, y * 210, 4, chain.seed + 90);
    Colour face = Mix(chain.rock, chain.growth, patches);
    face = face * (0.62f + 0.75f * leaves) * lit;
    if (i == 0) {
      const float snow = Smooth(0.055f, 0.015f, below) * Smooth(0.35f, 0.60f, fold + lit * 0.2f);
      face = Mix(face, Colour{0.93f, 0.93f, 0.96f} * (0.55f + 0.5f * lit), snow);
    }
    const float fog = Smooth(0.10f, -0.01f, up) * (0.20f + 0.45f * chain.haze) *
                      (0.55f + 0.9f * Fractal(x * 3.5f, y * 22.0f, 4, 61));
    const float nearSun = 0.03f / (0.03f + (x - kSunX) * (x - kSunX));
    const Colour air = Mix({0.66f, 0.70f, 0.77f}, {0.98f, 0.80f, 0.60f}, 0.25f + 0.6f * nearSun);
    face = Mix(face, air, std::min(0.95f, chain.haze + fog));
    colour = Mix(colour, face, Smooth(-0.0012f, 0.0012f, below));
  }
  return colour;
}

// The picture in linear values before the camera touches it, row after row.
class Canvas {
 public:
  Canvas(int32_t width, int32_t height)
      : mWidth(width),
        mHeight(height),
        mPixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}
  Colour& At(int32_t x, int32_t y) {
    x = std::clamp(x, 0, mWidth - 1);
    y = std::clamp(y, 0, mHeight - 1);
    return mPixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(mWidth) +
                   static_cast<std::size_t>(x)];
  }
  int32_t Width() const { return mWidth; }
  int32_t Height() const { return mHeight; }

 private:
  int32_t mWidth;
  int32_t mHeight;
  std::vector<Colour> mPixels;
};

void PaintLand(Canvas& canvas) {
  const auto height = static_cast<float>(canvas.Height());
  const auto shore = static_cast<int32_t>(std::ceil(kHorizon * height));
  for (int32_t x = 0; x < canvas.Width(); ++x) {
    const float px = (static_cast<float>(x) + 0.5f) / height;
    std::array<float, kChains.size()> skyLines{};
    for (std::size_t i = 0; i < kChains.size(); ++i) {
      skyLines[i] = SkyLine(kChains[i], px);
    }
    for (int32_t y = 0; y < std::min(shore, canvas.Height()); ++y) {
      canvas.At(x, y) = Land(px, (static_cast<float>(y) + 0.5f) / height, skyLines);
    }
  }
}

void PaintLake(Canvas& canvas) {
  const auto height = static_cast<float>(canvas.Height());
  const auto shore = static_cast<int32_t>(std::ceil(kHorizon * height));
  for (int32_t y = shore; y < canvas.Height(); ++y) {
    const float py = (static_cast<float>(y) + 0.5f) / height;
    const float depth = std::max(py - kHorizon, 0.001f);
    for (int32_t x = 0; x < canvas.Width(); ++x) {
      const float px = (static_cast<float>(x) + 0.5f) / height;
      // Waves get smaller and closer towards the shore.
      const float wx = (px - 0.75f) / (depth + 0.05f);
      const float wy = 1.0f / (depth + 0.035f);
      const float wave = Fractal(wx * 2.2f, wy * 5.5f, 5, 71) - 0.5f;
      const float ripple = Fractal(wx * 9.0f, wy * 17.0f, 3, 81) - 0.5f;
      const float push = depth * (0.30f * wave + 0.14f * ripple) + 0.003f * ripple;
      const auto mirrored = static_cast<int32_t>((2 * kHorizon - py - push) * height);
      const auto aside = static_cast<int32_t>((px + push * 0.35f) * height);
      Colour colour = canvas.At(aside, std::clamp(mirrored, 0, shore - 1));
      const float look = Smooth(0.0f, 0.42f, depth);
      const Colour deep = {0.07f, 0.13f, 0.16f};
      colour = Mix(colour * Mix({0.90f, 0.92f, 0.95f}, {0.62f, 0.70f, 0.76f}, look).g, deep,
                   0.10f + 0.42f * look);
      // Glitter below the sun.
      const float path =
          0.004f / (0.004f + (px - kSunX) * (px - kSunX) * (0.3f + 0.4f / (depth + 0.2f)));
      const float sparkle = Smooth(0.10f, 0.24f, wave * 0.5f + ripple + 0.02f);
      colour = colour + Colour{1.0f, 0.76f, 0.48f} * (path * sparkle * 0.75f);
      // A bank of fog along the far shore.
      colour = Mix(colour, {0.86f, 0.78f, 0.70f}, 0.35f * Smooth(0.035f, 0.0f, depth));
      canvas.At(x, y) = colour;
    }
  }
}

// Reeds and stones in the near corner, out of the light.
void PaintShore(Canvas& canvas) {
  const auto height = static_cast<float>(canvas.Height());
  for (int32_t x = 0; x < canvas.Width(); ++x) {
    const float px = (static_cast<float>(x) + 0.5f) / height;
    const float bank =
        0.955f + 0.11f * Smooth(0.15f, 0.85f, px) - 0.03f * Fractal(px * 5, 3, 5, 131);
    for (int32_t y = static_cast<int32_t>(bank * height); y < canvas.Height(); ++y) {
      const float py = (static_cast<float>(y) + 0.5f) / height;
      const float grain = Fractal(px * 70, py * 90, 5, 141);
      const float stone = Smooth(0.52f, 0.60f, Fractal(px * 22, py * 40, 4, 151));
      const Colour ground = Mix({0.10f, 0.12f, 0.05f}, {0.34f, 0.30f, 0.26f}, stone);
      canvas.At(x, y) =
          Mix(canvas.At(x, y), ground * (0.35f + 1.2f * grain), Smooth(bank, bank + 0.006f, py));
    }
  }
  for (int32_t i = 0; i < 230; ++i) {
    const float root = 0.62f * Hash(i, 7, 161) * Hash(i, 17, 161);
    const float tall = 0.05f + 0.13f * Hash(i, 8, 161) * (1 - root);
    const float bend = (Hash(i, 9, 161) - 0.35f) * 0.09f;
    const Colour stem = Mix({0.09f, 0.11f, 0.04f}, {0.42f, 0.36f, 0.16f}, Hash(i, 10, 161));
    const auto steps = static_cast<int32_t>(tall * height * 1.5f);
    for (int32_t step = 0; step < steps; ++step) {
      const float t = static_cast<float>(step) / static_cast<float>(steps);
      const float px = (root + bend * t * t) * height;
      const float py = (0.995f - tall * t) * height;
      const float wide = (1 - t) * 0.0016f * height + 0.3f;
      for (int32_t dx = -3; dx <= 3; ++dx) {
        const float cover = std::clamp(wide + 0.5f - std::fabs(static_cast<float>(dx)), 0.0f, 1.0f);
        Colour& pixel = canvas.At(static_cast<int32_t>(px) + dx, static_cast<int32_t>(py));
        pixel = Mix(pixel, stem * (0.6f + 0.7f * t), cover * 0.85f);
      }
    }
  }
}

uint8_t ToByte(float value) {
  return static_cast<uint8_t>(std::clamp(value * 255.0f + 0.5f, 0.0f, 255.0f));
}

// A lens that is a little soft, a veil of haze, darker corners, and grain.
Picture Expose(Canvas& canvas) {
  Picture picture{canvas.Width(), canvas.Height(), 3, 1, 72.0, {}};
  picture.samples.reserve(picture.RowBytes() * static_cast<std::size_t>(picture.height));
  const auto height = static_cast<float>(canvas.Height());
  const float aspect = static_cast<float>(canvas.Width()) / height;
  for (int32_t y = 0; y < canvas.Height(); ++y) {
    for (int32_t x = 0; x < canvas.Width(); ++x) {
      Colour colour = canvas.At(x, y) * 0.36f;
      colour = colour + (canvas.At(x - 1, y) + canvas.At(x + 1, y) + canvas.At(x, y - 1) +
                         canvas.At(x, y + 1)) *
                            0.11f;
      colour = colour + (canvas.At(x - 1, y - 1) + canvas.At(x + 1, y - 1) +
                         canvas.At(x - 1, y + 1) + canvas.At(x + 1, y + 1)) *
                            0.05f;
      colour = Mix(colour, {0.62f, 0.62f, 0.64f}, 0.10f);
      const float dx = static_cast<float>(x) / height - aspect / 2;
      const float dy = static_cast<float>(y) / height - 0.5f;
      const float corner = 1 - 0.30f * Smooth(0.35f, 1.0f, std::sqrt(dx * dx + dy * dy));
      const float grain = (Hash(x, y, 901) + Hash(x, y, 902) + Hash(x, y, 903) - 1.5f) * 0.016f;
      const float tint = (Hash(x, y, 904) - 0.5f) * 0.010f;
      picture.samples.push_back(ToByte(colour.r * corner + grain + tint));
      picture.samples.push_back(ToByte(colour.g * corner + grain));
      picture.samples.push_back(ToByte(colour.b * corner + grain - tint));
    }
  }
  return picture;
}

uint8_t ByteOf(const Picture& picture, int32_t x, int32_t y, int32_t channel) {
  const int32_t colours = picture.channels >= 3 ? channel : 0;
  const auto index = static_cast<std::size_t>(x * picture.channels + colours);
  const auto bytes = static_cast<std::size_t>(picture.bytesPerSample);
  return picture.Row(y)[index * bytes + bytes - 1];  // the high byte stands last
}

}  // namespace

Picture MakeScene(int32_t width, int32_t height) {
  Canvas canvas(width, height);
  PaintLand(canvas);
  PaintLake(canvas);
  PaintShore(canvas);
  return Expose(canvas);
}

Picture JoinHalves(const Picture& before, const Picture& after) {
  if (before.width != after.width || before.height != after.height) {
    throw filter_host::Error("the two pictures differ in size");
  }
  Picture joined{before.width, before.height, 3, 1, before.dotsPerInch, {}};
  joined.samples.reserve(joined.RowBytes() * static_cast<std::size_t>(joined.height));
  const int32_t middle = before.width / 2;
  const int32_t line = std::max(1, before.width / 600);
  for (int32_t y = 0; y < before.height; ++y) {
    for (int32_t x = 0; x < before.width; ++x) {
      for (int32_t channel = 0; channel < 3; ++channel) {
        const bool onLine = x >= middle - line && x < middle + line;
        joined.samples.push_back(onLine ? 255 : ByteOf(x < middle ? before : after, x, y, channel));
      }
    }
  }
  return joined;
}

}  // namespace pictures
