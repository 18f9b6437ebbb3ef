#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "image/RecordOps.h"
#include "image/TileTable.h"
#include "image/ZvImage.h"

namespace vm {

// What both image families share. Every operation is written once, over *runs*: stretches of pixels
// that lie next to each other in one row, up to the end of a tile or of the row image's block, in
// the record's storage form. The pixel type comes in as a table of operations on stretches of
// records (RecordOps), so none of this is a template; ZvTiledImage<P> and ZvTypedImage<P> add only
// what works on single pixels.
class RunImage : public ZvImage {
 public:
  int32_t BitsPerPixel() const final { return mRecord->bitsPerPixel; }
  int32_t BytesPerPixel() const final { return mRecord->bytesPerPixel; }
  int32_t BitsPerChannel() const final { return mRecord->bitsPerChannel; }
  int32_t ChannelCount() const final { return mRecord->channels; }
  uint32_t PixelKind() const final { return mRecord->kind; }
  uint32_t ColorModel() const final { return mRecord->model; }
  bool HasAlpha() const final { return mRecord->hasAlpha; }
  bool IsTiled() const final { return mTiled != 0; }

  void ClearRect(const ZvRect& rect) final;

  // RunImageCopy.cpp
  void CopyFrom(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                const ZvRect* clip) final;
  void CopyVisible(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint,
                   const ZvRect* clip) final;
  void SwapPixels(ZvImage* other, const ZvPoint& otherPoint, const ZvRect& rect) final;

  // RunImageBlend.cpp
  void BlendRect(const ZvImage* from, const ZvRect& fromRect, const ZvPoint& toPoint, float opacity,
                 const ZvRect* clip) final;
  void MixImage(const ZvImage* from, float t) final;

  // ZvResample.cpp
  void CopyScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect, int32_t mode,
                  const ZvRect* clip) final;
  void CopyAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect, float hue,
                    float saturation, float lightness, int32_t mode, const ZvRect* clip) final;
  void BlendMasked(const ZvImage* from, const ZvImage* mask, const ZvRect& fromRect,
                   const ZvPoint& toPoint, float opacity, const ZvRect* clip) final;
  void BlendScaled(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect, float opacity,
                   int32_t mode, const ZvRect* clip) final;
  void BlendAdjusted(const ZvImage* from, const ZvRect& fromRect, const ZvRect& toRect, float hue,
                     float saturation, float lightness, float opacity, int32_t mode,
                     const ZvRect* clip) final;
  void PaintMasked(const PxRgba64& colour, const ZvImage* mask, const ZvRect& fromRect,
                   const ZvPoint& toPoint, float opacity, const ZvRect* clip) final;

  // RunImageDraw.cpp
  void Invert() final;
  void Offset(const ZvPoint& delta) final;
  void FillClip(const PxRgba64& colour) final;
  void DrawRect(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                ZvImage* mask) final;

  // ZvDrawing.cpp
  void DrawLine(const ZvPoint& from, const ZvPoint& to, const PxRgba64& colour, bool xorMode,
                ZvImage* mask, int32_t dash) final;
  void DrawOval(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                ZvImage* mask) final;
  void DrawPolygon(int32_t count, const ZvPoint* points, const PxRgba64& colour, bool filled,
                   bool xorMode, bool skipFirst, bool clampToImage, bool closed, int32_t dash,
                   float feather, ZvImage* mask, const ZvRect* clip) final;

  // RunImageRows.cpp
  void* NewRow(int32_t width) const final;
  void PutRow(const void* row, int32_t x, int32_t y, int32_t count) final;
  void GetRow(void* row, int32_t x, int32_t y, int32_t count) const final;
  void* NewInterleavedCopy() const final;
  void ImportBuffer(const void* buffer, int32_t rowBytes) final;
  void ExportBuffer(void* buffer, int32_t rowBytes) const final;

  const RecordOps& Record() const { return *mRecord; }

  // Both images store the same records in the same way, so that a transfer may go raw.
  bool IsSameClass(const RunImage& other) const {
    return mRecord == other.mRecord && mTiled == other.mTiled;
  }

  // The colour as a record of this image, by the PutRgba64 rule, on a record that starts as zero.
  void Narrow(const PxRgba64& colour, void* outRecord) const;

  // For row images: reports a y outside the image ("y >= 0", "y < mHeight"); true if all is well.
  // Loops ask once per row, single-pixel operations once per pixel.
  bool CheckRow(int32_t y) const { return mTiled != 0 || (y >= 0 && y < mHeight) || ReportRow(y); }

  // The source name in this family's reports.
  const char* ReportName() const;

 protected:
  RunImage(int32_t width, int32_t height, const RecordOps& record, const char* typeName);

  // The clip's share of Resize: a clip that is the whole image stays that, any other is cut to the
  // new size.
  void ResizeClip(int32_t width, int32_t height);
  // Fills what a growth without a copy has uncovered: the band on the right, then the band below.
  void FillNewBands(int32_t oldWidth, int32_t oldHeight, const PxRgba64& fill);
  // Fills all and puts the former contents, scaled or not, on top.
  void RefillFromCopy(ZvImage* copy, int32_t scaleMode, const PxRgba64& fill);

  const RecordOps* mRecord;

 private:
  bool ReportRow(int32_t y) const;
};

