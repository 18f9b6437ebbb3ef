#include "image/ImagePlanes.h"

namespace vm {
namespace {

int64_t SampleBytes(const ZvImage& image) {
  return (image.BitsPerChannel() + 7) / 8;
}

}  // namespace

PlaneReader::PlaneReader(const ZvImage& image) : mImage(image), mRuns(AsRunImage(&image)) {
  if (mRuns != nullptr)
    mReader.emplace(*mRuns);
}

void PlaneReader::Row(int32_t channel, int32_t y, uint8_t* samples) {
  const int64_t sampleBytes = SampleBytes(mImage);
  const int32_t width = mImage.Width();
  if (mRuns == nullptr) {
    for (int32_t x = 0; x < width; ++x)
      mImage.GetChannel(samples + x * sampleBytes, x, y, channel);
    return;
  }
  for (int32_t x = 0; x < width;) {
    const ConstRun run = mReader->At(x, y, width - x);
    mRuns->Record().gather(run.pixels, samples + x * sampleBytes, static_cast<size_t>(run.count),
                           channel);
    x += run.count;
  }
}

PlaneWriter::PlaneWriter(ZvImage& image) : mImage(image), mRuns(AsRunImage(&image)) {
  if (mRuns != nullptr)
    mWriter.emplace(*mRuns);
}

void PlaneWriter::Row(int32_t channel, int32_t y, const uint8_t* samples, int32_t count) {
  const int64_t sampleBytes = SampleBytes(mImage);
  if (mRuns == nullptr) {
    for (int32_t x = 0; x < count; ++x)
      mImage.PutChannel(samples + x * sampleBytes, x, y, channel);
    return;
  }
  for (int32_t x = 0; x < count;) {
    const Run run = mWriter->At(x, y, count - x);
    mRuns->Record().scatter(samples + x * sampleBytes, run.pixels, static_cast<size_t>(run.count),
                            channel);
    x += run.count;
  }
  mWriter->Store();
}

}  // namespace vm
