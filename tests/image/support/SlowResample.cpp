#include "image/support/SlowResample.h"

#include <algorithm>
#include <cmath>

#include "foundation/FourCharCode.h"
#include "image/pixels/PxRecords.h"
#include "image/pixels/ZvHSLPixel.h"
#include "image/support/RandomImages.h"

namespace vm::slow {
namespace {

int64_t Extent(int32_t nearSide, int32_t farSide) {
  return int64_t{farSide} - nearSide;
}
int64_t OneForZero(int64_t extent) {
  return extent == 0 ? 1 : extent;
}

struct Setting {
  int64_t fw, fh, tw, th;
  ZvRect fromRect;
  ZvRect toRect;
  ZvRect target;

  Setting(const ZvImage& to, const ZvRect& from, const ZvRect& at, const ZvRect* clip)
      : fw(Extent(from.fLeft, from.fRight)),
        fh(Extent(from.fTop, from.fBottom)),
        tw(OneForZero(Extent(at.fLeft, at.fRight))),
        th(OneForZero(Extent(at.fTop, at.fBottom))),
        fromRect(from),
        toRect(at),
        target(at) {
    target.Intersect({0, 0, to.Width() - 1, to.Height() - 1});
    if (clip != nullptr)
      target.Intersect(*clip);
  }
  bool SameExtents() const { return fw == tw && fh == th; }
  ZvRect CutFrom() const {
    return {fromRect.fLeft, fromRect.fTop, static_cast<int32_t>(fromRect.fLeft + std::min(fw, tw)),
            static_cast<int32_t>(fromRect.fTop + std::min(fh, th))};
  }
  ZvPoint ToPoint() const { return {toRect.fLeft, toRect.fTop}; }

  int32_t NearestX(int32_t x) const {
    return static_cast<int32_t>(fw * (int64_t{x} - toRect.fLeft) / tw);
  }
  int32_t NearestY(int32_t y) const {
    return static_cast<int32_t>(fh * (int64_t{y} - toRect.fTop) / th);
  }
  float FloatX(int32_t x) const {
    const float reciprocal = 1.0F / static_cast<float>(tw);
    float position = static_cast<float>(int64_t{x} - toRect.fLeft);
    position *= static_cast<float>(fw);
    position *= reciprocal;
    return position;
  }
  float FloatY(int32_t y) const {
    const float reciprocal = 1.0F / static_cast<float>(th);
    float position = static_cast<float>(int64_t{y} - toRect.fTop);
    position *= static_cast<float>(fh);
    position *= reciprocal;
    return position;
  }
};

template <class Work>
void EachPixel(const ZvRect& area, Work&& work) {
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight; ++x)
      work(x, y);
  }
}

int32_t Trunc(float value) {
  return static_cast<int32_t>(value);
}

uint8_t ByteLimited(float value) {
  return static_cast<uint8_t>(std::min(255, std::max(0, Trunc(value + 0.5F))));
}

bool SameClass(const ZvImage& a, const ZvImage& b) {
  // Two images are of one class when they are of one family and agree in every figure of their
  // pixels; only the two coordinate records share a kind, and they differ in their figures.
  return a.IsTiled() == b.IsTiled() && a.PixelKind() == b.PixelKind() &&
         a.BitsPerPixel() == b.BitsPerPixel() && a.ChannelCount() == b.ChannelCount();
}

// --- kernels

float MatteWeight(float d) {
  d = std::fabs(d);
  if (d < 1)
    return 1.5F * (d * d * d) - 2.5F * (d * d) + 1;
  return -0.5F * (d * d * d) + 2.5F * (d * d) - 4 * d + 2;
}

double SharpWeight(double d) {
  if (d < 1)
    return d * d * d - 2 * d * d + 1;
  return -d * d * d + 5 * d * d - 8 * d + 4;
}