// Null for an image of another implementation. Such an image is read and written through its
// virtual views.
const RunImage* AsRunImage(const ZvImage* image);
RunImage* AsRunImage(ZvImage* image);

// Everything of a tiled image that doesn't depend on the pixel type.
class TiledImage : public RunImage {
 public:
  ZvRect UsedBounds() const final { return mTiles.UsedBounds(); }
  void Clear() final { mTiles.Clear(); }
  void Resize(int32_t width, int32_t height, bool keepContents, int32_t scaleMode,
              const PxRgba64& fill) final;
  void AppendBlocks(std::vector<ZvImageBlock>& list, const ZvRect& rect) const final;
  ZvImage* Duplicate() const final;

  const TileTable& Tiles() const { return mTiles; }
  TileTable& Tiles() { return mTiles; }
  // One record: what a pixel reads as where no tile exists.
  const uint8_t* DefaultPixel() const { return mDefaultPixel; }

 protected:
  TiledImage(int32_t width, int32_t height, const RecordOps& record, const char* typeName);

  alignas(8) uint8_t mDefaultPixel[16] = {};  // one record of the pixel type
  TileTable mTiles;
};

// Everything of a row image that doesn't depend on the pixel type.
class RowImage : public RunImage {
 public:
  ~RowImage() override = default;

  ZvRect UsedBounds() const final { return Bounds(); }
  void Clear() final;
  void Resize(int32_t width, int32_t height, bool keepContents, int32_t scaleMode,
              const PxRgba64& fill) final;
  void AppendBlocks(std::vector<ZvImageBlock>& list, const ZvRect& rect) const final;
  ZvImage* Duplicate() const final;

  // Start of row y. Reports a y outside the image; the address is then one that must not be used.
  uint8_t* RowPointer(int32_t y) const {
    CheckRow(y);
    return mPixels + static_cast<ptrdiff_t>(y) * mRowBytes;
  }

  bool OwnsPixels() const { return mOwnsPixels != 0; }
  uint32_t BufferSize() const { return mBufferSize; }
  uint8_t* Pixels() const { return mPixels; }
  int32_t RowBytes() const { return mRowBytes; }

  // Byte offset of a pixel from the start of the block. Whole records inside 0 .. BufferSize() may
  // be accessed.
  int64_t ByteOffset(int32_t x, int32_t y) const {
    return int64_t{y} * mRowBytes + int64_t{x} * static_cast<int64_t>(mRecord->size);
  }
  bool IsStored(int64_t offset) const {
    return offset >= 0 && offset + static_cast<int64_t>(mRecord->size) <= int64_t{mBufferSize};
  }

 protected:
  // rowBytes 0 is the default stride. Null `pixels` allocates a zeroed block, which the image owns;
  // otherwise the block is the caller's, must outlive the image and hold rowBytes * height bytes.
  RowImage(int32_t width, int32_t height, int32_t rowBytes, uint8_t* pixels,
           const RecordOps& record, const char* typeName);

  uint8_t mOwnsPixels;
  uint32_t mBufferSize;  // bytes
  uint8_t* mPixels;      // first row, the top one; null only where memory was refused
  int32_t mRowBytes;

