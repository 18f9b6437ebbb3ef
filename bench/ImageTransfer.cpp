// The image's way through a filter run, for 24 megapixels: from the host's buffer into a tiled
// image, into the exchange file, back from it, and into the host's buffer. Each step stands beside
// a memcpy or a plain file transfer of the same bytes. bytes_per_second counts the bytes of the
// packed pixels on the wider side of the step.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "benchmark/benchmark.h"
#include "image/ZvPixelLoops.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "persistence/ZvFileStream.h"

namespace {

constexpr int32_t kWidth = 6000;
constexpr int32_t kHeight = 4000;
constexpr int64_t kPixels = int64_t{kWidth} * kHeight;

std::vector<uint8_t> HostBuffer(int64_t bytesPerPixel) {
  std::vector<uint8_t> bytes(static_cast<size_t>(kPixels * bytesPerPixel));
  uint32_t state = 1;
  for (uint8_t& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<uint8_t>(state >> 24);
  }
  return bytes;
}

void SetBytes(benchmark::State& state, int64_t bytesPerPixel) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kPixels * bytesPerPixel);
}

// Into memory that is new each time, as the tiles are.
void BM_MemcpyToNew(benchmark::State& state) {
  const std::vector<uint8_t> from = HostBuffer(state.range(0));
  for (auto _ : state) {
    void* const to = std::malloc(from.size());
    std::memcpy(to, from.data(), from.size());
    benchmark::DoNotOptimize(to);
    benchmark::ClobberMemory();
    std::free(to);
  }
  SetBytes(state, state.range(0));
}
BENCHMARK(BM_MemcpyToNew)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

void BM_Memcpy(benchmark::State& state) {
  const std::vector<uint8_t> from = HostBuffer(state.range(0));
  std::vector<uint8_t> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  SetBytes(state, state.range(0));
}
BENCHMARK(BM_Memcpy)->Arg(3)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

void BM_AcquireRgb(benchmark::State& state) {
  std::vector<uint8_t> host = HostBuffer(3);
  for (auto _ : state) {
    ZvTypedImage<PxRgbBytes> wrapper(kWidth, kHeight, kWidth * 3, host.data());
    ZvTiledImage<PxRgbaBytes> image(kWidth, kHeight);
    image.CopyImage(&wrapper);
    vm::SwapChannels02(image, kWidth, kHeight);
  }
  SetBytes(state, 4);
}
BENCHMARK(BM_AcquireRgb)->Unit(benchmark::kMillisecond);

void BM_AcquireRgba(benchmark::State& state) {
  std::vector<uint8_t> host = HostBuffer(4);
  for (auto _ : state) {
    ZvTypedImage<PxRgbaBytes> wrapper(kWidth, kHeight, kWidth * 4, host.data());
    ZvTiledImage<PxRgbaBytes> image(kWidth, kHeight);
    image.CopyImage(&wrapper);
    vm::SwapChannels02(image, kWidth, kHeight);
  }
  SetBytes(state, 4);
}
BENCHMARK(BM_AcquireRgba)->Unit(benchmark::kMillisecond);

void BM_AcquireRgba64(benchmark::State& state) {
  std::vector<uint8_t> host = HostBuffer(8);
  for (auto _ : state) {
    ZvTiledImage<PxRgba64> image(kWidth, kHeight);
    image.ImportBuffer(host.data(), kWidth * 8);
    vm::ScaleChannels(image, kWidth, kHeight, 4);
  }
  SetBytes(state, 8);
}
BENCHMARK(BM_AcquireRgba64)->Unit(benchmark::kMillisecond);

template <class P>
void FillTiled(ZvTiledImage<P>& image) {
  const std::vector<uint8_t> bytes = HostBuffer(sizeof(P));
  image.ImportBuffer(bytes.data(), kWidth * static_cast<int32_t>(sizeof(P)));
}

constexpr PxRgba64 kOpaqueWhite{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};

void BM_ReturnRgb(benchmark::State& state) {
  ZvTiledImage<PxRgbaBytes> image(kWidth, kHeight);
  FillTiled(image);
  std::vector<uint8_t> host(static_cast<size_t>(kPixels) * 3);
  for (auto _ : state) {
    ZvTypedImage<PxRgbBytes> wrapper(kWidth, kHeight, kWidth * 3, host.data());
    wrapper.FillClip(kOpaqueWhite);
    wrapper.BlendImage(&image);
    vm::SwapChannels02(wrapper, kWidth, kHeight);
  }
  SetBytes(state, 4);
}
BENCHMARK(BM_ReturnRgb)->Unit(benchmark::kMillisecond);

