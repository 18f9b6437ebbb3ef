// Rows and whole images in packed buffers.

#include <cstdlib>
#include <cstring>
#include <limits>

#include "image/ImageReports.h"
#include "image/RunImage.h"

namespace vm {
namespace {

// Copies packed pixels to and from runs. `index` counts pixels from the start of the packed row.
void FromPacked(const RecordOps& record, const uint8_t* row, int32_t index, Run run) {
  if (record.packed)
    UnpackBits(row, index, run.pixels, run.count);
  else
    std::memcpy(run.pixels, row + static_cast<size_t>(index) * record.size,
                static_cast<size_t>(run.count) * record.size);
}

void ToPacked(const RecordOps& record, ConstRun run, uint8_t* row, int32_t index) {
  if (record.packed)
    PackBits(run.pixels, row, index, run.count);
  else
    std::memcpy(row + static_cast<size_t>(index) * record.size, run.pixels,
                static_cast<size_t>(run.count) * record.size);
}

void PutPixels(RunImage& image, RunWriter& writer, const uint8_t* row, int32_t x, int32_t y,
               int32_t count) {
  for (int32_t done = 0; done < count;) {
    const Run run = writer.At(WrappingSum(x, done), y, count - done);
    FromPacked(image.Record(), row, done, run);
    done += run.count;
  }
  writer.Store();
}

void GetPixels(const RunImage& image, RunReader& reader, uint8_t* row, int32_t x, int32_t y,
               int32_t count) {
  for (int32_t done = 0; done < count;) {
    const ConstRun run = reader.At(WrappingSum(x, done), y, count - done);
    ToPacked(image.Record(), run, row, done);
    done += run.count;
  }
}

// Null for sizes that can't be had.
void* NewBlock(int64_t bytes) {
  if (bytes < 0 || bytes > std::numeric_limits<ptrdiff_t>::max())
    return nullptr;
  return std::calloc(1, static_cast<size_t>(std::max<int64_t>(bytes, 1)));
}

}  // namespace

void* RunImage::NewRow(int32_t width) const {
  void* const newRow = NewBlock(width < 0 ? -1 : DefaultRowBytes(mRecord->bitsPerPixel, width));
  CP_Check(newRow != nullptr, ReportName(), kLineNewRow, "newRow != nil");
  return newRow;
}

void RunImage::PutRow(const void* row, int32_t x, int32_t y, int32_t count) {
  if (IsTiled())
    CP_Check(y != mHeight, kReportTiled, kLinePutRow, "y != mHeight");
  if (row == nullptr)
    return;
  // A row image checks the row for each pixel.
  for (int32_t i = 0; i < count && !CheckRow(y); ++i) {
  }
  RunWriter writer(*this);
  PutPixels(*this, writer, static_cast<const uint8_t*>(row), x, y, count);
}

void RunImage::GetRow(void* row, int32_t x, int32_t y, int32_t count) const {
  if (IsTiled())
    CP_Check(y != mHeight, kReportTiled, kLineGetRow, "y != mHeight");
  if (row == nullptr)
    return;
  for (int32_t i = 0; i < count && !CheckRow(y); ++i) {
  }
  RunReader reader(*this);
  GetPixels(*this, reader, static_cast<uint8_t*>(row), x, y, count);
}

void* RunImage::NewInterleavedCopy() const {
  const int64_t rowBytes = DefaultRowBytes(mRecord->bitsPerPixel, mWidth);
  if (rowBytes > std::numeric_limits<int64_t>::max() / mHeight)
    return nullptr;
  void* const copy = NewBlock(rowBytes * mHeight);
  ExportBuffer(copy, 0);
  return copy;
}

void RunImage::ImportBuffer(const void* buffer, int32_t rowBytes) {
  if (buffer == nullptr)
    return;
  const int64_t stride = rowBytes != 0 ? rowBytes : DefaultRowBytes(mRecord->bitsPerPixel, mWidth);
  const auto* const rows = static_cast<const uint8_t*>(buffer);
  RunWriter writer(*this);
  for (int32_t y = 0; y < mHeight; ++y)
    PutPixels(*this, writer, rows + static_cast<ptrdiff_t>(y * stride), 0, y, mWidth);
}

void RunImage::ExportBuffer(void* buffer, int32_t rowBytes) const {
  if (buffer == nullptr)
    return;
  const int64_t stride = rowBytes != 0 ? rowBytes : DefaultRowBytes(mRecord->bitsPerPixel, mWidth);
  auto* const rows = static_cast<uint8_t*>(buffer);
  RunReader reader(*this);
  for (int32_t y = 0; y < mHeight; ++y)
    GetPixels(*this, reader, rows + static_cast<ptrdiff_t>(y * stride), 0, y, mWidth);
}

}  // namespace vm
