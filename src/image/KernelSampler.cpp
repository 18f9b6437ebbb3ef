#include "image/KernelSampler.h"

#include <algorithm>

namespace vm {
namespace {

// Columns between two needed ones that are cheaper to read along than to leave out.
constexpr int32_t kWorthReading = 8;

// From here on outwards all four taps are the edge pixel.
int32_t LimitWhole(int32_t whole, int32_t size) {
  return std::clamp(whole, -2, size);
}

}  // namespace

KernelSampler::KernelSampler(const ZvImage& from, const Scaling& scaling)
    : mReader(from), mWidth(from.Width()), mHeight(from.Height()), mScaling(scaling) {}

Stretch KernelSampler::SetColumns(const Stretch& columns) {
  for (KeptRow& row : mKept)
    row.sourceY = -1;
  PlanTaps(columns);
  return columns;
}

void KernelSampler::PlanTaps(const Stretch& columns) {
  const auto count = static_cast<size_t>(columns.count);
  mTaps.resize(count);
  mCubic.resize(mScaling.mode == kResampleCubic ? count : 0);
  mFixed.resize(mScaling.mode == kResampleCubicFixed ? count : 0);
  mBlend.resize(mScaling.mode == kResampleCubicBlend ? count : 0);
  mPieces.clear();
  int32_t place = 0;
  for (size_t i = 0; i < count; ++i) {
    const SplitPosition position =
        Split(FloatSource(mScaling.x, columns.first + static_cast<int32_t>(i)));
    if (!mCubic.empty())
      mCubic[i] = CubicWeightsAt(position.fraction);
    else if (!mFixed.empty())
      mFixed[i] = SplitFixedWeights(FixedWeightsAt(position.fraction));
    else
      mBlend[i] = BlendCoefficientsAt(position.fraction);

    const int32_t first = LimitWhole(position.whole, mWidth) - 1;
    const int32_t last = first + 3;
    if (mPieces.empty() || first < mPieces.back().first ||
        first > mPieces.back().last + kWorthReading) {
      mPieces.push_back({first, last, place});
      place += 4;
    } else if (last > mPieces.back().last) {
      place += last - mPieces.back().last;
      mPieces.back().last = last;
    }
    mTaps[i] = mPieces.back().place + first - mPieces.back().first;
  }
  mGathered = static_cast<size_t>(place);
  mBytes.resize(mGathered);
}

void KernelSampler::Gather(int32_t sourceY, PxRgbaBytes* out) {
  for (const Piece& piece : mPieces) {
    PxRgbaBytes* const row = out + piece.place;
    const int32_t left = std::clamp(piece.first, 0, mWidth - 1);
    const int32_t right = std::clamp(piece.last, 0, mWidth - 1);
    PxRgbaBytes* const inside = row + std::max(0, std::min(left, piece.last) - piece.first);
    PxRgbaBytes* const end = row + (piece.last - piece.first + 1);
    mReader.Rgba(left, sourceY, right - left + 1, inside);
    std::fill(row, inside, *inside);
    std::fill(inside + (right - left + 1), end, inside[right - left]);
  }
}

void KernelSampler::Fill(KeptRow& row, int32_t sourceY) {
  row.sourceY = sourceY;
  if (!mFixed.empty()) {
    row.bytes.resize(mGathered);
    Gather(sourceY, row.bytes.data());
    return;
  }
  row.reduced.resize(mTaps.size());
  Gather(sourceY, mBytes.data());
  if (!mCubic.empty())
    CubicAcross(mBytes.data(), mTaps.data(), mCubic.data(), row.reduced.data(), mTaps.size());
  else
    BlendAcross(mBytes.data(), mTaps.data(), mBlend.data(), row.reduced.data(), mTaps.size());
}

std::array<const KernelSampler::KeptRow*, 4> KernelSampler::RowsAround(int32_t wholeY) {
  const int32_t whole = LimitWhole(wholeY, mHeight);
  int32_t wanted[4];
  for (int32_t i = 0; i < 4; ++i)
    wanted[i] = std::clamp(whole - 1 + i, 0, mHeight - 1);
  std::array<const KeptRow*, 4> rows;
  for (size_t i = 0; i < 4; ++i) {
    const auto isWanted = [&](const KeptRow& row) {
      return std::count(wanted, wanted + 4, row.sourceY) != 0;
    };
    auto found = std::find_if(mKept.begin(), mKept.end(),
                              [&](const KeptRow& row) { return row.sourceY == wanted[i]; });
    if (found == mKept.end()) {
      found = std::find_if_not(mKept.begin(), mKept.end(), isWanted);
      Fill(*found, wanted[i]);
    }
    rows[i] = &*found;
  }
  return rows;
}

bool KernelSampler::Row(int32_t y, PxRgbaBytes* out) {
  const SplitPosition position = Split(FloatSource(mScaling.y, y));
  const auto rows = RowsAround(position.whole);
  if (!mFixed.empty()) {
    const PxRgbaBytes* const bytes[4] = {rows[0]->bytes.data(), rows[1]->bytes.data(),
                                         rows[2]->bytes.data(), rows[3]->bytes.data()};
    FixedCubicDown(bytes, FixedWeightsAt(position.fraction), mBytes.data(), mGathered);
    FixedCubicAcross(mBytes.data(), mTaps.data(), mFixed.data(), out, mTaps.size());
    return true;
  }
  const FloatPixel* const reduced[4] = {rows[0]->reduced.data(), rows[1]->reduced.data(),
                                        rows[2]->reduced.data(), rows[3]->reduced.data()};
  if (!mCubic.empty())
    CubicDown(reduced, CubicWeightsAt(position.fraction), out, mTaps.size());
  else
    BlendDown(reduced, BlendCoefficientsAt(position.fraction), out, mTaps.size());
  return true;
}

}  // namespace vm
