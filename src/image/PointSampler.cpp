#include "image/PointSampler.h"

#include <cstring>

#include "image/pixels/PxRecords.h"

namespace vm {
namespace {

// Types whose mix at fraction 0 is the pixel itself.
bool IsKeptByMix(const RecordOps& record) {
  return &record == &RecordOpsOf<PxGrayByte>() || &record == &RecordOpsOf<PxGrayABytes>() ||
         &record == &RecordOpsOf<PxAlphaByte>() || &record == &RecordOpsOf<PxGrayBit>() ||
         &record == &RecordOpsOf<PxRgbBytes>() || &record == &RecordOpsOf<PxRgbaBytes>();
}

template <size_t size>
void GatherFrom(const uint8_t* pixels, int32_t runStart, const int32_t* columns, int32_t count,
                uint8_t* out) {
  for (int32_t i = 0; i < count; ++i)
    std::memcpy(out + static_cast<size_t>(i) * size,
                pixels + static_cast<size_t>(columns[i] - runStart) * size, size);
}

// Writes the records at `columns`, which all lie in one run, side by side.
void GatherRun(const uint8_t* pixels, int32_t runStart, const int32_t* columns, int32_t count,
               size_t size, uint8_t* out) {
  switch (size) {
    case 1:
      return GatherFrom<1>(pixels, runStart, columns, count, out);
    case 2:
      return GatherFrom<2>(pixels, runStart, columns, count, out);
    case 3:
      return GatherFrom<3>(pixels, runStart, columns, count, out);
    case 4:
      return GatherFrom<4>(pixels, runStart, columns, count, out);
    case 5:
      return GatherFrom<5>(pixels, runStart, columns, count, out);
    case 6:
      return GatherFrom<6>(pixels, runStart, columns, count, out);
    case 8:
      return GatherFrom<8>(pixels, runStart, columns, count, out);
    default:
      return GatherFrom<kMaxRecordBytes>(pixels, runStart, columns, count, out);
  }
}

// How many of the leading columns lie in a run that starts with the first of them.
int32_t CountInRun(const int32_t* columns, int32_t count, int32_t length) {
  const auto inside = [&](int32_t column) {
    return uint32_t(column) - uint32_t(columns[0]) < uint32_t(length);
  };
  if (inside(columns[count - 1]) && columns[count - 1] >= columns[0])
    return count;
  if (columns[count - 1] < columns[0]) {
    int32_t n = 1;
    while (n < count && inside(columns[n]))
      ++n;
    return n;
  }
  return static_cast<int32_t>(std::partition_point(columns, columns + count, inside) - columns);
}

}  // namespace

void GatherRecords(RunReader& reader, const int32_t* columns, int32_t count, int32_t y, size_t size,
                   uint8_t* out) {
  for (int32_t done = 0; done < count;) {
    const int32_t x = columns[done];
    const int64_t span = int64_t{columns[count - 1]} - x + 1;
    const auto want = static_cast<int32_t>(std::clamp<int64_t>(span, 1, INT32_MAX));
    const ConstRun run = reader.At(x, y, want);
    const int32_t inRun = CountInRun(columns + done, count - done, run.count);
    GatherRun(run.pixels, x, columns + done, inRun, size, out + static_cast<size_t>(done) * size);
    done += inRun;
  }
}

PointSampler::PointSampler(const ZvImage& from, const Scaling& scaling)
    : mImage(from),
      mRuns(AsRunImage(&from)),
      mScaling(scaling),
      mBilinear(scaling.mode == kResampleBilinear),
      mExact(!mBilinear || (mRuns != nullptr && IsKeptByMix(mRuns->Record()))) {
  if (mRuns != nullptr)
    mReader.emplace(*mRuns);
  if (!mExact)
    mScratch.resize((size_t{3} * kMaxColumns * kMaxRecordBytes + 7) / 8);
}

Stretch PointSampler::SetColumns(const Stretch& columns) {
  mColumns.resize(static_cast<size_t>(columns.count));
  mNextColumns.resize(mColumns.size());
  for (int32_t i = 0; i < columns.count; ++i) {
    const int32_t x = columns.first + i;
    const int32_t source =
        mBilinear ? TruncToInt32(FloatSource(mScaling.x, x)) : NearestSource(mScaling.x, x);
    mColumns[static_cast<size_t>(i)] = source;
    // The bilinear read's second column. A row image has none behind its last.
    const bool last = !mImage.IsTiled() && source == mImage.Width() - 1;
    mNextColumns[static_cast<size_t>(i)] = last ? source : WrappingSum(source, 1);
  }
  return columns;
}

int32_t PointSampler::SourceRow(int32_t y) const {
  return mBilinear ? TruncToInt32(FloatSource(mScaling.y, y)) : NearestSource(mScaling.y, y);
}

const uint8_t* PointSampler::Records(int32_t y) {
  const auto count = static_cast<int32_t>(mColumns.size());
  int32_t row = SourceRow(y);
  if (mBilinear && !mImage.IsTiled())
    row = std::clamp(row, 0, mImage.Height() - 1);
  GatherRecords(*mReader, mColumns.data(), count, row, mRuns->Record().size, mRecords);
  if (!mExact)
    MixNeighbours(row);
  return mRecords;
}

// The bilinear read at fraction 0, for the types whose mixes leave a trace even then.
void PointSampler::MixNeighbours(int32_t row) {
  const RecordOps& record = mRuns->Record();
  const auto count = static_cast<int32_t>(mColumns.size());
  const bool lastRow = !mImage.IsTiled() && row == mImage.Height() - 1;
  const int32_t nextRow = lastRow ? row : WrappingSum(row, 1);
  uint8_t* const right = reinterpret_cast<uint8_t*>(mScratch.data());
  uint8_t* const below = right + static_cast<size_t>(kMaxColumns) * kMaxRecordBytes;
  uint8_t* const belowRight = below + static_cast<size_t>(kMaxColumns) * kMaxRecordBytes;
  GatherRecords(*mReader, mNextColumns.data(), count, row, record.size, right);
  GatherRecords(*mReader, mColumns.data(), count, nextRow, record.size, below);
  GatherRecords(*mReader, mNextColumns.data(), count, nextRow, record.size, belowRight);
  record.mix256(mRecords, right, mColumns.size(), 0);
  record.mix256(below, belowRight, mColumns.size(), 0);
  record.mix256(mRecords, below, mColumns.size(), 0);
}

// `perPixel(i, x, y)` with source coordinates, for images of other implementations.
template <class PerPixel>
void PointSampler::EachPixel(int32_t y, PerPixel&& perPixel) const {
  const int32_t row = SourceRow(y);
  for (size_t i = 0; i < mColumns.size(); ++i)
    perPixel(i, mColumns[i], row);
}

bool PointSampler::Row(int32_t y, PxRgbaBytes* out) {
  if (mRuns != nullptr) {
    mRuns->Record().toRgba(Records(y), out, mColumns.size());
  } else if (mBilinear) {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) {
      mImage.SampleRgba(out[i], static_cast<float>(sx), static_cast<float>(sy));
    });
  } else {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) { mImage.GetRgba(out[i], sx, sy); });
  }
  return true;
}

void PointSampler::Row(int32_t y, PxRgbBytes* out) {
  // A type that has no such view leaves what is there.
  std::fill(out, out + mColumns.size(), PxRgbBytes{});
  if (mRuns != nullptr) {
    mRuns->Record().toRgb(Records(y), out, mColumns.size());
  } else {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) {
      mImage.SampleRgb(out[i], static_cast<float>(sx), static_cast<float>(sy));
    });
  }
}

void PointSampler::Row(int32_t y, uint8_t* out) {
  if (mRuns != nullptr) {
    mRuns->Record().toByte(Records(y), out, mColumns.size());
  } else {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) {
      mImage.SampleByte(out[i], static_cast<float>(sx), static_cast<float>(sy));
    });
  }
}

void PointSampler::Row(int32_t y, PxRgba64* out) {
  if (mRuns != nullptr) {
    mRuns->Record().toRgba64(Records(y), out, mColumns.size());
  } else if (mBilinear) {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) {
      mImage.SampleRgba64(out[i], static_cast<float>(sx), static_cast<float>(sy));
    });
  } else {
    EachPixel(y, [&](size_t i, int32_t sx, int32_t sy) { mImage.GetRgba64(out[i], sx, sy); });
  }
}

}  // namespace vm