 private:
  bool Allocate(int64_t bytes);

  std::shared_ptr<uint8_t> mKeeper;  // frees an owned block with the last image that refers to it
};

// A stretch of records in one row. `count` is at least 1.
struct ConstRun {
  const uint8_t* pixels;
  int32_t count;
};
struct Run {
  uint8_t* pixels;
  int32_t count;
};

// Pixels that go through a copy, because they are bits, lie unaligned, or lie outside the block,
// come in runs of at most this many.
inline constexpr int32_t kScratchPixels = kTileSize;

// Reads an image's runs. Absent tiles read as the default pixel, what lies outside a row image's
// block as zero. Nothing is allocated, nothing reported.
class RunReader {
 public:
  explicit RunReader(const RunImage& image);

  // From (x, y) to the right, 1 to `want` pixels. The run is valid until the next call.
  ConstRun At(int32_t x, int32_t y, int32_t want);

 private:
  ConstRun TiledAt(int32_t x, int32_t y, int32_t want);
  ConstRun RowAt(int32_t x, int32_t y, int32_t want);

  const RunImage& mImage;
  const RecordOps& mRecord;
  bool mDefaultsReady = false;
  alignas(16) uint8_t mScratch[kScratchPixels * kMaxRecordBytes];
  alignas(16) uint8_t mDefaults[kScratchPixels * kMaxRecordBytes];
};

// Gives an image's runs for reading and writing. Tiles are made; what lies outside a row image's
// block reads as zero and is dropped. Nothing but a tile out of reach is reported.
class RunWriter {
 public:
  explicit RunWriter(RunImage& image);
  RunWriter(const RunWriter&) = delete;
  RunWriter& operator=(const RunWriter&) = delete;
  ~RunWriter() { Store(); }

  // From (x, y) to the right, 1 to `want` pixels. What is written into the run is certain to be in
  // the image after the next call or the end of this object.
  Run At(int32_t x, int32_t y, int32_t want);

  // Puts the last run into the image if it was a copy.
  void Store();

 private:
  Run TiledAt(int32_t x, int32_t y, int32_t want);
  Run RowAt(int32_t x, int32_t y, int32_t want);

  RunImage& mImage;
  const RecordOps& mRecord;
  uint8_t* mTarget = nullptr;  // where the scratch goes; null when the last run needs no storing
  int32_t mTargetBit = 0;
  int32_t mTargetCount = 0;
  alignas(16) uint8_t mScratch[kScratchPixels * kMaxRecordBytes];
};

// Calls `work(Run, x, y)` for all runs of `rect`, each of at most `longest` pixels, row by row from
// the top. Each run is in the image before the next one is given out. Reports the rows that a row
// image hasn't.
template <class Work>
void ForEachRun(RunImage& image, const ZvRect& rect, Work&& work, int32_t longest = INT32_MAX) {
  RunWriter writer(image);
  for (int64_t y = rect.fTop; y <= rect.fBottom; ++y) {
    image.CheckRow(static_cast<int32_t>(y));
    for (int64_t x = rect.fLeft; x <= rect.fRight;) {
      const auto want = static_cast<int32_t>(std::min<int64_t>(rect.fRight - x + 1, longest));
      const Run run = writer.At(static_cast<int32_t>(x), static_cast<int32_t>(y), want);
      work(run, static_cast<int32_t>(x), static_cast<int32_t>(y));
      x += run.count;
    }
  }
}

// Packed bits, most significant first, to a byte (0 or 1) each, and the low bits of bytes back.
void UnpackBits(const uint8_t* bits, int32_t firstBit, uint8_t* out, int32_t count);
void PackBits(const uint8_t* values, uint8_t* bits, int32_t firstBit, int32_t count);

// Where a transfer lands, and the way from a target pixel to its source: source = target - (dx,
// dy).
struct Transfer {
  ZvRect target;
  int64_t dx;
  int64_t dy;
};

// The target of an unscaled transfer: `fromRect` put at `toPoint`, cut to both images and the clip.
Transfer CutTransfer(const ZvImage& to, const ZvImage& from, const ZvRect& fromRect,
                     const ZvPoint& toPoint, const ZvRect* clip);

}  // namespace vm
