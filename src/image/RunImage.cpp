#include "image/RunImage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "image/ImageReports.h"
#include "image/pixels/PxRecords.h"

namespace vm {
namespace {

bool IsAligned(const void* pointer, size_t align) {
  return reinterpret_cast<uintptr_t>(pointer) % align == 0;
}

// The part of a row image's block that a run may use.
struct BlockPart {
  uint8_t* pixels;  // null: outside the block
  int32_t count;
};

BlockPart PartAt(const RowImage& image, int32_t x, int32_t y, int32_t want) {
  const auto size = static_cast<int64_t>(image.Record().size);
  const int64_t offset = image.ByteOffset(x, y);
  if (!image.IsStored(offset))
    return {nullptr, offset < 0 ? 1 : std::min(want, kScratchPixels)};
  const int64_t stored = (int64_t{image.BufferSize()} - offset) / size;
  return {image.Pixels() + offset, static_cast<int32_t>(std::min<int64_t>(want, stored))};
}

}  // namespace

void UnpackBits(const uint8_t* bits, int32_t firstBit, uint8_t* out, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    const int32_t bit = firstBit + i;
    out[i] = bits[bit >> 3] >> (7 - (bit & 7)) & 1;
  }
}

void PackBits(const uint8_t* values, uint8_t* bits, int32_t firstBit, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    const int32_t bit = firstBit + i;
    const auto mask = static_cast<uint8_t>(0x80 >> (bit & 7));
    uint8_t& byte = bits[bit >> 3];
    byte = static_cast<uint8_t>((values[i] & 1) != 0 ? byte | mask : byte & ~mask);
  }
}

const RunImage* AsRunImage(const ZvImage* image) {
  return dynamic_cast<const RunImage*>(image);
}
RunImage* AsRunImage(ZvImage* image) {
  return dynamic_cast<RunImage*>(image);
}

RunImage::RunImage(int32_t width, int32_t height, const RecordOps& record, const char* typeName)
    : ZvImage(width, height, record.bitsPerPixel, typeName), mRecord(&record) {
  mPixelKind = record.kind;
  mColorModel = record.model;
  mBitsPerPixel = record.bitsPerPixel;
}

const char* RunImage::ReportName() const {
  return mTiled != 0 ? kReportTiled : kReportRow;
}

bool RunImage::ReportRow(int32_t y) const {
  return CP_Check(y >= 0, kReportRow, kLineRowAboveTop, "y >= 0") &&
         CP_Check(y < mHeight, kReportRow, kLineRowBelowBottom, "y < mHeight");
}

void RunImage::Narrow(const PxRgba64& colour, void* outRecord) const {
  std::memset(outRecord, 0, mRecord->size);
  mRecord->fromRgba64(&colour, outRecord, 1);
}

void RunImage::ResizeClip(int32_t width, int32_t height) {
  if (mClippingRect == Bounds()) {
    mClippingRect.Set(0, 0, width - 1, height - 1);
  } else {
    mClippingRect.fRight = std::min(mClippingRect.fRight, width - 1);
    mClippingRect.fBottom = std::min(mClippingRect.fBottom, height - 1);
  }
}

void RunImage::FillNewBands(int32_t oldWidth, int32_t oldHeight, const PxRgba64& fill) {
  if (mWidth > oldWidth)
    DrawRect({oldWidth, 0, mWidth - 1, mHeight - 1}, fill, true, false, nullptr);
  if (mHeight > oldHeight)
    DrawRect({0, oldHeight, oldWidth - 1, mHeight - 1}, fill, true, false, nullptr);
}

void RunImage::RefillFromCopy(ZvImage* copy, int32_t scaleMode, const PxRgba64& fill) {
  FillClip(fill);
  if (scaleMode == kResampleNone)
    CopyImage(copy);
  else
    CopyScaled(copy, copy->Bounds(), Bounds(), scaleMode, nullptr);
  copy->Release();
}

TiledImage::TiledImage(int32_t width, int32_t height, const RecordOps& record, const char* typeName)
    : RunImage(width, height, record, typeName), mTiles(record.bitsPerPixel) {
  mTiled = 1;
  Narrow(kRgba64Clear, mDefaultPixel);
}

