#include "image/BoxSampler.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vm {
namespace {

constexpr int64_t kRowPixels = 1024;      // read at once into a box of its own
constexpr int64_t kMaxColumnSums = 8192;  // columns that are summed side by side
constexpr int64_t kFewRows = 16;          // rows that are summed at once
static_assert(kFewRows <= kNarrowRows);

// The side, in tiles, that a table of this many entries can reach from the origin: index i lies in
// shell sqrt(i), and the tile codes 2s - 1 and 2s are the tiles at distance s.
int64_t ReachInTiles(size_t entries) {
  const auto shell = static_cast<int64_t>(std::sqrt(static_cast<double>(entries)));
  return (shell + 2) / 2;
}

// A span in three parts: what lies before, inside and behind an interval.
struct CutSpan {
  int64_t first;
  int64_t insideFirst;
  int64_t insideEnd;
  int64_t end;

  int64_t Before() const { return insideFirst - first; }
  int64_t Inside() const { return insideEnd - insideFirst; }
  int64_t Behind() const { return end - insideEnd; }
};

CutSpan Cut(const SourceSpan& span, int64_t low, int64_t high) {
  const int64_t insideFirst = std::clamp(low, span.first, span.end);
  return {span.first, insideFirst, std::clamp(high + 1, insideFirst, span.end), span.end};
}

}  // namespace

BoxSampler::BoxSampler(const ZvImage& from, const Scaling& scaling, bool copying)
    : mImage(from), mReader(from), mScaling(scaling), mCopying(copying) {
  mStoredLeft = mStoredTop = std::numeric_limits<int32_t>::min();
  mStoredRight = mStoredBottom = std::numeric_limits<int32_t>::max();
  if (const auto* const tiled = dynamic_cast<const TiledImage*>(&from)) {
    const int64_t reach = (ReachInTiles(tiled->Tiles().Size()) + 1) * kTileSize;
    mStoredLeft = mStoredTop = -reach;
    mStoredRight = mStoredBottom = reach;
    tiled->Record().toRgba(tiled->DefaultPixel(), &mOutside, 1);
  } else if (const auto* const rows = dynamic_cast<const RowImage*>(&from)) {
    // A column left of the row is one of an earlier row, as far as the block goes.
    const auto size = static_cast<int64_t>(rows->Record().size);
    const int64_t stride = std::max<int64_t>(std::abs(int64_t{rows->RowBytes()}), 1);
    mStoredLeft = -int64_t{rows->BufferSize()} / size - 1;
    mStoredTop = -(from.Width() * size / stride) - 1;
    constexpr uint8_t kZero[16] = {};
    rows->Record().toRgba(kZero, &mOutside, 1);
  }

  const float step = std::fabs(static_cast<float>(scaling.x.sourceExtent) /
                               static_cast<float>(scaling.x.targetExtent));
  mPreferredColumns = static_cast<int32_t>(std::clamp(
      static_cast<float>(kMaxColumnSums) / 2 / (step + 2), 1.0F, static_cast<float>(kMaxColumns)));
}

SourceSpan BoxSampler::SpanX(int32_t target) const {
  return BoxSource(mScaling.x, mCopying, mImage.Width() - (mCopying ? 0 : 1), target);
}

SourceSpan BoxSampler::SpanY(int32_t target) const {
  return BoxSource(mScaling.y, mCopying, mImage.Height() - (mCopying ? 0 : 1), target);
}

Stretch BoxSampler::SetColumns(const Stretch& columns) {
  mSpans.clear();
  mLongest = 0;
  Stretch filled{columns.first, 0};
  int64_t start = std::numeric_limits<int64_t>::max();
  int64_t end = std::numeric_limits<int64_t>::min();
  for (int32_t i = 0; i < columns.count; ++i) {
    const SourceSpan span = SpanX(columns.first + i);
    if (span.Count() == 0) {
      // Beyond the source, or between -1 and 0, which truncates to 0 and ends before it.
      if (mSpans.empty())
        continue;
      break;
    }
    if (mSpans.empty())
      filled.first = columns.first + i;
    mSpans.push_back(span);
    mLongest = std::max(mLongest, span.Count());
    start = std::min(start, span.first);
    end = std::max(end, span.end);
  }
  filled.count = static_cast<int32_t>(mSpans.size());
  mSummed = !mSpans.empty() && end - start <= kMaxColumnSums ? static_cast<size_t>(end - start) : 0;
  mSumsStart = start;
  mRanges.clear();
  for (const SourceSpan& span : mSpans) {
    if (mSummed > 0)
      mRanges.push_back(
          {static_cast<int32_t>(span.first - start), static_cast<int32_t>(span.Count())});
  }
  return filled;
}

