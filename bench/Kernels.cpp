// The row kernels over 16384 pixels, which stay in the cache, each in the form that images use
// ("kernel") and pixel by pixel by the record's own rule ("scalar"). bytes_per_second counts the
// bytes read and written; "memcpy" counts the same way, so the columns compare.

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "benchmark/benchmark.h"
#include "image/kernels/rows/BlendRows.h"
#include "image/kernels/rows/ChannelRows.h"
#include "image/kernels/rows/ConvertRows.h"
#include "image/kernels/rows/PlaneRows.h"

namespace {

constexpr size_t kPixels = 16384;

// Random bits; fractions for the float records.
template <class P>
std::vector<P> RandomRow(uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<P> row(kPixels);
  std::vector<uint8_t> bytes(kPixels * sizeof(P));
  for (uint8_t& byte : bytes)
    byte = static_cast<uint8_t>(random());
  if constexpr (P::kInfo.bitsPerChannel == 32) {
    for (size_t i = 0; i < bytes.size(); i += 4) {
      const float value = static_cast<float>(random() & 0xFFFF) / 65536.0F;
      std::memcpy(&bytes[i], &value, 4);
    }
  }
  std::memcpy(row.data(), bytes.data(), bytes.size());
  return row;
}

// `work` touches `bytesPerPixel` bytes of each pixel, reading and writing both counted.
template <class Work>
void Measure(const std::string& name, size_t bytesPerPixel, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) mutable {
    for (auto _ : state) {
      work();
      benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(kPixels * bytesPerPixel));
  });
}

// `kernel` and `scalar` work on a row and a second one; the source of each round is the same, so
// that blends keep having something to do.
template <class P, class Kernel, class Scalar>
void MeasureInPlace(const std::string& name, size_t bytesPerPixel, Kernel kernel, Scalar scalar) {
  const std::string full = name + "/" + P::kName;
  const auto row = RandomRow<P>(1);
  const auto source = RandomRow<P>(2);
  Measure(full + "/kernel", bytesPerPixel,
          [=, to = row]() mutable { kernel(std::span<P>(to), source.data()); });
  Measure(full + "/scalar", bytesPerPixel,
          [=, to = row]() mutable { scalar(std::span<P>(to), source.data()); });
}

template <class P>
void RegisterRecord() {
  const std::string name = P::kName;
  const auto row = RandomRow<P>(1);
  const auto bytes = RandomRow<PxRgbaBytes>(3);
  const auto words = RandomRow<PxRgba64>(4);

  Measure("GetRgba/" + name + "/kernel", sizeof(P) + 4,
          [=, out = bytes]() mutable { vm::GetRgbaRow(std::span<const P>(row), out.data()); });
  Measure("GetRgba/" + name + "/scalar", sizeof(P) + 4,
          [=, out = bytes]() mutable { vm::scalar::GetRgba(std::span<const P>(row), out.data()); });
  Measure("GetRgba64/" + name + "/kernel", sizeof(P) + 8,
          [=, out = words]() mutable { vm::GetRgba64Row(std::span<const P>(row), out.data()); });
  Measure("GetRgba64/" + name + "/scalar", sizeof(P) + 8, [=, out = words]() mutable {
    vm::scalar::GetRgba64(std::span<const P>(row), out.data());
  });
  if constexpr (!std::is_same_v<P, PxCmykBytes>) {  // which takes no colour
    Measure("PutRgba/" + name + "/kernel", sizeof(P) + 4,
            [=, out = row]() mutable { vm::PutRgbaRow(bytes.data(), std::span<P>(out)); });
    Measure("PutRgba/" + name + "/scalar", sizeof(P) + 4,
            [=, out = row]() mutable { vm::scalar::PutRgba(bytes.data(), std::span<P>(out)); });
    Measure("PutRgba64/" + name + "/kernel", sizeof(P) + 8,
            [=, out = row]() mutable { vm::PutRgba64Row(words.data(), std::span<P>(out)); });
    Measure("PutRgba64/" + name + "/scalar", sizeof(P) + 8,
            [=, out = row]() mutable { vm::scalar::PutRgba64(words.data(), std::span<P>(out)); });
  }

  const std::vector<uint8_t> samples(kPixels * 4, 0x5A);
  Measure("Gather/" + name + "/kernel", sizeof(P) + vm::scalar::kSampleBytes<P>,
          [=, out = samples]() mutable { vm::GatherRow(std::span<const P>(row), out.data(), 1); });
  Measure(
      "Gather/" + name + "/scalar", sizeof(P) + vm::scalar::kSampleBytes<P>,
      [=, out = samples]() mutable { vm::scalar::Gather(std::span<const P>(row), out.data(), 1); });
  Measure("Scatter/" + name + "/kernel", sizeof(P) + vm::scalar::kSampleBytes<P>,
          [=, out = row]() mutable { vm::ScatterRow(samples.data(), std::span<P>(out), 1); });
  Measure("Scatter/" + name + "/scalar", sizeof(P) + vm::scalar::kSampleBytes<P>,
          [=, out = row]() mutable { vm::scalar::Scatter(samples.data(), std::span<P>(out), 1); });

  MeasureInPlace<P>(
      "Invert", 2 * sizeof(P), [](std::span<P> to, const P*) { vm::InvertRow(to); },
      [](std::span<P> to, const P*) { vm::scalar::Invert(to); });
  MeasureInPlace<P>(
      "Mix255", 3 * sizeof(P),
      [](std::span<P> to, const P* from) { vm::Mix255Row(to, from, 0.4F); },
      [](std::span<P> to, const P* from) { vm::scalar::Mix255(to, from, 0.4F); });
  MeasureInPlace<P>(
      "Mix256", 3 * sizeof(P),
      [](std::span<P> to, const P* from) { vm::Mix256Row(to, from, 0.4F); },
      [](std::span<P> to, const P* from) { vm::scalar::Mix256(to, from, 0.4F); });
  if constexpr (vm::Compositing<P>) {
    // Onto a fresh copy each time, since alphas would soon be full; both forms pay for the copy.
    const auto onCopy = [row](auto composite) {
      return [=](std::span<P> to, const P* from) {
        std::memcpy(to.data(), row.data(), to.size_bytes());
        composite(to, from);
      };
    };
    MeasureInPlace<P>(
        "Composite", 3 * sizeof(P),
        onCopy([](std::span<P> to, const P* from) { vm::CompositeRow(to, from); }),
        onCopy([](std::span<P> to, const P* from) { vm::scalar::Composite(to, from); }));
    MeasureInPlace<P>(
        "CompositeBy", 3 * sizeof(P),
        onCopy([](std::span<P> to, const P* from) { vm::CompositeRow(to, from, 0.6F); }),
        onCopy([](std::span<P> to, const P* from) { vm::scalar::Composite(to, from, 0.6F); }));
  }
}

