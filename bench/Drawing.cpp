// Lines, ovals and polygons on a 24-megapixel image. Counters: nanoseconds per drawn pixel; a
// memcpy of as many pixels stands beside them.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "foundation/ZvSmartPtr.h"
#include "image/ZvTiledImage.h"

namespace {

constexpr int32_t kWidth = 6000;
constexpr int32_t kHeight = 4000;
constexpr PxRgba64 kColour{0x1234, 0x5678, 0x9ABC, 0xFFFF};

using Rgba = ZvTiledImage<PxRgbaBytes>;

ZvSmartPtr<Rgba> Canvas() {
  const auto image = ZvSmartPtr<Rgba>::Adopt(new Rgba(kWidth, kHeight));
  image->FillClip(kRgba64Gray50);  // makes the tiles
  return image;
}

void CountPixels(benchmark::State& state, double pixels) {
  state.counters["ns_per_pixel"] =
      benchmark::Counter(pixels * static_cast<double>(state.iterations()) * 1e-9,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// A ring of points between two radii around the middle of a square.
std::vector<ZvPoint> Ring(int32_t count, double outer, double inner) {
  std::vector<ZvPoint> points;
  for (int32_t i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * i / count;
    const double radius = i % 2 == 0 ? outer : inner;
    points.push_back({kWidth / 2 + static_cast<int32_t>(radius * std::cos(angle)),
                      kHeight / 2 + static_cast<int32_t>(radius * std::sin(angle))});
  }
  return points;
}

double Area(const std::vector<ZvPoint>& points) {
  double twice = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    const ZvPoint& a = points[i];
    const ZvPoint& b = points[(i + 1) % points.size()];
    twice += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
  }
  return std::fabs(twice) / 2;
}

void Memcpy(benchmark::State& state) {
  std::vector<uint32_t> from(static_cast<size_t>(state.range(0)), 1);
  std::vector<uint32_t> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size() * 4);
    benchmark::ClobberMemory();
  }
  CountPixels(state, static_cast<double>(from.size()));
}

void Line(benchmark::State& state, const ZvPoint& to, int32_t dash) {
  const auto image = Canvas();
  for (auto _ : state)
    image->DrawLine({0, 0}, to, kColour, false, nullptr, dash);
  CountPixels(state, std::max(to.x, to.y) + 1);
}
void LevelLine(benchmark::State& state) {
  Line(state, {kWidth - 1, 0}, 0);
}
void ShallowLine(benchmark::State& state) {
  Line(state, {kWidth - 1, 700}, 0);
}
void SteepLine(benchmark::State& state) {
  Line(state, {700, kHeight - 1}, 0);
}
void DashedLine(benchmark::State& state) {
  Line(state, {kWidth - 1, 700}, 5);
}

void Oval(benchmark::State& state) {
  const auto image = Canvas();
  const bool filled = state.range(0) != 0;
  for (auto _ : state)
    image->DrawOval({0, 0, kHeight - 1, kHeight - 1}, kColour, filled, false, nullptr);
  const double radius = kHeight / 2.0;
  CountPixels(state, filled ? 3.14159265 * radius * radius : 8 * radius);
}

void Outline(benchmark::State& state) {
  const auto image = Canvas();
  const auto points = Ring(static_cast<int32_t>(state.range(0)), 1900, 1500);
  double length = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    const ZvPoint d = points[i] - points[(i + 1) % points.size()];
    length += std::max(std::abs(d.x), std::abs(d.y));
  }
  for (auto _ : state)
    image->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kColour, false, false,
                       false, false, true, 0, 0, nullptr, nullptr);
  CountPixels(state, length);
}

void Filled(benchmark::State& state) {
  const auto image = Canvas();
  const auto points = Ring(static_cast<int32_t>(state.range(0)), 1900, 1500);
  for (auto _ : state)
    image->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kColour, true, false,
                       false, false, true, 0, 0, nullptr, nullptr);
  CountPixels(state, Area(points));
}

void Feathered(benchmark::State& state) {
  const auto image = Canvas();
  const auto points = Ring(static_cast<int32_t>(state.range(0)), 400, 320);
  for (auto _ : state)
    image->DrawPolygon(static_cast<int32_t>(points.size()), points.data(), kColour, true, false,
                       false, false, true, 0, static_cast<float>(state.range(1)), nullptr, nullptr);
  CountPixels(state, Area(points));
}

BENCHMARK(Memcpy)->Arg(6000)->Arg(9000000)->ArgName("pixels");
BENCHMARK(LevelLine);
BENCHMARK(ShallowLine);
BENCHMARK(SteepLine);
BENCHMARK(DashedLine);
BENCHMARK(Oval)->Arg(0)->Arg(1)->ArgName("filled");
BENCHMARK(Outline)->Arg(1000)->ArgName("vertices");
BENCHMARK(Filled)->Arg(1000)->ArgName("vertices");
BENCHMARK(Feathered)->Args({1000, 10})->ArgNames({"vertices", "feather"});

}  // namespace