void TableWeights(float f, int32_t w[4]) {
  int32_t row = Trunc(256 * f + 0.5F);
  const bool mirrored = f - 0.5F > 0;
  if (mirrored)
    row = 256 - row;
  row = std::max(row, 0);  // fractions below 0
  const double t = row / 256.0;
  const double exact[4] = {-SharpWeight(1 + t), SharpWeight(t), SharpWeight(1 - t),
                           -SharpWeight(2 - t)};
  for (int i = 0; i < 4; ++i)
    w[mirrored ? 3 - i : i] = static_cast<int32_t>(std::floor(65536 * exact[i] + 0.5));
}

int32_t TableStep(const int32_t p[4], const int32_t w[4]) {
  const int32_t sum = (p[1] * w[1] - p[0] * w[0] + p[2] * w[2] - p[3] * w[3] + 0x8000) >> 16;
  return std::min(255, std::max(0, sum));
}

float Spline(const float p[4], float t) {
  const float u = 1 - t;
  const float v = t * t * (3 - 2 * t);
  const float t3 = t * t * t;
  const float u3 = u * u * u;
  return (1 - v) *
             ((1 - t3) * (p[1] - (p[2] + p[0]) * 0.5F) + (1 + t) * 0.5F * (p[2] - p[0]) + p[0]) +
         v * ((1 - u3) * (p[2] - (p[3] + p[1]) * 0.5F) + 0.5F * t * (p[3] - p[1]) + p[1]);
}

uint8_t& Channel(PxRgbaBytes& pixel, int channel) {
  return channel == 0   ? pixel.red
         : channel == 1 ? pixel.green
         : channel == 2 ? pixel.blue
                        : pixel.alpha;
}

// --- boxes

struct Box {
  float x0, x1, y0, y1;
};

float Limited(float start, float end, float limit) {
  if (end <= start)
    end = start + 1;
  return end > limit ? limit : end;
}

Box BoxAt(const Setting& s, const ZvImage& from, int32_t x, int32_t y, bool blending) {
  const float ox = blending ? 0.0F : static_cast<float>(s.fromRect.fLeft);
  const float oy = blending ? 0.0F : static_cast<float>(s.fromRect.fTop);
  const auto edgeX = [&](int64_t offset) {
    return ox + static_cast<float>(offset) * static_cast<float>(s.fw) / static_cast<float>(s.tw);
  };
  const auto edgeY = [&](int64_t offset) {
    return oy + static_cast<float>(offset) * static_cast<float>(s.fh) / static_cast<float>(s.th);
  };
  const int64_t dx = int64_t{x} - s.toRect.fLeft;
  const int64_t dy = int64_t{y} - s.toRect.fTop;
  Box box;
  box.x0 = edgeX(dx);
  box.y0 = edgeY(dy);
  box.x1 = Limited(box.x0, edgeX(dx + 1), static_cast<float>(from.Width() - (blending ? 1 : 0)));
  box.y1 = Limited(box.y0, edgeY(dy + 1), static_cast<float>(from.Height() - (blending ? 1 : 0)));
  return box;
}

// False when the box holds no pixel.
bool BoxMean(const ZvImage& from, const Box& box, PxRgbaBytes& out) {
  float sums[4] = {};
  int64_t count = 0;
  for (int32_t y = Trunc(box.y0); static_cast<double>(y) < static_cast<double>(box.y1); ++y) {
    for (int32_t x = Trunc(box.x0); static_cast<double>(x) < static_cast<double>(box.x1); ++x) {
      PxRgbaBytes pixel;
      from.GetRgba(pixel, x, y);
      for (int c = 0; c < 4; ++c)
        sums[c] += static_cast<float>(Channel(pixel, c));
      ++count;
    }
  }
  if (count == 0)
    return false;
  const float share = 1.0F / static_cast<float>(count);
  for (int c = 0; c < 4; ++c)
    Channel(out, c) = static_cast<uint8_t>(Trunc(sums[c] * share));
  return true;
}

// --- colour

