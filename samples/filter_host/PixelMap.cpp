#include "filter_host/PixelMap.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace filter_host {

namespace {

struct Rgb {
  double red;
  double green;
  double blue;
};

double Limited(double value, double high) {
  return std::clamp(value, 0.0, high);
}

int16_t Rounded(double value) {
  return static_cast<int16_t>(std::lround(value));
}

// One sector of the colour circle: c is the strongest part above m, x the second one.
Rgb FromSector(double hue, double c, double m) {
  const double sector = std::fmod(std::fmod(hue, 360.0) + 360.0, 360.0) / 60.0;
  const double x = c * (1.0 - std::fabs(std::fmod(sector, 2.0) - 1.0));
  switch (static_cast<int>(sector)) {
    case 0:
      return {c + m, x + m, m};
    case 1:
      return {x + m, c + m, m};
    case 2:
      return {m, c + m, x + m};
    case 3:
      return {m, x + m, c + m};
    case 4:
      return {x + m, m, c + m};
    default:
      return {c + m, m, x + m};
  }
}

double HueOf(const Rgb& rgb, double high, double low) {
  const double range = high - low;
  if (range <= 0.0) {
    return 0.0;
  }
  double sector = 0.0;
  if (high == rgb.red) {
    sector = (rgb.green - rgb.blue) / range;
  } else if (high == rgb.green) {
    sector = (rgb.blue - rgb.red) / range + 2.0;
  } else {
    sector = (rgb.red - rgb.green) / range + 4.0;
  }
  return sector < 0.0 ? (sector + 6.0) * 60.0 : sector * 60.0;
}

bool ToRgb(const std::array<int16_t, 4>& in, int16_t space, Rgb* out) {
  switch (space) {
    case kSpaceRgb:
      *out = {Limited(in[0] / 255.0, 1.0), Limited(in[1] / 255.0, 1.0),
              Limited(in[2] / 255.0, 1.0)};
      return true;
    case kSpaceHsb: {
      const double value = Limited(in[2] / 100.0, 1.0);
      const double c = value * Limited(in[1] / 100.0, 1.0);
      *out = FromSector(in[0], c, value - c);
      return true;
    }
    case kSpaceCmyk: {
      const double black = Limited(in[3] / 255.0, 1.0);
      *out = {Limited(in[0] / 255.0, 1.0) * black, Limited(in[1] / 255.0, 1.0) * black,
              Limited(in[2] / 255.0, 1.0) * black};
      return true;
    }
    case kSpaceGray: {
      const double value = Limited(in[0] / 255.0, 1.0);
      *out = {value, value, value};
      return true;
    }
    case kSpaceHsl: {
      const double lightness = Limited(in[2] / 100.0, 1.0);
      const double c = (1.0 - std::fabs(2.0 * lightness - 1.0)) * Limited(in[1] / 100.0, 1.0);
      *out = FromSector(in[0], c, lightness - c / 2.0);
      return true;
    }
    default:
      return false;
  }
}

bool FromRgb(const Rgb& rgb, int16_t space, std::array<int16_t, 4>* out) {
  const double high = std::max({rgb.red, rgb.green, rgb.blue});
  const double low = std::min({rgb.red, rgb.green, rgb.blue});
  switch (space) {
    case kSpaceRgb:
      *out = {Rounded(rgb.red * 255), Rounded(rgb.green * 255), Rounded(rgb.blue * 255), 0};
      return true;
    case kSpaceHsb:
      *out = {static_cast<int16_t>(Rounded(HueOf(rgb, high, low)) % 360),
              Rounded(high <= 0.0 ? 0.0 : (high - low) / high * 100), Rounded(high * 100), 0};
      return true;
    case kSpaceCmyk:
      if (high <= 0.0) {
        *out = {255, 255, 255, 0};
        return true;
      }
      *out = {Rounded(rgb.red / high * 255), Rounded(rgb.green / high * 255),
              Rounded(rgb.blue / high * 255), Rounded(high * 255)};
      return true;
    case kSpaceGray:
      *out = {Rounded((0.299 * rgb.red + 0.587 * rgb.green + 0.114 * rgb.blue) * 255), 0, 0, 0};
      return true;
    case kSpaceHsl: {
      const double lightness = (high + low) / 2.0;
      const double room = 1.0 - std::fabs(2.0 * lightness - 1.0);
      *out = {static_cast<int16_t>(Rounded(HueOf(rgb, high, low)) % 360),
              Rounded(room <= 0.0 ? 0.0 : (high - low) / room * 100), Rounded(lightness * 100), 0};
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

bool ConvertColour(std::array<int16_t, 4>& components, int16_t from, int16_t to) {
  Rgb rgb{};
  std::array<int16_t, 4> result{};
  if (!ToRgb(components, from, &rgb) || !FromRgb(rgb, to, &result)) {
    return false;
  }
  components = result;
  return true;
}

bool PaintableArea(const PSPixelMap* map, const VRect* area, PaintedArea* out) {
  if (map == nullptr || area == nullptr || map->baseAddr == nullptr ||
      area->top < map->bounds.top || area->left < map->bounds.left ||
      area->bottom > map->bounds.bottom || area->right > map->bounds.right ||
      area->top >= area->bottom || area->left >= area->right) {
    return false;
  }
  const int32_t mode = map->imageMode;
  if (mode != plugInModeGrayScale && mode != plugInModeRGBColor && mode != plugInModeCMYKColor) {
    return false;
  }
  out->width = area->right - area->left;
  out->height = area->bottom - area->top;
  out->bgrx.clear();
  out->bgrx.reserve(static_cast<std::size_t>(out->width) * static_cast<std::size_t>(out->height) *
                    4);
  for (int32_t y = area->top; y < area->bottom; ++y) {
    for (int32_t x = area->left; x < area->right; ++x) {
      const uint8_t* pixel = static_cast<const uint8_t*>(map->baseAddr) +
                             static_cast<std::ptrdiff_t>(y - map->bounds.top) * map->rowBytes +
                             static_cast<std::ptrdiff_t>(x - map->bounds.left) * map->colBytes;
      const auto plane = [&](int32_t index) -> int32_t {
        return pixel[static_cast<std::ptrdiff_t>(index) * map->planeBytes];
      };
      std::array<int32_t, 3> rgb{};
      for (int32_t channel = 0; channel < 3; ++channel) {
        int32_t value = mode == plugInModeGrayScale ? plane(0) : plane(channel);
        if (mode == plugInModeCMYKColor) {
          value = std::max(0, value - (255 - plane(3)));
        }
        rgb[static_cast<std::size_t>(channel)] = value;
      }
      out->bgrx.push_back(static_cast<uint8_t>(rgb[2]));
      out->bgrx.push_back(static_cast<uint8_t>(rgb[1]));
      out->bgrx.push_back(static_cast<uint8_t>(rgb[0]));
      out->bgrx.push_back(0);
    }
  }
  return true;
}

}  // namespace filter_host
