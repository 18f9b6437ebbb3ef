#include "png/RawPng.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vm {
namespace {

struct Source {
  const std::vector<uint8_t>* bytes;
  size_t position;
};

void ReadSource(png_structp png, png_bytep data, size_t length) {
  auto& source = *static_cast<Source*>(png_get_io_ptr(png));
  if (length > source.bytes->size() - source.position)
    png_error(png, "end");
  std::memcpy(data, source.bytes->data() + source.position, length);
  source.position += length;
}

void Quiet(png_structp, png_const_charp) {}

[[noreturn]] void Fail(png_structp png, png_const_charp) {
  png_longjmp(png, 1);
}

// A gigabyte that a chunk claims would only take time here.
png_voidp AllocateSome(png_structp, png_alloc_size_t size) {
  return size <= 1 << 26 ? std::malloc(size) : nullptr;
}

void Free(png_structp, png_voidp block) {
  std::free(block);
}

bool Decode(png_structp png, png_infop info, Source* source) {
  if (setjmp(png_jmpbuf(png)))
    return false;
  png_set_read_fn(png, source, ReadSource);
  png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  return true;
}

void Describe(png_structp png, png_infop info, RawPng& raw) {
  raw.width = static_cast<int32_t>(png_get_image_width(png, info));
  raw.height = static_cast<int32_t>(png_get_image_height(png, info));
  raw.depth = png_get_bit_depth(png, info);
  raw.colorType = png_get_color_type(png, info);
  raw.interlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
  const size_t rowBytes = png_get_rowbytes(png, info);
  png_bytepp rows = png_get_rows(png, info);
  for (int32_t y = 0; y < raw.height; ++y)
    raw.rows.emplace_back(rows[y], rows[y] + rowBytes);

  png_colorp colors = nullptr;
  int count = 0;
  if (raw.colorType == PNG_COLOR_TYPE_PALETTE && png_get_PLTE(png, info, &colors, &count) != 0)
    for (int i = 0; i < count; ++i)
      raw.palette.push_back({{colors[i].red, colors[i].green, colors[i].blue}, 255});
  png_bytep alphas = nullptr;
  int alphaCount = 0;
  png_color_16p key = nullptr;
  if (png_get_tRNS(png, info, &alphas, &alphaCount, &key) != 0) {
    raw.hasTransparency = true;
    if (raw.colorType == PNG_COLOR_TYPE_PALETTE) {
      for (int i = 0; i < alphaCount; ++i)
        raw.palette[static_cast<size_t>(i)].alpha = alphas[i];
    } else if (raw.colorType == PNG_COLOR_TYPE_GRAY) {
      raw.transparent = {key->gray, key->gray, key->gray};
    } else {
      raw.transparent = {key->red, key->green, key->blue};
    }
  }
  png_color_16p background = nullptr;
  if (png_get_bKGD(png, info, &background) != 0) {
    raw.hasBackground = true;
    if (raw.colorType == PNG_COLOR_TYPE_PALETTE) {
      raw.background = raw.palette[background->index].color;
    } else if ((raw.colorType & PNG_COLOR_MASK_COLOR) == 0) {
      raw.background = {background->gray, background->gray, background->gray};
    } else {
      raw.background = {background->red, background->green, background->blue};
    }
  }
  png_get_gAMA(png, info, &raw.gamma);
  png_textp texts = nullptr;
  int textCount = 0;
  png_get_text(png, info, &texts, &textCount);
  for (int i = 0; i < textCount; ++i)
    raw.texts.push_back({texts[i].key, texts[i].text, texts[i].compression});
  png_color_8p bits = nullptr;
  if (png_get_sBIT(png, info, &bits) != 0)
    raw.significantBits = {bits->red, bits->green, bits->blue, bits->gray, bits->alpha};
}

}  // namespace

uint16_t RawPng::Sample(int32_t x, int32_t y, int32_t channel) const {
  const std::vector<uint8_t>& row = rows[static_cast<size_t>(y)];
  const auto index = static_cast<size_t>(x * Channels() + channel);
  if (depth == 16)
    return static_cast<uint16_t>(row[index * 2] << 8 | row[index * 2 + 1]);
  if (depth == 8)
    return row[index];
  const size_t bit = index * static_cast<size_t>(depth);
  return static_cast<uint16_t>(row[bit / 8] >> (8 - static_cast<size_t>(depth) - bit % 8) &
                               ((1 << depth) - 1));
}

std::optional<RawPng> ReadRawPng(const std::vector<uint8_t>& bytes) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Quiet);
  png_set_mem_fn(png, nullptr, AllocateSome, Free);
  png_infop info = png_create_info_struct(png);
  Source source{&bytes, 0};
  std::optional<RawPng> raw;
  if (Decode(png, info, &source)) {
    raw.emplace();
    Describe(png, info, *raw);
  }
  png_destroy_read_struct(&png, &info, nullptr);
  return raw;
}

std::vector<SampleFile> LibpngSamples() {
  std::vector<SampleFile> samples;
  const std::filesystem::path root(VM_PNG_SAMPLES_DIR);
  for (const char* folder : {"pngsuite", "testpngs"}) {
    std::error_code error;
    for (std::filesystem::recursive_directory_iterator entry(root / folder, error), end;
         !error && entry != end; entry.increment(error)) {
      if (entry->path().extension() != ".png")
        continue;
      std::ifstream file(entry->path(), std::ios::binary);
      samples.push_back({entry->path().lexically_relative(root).generic_string(),
                         {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}});
    }
  }
  std::sort(samples.begin(), samples.end(),
            [](const SampleFile& a, const SampleFile& b) { return a.name < b.name; });
  return samples;
}

}  // namespace vm