void Shift(PxRgbaBytes& pixel, float hue, float saturation, float lightness) {
  ZvHSLPixel hsl;
  hsl.FromRgba(pixel);
  const int64_t sum = int64_t{hsl.hue} + 360 + TruncToInt32(hue);
  hsl.hue = static_cast<int16_t>(((sum % 360) + 360) % 360);
  hsl.saturation = static_cast<uint8_t>(
      std::clamp(TruncToInt32(static_cast<float>(hsl.saturation) * saturation), 0, 100));
  hsl.lightness = static_cast<uint8_t>(
      std::clamp<int64_t>(int64_t{hsl.lightness} + TruncToInt32(lightness), 0, 100));
  hsl.ToRgba(pixel);
}

// The pixel of a mode as PxRgbaBytes; false when there is none.
bool RgbaOf(const Setting& s, const ZvImage& from, int32_t mode, bool blendingBox, int32_t x,
            int32_t y, PxRgbaBytes& out) {
  switch (mode) {
    case 1:
      from.GetRgba(out, s.NearestX(x), s.NearestY(y));
      return true;
    case 2:
      from.SampleRgba(out, static_cast<float>(Trunc(s.FloatX(x))),
                      static_cast<float>(Trunc(s.FloatY(y))));
      return true;
    case 3:
    case 4:
    case 5:
      SampleKernel(from, out, s.FloatX(x), s.FloatY(y), mode);
      return true;
    case 7:
      return BoxMean(from, BoxAt(s, from, x, y, blendingBox), out);
    default:
      return false;
  }
}

void CompositeBytes(ZvImage& to, PxRgbaBytes source, float opacity, int32_t x, int32_t y) {
  source.alpha = static_cast<uint8_t>(TruncToInt32(static_cast<float>(source.alpha) * opacity));
  PxRgbaBytes target;
  to.GetRgba(target, x, y);
  target.Composite(source);
  to.PutRgba(target, x, y);
}

void CompositeWords(ZvImage& to, PxRgba64 source, float opacity, int32_t x, int32_t y) {
  source.alpha = static_cast<uint16_t>(TruncToInt32(static_cast<float>(source.alpha) * opacity));
  PxRgba64 target;
  to.GetRgba64(target, x, y);
  target.Composite(source);
  to.PutRgba64(target, x, y);
}

// The area of a masked transfer, and its way to source and mask.
struct MaskedArea {
  int64_t dx, dy;
  ZvRect target;

  MaskedArea(const ZvImage& to, const ZvImage& mask, const ZvRect& fromRect, const ZvPoint& toPoint,
             const ZvRect* clip)
      : dx(int64_t{toPoint.x} - fromRect.fLeft), dy(int64_t{toPoint.y} - fromRect.fTop) {
    target = {toPoint.x, toPoint.y, static_cast<int32_t>(fromRect.fRight + dx),
              static_cast<int32_t>(fromRect.fBottom + dy)};
    target.Intersect({0, 0, to.Width() - 1, to.Height() - 1});
    if (clip != nullptr)
      target.Intersect(*clip);
    target.Intersect({static_cast<int32_t>(dx), static_cast<int32_t>(dy),
                      static_cast<int32_t>(dx + mask.Width() - 1),
                      static_cast<int32_t>(dy + mask.Height() - 1)});
  }
  int32_t SourceX(int32_t x) const { return static_cast<int32_t>(x - dx); }
  int32_t SourceY(int32_t y) const { return static_cast<int32_t>(y - dy); }
};

}  // namespace

