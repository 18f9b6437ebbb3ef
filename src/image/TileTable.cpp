#include "image/TileTable.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "image/ImageReports.h"

namespace vm {
namespace {

// Stands in front of each tile's pixels and keeps them aligned as malloc gives them.
struct alignas(16) TileHeader {
  uint32_t holders;
};

TileHeader* HeaderOf(uint8_t* tile) {
  return reinterpret_cast<TileHeader*>(tile) - 1;
}

uint8_t* NewTile(size_t bytes) {
  auto* const header = static_cast<TileHeader*>(std::calloc(1, sizeof(TileHeader) + bytes));
  if (header == nullptr)
    std::abort();
  header->holders = 1;
  return reinterpret_cast<uint8_t*>(header + 1);
}

void DropTile(uint8_t* tile) {
  TileHeader* const header = HeaderOf(tile);
  if (--header->holders == 0)
    std::free(header);
}

// Odd codes are the negative coordinates. The code may itself be negative: see DecodedArea.
int32_t Unfold(int32_t code) {
  return (code & 1) != 0 ? -1 - (code >> 1) : code >> 1;
}

}  // namespace

TileTable::TileTable(int32_t bitsPerPixel)
    : mTileBytes((static_cast<size_t>(bitsPerPixel) * kTileSize * kTileSize + 7) >> 3) {}

uint8_t* TileTable::MakeNew(int32_t x, int32_t y) {
  const int64_t index64 = IndexOf(x >> kTileShift, y >> kTileShift);
  if (!CP_Check(index64 <= kMaxIndex, kReportTiled, kLineTileIndex, "x >= 0"))
    return nullptr;
  const auto index = static_cast<size_t>(index64);
  const size_t page = index / kPageEntries;
  if (page >= mPages.size())
    mPages.resize(page + 1);
  if (mPages[page] == nullptr)
    mPages[page] = std::make_unique<Page>();
  uint8_t* const tile = NewTile(mTileBytes);
  (*mPages[page])[index % kPageEntries] = tile;
  if (mSize <= index)
    mSize = index + 1;
  return tile;
}

void TileTable::Clear() {
  for (const auto& page : mPages) {
    if (page == nullptr)
      continue;
    for (uint8_t* const tile : *page) {
      if (tile != nullptr)
        DropTile(tile);
    }
  }
  mPages.clear();
  mSize = 0;
}

void TileTable::ShareTilesOf(const TileTable& other) {
  if (&other == this)
    return;
  Clear();
  mTileBytes = other.mTileBytes;
  mPages.resize(other.mPages.size());
  for (size_t i = 0; i < mPages.size(); ++i) {
    if (other.mPages[i] == nullptr)
      continue;
    mPages[i] = std::make_unique<Page>(*other.mPages[i]);
    for (uint8_t* const tile : *mPages[i]) {
      if (tile != nullptr)
        ++HeaderOf(tile)->holders;
    }
  }
  mSize = other.mSize;
}

size_t TileTable::TileCount() const {
  size_t count = 0;
  for (const auto& page : mPages) {
    if (page != nullptr)
      count += kPageEntries - static_cast<size_t>(std::count(page->begin(), page->end(), nullptr));
  }
  return count;
}

ZvRect TileTable::DecodedArea(size_t index) {
  const auto i = static_cast<int32_t>(index);
  const auto s = static_cast<int32_t>(std::sqrt(static_cast<double>(i)));
  const bool beyondDiagonal = i > s * s + s;
  const int32_t a = beyondDiagonal ? s : i - s * s - s - 1;
  const int32_t b = beyondDiagonal ? i - s * s : s;
  const int32_t left = Unfold(a) * kTileSize;
  const int32_t top = Unfold(b) * kTileSize;
  return {left, top, left + kTileMask, top + kTileMask};
}

ZvRect TileTable::UsedBounds() const {
  ZvRect bounds = kEmptyRect;
  for (size_t page = 0; page < mPages.size(); ++page) {
    if (mPages[page] == nullptr)
      continue;
    for (size_t entry = 0; entry < kPageEntries; ++entry) {
      if ((*mPages[page])[entry] == nullptr)
        continue;
      const ZvRect area = DecodedArea(page * kPageEntries + entry);
      bounds.AddPoint({area.fLeft, area.fTop});
      bounds.AddPoint({area.fRight, area.fBottom});
    }
  }
  return bounds;
}

}  // namespace vm
