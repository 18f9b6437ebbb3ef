#pragma once

#include <cstdint>

namespace vm {

// How a row that libpng decoded is laid out, and the record that it has to become. Decoded rows
// have no alpha; colours stand blue first.
class PngRowLayout {
 public:
  // `channels` 1 or 3; `depth` 1, 2, 4, 8 or 16 bits, packed from the most significant bit, 16
  // big-endian; `indexed` for palette indices, which are not scaled; `recordKind` the pixel kind of
  // a record that CreateImageForDepth gives.
  PngRowLayout(int32_t channels, int32_t depth, bool indexed, uint32_t recordKind);

  // The bytes of a row are those of the records.
  bool IsRecordLayout() const { return mIsRecordLayout; }

  // Between `count` decoded pixels and `count` records. Both rows hold whole pixels; bits of a last
  // byte beyond the row are zero. What a record lacks is lost on the way, what the decoded form
  // lacks is filled in.
  void ToRecords(const uint8_t* decoded, uint8_t* records, int32_t count) const;
  void FromRecords(const uint8_t* records, uint8_t* decoded, int32_t count) const;

 private:
  // Red, green, blue of one pixel, big-endian words. Bytes fill the high half.
  struct Color {
    uint8_t red[2];
    uint8_t green[2];
    uint8_t blue[2];
  };

  Color Decoded(const uint8_t* row, int32_t x) const;
  void PutDecoded(uint8_t* row, int32_t x, const Color& color) const;
  Color Record(const uint8_t* row, int32_t x) const;
  void PutRecord(uint8_t* row, int32_t x, const Color& color) const;

  int32_t mChannels;
  int32_t mDepth;
  int32_t mScale;  // from a sample below 8 bits to a byte
  uint32_t mKind;
  bool mIsRecordLayout;
};

}  // namespace vm
