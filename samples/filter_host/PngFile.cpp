#include <png.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>

#include "filter_host/OutputFile.h"
#include "filter_host/Picture.h"

namespace filter_host {

namespace {

constexpr double kMetresPerInch = 0.0254;
// The host's record holds the size in signed 16-bit numbers.
constexpr png_uint_32 kMaxSide = 32767;

// libpng leaves a failing call by longjmp. Each function that sets the jump owns nothing with a
// destructor: structs, rows and message belong to a Codec, which its caller holds.
struct Codec {
  png_structp png = nullptr;
  png_infop info = nullptr;
  bool writes = false;
  std::string message;
  std::vector<png_bytep> rows;
  png_uint_32 width = 0;
  png_uint_32 height = 0;

  ~Codec() {
    if (writes) {
      png_destroy_write_struct(&png, &info);
    } else {
      png_destroy_read_struct(&png, &info, nullptr);
    }
  }
};

void OnError(png_structp png, png_const_charp message) {
  static_cast<Codec*>(png_get_error_ptr(png))->message = message;
  std::longjmp(png_jmpbuf(png), 1);
}

void OnWarning(png_structp, png_const_charp) {}

bool ReadHeader(Codec& codec, std::FILE* file) {
  if (setjmp(png_jmpbuf(codec.png)) != 0) {
    return false;
  }
  png_set_user_limits(codec.png, kMaxSide, kMaxSide);
  png_init_io(codec.png, file);
  png_set_sig_bytes(codec.png, 8);
  png_read_info(codec.png, codec.info);
  png_set_expand(codec.png);
  if (std::endian::native == std::endian::little) {
    png_set_swap(codec.png);
  }
  png_set_interlace_handling(codec.png);
  png_read_update_info(codec.png, codec.info);
  codec.width = png_get_image_width(codec.png, codec.info);
  codec.height = png_get_image_height(codec.png, codec.info);
  return true;
}

bool ReadRows(Codec& codec) {
  if (setjmp(png_jmpbuf(codec.png)) != 0) {
    return false;
  }
  png_read_image(codec.png, codec.rows.data());
  png_read_end(codec.png, nullptr);
  return true;
}

bool WriteAll(Codec& codec, std::FILE* file, const Picture& picture) {
  if (setjmp(png_jmpbuf(codec.png)) != 0) {
    return false;
  }
  static constexpr int kColorTypes[] = {PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA,
                                        PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA};
  png_init_io(codec.png, file);
  png_set_compression_level(codec.png, 4);
  png_set_IHDR(codec.png, codec.info, static_cast<png_uint_32>(picture.width),
               static_cast<png_uint_32>(picture.height), picture.bytesPerSample * 8,
               kColorTypes[picture.channels - 1], PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  const auto perMetre = static_cast<png_uint_32>(std::lround(picture.dotsPerInch / kMetresPerInch));
  png_set_pHYs(codec.png, codec.info, perMetre, perMetre, PNG_RESOLUTION_METER);
  png_write_info(codec.png, codec.info);
  if (picture.bytesPerSample == 2 && std::endian::native == std::endian::little) {
    png_set_swap(codec.png);
  }
  png_write_image(codec.png, codec.rows.data());
  png_write_end(codec.png, nullptr);
  return true;
}

}  // namespace

Picture ReadPng(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             &std::fclose);
  if (file == nullptr) {
    throw Error("cannot read '" + path + "': " + std::strerror(errno));
  }
  png_byte signature[8] = {};
  if (std::fread(signature, 1, sizeof(signature), file.get()) != sizeof(signature) ||
      png_sig_cmp(signature, 0, sizeof(signature)) != 0) {
    throw Error("cannot read '" + path + "': it is not a PNG file");
  }
  Codec codec;
  codec.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &codec, &OnError, &OnWarning);
  codec.info = codec.png == nullptr ? nullptr : png_create_info_struct(codec.png);
  if (codec.info == nullptr) {
    throw Error("cannot read '" + path + "': out of memory");
  }
  if (!ReadHeader(codec, file.get())) {
    throw Error("cannot read '" + path + "': the PNG is damaged (" + codec.message + ")");
  }

  Picture picture;
  picture.width = static_cast<int32_t>(codec.width);
  picture.height = static_cast<int32_t>(codec.height);
  picture.channels = png_get_channels(codec.png, codec.info);
  picture.bytesPerSample = png_get_bit_depth(codec.png, codec.info) / 8;
  const png_uint_32 perMetre = png_get_pixels_per_meter(codec.png, codec.info);
  if (perMetre != 0) {
    picture.dotsPerInch = perMetre * kMetresPerInch;
  }
  try {
    picture.samples.resize(picture.RowBytes() * codec.height);
    codec.rows.resize(codec.height);
  } catch (const std::bad_alloc&) {
    throw Error("cannot read '" + path + "': the picture is too large for the memory");
  }
  for (png_uint_32 y = 0; y < codec.height; ++y) {
    codec.rows[y] = picture.Row(static_cast<int32_t>(y));
  }
  if (!ReadRows(codec)) {
    throw Error("cannot read '" + path + "': the PNG is damaged (" + codec.message + ")");
  }
  return picture;
}

void WritePng(const std::string& path, const Picture& picture) {
  OutputFile file(path);
  Codec codec;
  codec.writes = true;
  codec.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &codec, &OnError, &OnWarning);
  codec.info = codec.png == nullptr ? nullptr : png_create_info_struct(codec.png);
  if (codec.info == nullptr) {
    throw Error("cannot write '" + path + "': out of memory");
  }
  codec.rows.resize(static_cast<std::size_t>(picture.height));
  for (int32_t y = 0; y < picture.height; ++y) {
    // libpng takes rows as writable but leaves them alone.
    codec.rows[static_cast<std::size_t>(y)] = const_cast<png_bytep>(picture.Row(y));
  }
  if (!WriteAll(codec, file.Stream(), picture)) {
    throw Error("cannot write '" + path + "': " + codec.message);
  }
  file.Commit();
}

}  // namespace filter_host
