#include "image/support/SlowDrawing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>

namespace vm::slow {
namespace {

bool Inside(const ZvRect& rect, int64_t x, int64_t y) {
  return x >= rect.fLeft && x <= rect.fRight && y >= rect.fTop && y <= rect.fBottom;
}

ZvRect ClipOf(const ZvImage& image) {
  ZvRect clip;
  image.GetClip(clip);
  return clip;
}

// Draws single pixels: stored, XORed or mixed, through the mask.
class Pen {
 public:
  Pen(const ImageClass& imageClass, ZvImage& image, const PxRgba64& colour, bool xorMode,
      ZvImage* mask)
      : mClass(imageClass), mImage(image), mColour(colour), mXor(xorMode), mMask(mask) {
    const auto one = ZvSmartPtr<ZvImage>::Adopt(imageClass.make(1, 1));
    one->PutRgba64(colour, 0, 0);
    mRaw = GetRaw(*one, 0, 0);
  }

  void Plot(int32_t x, int32_t y) {
    if (!Take(x, y))
      return;
    RawPixel pixel = mRaw;
    if (mXor) {
      const RawPixel old = StoredPixel(x, y);
      for (size_t i = 0; i < sizeof pixel.bytes; ++i)
        pixel.bytes[i] ^= old.bytes[i];
    }
    PutRaw(mImage, pixel, x, y);
  }

  void Mix(int32_t x, int32_t y, float share) {
    if (!Take(x, y))
      return;
    PutRaw(mImage, StoredPixel(x, y), x, y);
    mClass.mix255(mImage, mColour, share, x, y);
  }

  // True if the mask lets the pixel through; then it won't again.
  bool Take(int32_t x, int32_t y) {
    if (mMask == nullptr)
      return true;
    uint8_t byte;
    mMask->GetByte(byte, x, y);
    if (byte != 0)
      return false;
    mMask->PutByte(255, x, y);
    return true;
  }

 private:
  // Drawing makes the tile before it reads, and a new tile is zero.
  RawPixel StoredPixel(int32_t x, int32_t y) const {
    std::vector<ZvImageBlock> blocks;
    mImage.AppendBlocks(blocks, {x, y, x, y});
    return blocks[0].pixels != nullptr ? GetRaw(mImage, x, y) : RawPixel{};
  }

  const ImageClass& mClass;
  ZvImage& mImage;
  const PxRgba64 mColour;
  const bool mXor;
  ZvImage* const mMask;
  RawPixel mRaw;
};

int64_t Divisor(int64_t n) {
  return n == 0 ? 1 : n;
}

bool DashPlots(int64_t n, int32_t dash) {
  return dash == 0 || (n / dash) % 2 != 0;
}

int32_t Limit(int32_t value, int32_t last) {
  return std::max(0, std::min(value, last));
}

}  // namespace

void DrawLine(const ImageClass& imageClass, ZvImage& image, const ZvPoint& from, const ZvPoint& to,
              const PxRgba64& colour, bool xorMode, ZvImage* mask, int32_t dash) {
  Pen pen(imageClass, image, colour, xorMode, mask);
  const int64_t dx = int64_t{to.x} - from.x;
  const int64_t dy = int64_t{to.y} - from.y;
  ZvRect box(std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x),
             std::max(from.y, to.y));
  box.Intersect(ClipOf(image));
  int64_t n = 0;
  const auto candidate = [&](int64_t x, int64_t y) {
    if (!Inside(box, x, y))
      return;
    if (DashPlots(n, dash))
      pen.Plot(static_cast<int32_t>(x), static_cast<int32_t>(y));
    ++n;
  };
  if (std::abs(dx) < std::abs(dy)) {
    for (int64_t y = box.fTop; y <= box.fBottom; ++y)
      candidate((y - from.y) * dx / Divisor(dy) + from.x, y);
  } else {
    for (int64_t x = box.fLeft; x <= box.fRight; ++x)
      candidate(x, (x - from.x) * dy / Divisor(dx) + from.y);
  }
}

