#include "image/kernels/rows/PlaneRows.h"

#include <utility>

#include "image/kernels/rows/Words.h"

// Stride and offset are constants of each loop: then the compiler vectorises it.
namespace vm {
namespace {

template <class Sample, size_t stride, size_t offset>
struct Plane {
  // Four bytes as one 32-bit number, four words as one 64-bit number: the sample by shifts and
  // masks.
  static constexpr bool kIsNumber = stride == 4 && sizeof(Sample) <= 2;
  using Number = std::conditional_t<sizeof(Sample) == 1, uint32_t, uint64_t>;
  static constexpr int kShift = static_cast<int>(offset * sizeof(Sample) * 8);

  static void Gather(const uint8_t* records, uint8_t* samples, size_t count) {
    constexpr size_t kSize = sizeof(Sample);
    size_t i = 0;
    // Four bytes leave as one number; what the compiler makes of an odd stride by itself is slower.
    if constexpr (stride % 2 == 1 && kSize == 1) {
      for (; i + 4 <= count; i += 4) {
        const uint8_t* const from = records + i * stride + offset;
        Store(samples + i, from[0] | uint32_t{from[stride]} << 8 |
                               uint32_t{from[2 * stride]} << 16 | uint32_t{from[3 * stride]} << 24);
      }
    }
    for (; i < count; ++i) {
      if constexpr (kIsNumber)
        Store(samples + i * kSize,
              static_cast<Sample>(Load<Number>(records + i * stride * kSize) >> kShift));
      else
        Store(samples + i * kSize, Load<Sample>(records + (i * stride + offset) * kSize));
    }
  }
  static void Scatter(const uint8_t* samples, uint8_t* records, size_t count) {
    constexpr size_t kSize = sizeof(Sample);
    for (size_t i = 0; i < count; ++i) {
      const auto sample = Load<Sample>(samples + i * kSize);
      if constexpr (kIsNumber) {
        constexpr Number kOthers = ~(Number{static_cast<Sample>(~Sample{0})} << kShift);
        uint8_t* const record = records + i * stride * kSize;
        Store(record,
              static_cast<Number>((Load<Number>(record) & kOthers) | Number{sample} << kShift));
      } else {
        Store(records + (i * stride + offset) * kSize, sample);
      }
    }
  }
};

// Calls `work.template operator()<Sample, stride, offset>()` with the values as constants.
template <class Sample, size_t stride, class Work>
void WithOffset(size_t offset, Work work) {
  [&]<size_t... n>(std::index_sequence<n...>) {
    ((n == offset ? work.template operator()<Sample, stride, n>() : void()), ...);
  }
  (std::make_index_sequence<stride>());
}
template <class Sample, class Work>
void WithStride(size_t stride, size_t offset, Work work) {
  switch (stride) {
    case 1:
      return WithOffset<Sample, 1>(offset, work);
    case 2:
      return WithOffset<Sample, 2>(offset, work);
    case 3:
      return WithOffset<Sample, 3>(offset, work);
    case 4:
      return WithOffset<Sample, 4>(offset, work);
    case 5:
      return WithOffset<Sample, 5>(offset, work);
    default:
      return;
  }
}
template <class Work>
void WithLayout(size_t sampleBytes, size_t stride, size_t offset, Work work) {
  switch (sampleBytes) {
    case 1:
      return WithStride<uint8_t>(stride, offset, work);
    case 2:
      return WithStride<uint16_t>(stride, offset, work);
    case 4:
      return WithStride<uint32_t>(stride, offset, work);
    default:
      return;
  }
}

}  // namespace

void GatherSamples(const void* records, void* samples, size_t count, size_t sampleBytes,
                   size_t stride, size_t offset) {
  if (stride == 1) {
    CopyBytesOf(samples, records, count * sampleBytes);
    return;
  }
  WithLayout(sampleBytes, stride, offset, [&]<class Sample, size_t kStride, size_t kOffset>() {
    Plane<Sample, kStride, kOffset>::Gather(static_cast<const uint8_t*>(records),
                                            static_cast<uint8_t*>(samples), count);
  });
}

void ScatterSamples(const void* samples, void* records, size_t count, size_t sampleBytes,
                    size_t stride, size_t offset) {
  if (stride == 1) {
    CopyBytesOf(records, samples, count * sampleBytes);
    return;
  }
  WithLayout(sampleBytes, stride, offset, [&]<class Sample, size_t kStride, size_t kOffset>() {
    Plane<Sample, kStride, kOffset>::Scatter(static_cast<const uint8_t*>(samples),
                                             static_cast<uint8_t*>(records), count);
  });
}

}  // namespace vm
