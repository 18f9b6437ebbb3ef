#pragma once

#include "image/pixels/PxRecords.h"
#include "image/RunImage.h"

namespace vm {

// What works on single pixels of type P, written once over the storage of either family
// (TiledImage, RowImage). The bodies are in PixelImage.inl and are instantiated once per image
// class.
template <class Storage, class P>
class PixelImage : public Storage {
 public:
  void GetRgba(PxRgbaBytes& out, int32_t x, int32_t y) const final;
  void PutRgba(const PxRgbaBytes& pixel, int32_t x, int32_t y) final;
  void GetRgb(PxRgbBytes& out, int32_t x, int32_t y) const final;
  void PutRgb(const PxRgbBytes& pixel, int32_t x, int32_t y) final;
  void GetByte(uint8_t& out, int32_t x, int32_t y) const final;
  void PutByte(uint8_t value, int32_t x, int32_t y) final;
  void GetRgba64(PxRgba64& out, int32_t x, int32_t y) const final;
  void PutRgba64(const PxRgba64& pixel, int32_t x, int32_t y) final;
  void GetChannel(void* out, int32_t x, int32_t y, int32_t channel) const final;
  void PutChannel(const void* value, int32_t x, int32_t y, int32_t channel) final;
  void SampleRgba(PxRgbaBytes& out, float x, float y) const final;
  void SampleRgb(PxRgbBytes& out, float x, float y) const final;
  void SampleByte(uint8_t& out, float x, float y) const final;
  void SampleDepth(float& out, float x, float y) const final;
  void SampleRgba64(PxRgba64& out, float x, float y) const final;
  void SampleArea(PxRgbaBytes& out, float x, float y, float size) const final;
  void SplatRgba64(const PxRgba64& pixel, float x, float y) final;

  // The family's own virtual operation, last in the order: mixes `pixel` into the four pixels
  // around (x, y), each by Mix256 at its share. The rows are limited to the image, the columns are
  // not, except that nothing right of the last column is touched.
  virtual void SplatPixel(const P& pixel, float x, float y);

  // Raw pixel access, unclipped. On a row image a y outside the image is reported; what lies
  // outside the block reads as the all-zero pixel and is not written. Of a PxGrayBit only the low
  // bit is stored.
  void GetPixel(P& out, int32_t x, int32_t y) const {
    this->CheckRow(y);
    out = Load(x, y);
  }
  void PutPixel(const P& pixel, int32_t x, int32_t y) {
    this->CheckRow(y);
    Store(pixel, x, y);
  }

  // Bilinear read: Mix256 along x in both rows, then along y. Beyond the edge a tiled image mixes
  // in its default pixel; a row image repeats its last row and column.
  void Sample(P& out, float x, float y) const;

 protected:
  using Storage::Storage;

  // As GetPixel and PutPixel, without the report.
  P Load(int32_t x, int32_t y) const;
  void Store(const P& pixel, int32_t x, int32_t y);

 private:
  template <class Change>
  void Modify(int32_t x, int32_t y, Change&& change);
};

}  // namespace vm
