#include "persistence/png/PngRowLayout.h"

#include <cstring>

#include "image/pixels/PxRecords.h"

namespace vm {

namespace {

bool IsAlike(int32_t channels, int32_t depth, uint32_t kind) {
  switch (kind) {
    case PxGrayByte::kInfo.kind:
      return channels == 1 && depth == 8;
    case PxRgbBytes::kInfo.kind:
      return channels == 3 && depth == 8;
    case PxRgb48::kInfo.kind:
      return channels == 3 && depth == 16;
    default:
      return false;
  }
}

void Store(uint8_t (&word)[2], uint8_t byte) {
  word[0] = byte;
  word[1] = 0;
}

}  // namespace

PngRowLayout::PngRowLayout(int32_t channels, int32_t depth, bool indexed, uint32_t recordKind)
    : mChannels(channels),
      mDepth(depth),
      mScale(depth < 8 && !indexed ? 255 / ((1 << depth) - 1) : 1),
      mKind(recordKind),
      mIsRecordLayout(IsAlike(channels, depth, recordKind)) {}

PngRowLayout::Color PngRowLayout::Decoded(const uint8_t* row, int32_t x) const {
  Color color;
  if (mDepth < 8) {
    const int32_t bit = x * mDepth;
    const int32_t sample = row[bit / 8] >> (8 - mDepth - bit % 8) & ((1 << mDepth) - 1);
    Store(color.red, static_cast<uint8_t>(sample * mScale));
    std::memcpy(color.green, color.red, 2);
    std::memcpy(color.blue, color.red, 2);
    return color;
  }
  const size_t bytes = static_cast<size_t>(mDepth) / 8;
  const uint8_t* const pixel =
      row + static_cast<size_t>(x) * static_cast<size_t>(mChannels) * bytes;
  const auto load = [&](uint8_t(&word)[2], size_t channel) {
    word[1] = 0;
    std::memcpy(word, pixel + channel * bytes, bytes);
  };
  load(color.blue, 0);
  load(color.green, mChannels == 1 ? 0 : 1);
  load(color.red, mChannels == 1 ? 0 : 2);
  return color;
}

void PngRowLayout::PutDecoded(uint8_t* row, int32_t x, const Color& color) const {
  if (mDepth < 8) {
    const int32_t bit = x * mDepth;
    const int32_t shift = 8 - mDepth - bit % 8;
    const int32_t mask = ((1 << mDepth) - 1) << shift;
    uint8_t& byte = row[bit / 8];
    byte = static_cast<uint8_t>((byte & ~mask) | (color.red[0] / mScale << shift & mask));
    return;
  }
  const size_t bytes = static_cast<size_t>(mDepth) / 8;
  uint8_t* const pixel = row + static_cast<size_t>(x) * static_cast<size_t>(mChannels) * bytes;
  std::memcpy(pixel, color.blue, bytes);
  if (mChannels == 3) {
    std::memcpy(pixel + bytes, color.green, bytes);
    std::memcpy(pixel + 2 * bytes, color.red, bytes);
  }
}

PngRowLayout::Color PngRowLayout::Record(const uint8_t* row, int32_t x) const {
  Color color;
  const auto index = static_cast<size_t>(x);
  switch (mKind) {
    case PxGrayByte::kInfo.kind:
    case PxGrayABytes::kInfo.kind:
      Store(color.red, row[index * (mKind == PxGrayByte::kInfo.kind ? 1 : 2)]);
      std::memcpy(color.green, color.red, 2);
      std::memcpy(color.blue, color.red, 2);
      break;
    case PxRgba64::kInfo.kind:
      std::memcpy(color.red, row + index * 8, 2);
      std::memcpy(color.green, row + index * 8 + 2, 2);
      std::memcpy(color.blue, row + index * 8 + 4, 2);
      break;
    case PxRgb48::kInfo.kind:
      std::memcpy(color.blue, row + index * 6, 2);
      std::memcpy(color.green, row + index * 6 + 2, 2);
      std::memcpy(color.red, row + index * 6 + 4, 2);
      break;
    default: {
      const uint8_t* const pixel = row + index * (mKind == PxRgbBytes::kInfo.kind ? 3 : 4);
      Store(color.blue, pixel[0]);
      Store(color.green, pixel[1]);
      Store(color.red, pixel[2]);
    }
  }
  return color;
}

void PngRowLayout::PutRecord(uint8_t* row, int32_t x, const Color& color) const {
  const auto index = static_cast<size_t>(x);
  const uint8_t red = color.red[0];
  const uint8_t green = color.green[0];
  const uint8_t blue = color.blue[0];
  switch (mKind) {
    case PxGrayByte::kInfo.kind:
      row[index] = GrayOf(red, green, blue);
      break;
    case PxGrayABytes::kInfo.kind:
      row[index * 2] = GrayOf(red, green, blue);
      row[index * 2 + 1] = 255;
      break;
    case PxRgbBytes::kInfo.kind: {
      const uint8_t pixel[] = {blue, green, red};
      std::memcpy(row + index * 3, pixel, sizeof pixel);
      break;
    }
    case PxRgb48::kInfo.kind:
      std::memcpy(row + index * 6, color.blue, 2);
      std::memcpy(row + index * 6 + 2, color.green, 2);
      std::memcpy(row + index * 6 + 4, color.red, 2);
      break;
    case PxRgba64::kInfo.kind:
      std::memcpy(row + index * 8, color.red, 2);
      std::memcpy(row + index * 8 + 2, color.green, 2);
      std::memcpy(row + index * 8 + 4, color.blue, 2);
      std::memset(row + index * 8 + 6, 0xFF, 2);
      break;
    default: {
      const uint8_t pixel[] = {blue, green, red, 255};
      std::memcpy(row + index * 4, pixel, sizeof pixel);
    }
  }
}

void PngRowLayout::ToRecords(const uint8_t* decoded, uint8_t* records, int32_t count) const {
  // What a file with alpha comes to, by far the most frequent case.
  if (mChannels == 3 && mDepth == 8 && mKind == PxRgbaBytes::kInfo.kind) {
    for (int32_t x = 0; x < count; ++x, decoded += 3, records += 4) {
      records[0] = decoded[0];
      records[1] = decoded[1];
      records[2] = decoded[2];
      records[3] = 255;
    }
    return;
  }
  for (int32_t x = 0; x < count; ++x) {
    PutRecord(records, x, Decoded(decoded, x));
  }
}

void PngRowLayout::FromRecords(const uint8_t* records, uint8_t* decoded, int32_t count) const {
  for (int32_t x = 0; x < count; ++x) {
    PutDecoded(decoded, x, Record(records, x));
  }
}

}  // namespace vm