void BM_ReturnRgba(benchmark::State& state) {
  ZvTiledImage<PxRgbaBytes> image(kWidth, kHeight);
  FillTiled(image);
  std::vector<uint8_t> host(static_cast<size_t>(kPixels) * 4);
  for (auto _ : state) {
    ZvTypedImage<PxRgbaBytes> wrapper(kWidth, kHeight, kWidth * 4, host.data());
    vm::SwapChannels02(image, kWidth, kHeight);
    wrapper.CopyImage(&image);
  }
  SetBytes(state, 4);
}
BENCHMARK(BM_ReturnRgba)->Unit(benchmark::kMillisecond);

void BM_ReturnRgba64(benchmark::State& state) {
  ZvTiledImage<PxRgba64> image(kWidth, kHeight);
  FillTiled(image);
  std::vector<uint8_t> host(static_cast<size_t>(kPixels) * 8);
  for (auto _ : state) {
    ZvTypedImage<PxRgba64> wrapper(kWidth, kHeight, kWidth * 8, host.data());
    wrapper.FillClip(kOpaqueWhite);
    wrapper.BlendImage(&image);
    vm::HalveChannels(wrapper, kWidth, kHeight);
  }
  SetBytes(state, 8);
}
BENCHMARK(BM_ReturnRgba64)->Unit(benchmark::kMillisecond);

// A file in the working directory, removed at the end.
class ScratchFile {
 public:
  explicit ScratchFile(const char* name) : mStream(CP_FileSpec(name)) {}
  ~ScratchFile() { mStream.DeleteOnDisk(); }

  ZvFileStream& New() {
    mStream.DeleteOnDisk();
    mStream.CreateOnDisk();
    mStream.Open(0xC0000000);
    return mStream;
  }
  ZvFileStream& Old() {
    mStream.Open(0xC0000000);
    return mStream;
  }
  void Close() { mStream.Close(); }

 private:
  ZvFileStream mStream;
};

// One call per row of each channel, as the image makes them.
void BM_PlainWrite(benchmark::State& state) {
  const int64_t bytesPerPixel = state.range(0);
  const std::vector<uint8_t> from = HostBuffer(bytesPerPixel);
  const int64_t sample = bytesPerPixel == 8 ? 2 : 1;
  ScratchFile file("bench-plain.bin");
  for (auto _ : state) {
    ZvFileStream& stream = file.New();
    for (size_t at = 0; at < from.size(); at += static_cast<size_t>(kWidth * sample))
      stream.RawWrite(from.data() + at, static_cast<uint32_t>(kWidth * sample));
    file.Close();
  }
  SetBytes(state, bytesPerPixel);
}
BENCHMARK(BM_PlainWrite)->Arg(3)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

void BM_PlainRead(benchmark::State& state) {
  const int64_t bytesPerPixel = state.range(0);
  std::vector<uint8_t> bytes = HostBuffer(bytesPerPixel);
  const int64_t sample = bytesPerPixel == 8 ? 2 : 1;
  ScratchFile file("bench-plain.bin");
  file.New().RawWrite(bytes.data(), static_cast<uint32_t>(bytes.size()));
  file.Close();
  for (auto _ : state) {
    ZvFileStream& stream = file.Old();
    uint8_t* const to = static_cast<uint8_t*>(std::malloc(bytes.size()));
    for (size_t at = 0; at < bytes.size(); at += static_cast<size_t>(kWidth * sample))
      stream.RawRead(to + at, static_cast<uint32_t>(kWidth * sample));
    file.Close();
    std::free(to);
  }
  SetBytes(state, bytesPerPixel);
}
BENCHMARK(BM_PlainRead)->Arg(3)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

template <class P>
void BM_WriteTo(benchmark::State& state) {
  ZvTiledImage<P> image(kWidth, kHeight);
  FillTiled(image);
  ScratchFile file("bench-image.bin");
  for (auto _ : state) {
    image.WriteTo(file.New());
    file.Close();
  }
  SetBytes(state, sizeof(P));
}
BENCHMARK_TEMPLATE(BM_WriteTo, PxRgbBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_WriteTo, PxRgbaBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_WriteTo, PxRgba64)->Unit(benchmark::kMillisecond);

template <class P>
void BM_ReadFrom(benchmark::State& state) {
  ScratchFile file("bench-image.bin");
  {
    ZvTiledImage<P> image(kWidth, kHeight);
    FillTiled(image);
    image.WriteTo(file.New());
    file.Close();
  }
  for (auto _ : state) {
    ZvTiledImage<P> image;
    image.ReadFrom(file.Old());
    file.Close();
  }
  SetBytes(state, sizeof(P));
}
BENCHMARK_TEMPLATE(BM_ReadFrom, PxRgbBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_ReadFrom, PxRgbaBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_ReadFrom, PxRgba64)->Unit(benchmark::kMillisecond);

}  // namespace
