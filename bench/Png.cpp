// The PNG codec beside libpng's own row interface with the same settings, in the same process.

#include <benchmark/benchmark.h>
#include <png.h>

#include <cstring>
#include <vector>

#include "image/pixels/PxRecords.h"
#include "image/ZvTypedImage.h"
#include "layers/ZvImageLayer.h"
#include "persistence/png/ZvStreamerPng.h"
#include "persistence/ZvMemoryStream.h"

namespace {

// A picture with gradients and some noise, so that deflate has the work of a photograph.
template <class P>
ZvSmartPtr<ZvImage> MakePicture(int32_t width, int32_t height) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTypedImage<P>(width, height, 0, nullptr));
  uint32_t noise = 1;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      noise = noise * 1664525 + 1013904223;
      const auto grain = static_cast<int32_t>(noise >> 30);
      image->PutRgba(PxRgbaBytes::Of(static_cast<uint8_t>(x / 16 + grain),
                                     static_cast<uint8_t>(y / 16 + grain),
                                     static_cast<uint8_t>((x + y) / 32), 255),
                     x, y);
    }
  }
  return image;
}

struct Size {
  int32_t width;
  int32_t height;
};
constexpr Size kLarge{6000, 4000};
constexpr Size kSmall{1024, 1024};

template <class P>
constexpr Size SizeFor() {
  return sizeof(P) == 4 ? kLarge : kSmall;
}

template <class P>
const ZvSmartPtr<ZvImage>& Picture() {
  static const ZvSmartPtr<ZvImage> picture =
      MakePicture<P>(SizeFor<P>().width, SizeFor<P>().height);
  return picture;
}

// One row after the other into a vector, as the codec's settings have it.
template <class P>
std::vector<uint8_t> WriteByLibpng() {
  const ZvSmartPtr<ZvImage>& picture = Picture<P>();
  std::vector<uint8_t> bytes;
  bytes.reserve(size_t{1} << 27);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &bytes,
      [](png_structp p, png_bytep data, size_t size) {
        auto& out = *static_cast<std::vector<uint8_t>*>(png_get_io_ptr(p));
        out.insert(out.end(), data, data + size);
      },
      [](png_structp) {});
  png_set_IHDR(png, info, static_cast<png_uint_32>(picture->Width()),
               static_cast<png_uint_32>(picture->Height()), 8,
               sizeof(P) == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  png_set_bgr(png);
  const auto& rows = static_cast<const ZvTypedImage<P>&>(*picture.Get());
  for (int32_t y = 0; y < picture->Height(); ++y) {
    png_const_bytep row = rows.RowPointer(y);
    png_write_row(png, row);
  }
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

template <class P>
const std::vector<uint8_t>& File() {
  static const std::vector<uint8_t> file = WriteByLibpng<P>();
  return file;
}

struct Source {
  const uint8_t* at;
};

template <class P>
void ReadByLibpng() {
  Source source{File<P>().data()};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &source, [](png_structp p, png_bytep data, size_t size) {
    auto& in = *static_cast<Source*>(png_get_io_ptr(p));
    std::memcpy(data, in.at, size);
    in.at += size;
  });
  png_read_info(png, info);
  const png_color_16 white{0, 255, 255, 255, 255};
  png_set_background(png, &white, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
  png_set_bgr(png);
  png_read_update_info(png, info);
  std::vector<uint8_t> row(png_get_rowbytes(png, info));
  std::vector<uint8_t> image(row.size() * static_cast<size_t>(SizeFor<P>().height));
  for (size_t y = 0; y < static_cast<size_t>(SizeFor<P>().height); ++y) {
    png_bytep target = image.data() + y * row.size();
    png_read_rows(png, &target, nullptr, 1);
  }
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  benchmark::DoNotOptimize(image.data());
}

template <class P>
void SetPixels(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * int64_t{SizeFor<P>().width} * SizeFor<P>().height *
                          static_cast<int64_t>(sizeof(P)));
}

template <class P>
void BM_Write_Codec(benchmark::State& state) {
  Picture<P>();
  for (auto _ : state) {
    ZvMemoryStream stream;
    ZvStreamerPng().Write(stream, Picture<P>().Get());
    benchmark::DoNotOptimize(stream.Tell());
  }
  SetPixels<P>(state);
}

template <class P>
void BM_Write_Libpng(benchmark::State& state) {
  Picture<P>();
  for (auto _ : state)
    benchmark::DoNotOptimize(WriteByLibpng<P>().size());
  SetPixels<P>(state);
}

template <class P>
void BM_Read_Codec(benchmark::State& state) {
  const std::vector<uint8_t>& file = File<P>();
  for (auto _ : state) {
    ZvMemoryStream stream(const_cast<uint8_t*>(file.data()), static_cast<uint32_t>(file.size()),
                          false);
    ZvSmartPtr<ZvStreamable> result;
    ZvStreamerPng().Read(stream, result, nullptr);
    benchmark::DoNotOptimize(result.Get());
  }
  SetPixels<P>(state);
}

template <class P>
void BM_Read_Libpng(benchmark::State& state) {
  File<P>();
  for (auto _ : state)
    ReadByLibpng<P>();
  SetPixels<P>(state);
}

// Once each: a large picture takes seconds.
#define VM_BENCH(name) \
  BENCHMARK_TEMPLATE(name, PxRgbaBytes)->Unit(benchmark::kMillisecond)->Iterations(1)
VM_BENCH(BM_Write_Codec);
VM_BENCH(BM_Write_Libpng);
VM_BENCH(BM_Read_Codec);
VM_BENCH(BM_Read_Libpng);
#undef VM_BENCH
#define VM_BENCH(name) BENCHMARK_TEMPLATE(name, PxRgbBytes)->Unit(benchmark::kMillisecond)
VM_BENCH(BM_Write_Codec);
VM_BENCH(BM_Write_Libpng);
VM_BENCH(BM_Read_Codec);
VM_BENCH(BM_Read_Libpng);
#undef VM_BENCH

}  // namespace