void SampleKernel(const ZvImage& from, PxRgbaBytes& out, float x, float y, int32_t mode) {
  if (mode == 1) {
    from.GetRgba(out, Trunc(x + 0.5F), Trunc(y + 0.5F));
    return;
  }
  const int32_t x0 = Trunc(x);
  const int32_t y0 = Trunc(y);
  const float fx = x - static_cast<float>(x0);
  const float fy = y - static_cast<float>(y0);
  if (mode == 2) {
    PxRgbaBytes p[4];
    for (int32_t i = 0; i < 4; ++i)
      from.GetRgba(p[i], x0 + i % 2, y0 + i / 2);
    for (int c = 0; c < 4; ++c) {
      const float top = static_cast<float>(Channel(p[0], c)) * (1 - fx) +
                        static_cast<float>(Channel(p[1], c)) * fx;
      const float low = static_cast<float>(Channel(p[2], c)) * (1 - fx) +
                        static_cast<float>(Channel(p[3], c)) * fx;
      Channel(out, c) = ByteLimited(top * (1 - fy) + low * fy);
    }
    return;
  }
  PxRgbaBytes p[4][4];
  for (int32_t j = 0; j < 4; ++j) {
    for (int32_t i = 0; i < 4; ++i)
      from.GetRgba(p[j][i], std::clamp(x0 - 1 + i, 0, from.Width() - 1),
                   std::clamp(y0 - 1 + j, 0, from.Height() - 1));
  }
  for (int c = 0; c < 4; ++c) {
    if (mode == 4) {
      int32_t wx[4], wy[4], reduced[4];
      TableWeights(fx, wx);
      TableWeights(fy, wy);
      for (int i = 0; i < 4; ++i) {
        const int32_t column[4] = {Channel(p[0][i], c), Channel(p[1][i], c), Channel(p[2][i], c),
                                   Channel(p[3][i], c)};
        reduced[i] = TableStep(column, wy);
      }
      Channel(out, c) = static_cast<uint8_t>(TableStep(reduced, wx));
      continue;
    }
    float rows[4];
    for (int j = 0; j < 4; ++j) {
      float values[4];
      for (int i = 0; i < 4; ++i)
        values[i] = static_cast<float>(Channel(p[j][i], c));
      if (mode == 5) {
        rows[j] = Spline(values, fx);
      } else {
        rows[j] = values[0] * MatteWeight(1 + fx);
        rows[j] += values[1] * MatteWeight(fx);
        rows[j] += values[2] * MatteWeight(1 - fx);
        rows[j] += values[3] * MatteWeight(2 - fx);
      }
    }
    if (mode == 5) {
      Channel(out, c) = ByteLimited(Spline(rows, fy));
      continue;
    }
    float sum = rows[0] * MatteWeight(1 + fy);
    sum += rows[1] * MatteWeight(fy);
    sum += rows[2] * MatteWeight(1 - fy);
    sum += rows[3] * MatteWeight(2 - fy);
    Channel(out, c) = ByteLimited(sum);
  }
}

void CopyScaled(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                int32_t mode, const ZvRect* clip) {
  const Setting s(to, fromRect, toRect, clip);
  if (s.SameExtents() || mode == 0) {
    to.CopyFrom(&from, s.CutFrom(), s.ToPoint(), clip);
    return;
  }
  EachPixel(s.target, [&](int32_t x, int32_t y) {
    if (mode == 1) {
      if (SameClass(to, from)) {
        PutRaw(to, GetRaw(from, s.NearestX(x), s.NearestY(y)), x, y);
      } else {
        PxRgba64 pixel;
        from.GetRgba64(pixel, s.NearestX(x), s.NearestY(y));
        to.PutRgba64(pixel, x, y);
      }
      return;
    }
    if (mode == 2) {
      const auto sx = static_cast<float>(Trunc(s.FloatX(x)));
      const auto sy = static_cast<float>(Trunc(s.FloatY(y)));
      if (to.BitsPerPixel() <= 8) {
        uint8_t byte;
        from.SampleByte(byte, sx, sy);
        to.PutByte(byte, x, y);
      } else if (to.BitsPerPixel() <= 24) {
        PxRgbBytes pixel;
        from.SampleRgb(pixel, sx, sy);
        to.PutRgb(pixel, x, y);
      } else {
        PxRgba64 pixel;
        from.SampleRgba64(pixel, sx, sy);
        to.PutRgba64(pixel, x, y);
      }
      return;
    }
    PxRgbaBytes pixel;
    if (RgbaOf(s, from, mode, false, x, y, pixel))
      to.PutRgba(pixel, x, y);
  });
}