void DrawOval(const ImageClass& imageClass, ZvImage& image, const ZvRect& rect,
              const PxRgba64& colour, bool filled, bool xorMode, ZvImage* mask) {
  Pen pen(imageClass, image, colour, xorMode, mask);
  const ZvRect clip = ClipOf(image);
  const double cx = (rect.fLeft + rect.fRight) / 2.0;
  const double cy = (rect.fTop + rect.fBottom) / 2.0;
  const double rx = std::max(1.0, (rect.fRight - rect.fLeft) / 2.0);
  const double ry = std::max(1.0, (rect.fBottom - rect.fTop) / 2.0);
  int32_t previous = static_cast<int32_t>(cx);
  for (int32_t y = rect.fTop; y <= rect.fBottom; ++y) {
    const double up = (y + 0.5 - cy) / ry;
    int32_t end = static_cast<int32_t>(cx + rx * std::sqrt(std::max(0.0, 1 - up * up)) + 0.5);
    if (y == rect.fBottom)
      end = static_cast<int32_t>(cx);
    std::set<int32_t> columns;
    for (int32_t x = std::min(previous, end); x <= std::max(previous, end); ++x) {
      columns.insert(x);
      columns.insert(std::min(rect.fLeft + rect.fRight - x, x - 1));
    }
    if (filled) {
      for (int32_t x = *columns.begin(), last = *columns.rbegin(); x <= last; ++x)
        columns.insert(x);
    }
    for (const int32_t x : columns) {
      if (Inside(clip, x, y))
        pen.Plot(x, y);
    }
    previous = end;
  }
}

