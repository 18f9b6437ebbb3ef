#include "image/ViewRows.h"

namespace vm {
namespace {

// `viaRun(run, done)` for each run of a stretch.
template <class Runs, class ViaRun>
void Walk(Runs& runs, int32_t x, int32_t y, int32_t count, ViaRun&& viaRun) {
  for (int32_t done = 0; done < count;) {
    const auto run = runs.At(WrappingSum(x, done), y, count - done);
    viaRun(run, done);
    done += run.count;
  }
}

template <class ViaPixel>
void WalkPixels(int32_t count, ViaPixel&& viaPixel) {
  for (int32_t i = 0; i < count; ++i)
    viaPixel(i);
}

size_t Count(int32_t count) {
  return static_cast<size_t>(count);
}

}  // namespace

ViewReader::ViewReader(const ZvImage& image) : mImage(image), mRuns(AsRunImage(&image)) {
  if (mRuns != nullptr)
    mReader.emplace(*mRuns);
}

void ViewReader::Rgba(int32_t x, int32_t y, int32_t count, PxRgbaBytes* out) {
  if (mRuns != nullptr)
    Walk(*mReader, x, y, count, [&](ConstRun run, int32_t i) {
      mRuns->Record().toRgba(run.pixels, out + i, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.GetRgba(out[i], WrappingSum(x, i), y); });
}

void ViewReader::Rgb(int32_t x, int32_t y, int32_t count, PxRgbBytes* out) {
  if (mRuns != nullptr)
    Walk(*mReader, x, y, count, [&](ConstRun run, int32_t i) {
      mRuns->Record().toRgb(run.pixels, out + i, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.GetRgb(out[i], WrappingSum(x, i), y); });
}

void ViewReader::Bytes(int32_t x, int32_t y, int32_t count, uint8_t* out) {
  if (mRuns != nullptr)
    Walk(*mReader, x, y, count, [&](ConstRun run, int32_t i) {
      mRuns->Record().toByte(run.pixels, out + i, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.GetByte(out[i], WrappingSum(x, i), y); });
}

void ViewReader::Rgba64(int32_t x, int32_t y, int32_t count, PxRgba64* out) {
  if (mRuns != nullptr)
    Walk(*mReader, x, y, count, [&](ConstRun run, int32_t i) {
      mRuns->Record().toRgba64(run.pixels, out + i, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.GetRgba64(out[i], WrappingSum(x, i), y); });
}

ViewWriter::ViewWriter(ZvImage& image) : mImage(image), mRuns(AsRunImage(&image)) {
  if (mRuns != nullptr)
    mWriter.emplace(*mRuns);
}

void ViewWriter::Rgba(int32_t x, int32_t y, int32_t count, const PxRgbaBytes* in) {
  if (mRuns != nullptr)
    Walk(*mWriter, x, y, count, [&](Run run, int32_t i) {
      mRuns->Record().fromRgba(in + i, run.pixels, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.PutRgba(in[i], WrappingSum(x, i), y); });
}

void ViewWriter::Bytes(int32_t x, int32_t y, int32_t count, const uint8_t* in) {
  if (mRuns != nullptr)
    Walk(*mWriter, x, y, count, [&](Run run, int32_t i) {
      mRuns->Record().fromByte(in + i, run.pixels, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.PutByte(in[i], WrappingSum(x, i), y); });
}

void ViewWriter::Rgba64(int32_t x, int32_t y, int32_t count, const PxRgba64* in) {
  if (mRuns != nullptr)
    Walk(*mWriter, x, y, count, [&](Run run, int32_t i) {
      mRuns->Record().fromRgba64(in + i, run.pixels, Count(run.count));
    });
  else
    WalkPixels(count, [&](int32_t i) { mImage.PutRgba64(in[i], WrappingSum(x, i), y); });
}

}  // namespace vm