void CopyAdjusted(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                  float hue, float saturation, float lightness, int32_t mode, const ZvRect* clip) {
  const Setting s(to, fromRect, toRect, clip);
  if ((s.SameExtents() || mode == 0) && hue == 0 && saturation == 0 && lightness == 0) {
    to.CopyFrom(&from, s.CutFrom(), s.ToPoint(), clip);
    return;
  }
  if (mode == 0) {
    // The frame of an unscaled copy: both images and the clip cut the target.
    const ZvRect cut = s.CutFrom();
    const int32_t dx = toRect.fLeft - cut.fLeft;
    const int32_t dy = toRect.fTop - cut.fTop;
    ZvRect target(toRect.fLeft, toRect.fTop, cut.fRight + dx, cut.fBottom + dy);
    target.Intersect({0, 0, to.Width() - 1, to.Height() - 1});
    target.Intersect({dx, dy, dx + from.Width() - 1, dy + from.Height() - 1});
    if (clip != nullptr)
      target.Intersect(*clip);
    EachPixel(target, [&](int32_t x, int32_t y) {
      PxRgbaBytes pixel;
      from.GetRgba(pixel, x - dx, y - dy);
      Shift(pixel, hue, saturation, lightness);
      to.PutRgba(pixel, x, y);
    });
    return;
  }
  EachPixel(s.target, [&](int32_t x, int32_t y) {
    PxRgbaBytes pixel;
    if (!RgbaOf(s, from, mode, false, x, y, pixel))
      return;
    Shift(pixel, hue, saturation, lightness);
    to.PutRgba(pixel, x, y);
  });
}

void BlendScaled(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                 float opacity, int32_t mode, const ZvRect* clip) {
  const Setting s(to, fromRect, toRect, clip);
  if (s.SameExtents() || mode == 0) {
    to.BlendRect(&from, s.CutFrom(), s.ToPoint(), opacity, clip);
    return;
  }
  const bool partial = opacity < 0.99;
  EachPixel(s.target, [&](int32_t x, int32_t y) {
    if (mode == 1) {
      if (!partial && SameClass(to, from)) {
        PutRaw(to, GetRaw(from, s.NearestX(x), s.NearestY(y)), x, y);
        return;
      }
      PxRgba64 pixel;
      from.GetRgba64(pixel, s.NearestX(x), s.NearestY(y));
      CompositeWords(to, pixel, opacity, x, y);
      return;
    }
    if (mode == 2) {
      const auto sx = static_cast<float>(Trunc(s.FloatX(x)));
      const auto sy = static_cast<float>(Trunc(s.FloatY(y)));
      if (to.BitsPerPixel() <= 8) {
        uint8_t source;
        uint8_t target;
        from.SampleByte(source, sx, sy);
        to.GetByte(target, x, y);
        const int32_t share =
            static_cast<uint8_t>(TruncToInt32(static_cast<float>(source) * opacity));
        to.PutByte(static_cast<uint8_t>(target + share * (255 - target) / 255), x, y);
      } else if (to.BitsPerPixel() <= 32) {
        PxRgbaBytes pixel;
        from.SampleRgba(pixel, sx, sy);
        CompositeBytes(to, pixel, opacity, x, y);
      } else {
        PxRgba64 pixel;
        from.SampleRgba64(pixel, sx, sy);
        CompositeWords(to, pixel, opacity, x, y);
      }
      return;
    }
    PxRgbaBytes pixel;
    if (RgbaOf(s, from, mode, true, x, y, pixel))
      CompositeBytes(to, pixel, opacity, x, y);
  });
}