void TiledImage::Resize(int32_t width, int32_t height, bool keepContents, int32_t scaleMode,
                        const PxRgba64& fill) {
  width = std::max(width, 1);
  height = std::max(height, 1);
  if (width == mWidth && height == mHeight)
    return;
  const bool grows = width >= mWidth && height >= mHeight;
  if (grows && keepContents && scaleMode == kResampleNone && fill == kRgba64White) {
    mWidth = width;
    mHeight = height;
    return;
  }
  ResizeClip(width, height);
  ZvImage* const copy = keepContents && scaleMode != kResampleNone ? NewLike(true, 0, 0) : nullptr;
  const int32_t oldWidth = mWidth;
  const int32_t oldHeight = mHeight;
  mWidth = width;
  mHeight = height;
  if (copy != nullptr)
    RefillFromCopy(copy, scaleMode, fill);
  else if (keepContents)
    FillNewBands(oldWidth, oldHeight, fill);
}

void TiledImage::AppendBlocks(std::vector<ZvImageBlock>& list, const ZvRect& rect) const {
  const int64_t firstX = rect.fLeft & ~kTileMask;
  const int64_t firstY = rect.fTop & ~kTileMask;
  for (int64_t y = firstY; y <= rect.fBottom; y += kTileSize) {
    for (int64_t x = firstX; x <= rect.fRight; x += kTileSize) {
      const auto left = static_cast<int32_t>(x);
      const auto top = static_cast<int32_t>(y);
      list.push_back({mTiles.Find(left, top), {left, top, left + kTileMask, top + kTileMask}});
    }
  }
}

ZvImage* TiledImage::Duplicate() const {
  auto* const twin = static_cast<TiledImage*>(NewLike(false, 1, 1));
  twin->CopyBaseFields(*this);
  std::copy(std::begin(mDefaultPixel), std::end(mDefaultPixel), twin->mDefaultPixel);
  twin->mTiles.ShareTilesOf(mTiles);
  return twin;
}

RowImage::RowImage(int32_t width, int32_t height, int32_t rowBytes, uint8_t* pixels,
                   const RecordOps& record, const char* typeName)
    : RunImage(width, height, record, typeName),
      mOwnsPixels(0),
      mBufferSize(0),
      mPixels(pixels),
      mRowBytes(0) {
  mTiled = 0;
  const int64_t stride = rowBytes != 0 ? rowBytes : DefaultRowBytes(record.bitsPerPixel, mWidth);
  // A stride that no 32 bits can hold leaves an image without a block.
  if (stride > std::numeric_limits<int32_t>::max())
    return;
  mRowBytes = static_cast<int32_t>(stride);
  const int64_t bytes = stride * mHeight;
  if (pixels == nullptr)
    Allocate(bytes);
  else
    mBufferSize =
        static_cast<uint32_t>(std::clamp<int64_t>(bytes, 0, std::numeric_limits<uint32_t>::max()));
}

bool RowImage::Allocate(int64_t bytes) {
  if (bytes <= 0 || bytes > std::numeric_limits<uint32_t>::max() ||
      static_cast<uint64_t>(bytes) > std::numeric_limits<size_t>::max() / 2)
    return false;
  auto* const block = static_cast<uint8_t*>(std::calloc(1, static_cast<size_t>(bytes)));
  if (block == nullptr)
    return false;
  mKeeper = std::shared_ptr<uint8_t>(block, std::free);
  mPixels = block;
  mBufferSize = static_cast<uint32_t>(bytes);
  mOwnsPixels = 1;
  return true;
}

void RowImage::Clear() {
  const int64_t bytes = int64_t{mRowBytes} * mHeight;
  if (mPixels != nullptr && bytes > 0)
    std::memset(mPixels, 0, static_cast<size_t>(std::min<int64_t>(bytes, mBufferSize)));
}

