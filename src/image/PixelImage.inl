#pragma once

// Single-pixel operations. Included by the source files under instances/ only.

#include <algorithm>
#include <array>
#include <cstring>

#include "image/PixelImage.h"

namespace vm {

// "ZvTiledImage<PxRgbBytes>" as a constant: the name of a class as it is written in the source.
template <class P>
struct ImageTypeName {
  template <size_t n>
  static constexpr auto Make(const char (&family)[n]) {
    std::array<char, n + sizeof(P::kName) + 1> text{};
    size_t end = 0;
    for (size_t i = 0; i + 1 < n; ++i)
      text[end++] = family[i];
    text[end++] = '<';
    for (size_t i = 0; i + 1 < sizeof(P::kName); ++i)
      text[end++] = P::kName[i];
    text[end] = '>';
    return text;
  }
  static constexpr auto kTiled = Make("ZvTiledImage");
  static constexpr auto kTyped = Make("ZvTypedImage");
};

template <class P>
P LoadPixel(const TiledImage& image, int32_t x, int32_t y) {
  const uint8_t* const tile = image.Tiles().Find(x, y);
  P pixel;
  if (tile == nullptr)
    std::memcpy(&pixel, image.DefaultPixel(), sizeof pixel);
  else if constexpr (P::kInfo.bitsPerPixel == 1)
    UnpackBits(tile, OffsetInTile(x, y), reinterpret_cast<uint8_t*>(&pixel), 1);
  else
    std::memcpy(&pixel, tile + static_cast<size_t>(OffsetInTile(x, y)) * sizeof pixel,
                sizeof pixel);
  return pixel;
}

template <class P>
void StorePixel(TiledImage& image, const P& pixel, int32_t x, int32_t y) {
  uint8_t* const tile = image.Tiles().Make(x, y);
  if (tile == nullptr)
    return;
  if constexpr (P::kInfo.bitsPerPixel == 1)
    PackBits(reinterpret_cast<const uint8_t*>(&pixel), tile, OffsetInTile(x, y), 1);
  else
    std::memcpy(tile + static_cast<size_t>(OffsetInTile(x, y)) * sizeof pixel, &pixel,
                sizeof pixel);
}

template <class P>
P LoadPixel(const RowImage& image, int32_t x, int32_t y) {
  P pixel;
  const int64_t offset = image.ByteOffset(x, y);
  if (image.IsStored(offset))
    std::memcpy(&pixel, image.Pixels() + offset, sizeof pixel);
  return pixel;
}

template <class P>
void StorePixel(RowImage& image, const P& pixel, int32_t x, int32_t y) {
  const int64_t offset = image.ByteOffset(x, y);
  if (image.IsStored(offset))
    std::memcpy(image.Pixels() + offset, &pixel, sizeof pixel);
}

template <class Storage, class P>
P PixelImage<Storage, P>::Load(int32_t x, int32_t y) const {
  return LoadPixel<P>(static_cast<const Storage&>(*this), x, y);
}

template <class Storage, class P>
void PixelImage<Storage, P>::Store(const P& pixel, int32_t x, int32_t y) {
  StorePixel<P>(static_cast<Storage&>(*this), pixel, x, y);
}

// Reads the pixel first: a record that can't be written from a view keeps what it held.
template <class Storage, class P>
template <class Change>
void PixelImage<Storage, P>::Modify(int32_t x, int32_t y, Change&& change) {
  P pixel = Load(x, y);
  change(pixel);
  Store(pixel, x, y);
}

template <class Storage, class P>
void PixelImage<Storage, P>::GetRgba(PxRgbaBytes& out, int32_t x, int32_t y) const {
  out = Load(x, y).GetRgba();
}
template <class Storage, class P>
void PixelImage<Storage, P>::PutRgba(const PxRgbaBytes& pixel, int32_t x, int32_t y) {
  Modify(x, y, [&](P& p) { p.PutRgba(pixel); });
}
template <class Storage, class P>
void PixelImage<Storage, P>::GetRgb(PxRgbBytes& out, int32_t x, int32_t y) const {
  const P pixel = Load(x, y);
  RecordOpsOf<P>().toRgb(&pixel, &out, 1);
}
template <class Storage, class P>
void PixelImage<Storage, P>::PutRgb(const PxRgbBytes& pixel, int32_t x, int32_t y) {
  Modify(x, y, [&](P& p) { p.PutRgb(pixel); });
}
template <class Storage, class P>
void PixelImage<Storage, P>::GetByte(uint8_t& out, int32_t x, int32_t y) const {
  out = Load(x, y).GetByte();
}
template <class Storage, class P>
void PixelImage<Storage, P>::PutByte(uint8_t value, int32_t x, int32_t y) {
  Modify(x, y, [&](P& p) { p.PutByte(value); });
}
template <class Storage, class P>
void PixelImage<Storage, P>::GetRgba64(PxRgba64& out, int32_t x, int32_t y) const {
  out = Load(x, y).GetRgba64();
}
template <class Storage, class P>
void PixelImage<Storage, P>::PutRgba64(const PxRgba64& pixel, int32_t x, int32_t y) {
  Modify(x, y, [&](P& p) { p.PutRgba64(pixel); });
}

template <class Storage, class P>
void PixelImage<Storage, P>::GetChannel(void* out, int32_t x, int32_t y, int32_t channel) const {
  this->CheckRow(y);
  Load(x, y).GetChannel(out, channel);
}
template <class Storage, class P>
void PixelImage<Storage, P>::PutChannel(const void* value, int32_t x, int32_t y, int32_t channel) {
  this->CheckRow(y);
  Modify(x, y, [&](P& p) { p.PutChannel(value, channel); });
}

// The two neighbours along one axis and the way from the first to the second.
struct Neighbours {
  int32_t first;
  int32_t second;
  float fraction;
};

// Not limited, as the columns and rows of a plane without edges.
inline Neighbours NeighboursOf(float position) {
  const int32_t first = TruncToInt32(position);
  return {first, WrappingSum(first, 1), position - static_cast<float>(first)};
}

// Both limited to 0 .. last.
inline Neighbours LimitedNeighboursOf(float position, int32_t last) {
  const Neighbours n = NeighboursOf(position);
  const int32_t second = n.first < last ? n.first + 1 : last;
  return {std::clamp(n.first, 0, last), std::clamp(second, 0, last), n.fraction};
}

// Only the second is kept from passing the last.
inline Neighbours NeighboursUpTo(float position, int32_t last) {
  Neighbours n = NeighboursOf(position);
  if (n.first >= last)
    n.second = n.first;
  return n;
}

template <class Storage, class P>
void PixelImage<Storage, P>::Sample(P& out, float x, float y) const {
  Neighbours columns = NeighboursOf(x);
  Neighbours rows = NeighboursOf(y);
  if constexpr (std::is_same_v<Storage, RowImage>) {
    rows = LimitedNeighboursOf(y, this->mHeight - 1);
    if (columns.first == this->mWidth - 1)
      columns.second = columns.first;
  }
  P top = Load(columns.first, rows.first);
  top.Mix256(Load(columns.second, rows.first), columns.fraction);
  P bottom = Load(columns.first, rows.second);
  bottom.Mix256(Load(columns.second, rows.second), columns.fraction);
  top.Mix256(bottom, rows.fraction);
  out = top;
}

template <class Storage, class P>
void PixelImage<Storage, P>::SampleRgba(PxRgbaBytes& out, float x, float y) const {
  P pixel;
  Sample(pixel, x, y);
  out = pixel.GetRgba();
}
template <class Storage, class P>
void PixelImage<Storage, P>::SampleRgb(PxRgbBytes& out, float x, float y) const {
  P pixel;
  Sample(pixel, x, y);
  RecordOpsOf<P>().toRgb(&pixel, &out, 1);
}
template <class Storage, class P>
void PixelImage<Storage, P>::SampleByte(uint8_t& out, float x, float y) const {
  P pixel;
  Sample(pixel, x, y);
  out = pixel.GetByte();
}
template <class Storage, class P>
void PixelImage<Storage, P>::SampleDepth(float& out, float x, float y) const {
  PxRgbaBytes pixel;
  SampleRgba(pixel, x, y);
  out = static_cast<float>(pixel.red + pixel.green + pixel.blue) / 765.0f;
}
template <class Storage, class P>
void PixelImage<Storage, P>::SampleRgba64(PxRgba64& out, float x, float y) const {
  P pixel;
  Sample(pixel, x, y);
  out = pixel.GetRgba64();
}

template <class Storage, class P>
void PixelImage<Storage, P>::SampleArea(PxRgbaBytes& out, float x, float y, float size) const {
  const float s = size * 0.25f;
  PxRgbaBytes topRight;
  PxRgbaBytes bottomLeft;
  PxRgbaBytes bottomRight;
  SampleRgba(out, x - s, y - s);
  SampleRgba(topRight, x + s, y - s);
  SampleRgba(bottomLeft, x - s, y + s);
  SampleRgba(bottomRight, x + s, y + s);
  out.Mix256(topRight, 0.5f);
  bottomLeft.Mix256(bottomRight, 0.5f);
  out.Mix256(bottomLeft, 0.5f);
  out.alpha = 255;
}

template <class Storage, class P>
void PixelImage<Storage, P>::SplatRgba64(const PxRgba64& pixel, float x, float y) {
  P narrowed{};
  narrowed.PutRgba64(pixel);
  SplatPixel(narrowed, x, y);
}

template <class Storage, class P>
void PixelImage<Storage, P>::SplatPixel(const P& pixel, float x, float y) {
  const Neighbours columns = NeighboursUpTo(x, this->mWidth - 1);
  const Neighbours rows = LimitedNeighboursOf(y, this->mHeight - 1);
  const float fx = columns.fraction;
  const float fy = rows.fraction;
  P topLeft = Load(columns.first, rows.first);
  P topRight = Load(columns.second, rows.first);
  P bottomLeft = Load(columns.first, rows.second);
  P bottomRight = Load(columns.second, rows.second);
  topLeft.Mix256(pixel, (1 - fx) * (1 - fy));
  topRight.Mix256(pixel, fx * (1 - fy));
  bottomLeft.Mix256(pixel, (1 - fx) * fy);
  bottomRight.Mix256(pixel, fx * fy);
  // Where two of the four are one pixel, the last one written is what it holds.
  Store(topLeft, columns.first, rows.first);
  Store(topRight, columns.second, rows.first);
  Store(bottomLeft, columns.first, rows.second);
  Store(bottomRight, columns.second, rows.second);
}

}  // namespace vm
