#include "image/kernels/rows/ChannelRows.h"

#include <iterator>

#include "image/kernels/rows/Vectors.h"
#include "image/kernels/rows/Words.h"

// Mostly plain loops over numbers of one width, which the compiler vectorises.
namespace vm {
namespace {

// c + c-1 - (c-1)/1000 with 0 as it is: 1.999c is 2c - c/1000, and truncating the whole rounds the
// part taken away upwards. The double 1.999 gives the same integer for every word.
constexpr uint16_t ScaledInIntegers(uint16_t c) {
  const auto below = static_cast<uint16_t>(c - (c != 0 ? 1 : 0));
  return static_cast<uint16_t>(c + below - below / 1000);
}

void InvertBytes(void* bytes, size_t count) {
  auto* const values = static_cast<uint8_t*>(bytes);
  for (size_t i = 0; i < count; ++i)
    values[i] = static_cast<uint8_t>(~values[i]);
}

}  // namespace

// A pixel of bytes is one 32-bit number, blue at its low end.
void SwapRedAndBlueRow(std::span<PxRgbaBytes> row) {
  for (PxRgbaBytes& pixel : row) {
    const auto number = Load<uint32_t>(&pixel);
    Store(&pixel, (number & 0xFF00FF00U) | (number >> 16 & 0xFFU) | (number & 0xFFU) << 16);
  }
}
void SwapRedAndBlueRow(std::span<PxRgbBytes> row) {
  for (PxRgbBytes& pixel : row)
    pixel = {pixel.red, pixel.green, pixel.blue};
}
void SwapRedAndBlueRow(std::span<PxRgb48> row) {
  for (PxRgb48& pixel : row)
    pixel = {pixel.red, pixel.green, pixel.blue};
}
void SwapRedAndBlueRow(std::span<PxRgba64> row) {
  size_t i = 0;
  for (; i + 2 <= row.size(); i += 2)
    Store16(&row[i], SwapOuterWords(Load16(&row[i])));
  for (; i < row.size(); ++i)
    row[i] = {row[i].blue, row[i].green, row[i].red, row[i].alpha};
}

// All channels are scaled; those not meant are then taken back.
void ScaleRow(std::span<PxRgba64> row, int32_t channels) {
  uint16_t scaled[8];
  for (size_t n = 0; n < std::size(scaled); ++n)
    scaled[n] = static_cast<int32_t>(n % 4) < channels ? 0xFFFF : 0;

  auto* const words = reinterpret_cast<uint16_t*>(row.data());
  size_t i = 0;
  for (; i + 2 <= row.size(); i += 2) {
    for (size_t n = 0; n < std::size(scaled); ++n) {
      const uint16_t word = words[i * 4 + n];
      words[i * 4 + n] =
          static_cast<uint16_t>((ScaledInIntegers(word) & scaled[n]) | (word & ~scaled[n]));
    }
  }
  if (i < row.size())
    scalar::Scale(row.subspan(i), channels);
}

void HalveRow(std::span<PxRgb48> row) {
  for (PxRgb48& pixel : row) {
    pixel = {static_cast<uint16_t>(pixel.blue >> 1), static_cast<uint16_t>(pixel.green >> 1),
             static_cast<uint16_t>(pixel.red >> 1)};
  }
}
void HalveRow(std::span<PxRgba64> row) {
  for (PxRgba64& pixel : row) {
    pixel = {static_cast<uint16_t>(pixel.red >> 1), static_cast<uint16_t>(pixel.green >> 1),
             static_cast<uint16_t>(pixel.blue >> 1), static_cast<uint16_t>(pixel.alpha >> 1)};
  }
}

// In bytes as in words the complement flips every bit, so records without alpha are rows of bytes.
void InvertRow(std::span<PxGrayByte> row) {
  InvertBytes(row.data(), row.size_bytes());
}
void InvertRow(std::span<PxRgbBytes> row) {
  InvertBytes(row.data(), row.size_bytes());
}
void InvertRow(std::span<PxRgb48> row) {
  InvertBytes(row.data(), row.size_bytes());
}
void InvertRow(std::span<PxCmykBytes> row) {
  InvertBytes(row.data(), row.size_bytes());
}
void InvertRow(std::span<PxCmyk64> row) {
  InvertBytes(row.data(), row.size_bytes());
}
void InvertRow(std::span<PxGrayABytes> row) {
  for (PxGrayABytes& pixel : row)
    Store(&pixel, static_cast<uint16_t>(Load<uint16_t>(&pixel) ^ 0x00FF));
}
void InvertRow(std::span<PxRgbaBytes> row) {
  for (PxRgbaBytes& pixel : row)
    Store(&pixel, Load<uint32_t>(&pixel) ^ 0x00FFFFFFU);
}
void InvertRow(std::span<PxRgba64> row) {
  for (PxRgba64& pixel : row)
    Store(&pixel, Load<uint64_t>(&pixel) ^ 0x0000FFFFFFFFFFFFULL);
}
void InvertRow(std::span<PxCmykaBytes> row) {
  for (PxCmykaBytes& pixel : row)
    Store(&pixel, ~Load<uint32_t>(&pixel));
}
void InvertRow(std::span<PxCmyka80> row) {
  for (PxCmyka80& pixel : row)
    Store(&pixel, ~Load<uint64_t>(&pixel));
}

}  // namespace vm