void RowImage::Resize(int32_t width, int32_t height, bool keepContents, int32_t scaleMode,
                      const PxRgba64& fill) {
  width = std::max(width, 1);
  height = std::max(height, 1);
  if (width == mWidth && height == mHeight)
    return;
  const int64_t newRowBytes = DefaultRowBytes(mRecord->bitsPerPixel, width);
  // An image that can't be had stays as it is.
  if (newRowBytes > std::numeric_limits<int32_t>::max())
    return;
  const int64_t needed = newRowBytes * height;
  const bool owned = mOwnsPixels != 0;
  const bool fits = newRowBytes <= mRowBytes && int64_t{height} * mRowBytes <= int64_t{mBufferSize};
  const bool reused =
      !owned || (fits && scaleMode == kResampleNone) || (!keepContents && needed <= mBufferSize);

  ZvImage* copy = nullptr;
  if (keepContents && (!reused || (!owned && scaleMode != kResampleNone)))
    copy = NewLike(true, 0, 0);
  if (!reused) {
    // A tenth more than needed, so that growing by small steps stays cheap.
    const auto roomy = static_cast<int64_t>(static_cast<double>(needed) * 1.1);
    if (!Allocate(roomy) && !Allocate(needed)) {
      if (copy != nullptr)
        copy->Release();
      return;
    }
    mRowBytes = static_cast<int32_t>(newRowBytes);
  } else if (owned && !keepContents) {
    mRowBytes = static_cast<int32_t>(newRowBytes);
  }
  ResizeClip(width, height);
  const int32_t oldWidth = mWidth;
  const int32_t oldHeight = mHeight;
  mWidth = width;
  mHeight = height;
  if (copy != nullptr)
    RefillFromCopy(copy, scaleMode, fill);
  else if (keepContents)
    FillNewBands(oldWidth, oldHeight, fill);
}

void RowImage::AppendBlocks(std::vector<ZvImageBlock>& list, const ZvRect& /*rect*/) const {
  CP_Check(mHeight >= 1, kReportRow, kLineAppendBlocks, "y < mHeight");
  list.push_back({mPixels, Bounds()});
}

ZvImage* RowImage::Duplicate() const {
  auto* const twin = static_cast<RowImage*>(NewLike(false, 1, 1));
  twin->CopyBaseFields(*this);
  twin->mOwnsPixels = mOwnsPixels;
  twin->mBufferSize = mBufferSize;
  twin->mPixels = mPixels;
  twin->mRowBytes = mRowBytes;
  twin->mKeeper = mKeeper;
  return twin;
}

RunReader::RunReader(const RunImage& image) : mImage(image), mRecord(image.Record()) {}

ConstRun RunReader::At(int32_t x, int32_t y, int32_t want) {
  return mImage.IsTiled() ? TiledAt(x, y, want) : RowAt(x, y, want);
}

ConstRun RunReader::TiledAt(int32_t x, int32_t y, int32_t want) {
  const auto& image = static_cast<const TiledImage&>(mImage);
  const int32_t count = std::min(want, kTileSize - (x & kTileMask));
  const uint8_t* const tile = image.Tiles().Find(x, y);
  if (tile == nullptr) {
    if (!mDefaultsReady) {
      FillRecords(mDefaults, image.DefaultPixel(), kTileSize, mRecord.size);
      mDefaultsReady = true;
    }
    return {mDefaults, count};
  }
  if (mRecord.packed) {
    UnpackBits(tile, OffsetInTile(x, y), mScratch, count);
    return {mScratch, count};
  }
  return {tile + static_cast<size_t>(OffsetInTile(x, y)) * mRecord.size, count};
}

ConstRun RunReader::RowAt(int32_t x, int32_t y, int32_t want) {
  const BlockPart part = PartAt(static_cast<const RowImage&>(mImage), x, y, want);
  if (part.pixels == nullptr) {
    std::memset(mScratch, 0, sizeof mScratch);
    return {mScratch, part.count};
  }
  if (IsAligned(part.pixels, mRecord.align))
    return {part.pixels, part.count};
  const int32_t count = std::min(part.count, kScratchPixels);
  std::memcpy(mScratch, part.pixels, static_cast<size_t>(count) * mRecord.size);
  return {mScratch, count};
}

RunWriter::RunWriter(RunImage& image) : mImage(image), mRecord(image.Record()) {}

Run RunWriter::At(int32_t x, int32_t y, int32_t want) {
  Store();
  return mImage.IsTiled() ? TiledAt(x, y, want) : RowAt(x, y, want);
}

