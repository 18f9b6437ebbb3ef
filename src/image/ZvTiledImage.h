#pragma once

#include "image/PixelImage.h"

// The working image: a sparse plane of P, stored in tiles of 128 by 128 pixels that are made on
// first write.
//
// Pixels exist at any coordinates, outside the image too: a read there gives what is stored or the
// default pixel (transparent black), a write makes the tile. Loops that write make the tiles they
// pass; reading never makes one, and `Clear` frees all. A new tile is all zero bytes.
//
// UsedBounds covers the tiles, but takes most of them for being somewhere else: see
// TileTable::UsedBounds. Duplicate shares the tiles that exist at that moment.
template <class P>
class ZvTiledImage final : public vm::PixelImage<vm::TiledImage, P> {
 public:
  ZvTiledImage() : ZvTiledImage(1, 1) {}
  // In pixels; sizes below 1 become 1.
  ZvTiledImage(int32_t width, int32_t height);

  ZvImage* NewLike(bool copyPixels, int32_t width, int32_t height) const override;

  // The tile that holds (x, y), in storage form: pixel (x, y) is record vm::OffsetInTile(x, y) of
  // it (for PxGrayBit: that bit, most significant first). FindTile gives null where there is none
  // and never allocates. MakeTile gives null only, after a report, for coordinates beyond the reach
  // of the tile table.
  uint8_t* FindTile(int32_t x, int32_t y) const { return this->mTiles.Find(x, y); }
  uint8_t* MakeTile(int32_t x, int32_t y) { return this->mTiles.Make(x, y); }
};

// Each class is compiled in a source file of its own, under instances/.
extern template class ZvTiledImage<PxGrayByte>;
extern template class ZvTiledImage<PxGrayABytes>;
extern template class ZvTiledImage<PxAlphaByte>;
extern template class ZvTiledImage<PxGrayBit>;
extern template class ZvTiledImage<PxRgbBytes>;
extern template class ZvTiledImage<PxRgbaBytes>;
extern template class ZvTiledImage<PxRgb48>;
extern template class ZvTiledImage<PxRgba64>;
extern template class ZvTiledImage<PxDepthFloat>;
extern template class ZvTiledImage<PxXyFixed>;
extern template class ZvTiledImage<PxXyFloats>;
extern template class ZvTiledImage<PxCmykBytes>;
extern template class ZvTiledImage<PxCmykaBytes>;
extern template class ZvTiledImage<PxCmyk64>;
extern template class ZvTiledImage<PxCmyka80>;
