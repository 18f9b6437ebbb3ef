#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

namespace vm {

// The seed of this run's random data: the one that --gtest_random_seed gives, otherwise a new one
// in each run.
inline uint32_t SeedOfRun() {
  static const uint32_t kSeed = [] {
    const int32_t given = GTEST_FLAG_GET(random_seed);
    return given > 0 ? static_cast<uint32_t>(given) : std::random_device()() % 99999 + 1;
  }();
  return kSeed;
}
// How to see a failure again.
inline std::string SeedHint() {
  return "random data, repeat with --gtest_random_seed=" + std::to_string(SeedOfRun());
}

// Random values for one test, which traces the seed:
//
//   RandomData random;
//   SCOPED_TRACE(random.Trace());
class RandomData {
 public:
  RandomData() : mEngine(SeedOfRun()) {}

  std::string Trace() const { return SeedHint(); }

  uint8_t Byte() { return static_cast<uint8_t>(mEngine() >> 24); }
  uint16_t Word() { return static_cast<uint16_t>(mEngine() >> 16); }
  // 0 to 1, both included.
  float Fraction() { return static_cast<float>(mEngine() >> 8) / 16777215.0F; }
  void Fill(void* out, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) {
      static_cast<uint8_t*>(out)[i] = Byte();
    }
  }

 private:
  std::mt19937 mEngine;
};

}  // namespace vm