bool BoxSampler::Row(int32_t y, PxRgbaBytes* out) {
  const SourceSpan rows = SpanY(y);
  const int64_t height = rows.Count();
  if (height == 0)
    return false;
  if (mSummed == 0 || height > kExactBoxPixels || mLongest * height > kExactBoxPixels) {
    mRow.resize(std::max<size_t>(mRow.size(), kRowPixels));
    for (size_t i = 0; i < mSpans.size(); ++i)
      out[i] = LargeMean(mSpans[i], rows);
  } else if (height <= kFewRows && AllInside(rows)) {
    SumFewRows(rows);
    MeansOfSums(mNarrowSums.data(), mRanges.data(), mRanges.size(), height, out);
  } else {
    SumColumns(rows);
    MeansOfSums(mSums.data(), mRanges.data(), mRanges.size(), height, out);
  }
  return true;
}

bool BoxSampler::AllInside(const SourceSpan& rows) const {
  return mSumsStart >= mStoredLeft &&
         mSumsStart + static_cast<int64_t>(mSummed) - 1 <= mStoredRight &&
         rows.first >= mStoredTop && rows.end - 1 <= mStoredBottom;
}

// The sums of the box rows, when there are few and all can be read.
void BoxSampler::SumFewRows(const SourceSpan& rows) {
  const auto count = static_cast<size_t>(rows.Count());
  mNarrowSums.resize(mSummed);
  mRow.resize(std::max(mRow.size(), count * mSummed));
  const PxRgbaBytes* pointers[kFewRows];
  for (size_t i = 0; i < count; ++i) {
    PxRgbaBytes* const row = mRow.data() + i * mSummed;
    mReader.Rgba(static_cast<int32_t>(mSumsStart),
                 static_cast<int32_t>(rows.first + static_cast<int64_t>(i)),
                 static_cast<int32_t>(mSummed), row);
    pointers[i] = row;
  }
  SumPixels(pointers, count, mNarrowSums.data(), mSummed);
}

// The sums of the box rows, for each source column under this stretch. The rows are at most
// kExactBoxPixels.
void BoxSampler::SumColumns(const SourceSpan& rows) {
  mSums.assign(mSummed, ChannelSums{});
  mRow.resize(std::max(mRow.size(), mSummed));
  const CutSpan across =
      Cut({mSumsStart, mSumsStart + static_cast<int64_t>(mSummed)}, mStoredLeft, mStoredRight);
  const CutSpan down = Cut(rows, mStoredTop, mStoredBottom);
  const auto allRows = static_cast<uint32_t>(rows.Count());
  const auto inside = static_cast<size_t>(across.Inside());
  ChannelSums* const sums = mSums.data() + across.Before();
  AddPixelTimes(mOutside, allRows, mSums.data(), static_cast<size_t>(across.Before()));
  AddPixelTimes(mOutside, allRows, sums + inside, static_cast<size_t>(across.Behind()));
  if (inside == 0)
    return;
  AddPixelTimes(mOutside, static_cast<uint32_t>(down.Before() + down.Behind()), sums, inside);
  for (int64_t y = down.insideFirst; y < down.insideEnd; ++y) {
    mReader.Rgba(static_cast<int32_t>(across.insideFirst), static_cast<int32_t>(y),
                 static_cast<int32_t>(inside), mRow.data());
    AddPixels(mRow.data(), sums, inside);
  }
}

PxRgbaBytes BoxSampler::LargeMean(const SourceSpan& columns, const SourceSpan& rows) {
  const CutSpan across = Cut(columns, mStoredLeft, mStoredRight);
  const CutSpan down = Cut(rows, mStoredTop, mStoredBottom);
  FloatSums sums;
  sums.AddRepeated(mOutside, columns.Count() * down.Before());
  for (int64_t y = down.insideFirst; y < down.insideEnd; ++y) {
    sums.AddRepeated(mOutside, across.Before());
    for (int64_t x = across.insideFirst; x < across.insideEnd; x += kRowPixels) {
      const auto count = static_cast<int32_t>(std::min(kRowPixels, across.insideEnd - x));
      mReader.Rgba(static_cast<int32_t>(x), static_cast<int32_t>(y), count, mRow.data());
      sums.Add(mRow.data(), static_cast<size_t>(count));
    }
    sums.AddRepeated(mOutside, across.Behind());
  }
  sums.AddRepeated(mOutside, columns.Count() * down.Behind());
  return sums.Mean(columns.Count() * rows.Count());
}

}  // namespace vm