void BlendAdjusted(ZvImage& to, const ZvImage& from, const ZvRect& fromRect, const ZvRect& toRect,
                   float hue, float saturation, float lightness, float opacity, int32_t mode,
                   const ZvRect* clip) {
  const Setting s(to, fromRect, toRect, clip);
  if ((s.SameExtents() || mode == 0) && hue == 0 && saturation == 1.0 && lightness == 0) {
    to.BlendRect(&from, s.CutFrom(), s.ToPoint(), opacity, clip);
    return;
  }
  if (mode == 0) {
    const ZvRect cut = s.CutFrom();
    const int32_t dx = toRect.fLeft - cut.fLeft;
    const int32_t dy = toRect.fTop - cut.fTop;
    ZvRect target(toRect.fLeft, toRect.fTop, cut.fRight + dx, cut.fBottom + dy);
    target.Intersect({0, 0, to.Width() - 1, to.Height() - 1});
    target.Intersect({dx, dy, dx + from.Width() - 1, dy + from.Height() - 1});
    if (clip != nullptr)
      target.Intersect(*clip);
    EachPixel(target, [&](int32_t x, int32_t y) {
      PxRgbaBytes pixel;
      from.GetRgba(pixel, x - dx, y - dy);
      Shift(pixel, hue, saturation, lightness);
      CompositeBytes(to, pixel, opacity, x, y);
    });
    return;
  }
  EachPixel(s.target, [&](int32_t x, int32_t y) {
    PxRgbaBytes pixel;
    if (!RgbaOf(s, from, mode, false, x, y, pixel))
      return;
    Shift(pixel, hue, saturation, lightness);
    CompositeBytes(to, pixel, opacity, x, y);
  });
}

void BlendMasked(ZvImage& to, const ZvImage& from, const ZvImage* mask, const ZvRect& fromRect,
                 const ZvPoint& toPoint, float opacity, const ZvRect* clip) {
  if (mask == nullptr) {
    to.BlendRect(&from, fromRect, toPoint, opacity, clip);
    return;
  }
  const bool partial = opacity < 0.99;
  const bool rgb = to.PixelKind() == FourCC("RG24") && from.PixelKind() == FourCC("RG24") &&
                   mask->PixelKind() == FourCC("AlpB");
  const MaskedArea area(to, *mask, fromRect, toPoint, clip);
  EachPixel(area.target, [&](int32_t x, int32_t y) {
    const int32_t sx = area.SourceX(x);
    const int32_t sy = area.SourceY(y);
    uint8_t m;
    mask->GetByte(m, sx, sy);
    if (!rgb) {
      const float t = static_cast<float>(m) * (1.0F / 255) * opacity;
      PxRgba64 pixel;
      from.GetRgba64(pixel, sx, sy);
      pixel.alpha = static_cast<uint16_t>(TruncToInt32(static_cast<float>(pixel.alpha) * t));
      to.PutRgba64(pixel, x, y);
      return;
    }
    PxRgbBytes source;
    PxRgbBytes target;
    from.GetRgb(source, sx, sy);
    to.GetRgb(target, x, y);
    if (!partial && m == 255) {
      to.PutRgb(source, x, y);
      return;
    }
    const int32_t w =
        partial ? static_cast<uint8_t>(TruncToInt32(static_cast<float>(m) * opacity)) : m;
    target.red = static_cast<uint8_t>((source.red * w + target.red * (255 - w)) >> 8);
    target.green = static_cast<uint8_t>((source.green * w + target.green * (255 - w)) >> 8);
    target.blue = static_cast<uint8_t>((source.blue * w + target.blue * (255 - w)) >> 8);
    to.PutRgb(target, x, y);
  });
}

void PaintMasked(ZvImage& to, const PxRgba64& colour, const ZvImage& mask, const ZvRect& fromRect,
                 const ZvPoint& toPoint, float opacity, const ZvRect* clip) {
  const MaskedArea area(to, mask, fromRect, toPoint, clip);
  EachPixel(area.target, [&](int32_t x, int32_t y) {
    uint8_t m;
    mask.GetByte(m, area.SourceX(x), area.SourceY(y));
    if (opacity < 0.99)
      m = static_cast<uint8_t>(TruncToInt32(static_cast<float>(m) * opacity));
    if (m == 0)
      return;
    if (to.BitsPerChannel() <= 8) {
      PxRgbaBytes source = colour.GetRgba();
      source.alpha = m;
      PxRgbaBytes target;
      to.GetRgba(target, x, y);
      target.Composite(source);
      to.PutRgba(target, x, y);
    } else {
      PxRgba64 source = colour;
      source.alpha = static_cast<uint16_t>(m * 0x101);
      PxRgba64 target;
      to.GetRgba64(target, x, y);
      target.Composite(source);
      to.PutRgba64(target, x, y);
    }
  });
}

}  // namespace vm::slow
