#pragma once

#include <cstdint>
#include <optional>

#include "image/RunImage.h"

namespace vm {

// Collects rows of one channel into packed samples, (bits per channel + 7) / 8 bytes each.
class PlaneReader {
 public:
  explicit PlaneReader(const ZvImage& image);

  void Row(int32_t channel, int32_t y, uint8_t* samples);

 private:
  const ZvImage& mImage;
  const RunImage* mRuns;
  std::optional<RunReader> mReader;
};

// Puts packed samples into rows of one channel, from the left.
class PlaneWriter {
 public:
  explicit PlaneWriter(ZvImage& image);

  void Row(int32_t channel, int32_t y, const uint8_t* samples, int32_t count);

 private:
  ZvImage& mImage;
  RunImage* mRuns;
  std::optional<RunWriter> mWriter;
};

}  // namespace vm