namespace {

void Outline(Pen& pen, const ZvImage& image, const std::vector<ZvPoint>& points, bool skipFirst,
             bool clampToImage, bool closed, int32_t dash, const ZvRect& clip) {
  std::vector<std::pair<ZvPoint, ZvPoint>> edges;
  for (size_t i = 1; i < points.size(); ++i)
    edges.emplace_back(points[i - 1], points[i]);
  if (closed)
    edges.emplace_back(points.back(), points.front());
  ZvPoint first = points.front();
  if (clampToImage)
    first = {Limit(first.x, image.Width() - 1), Limit(first.y, image.Width() - 1)};
  bool hasLast = skipFirst;
  ZvPoint last = first;
  int64_t n = 0;
  for (size_t i = 0; i < edges.size(); ++i) {
    auto [a, b] = edges[i];
    if (clampToImage) {
      a = {Limit(a.x, image.Width() - 1), Limit(a.y, image.Width() - 1)};
      b = {Limit(b.x, image.Width() - 1), Limit(b.y, image.Height() - 1)};
    }
    const int64_t dx = int64_t{b.x} - a.x;
    const int64_t dy = int64_t{b.y} - a.y;
    const bool steep = std::abs(dx) < std::abs(dy);
    const int64_t steps = std::max(std::abs(dx), std::abs(dy));
    for (int64_t step = 0; step <= steps; ++step) {
      ZvPoint pixel;
      if (steep) {
        pixel.y = static_cast<int32_t>(a.y + (dy < 0 ? -step : step));
        pixel.x = static_cast<int32_t>((int64_t{pixel.y} - a.y) * dx / Divisor(dy) + a.x);
      } else {
        pixel.x = static_cast<int32_t>(a.x + (dx < 0 ? -step : step));
        pixel.y = static_cast<int32_t>((int64_t{pixel.x} - a.x) * dy / Divisor(dx) + a.y);
      }
      if (!Inside(clip, pixel.x, pixel.y))
        continue;
      if ((hasLast && pixel == last) || (i > 0 && pixel == first))
        continue;
      if (DashPlots(n++, dash)) {
        pen.Plot(pixel.x, pixel.y);
        last = pixel;
        hasLast = true;
      }
    }
  }
}

void Fill(Pen& pen, Pen& crossingPen, const std::vector<ZvPoint>& points, const ZvRect& box) {
  std::map<std::pair<int32_t, int32_t>, uint8_t> counts;  // (y, x)
  for (size_t i = 0; i < points.size(); ++i) {
    ZvPoint a = points[i];
    ZvPoint b = points[(i + 1) % points.size()];
    if (a.y > b.y)
      std::swap(a, b);
    for (int32_t y = a.y; y < b.y; ++y) {
      if (y < box.fTop || y > box.fBottom)
        continue;
      const int64_t x = (int64_t{y} - a.y) * (int64_t{b.x} - a.x) / (int64_t{b.y} - a.y) + a.x;
      const auto limited = static_cast<int32_t>(std::clamp<int64_t>(x, box.fLeft, box.fRight));
      if (crossingPen.Take(limited, y))
        ++counts[{y, limited}];
    }
  }
  for (int32_t y = box.fTop; y <= box.fBottom; ++y) {
    bool inside = false;
    for (int32_t x = box.fLeft; x <= box.fRight; ++x) {
      const auto found = counts.find({y, x});
      const uint8_t count = found != counts.end() ? found->second : 0;
      if (count != 0) {
        pen.Plot(x, y);
        if (count % 2 != 0)
          inside = !inside;
      } else if (inside) {
        pen.Plot(x, y);
      }
    }
  }
}

void Feather(Pen& pen, const std::vector<ZvPoint>& points, const ZvRect& box, float feather) {
  struct Edge {
    ZvDSegment segment;
    int32_t top;
    int32_t end;
  };
  std::vector<Edge> edges;
  for (size_t i = 0; i < points.size(); ++i) {
    const ZvPoint a = points[i];
    const ZvPoint b = points[(i + 1) % points.size()];
    if (a == b)
      continue;
    const auto asDouble = [](const ZvPoint& p) {
      return ZvDPoint2d(static_cast<double>(p.x), static_cast<double>(p.y));
    };
    edges.push_back({ZvDSegment(asDouble(a), asDouble(b)), std::min(a.y, b.y), std::max(a.y, b.y)});
  }
  for (int32_t y = box.fBottom; y >= box.fTop; --y) {
    std::vector<double> crossings;
    for (const Edge& edge : edges) {
      const ZvDSegment& s = edge.segment;
      if (y >= edge.top && y < edge.end)
        crossings.push_back(s.mStart.x + (y - s.mStart.y) * s.mDeltaX / s.mDeltaY);
    }
    std::sort(crossings.begin(), crossings.end());
    for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
      const auto left = static_cast<int32_t>(crossings[i]) + 1;
      const auto right = static_cast<int32_t>(crossings[i + 1]);
      for (int32_t x = std::max(left, box.fLeft); x <= std::min(right, box.fRight); ++x) {
        double nearest = 9999.0;
        for (const Edge& edge : edges)
          nearest = std::min(
              nearest, edge.segment.Distance({static_cast<double>(x), static_cast<double>(y)}));
        double coverage = nearest / static_cast<double>(feather);
        if (coverage > 1.0)
          coverage = 1.0;
        pen.Mix(x, y, static_cast<float>(coverage));
      }
    }
  }
}

}  // namespace

void DrawPolygon(const ImageClass& imageClass, ZvImage& image, const std::vector<ZvPoint>& points,
                 const PxRgba64& colour, bool filled, bool xorMode, bool skipFirst,
                 bool clampToImage, bool closed, int32_t dash, float feather, ZvImage* mask,
                 const ZvRect* clip) {
  if (points.empty())
    return;
  ZvRect area = ClipOf(image);
  if (clip != nullptr)
    area.Intersect(*clip);
  Pen pen(imageClass, image, colour, xorMode, mask);
  if (!filled) {
    Outline(pen, image, points, skipFirst, clampToImage, closed, dash, area);
    return;
  }
  ZvRect box = kEmptyRect;
  for (const ZvPoint& point : points)
    box.AddPoint(point);
  box.Intersect(area);
  if (box.IsEmpty())
    return;
  if (std::fabs(feather) > 0.01F) {
    Feather(pen, points, box, feather);
    return;
  }
  Pen unmasked(imageClass, image, colour, xorMode, nullptr);
  Fill(unmasked, pen, points, box);
}

}  // namespace vm::slow