// The changes that the transfer to and from the host makes, on the records in which it makes them.
template <class P>
void RegisterTransfer() {
  MeasureInPlace<P>(
      "SwapRedAndBlue", 2 * sizeof(P), [](std::span<P> to, const P*) { vm::SwapRedAndBlueRow(to); },
      [](std::span<P> to, const P*) { vm::scalar::SwapRedAndBlue(to); });
  MeasureInPlace<P>(
      "Scale3", 2 * sizeof(P), [](std::span<P> to, const P*) { vm::ScaleRow(to, 3); },
      [](std::span<P> to, const P*) { vm::scalar::Scale(to, 3); });
  MeasureInPlace<P>(
      "Scale4", 2 * sizeof(P), [](std::span<P> to, const P*) { vm::ScaleRow(to, 4); },
      [](std::span<P> to, const P*) { vm::scalar::Scale(to, 4); });
  MeasureInPlace<P>(
      "Halve", 2 * sizeof(P), [](std::span<P> to, const P*) { vm::HalveRow(to); },
      [](std::span<P> to, const P*) { vm::scalar::Halve(to); });
}

const bool kRegistered = [] {
  for (const size_t size : {1U, 3U, 4U, 6U, 8U, 10U}) {
    const std::vector<uint8_t> from(kPixels * size, 1);
    Measure("memcpy/" + std::to_string(size) + " bytes a pixel", 2 * size,
            [=, to = from]() mutable {
              std::memcpy(to.data(), from.data(), from.size());
              benchmark::DoNotOptimize(to.data());
            });
  }
  vm::ForEachRecord([]<class P>() { RegisterRecord<P>(); });
  // Over an opaque row, as a result is laid over white.
  auto opaque = RandomRow<PxRgbaBytes>(5);
  for (PxRgbaBytes& pixel : opaque)
    pixel.alpha = 255;
  const auto over = RandomRow<PxRgbaBytes>(6);
  Measure("Composite/PxRgbaBytes over opaque/kernel", 12, [=, to = opaque]() mutable {
    vm::CompositeRow(std::span<PxRgbaBytes>(to), over.data());
  });
  Measure("Composite/PxRgbaBytes over opaque/scalar", 12, [=, to = opaque]() mutable {
    vm::scalar::Composite(std::span<PxRgbaBytes>(to), over.data());
  });
  RegisterTransfer<PxRgbBytes>();
  RegisterTransfer<PxRgbaBytes>();
  RegisterTransfer<PxRgb48>();
  RegisterTransfer<PxRgba64>();
  return true;
}();

}  // namespace
