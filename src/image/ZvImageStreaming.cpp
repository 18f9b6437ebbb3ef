// How an image stands in a stream: a header of big-endian numbers, then one plane after the other.

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

#include "image/ImagePlanes.h"
#include "image/pixels/PxRecords.h"
#include "image/ZvImage.h"
#include "persistence/ZvStream.h"

namespace {

// An image that the stream can't fill is still made whole if its pixels take no more than this many
// bytes.
constexpr double kSmallStorage = 1 << 20;
// A row that the stream can't fill brings the tiles of its whole width; they may take so many
// bytes, and as many more as the bytes that are there would fill tiles.
constexpr double kMaxUnfilledRowStorage = 1 << 24;
// Beyond this many pixels an image that the stream can't fill isn't made at all.
constexpr double kMaxUnfilledPixels = 1 << 28;
// A thin image fills its tiles badly: beside a few times the bytes of its samples they may take
// this much.
constexpr double kMaxThinStorage = 1 << 26;
// Tiles farther out than this are beyond the reach of the tile table.
constexpr int32_t kMaxTiledSide = 1 << 20;

struct FreeBytes {
  void operator()(uint8_t* bytes) const { std::free(bytes); }
};
using RowBuffer = std::unique_ptr<uint8_t[], FreeBytes>;

// Zeroed; null if there is no memory for it.
RowBuffer NewRowBuffer(int64_t bytes) {
  if (bytes > std::numeric_limits<uint32_t>::max() || bytes > std::numeric_limits<ptrdiff_t>::max())
    return nullptr;
  return RowBuffer(static_cast<uint8_t*>(std::calloc(1, static_cast<size_t>(bytes))));
}

int64_t SampleBytes(const ZvImage& image) {
  return (image.BitsPerChannel() + 7) / 8;
}

double RoundUp(int32_t size, int32_t unit) {
  return (static_cast<double>(size) + unit - 1) / unit;
}

// Bytes that the image takes once every pixel of this size is stored.
double StorageBytes(const ZvImage& image, int32_t width, int32_t height) {
  if (!image.IsTiled())
    return static_cast<double>(vm::DefaultRowBytes(image.BitsPerPixel(), width)) * height;
  const double tiles = RoundUp(width, vm::kTileSize) * RoundUp(height, vm::kTileSize);
  return tiles * image.BitsPerPixel() * vm::kTileSize * vm::kTileSize / 8;
}

uint32_t BytesLeft(ZvStream& stream) {
  const uint32_t length = stream.GetLength();
  const uint32_t position = stream.Tell();
  return length > position ? length - position : 0;
}

}  // namespace

void ZvImage::WriteTo(ZvStream& stream) {
  stream.WriteSInt32(mWidth, "W", true);
  stream.WriteSInt32(mHeight, "H", true);
  stream.WriteSInt32(mClippingRect.fLeft, "L", true);
  stream.WriteSInt32(mClippingRect.fTop, "T", true);
  stream.WriteSInt32(mClippingRect.fRight, "R", true);
  stream.WriteSInt32(mClippingRect.fBottom, "B", true);
  stream.WriteFloat(mXRes, "XRes", true);
  stream.WriteFloat(mYRes, "YRes", true);
  stream.WriteSInt8(stream.GetCompress(), "Compress", true);

  const int64_t rowBytes = SampleBytes(*this) * mWidth;
  const RowBuffer row = NewRowBuffer(rowBytes);
  if (row == nullptr)
    return;
  vm::PlaneReader planes(*this);
  for (int32_t channel = 0; channel < ChannelCount(); ++channel) {
    for (int32_t y = 0; y < mHeight; ++y) {
      planes.Row(channel, y, row.get());
      stream.WriteBytes(row.get(), static_cast<uint32_t>(rowBytes), true);
    }
  }
}

// What a hostile or damaged stream gets: a stream that ends early is not an error, and an image of
// ordinary size comes out whole, its missing samples repeating the last row that was read. If the
// stream is too short for the image and the image is a large one, then
// - a row image stays as it was, since its block would be taken at once,
// - a tiled image gets its size and the samples that are there; the rest has no tiles, or zeros in
// them,
// - neither is made for more pixels than any image has, nor where the samples would fill its tiles
// so
//   badly that they take many times as much.
void ZvImage::ReadFrom(ZvStream& stream) {
  const int32_t width = stream.ReadSInt32("W");
  const int32_t height = stream.ReadSInt32("H");
  mClippingRect.fLeft = stream.ReadSInt32("L");
  mClippingRect.fTop = stream.ReadSInt32("T");
  mClippingRect.fRight = stream.ReadSInt32("R");
  mClippingRect.fBottom = stream.ReadSInt32("B");
  mXRes = stream.ReadFloat("XRes");
  mYRes = stream.ReadFloat("YRes");
  stream.SetCompress(stream.ReadSInt8("Compress"));

  const int32_t wantedWidth = std::max(width, 1);
  const int32_t wantedHeight = std::max(height, 1);
  const int64_t rowBytes = SampleBytes(*this) * wantedWidth;
  const double bytesLeft = BytesLeft(stream);
  const bool filled = static_cast<double>(rowBytes) * wantedHeight * ChannelCount() <= bytesLeft;
  const bool whole = filled || StorageBytes(*this, wantedWidth, wantedHeight) <= kSmallStorage;
  if (!whole &&
      (!IsTiled() || static_cast<double>(wantedWidth) * wantedHeight > kMaxUnfilledPixels))
    return;
  if (filled && StorageBytes(*this, wantedWidth, wantedHeight) > kMaxThinStorage + 4 * bytesLeft)
    return;
  if (filled && IsTiled() && std::max(wantedWidth, wantedHeight) > kMaxTiledSide)
    return;

  Resize(width, height, false, kResampleNone, kRgba64White);
  if (width < 1 || height < 1 || mWidth != width || mHeight != height)
    return;
  if (!whole &&
      StorageBytes(*this, wantedWidth, 1) > kMaxUnfilledRowStorage + bytesLeft * vm::kTileSize)
    return;
  const RowBuffer row = NewRowBuffer(rowBytes);
  if (row == nullptr)
    return;
  vm::PlaneWriter planes(*this);
  for (int32_t channel = 0; channel < ChannelCount(); ++channel) {
    for (int32_t y = 0; y < mHeight; ++y) {
      int32_t count = mWidth;
      if (!whole) {
        count =
            static_cast<int32_t>(std::min<int64_t>(BytesLeft(stream) / SampleBytes(*this), mWidth));
        if (count == 0)
          return;
      }
      stream.ReadBytes(row.get(), static_cast<uint32_t>(rowBytes));
      planes.Row(channel, y, row.get(), count);
    }
  }
}
