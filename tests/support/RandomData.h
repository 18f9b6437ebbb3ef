#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace vm {

// Random values for one test. The seed is new in each run unless --gtest_random_seed gives one; a test traces
// it, so that a failure says how to see it again:
//
//   RandomData random;
//   SCOPED_TRACE(random.Trace());
class RandomData {
public:
    RandomData() : mSeed(SeedOfRun()), mEngine(mSeed) {}

    std::string Trace() const {
        return "random data, repeat with --gtest_random_seed=" + std::to_string(mSeed);
    }

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
    static uint32_t SeedOfRun() {
        const int32_t given = GTEST_FLAG_GET(random_seed);
        return given > 0 ? static_cast<uint32_t>(given) : std::random_device()() % 99999 + 1;
    }

    uint32_t mSeed;
    std::mt19937 mEngine;
};

}  // namespace vm
