#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "image/pixels/PxRecords.h"
#include "support/RandomData.h"

// Rows of records as test input. A row with every byte value in every place comes first; random
// rows differ from run to run, and a failure says how to repeat it.
namespace vm::test {

using AllRecords = ::testing::Types<PxGrayByte, PxGrayABytes, PxAlphaByte, PxGrayBit, PxRgbBytes,
                                    PxRgbaBytes, PxRgb48, PxRgba64, PxDepthFloat, PxXyFixed,
                                    PxXyFloats, PxCmykBytes, PxCmykaBytes, PxCmyk64, PxCmyka80>;
using CompositingRecords =
    ::testing::Types<PxRgbaBytes, PxGrayABytes, PxRgba64, PxCmykaBytes, PxCmyka80>;

// Names typed tests after their records.
struct RecordNames {
  template <class P>
  static std::string GetName(int) {
    return P::kName;
  }
};

template <class P>
std::string HexOf(const P& pixel) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  uint8_t bytes[sizeof(P)];
  std::memcpy(bytes, &pixel, sizeof(P));
  std::string text;
  for (const uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
    text += ' ';
  }
  return text;
}

// Compares the stored bytes and names the first pixel that differs.
template <class P>
::testing::AssertionResult SameRows(const std::vector<P>& row, const std::vector<P>& expected) {
  if (row.size() != expected.size())
    return ::testing::AssertionFailure() << row.size() << " pixels, expected " << expected.size();
  for (size_t i = 0; i < row.size(); ++i) {
    if (std::memcmp(&row[i], &expected[i], sizeof(P)) != 0)
      return ::testing::AssertionFailure()
             << "pixel " << i << " of " << row.size() << " is " << HexOf(row[i]) << "expected "
             << HexOf(expected[i]) << " (" << SeedHint() << ")";
  }
  return ::testing::AssertionSuccess();
}

template <class P>
P FromBytes(const uint8_t* bytes) {
  P pixel;
  std::memcpy(&pixel, bytes, sizeof(P));
  return pixel;
}

// Pixel i has the bytes i, i + 1, ...: each of a record's bytes takes all its values.
template <class P>
std::vector<P> RowOfAllBytes() {
  std::vector<P> row;
  for (unsigned i = 0; i < 256; ++i) {
    uint8_t bytes[16];
    for (unsigned k = 0; k < sizeof bytes; ++k)
      bytes[k] = static_cast<uint8_t>(i + k);
    row.push_back(FromBytes<P>(bytes));
  }
  return row;
}

// Random bits, with plenty of all-zero and all-one channels: alphas of 0 and full are cases of
// their own. Floats are numbers around the range of a byte. `stream` tells the rows of one run
// apart.
template <class P>
std::vector<P> RandomRow(size_t count, uint32_t stream) {
  std::mt19937 random(SeedOfRun() * 1000 + stream);
  std::vector<P> row;
  while (row.size() < count) {
    uint8_t bytes[16];
    if constexpr (P::kInfo.bitsPerChannel == 32) {
      for (unsigned k = 0; k < sizeof bytes; k += 4) {
        const float value = static_cast<float>(random() % 70000) / 64.0F - 300.0F;
        std::memcpy(bytes + k, &value, 4);
      }
    } else {
      for (unsigned k = 0; k < sizeof bytes; k += 2) {
        const uint32_t choice = random() % 8;
        const auto word = static_cast<uint16_t>(choice == 0 ? 0 : choice == 1 ? 0xFFFF : random());
        std::memcpy(bytes + k, &word, 2);
      }
    }
    row.push_back(FromBytes<P>(bytes));
  }
  return row;
}

// The lengths at which loops over blocks end in different places.
inline constexpr size_t kLengths[] = {0, 1, 2, 3, 4, 5, 7, 8, 15, 16, 17, 31, 33, 64, 100, 1000};

// Every row to try: all byte values, and random rows of awkward lengths.
template <class P>
std::vector<std::vector<P>> Rows() {
  std::vector<std::vector<P>> rows{RowOfAllBytes<P>()};
  uint32_t stream = 1;
  for (const size_t length : kLengths)
    rows.push_back(RandomRow<P>(length, stream++));
  rows.push_back(RandomRow<P>(5000, stream));
  return rows;
}

}  // namespace vm::test
