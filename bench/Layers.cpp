// A tree of 200 layers over a canvas of 4 megapixels: the first render, one with nothing changed,
// and one after a small layer moved. A memcpy of the canvas stands beside them.

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "image/pixels/PxRecords.h"
#include "image/ZvTiledImage.h"
#include "layers/ZvImageLayer.h"

namespace {

constexpr int32_t kWidth = 2400;
constexpr int32_t kHeight = 1700;
constexpr int32_t kLayers = 200;
constexpr int32_t kSmallSide = 64;

ZvSmartPtr<ZvImage> Filled(int32_t width, int32_t height, const PxRgba64& color) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgbaBytes>(width, height));
  image->FillClip(color);
  return image;
}

ZvSmartPtr<ZvLayer> MakeTree() {
  auto root = ZvSmartPtr<ZvLayer>::Adopt(new ZvLayer);
  for (int32_t i = 0; i < kLayers; ++i) {
    auto layer = ZvSmartPtr<ZvImageLayer>::Adopt(new ZvImageLayer);
    const bool canvas = i == 0;
    layer->SetImage(Filled(canvas ? kWidth : kSmallSide, canvas ? kHeight : kSmallSide,
                           {static_cast<uint16_t>(i * 300), 0x8000, 0x4000,
                            static_cast<uint16_t>(canvas ? 0xFFFF : 0xC000)})
                        .Get());
    if (!canvas) {
      layer->MoveTo({i * 131 % (kWidth - 2 * kSmallSide), i * 89 % (kHeight - 2 * kSmallSide)});
    }
    root->AddLayer(layer.Get());
  }
  return root;
}

void Render(ZvLayer& root) {
  ZvRenderContext context;
  context.mLimit = {0, 0, kWidth - 1, kHeight - 1};
  ZvSmartPtr<ZvImage> image;
  root.Render(image, context);
  benchmark::DoNotOptimize(image.Get());
}

ZvLayer& SharedTree() {
  static const ZvSmartPtr<ZvLayer> tree = [] {
    ZvSmartPtr<ZvLayer> made = MakeTree();
    Render(*made);
    return made;
  }();
  return *tree;
}

void BM_FirstRender_200Layers_4MP(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    ZvSmartPtr<ZvLayer> tree = MakeTree();
    state.ResumeTiming();
    Render(*tree);
    state.PauseTiming();
    tree = nullptr;
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * int64_t{kLayers} * kWidth * kHeight * 4);
}
BENCHMARK(BM_FirstRender_200Layers_4MP)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Render_NothingChanged(benchmark::State& state) {
  ZvLayer& tree = SharedTree();
  for (auto _ : state)
    Render(tree);
}
BENCHMARK(BM_Render_NothingChanged);

// The layer in the middle of the stack: half of the layers have to be made anew where it was and
// is.
void BM_Render_OneSmallLayerMoved(benchmark::State& state) {
  ZvLayer& tree = SharedTree();
  ZvLayer& moved = *tree.SubLayers()[kLayers / 2];
  int32_t step = 0;
  for (auto _ : state) {
    moved.MoveTo({1000 + step, 800});
    step ^= 8;
    Render(tree);
  }
  state.SetItemsProcessed(state.iterations() * int64_t{kLayers / 2} * (kSmallSide + 8) *
                          kSmallSide);
}
BENCHMARK(BM_Render_OneSmallLayerMoved)->Unit(benchmark::kMicrosecond);

void BM_Memcpy_Canvas(benchmark::State& state) {
  const size_t bytes = size_t{kWidth} * kHeight * 4;
  const std::vector<uint8_t> from(bytes, 1);
  std::vector<uint8_t> to(bytes);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}
BENCHMARK(BM_Memcpy_Canvas)->Unit(benchmark::kMillisecond);

}  // namespace
