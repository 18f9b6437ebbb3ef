#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/ZvGeometry.h"

namespace vm {

inline constexpr int32_t kTileShift = 7;
inline constexpr int32_t kTileSize = 1 << kTileShift;  // pixels along each side
inline constexpr int32_t kTileMask = kTileSize - 1;

// Offset of (x, y) inside its tile, in pixels.
constexpr int32_t OffsetInTile(int32_t x, int32_t y) {
  return (y & kTileMask) * kTileSize + (x & kTileMask);
}

// The tiles of a tiled image: a table of blocks of 128 by 128 pixels, made on first write. A tile
// is an unpadded block of (bits per pixel * 16384 + 7) / 8 bytes, row after row, zero when new.
// Coordinates may be negative.
//
// A tile's place in the table is found by folding its two coordinates to unsigned codes and walking
// square shells around the origin, so that a growing image keeps its old indices: n by n tiles
// reach about index 4 n^2. The table is as long as its highest index asks for; it is stored in
// pages, so that length alone costs little.
//
// Tables can share tiles (`ShareTilesOf`): a tile is freed with the last table that holds it.
class TileTable {
 public:
  // Indices beyond this are refused: the table itself would be the larger part of all memory.
  static constexpr int64_t kMaxIndex = int64_t{1} << 28;

  explicit TileTable(int32_t bitsPerPixel);
  TileTable(const TileTable&) = delete;
  TileTable& operator=(const TileTable&) = delete;
  ~TileTable() { Clear(); }

  // The tile that holds pixel (x, y), or null. Never allocates.
  uint8_t* Find(int32_t x, int32_t y) const {
    const int64_t index = IndexOf(x >> kTileShift, y >> kTileShift);
    return index < static_cast<int64_t>(mSize) ? Entry(static_cast<size_t>(index)) : nullptr;
  }

  // The tile that holds pixel (x, y), made if need be. Null, after the report "x >= 0", for a pixel
  // so far out that its index can't be had. Without memory for a tile the program ends.
  uint8_t* Make(int32_t x, int32_t y) {
    uint8_t* const tile = Find(x, y);
    return tile != nullptr ? tile : MakeNew(x, y);
  }

  // Frees all tiles; the table is empty then.
  void Clear();

  // Drops the own tiles and holds those of the other table, at the same places.
  void ShareTilesOf(const TileTable& other);

  // Entries in the table, absent ones included: one more than the highest index that was ever made.
  size_t Size() const { return mSize; }
  size_t TileCount() const;
  size_t TileBytes() const { return mTileBytes; }

  // The union of the tiles' areas, each decoded from its index.
  // REQUIRED: the decoding is not the inverse of the index; only the tile at index 0 comes out
  // where it lies. Callers of UsedBounds get these rects.
  ZvRect UsedBounds() const;

  // The place of a tile given in tile coordinates.
  static constexpr int64_t IndexOf(int32_t tileX, int32_t tileY) {
    const int64_t a = Fold(tileX);
    const int64_t b = Fold(tileY);
    return a < b ? b * b + b + 1 + a : a * a + b;
  }

  // The area that UsedBounds takes the tile at `index` for.
  static ZvRect DecodedArea(size_t index);

 private:
  static constexpr size_t kPageEntries = 512;
  using Page = std::array<uint8_t*, kPageEntries>;

  // 0, -1, 1, -2, 2 ... become 0, 1, 2, 3, 4 ...
  static constexpr int64_t Fold(int32_t t) { return t >= 0 ? int64_t{2} * t : int64_t{-2} * t - 1; }

  uint8_t* Entry(size_t index) const {
    const Page* const page = mPages[index / kPageEntries].get();
    return page != nullptr ? (*page)[index % kPageEntries] : nullptr;
  }
  uint8_t* MakeNew(int32_t x, int32_t y);

  size_t mTileBytes;
  size_t mSize = 0;
  std::vector<std::unique_ptr<Page>> mPages;  // a page is null while all its entries are
};

}  // namespace vm