void RunWriter::Store() {
  if (mTarget == nullptr)
    return;
  if (mRecord.packed)
    PackBits(mScratch, mTarget, mTargetBit, mTargetCount);
  else
    std::memcpy(mTarget, mScratch, static_cast<size_t>(mTargetCount) * mRecord.size);
  mTarget = nullptr;
}

Run RunWriter::TiledAt(int32_t x, int32_t y, int32_t want) {
  auto& image = static_cast<TiledImage&>(mImage);
  const int32_t count = std::min(want, kTileSize - (x & kTileMask));
  uint8_t* const tile = image.Tiles().Make(x, y);
  if (tile == nullptr) {
    std::memset(mScratch, 0, sizeof mScratch);
    return {mScratch, count};
  }
  if (mRecord.packed) {
    mTarget = tile;
    mTargetBit = OffsetInTile(x, y);
    mTargetCount = count;
    UnpackBits(tile, mTargetBit, mScratch, count);
    return {mScratch, count};
  }
  return {tile + static_cast<size_t>(OffsetInTile(x, y)) * mRecord.size, count};
}

Run RunWriter::RowAt(int32_t x, int32_t y, int32_t want) {
  const BlockPart part = PartAt(static_cast<const RowImage&>(mImage), x, y, want);
  if (part.pixels == nullptr) {
    std::memset(mScratch, 0, sizeof mScratch);
    return {mScratch, part.count};
  }
  if (IsAligned(part.pixels, mRecord.align))
    return {part.pixels, part.count};
  mTarget = part.pixels;
  mTargetCount = std::min(part.count, kScratchPixels);
  std::memcpy(mScratch, mTarget, static_cast<size_t>(mTargetCount) * mRecord.size);
  return {mScratch, mTargetCount};
}

Transfer CutTransfer(const ZvImage& to, const ZvImage& from, const ZvRect& fromRect,
                     const ZvPoint& toPoint, const ZvRect* clip) {
  const int64_t dx = int64_t{toPoint.x} - fromRect.fLeft;
  const int64_t dy = int64_t{toPoint.y} - fromRect.fTop;
  int64_t left = std::max<int64_t>({toPoint.x, 0, dx});
  int64_t top = std::max<int64_t>({toPoint.y, 0, dy});
  int64_t right = std::min<int64_t>({fromRect.fRight + dx, to.Width() - 1, dx + from.Width() - 1});
  int64_t bottom =
      std::min<int64_t>({fromRect.fBottom + dy, to.Height() - 1, dy + from.Height() - 1});
  if (clip != nullptr) {
    left = std::max<int64_t>(left, clip->fLeft);
    top = std::max<int64_t>(top, clip->fTop);
    right = std::min<int64_t>(right, clip->fRight);
    bottom = std::min<int64_t>(bottom, clip->fBottom);
  }
  if (left > right || top > bottom)
    return {kEmptyRect, 0, 0};
  // Not empty, so all four lie inside the target image.
  return {{static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right),
           static_cast<int32_t>(bottom)},
          dx,
          dy};
}

void XorRecords(void* records, const void* colour, size_t count, size_t recordSize) {
  auto* to = static_cast<uint8_t*>(records);
  const auto* bits = static_cast<const uint8_t*>(colour);
  for (size_t i = 0; i < count; ++i) {
    for (size_t b = 0; b < recordSize; ++b)
      *to++ ^= bits[b];
  }
}

void FillRecords(void* records, const void* record, size_t count, size_t recordSize) {
  auto* const to = static_cast<uint8_t*>(records);
  const auto* const from = static_cast<const uint8_t*>(record);
  const bool oneByte =
      std::all_of(from, from + recordSize, [from](uint8_t byte) { return byte == *from; });
  if (oneByte) {
    std::memset(to, *from, count * recordSize);
    return;
  }
  if (count == 0)
    return;
  // Doubling: each copy takes all that is there.
  std::memcpy(to, from, recordSize);
  size_t done = 1;
  while (done < count) {
    const size_t part = std::min(done, count - done);
    std::memcpy(to + done * recordSize, to, part * recordSize);
    done += part;
  }
}

}  // namespace vm
