#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "filter_host/OutputFile.h"
#include "filter_host/Picture.h"
#include "support/TempDirectory.h"

using namespace filter_host;

namespace {

Picture Gradient(int32_t channels, int32_t bytesPerSample) {
  Picture picture{5, 3, channels, bytesPerSample, 300.0, {}};
  picture.samples.resize(picture.RowBytes() * 3);
  for (std::size_t i = 0; i < picture.samples.size(); ++i) {
    picture.samples[i] = static_cast<uint8_t>(i * 7 + 1);
  }
  return picture;
}

std::string Bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void Store(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::ptrdiff_t FileCount(const vm::TempDirectory& folder) {
  return std::distance(std::filesystem::directory_iterator(folder.Native()), {});
}

std::string ReadError(const std::string& path) {
  try {
    ReadPng(path);
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

class PngRoundTrip : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(PngRoundTrip, GivesTheSamplesTheSizeAndTheResolutionBack) {
  const vm::TempDirectory folder;
  const Picture picture = Gradient(std::get<0>(GetParam()), std::get<1>(GetParam()));
  WritePng(folder.Native("a.png").string(), picture);
  const Picture back = ReadPng(folder.Native("a.png").string());
  EXPECT_EQ(back.width, 5);
  EXPECT_EQ(back.height, 3);
  EXPECT_EQ(back.channels, picture.channels);
  EXPECT_EQ(back.bytesPerSample, picture.bytesPerSample);
  EXPECT_EQ(back.samples, picture.samples);
  EXPECT_NEAR(back.dotsPerInch, 300.0, 0.02);
}

INSTANTIATE_TEST_SUITE_P(EveryKind, PngRoundTrip,
                         testing::Combine(testing::Values(1, 2, 3, 4), testing::Values(1, 2)));

TEST(PngFile, StoresSixteenBitSamplesMostSignificantByteFirst) {
  const vm::TempDirectory folder;
  // One gray pixel 0x1234: filter byte 0, then 12 34 in the compressed data; read back it is
  // 0x1234.
  WritePng(folder.Native("a.png").string(), Picture{1, 1, 1, 2, 72.0, {0x34, 0x12}});
  EXPECT_EQ(ReadPng(folder.Native("a.png").string()).samples, (std::vector<uint8_t>{0x34, 0x12}));
  // The header's bit depth and colour type.
  const std::string bytes = Bytes(folder.Native("a.png").string());
  EXPECT_EQ(bytes[24], 16);
  EXPECT_EQ(bytes[25], 0);
}

TEST(PngFile, AMissingFileIsNamedInTheMessage) {
  const vm::TempDirectory folder;
  EXPECT_NE(ReadError(folder.Native("none.png").string()).find("none.png': No such file"),
            std::string::npos);
}

TEST(PngFile, AnotherKindOfFileIsRefused) {
  const vm::TempDirectory folder;
  Store(folder.Native("a.png").string(), "GIF89a and more");
  EXPECT_NE(ReadError(folder.Native("a.png").string()).find("is not a PNG file"),
            std::string::npos);
  Store(folder.Native("a.png").string(), "");
  EXPECT_NE(ReadError(folder.Native("a.png").string()).find("is not a PNG file"),
            std::string::npos);
}

TEST(PngFile, APictureThatIsCutAnywhereIsDamaged) {
  const vm::TempDirectory folder;
  WritePng(folder.Native("whole.png").string(), Gradient(3, 1));
  const std::string whole = Bytes(folder.Native("whole.png").string());
  for (std::size_t length = 8; length < whole.size(); ++length) {
    Store(folder.Native("cut.png").string(), whole.substr(0, length));
    EXPECT_NE(ReadError(folder.Native("cut.png").string()).find("is damaged"), std::string::npos)
        << length;
  }
}

TEST(PngFile, AWrongByteInTheDataIsDamage) {
  const vm::TempDirectory folder;
  WritePng(folder.Native("a.png").string(), Gradient(3, 1));
  std::string bytes = Bytes(folder.Native("a.png").string());
  bytes[bytes.size() - 20] = static_cast<char>(bytes[bytes.size() - 20] ^ 0x40);
  Store(folder.Native("a.png").string(), bytes);
  EXPECT_NE(ReadError(folder.Native("a.png").string()).find("is damaged"), std::string::npos);
}

TEST(PngFile, AnUnwritableTargetLeavesNothing) {
  const vm::TempDirectory folder;
  EXPECT_THROW(WritePng(folder.Native("no such folder/a.png").string(), Gradient(3, 1)), Error);
  std::filesystem::create_directory(folder.Native("taken.png").string());
  EXPECT_THROW(WritePng(folder.Native("taken.png").string(), Gradient(3, 1)), Error);
  EXPECT_EQ(FileCount(folder), 1);
}

TEST(OutputFile, WithoutCommitTheOldFileStaysAndNoOtherIsLeft) {
  const vm::TempDirectory folder;
  Store(folder.Native("a.txt").string(), "old");
  {
    OutputFile file(folder.Native("a.txt").string());
    file.Write("new", 3);
  }
  EXPECT_EQ(Bytes(folder.Native("a.txt").string()), "old");
  EXPECT_EQ(FileCount(folder), 1);
}

TEST(OutputFile, CommitReplacesTheOldFile) {
  const vm::TempDirectory folder;
  Store(folder.Native("a.txt").string(), "old");
  OutputFile file(folder.Native("a.txt").string());
  file.Write("new", 3);
  EXPECT_EQ(Bytes(folder.Native("a.txt").string()), "old");
  file.Commit();
  EXPECT_EQ(Bytes(folder.Native("a.txt").string()), "new");
  EXPECT_EQ(FileCount(folder), 1);
}

TEST(OutputFile, CheckingLeavesNothingBehind) {
  const vm::TempDirectory folder;
  CheckWritable(folder.Native("a.txt").string());
  EXPECT_EQ(FileCount(folder), 0);
  EXPECT_THROW(CheckWritable(folder.Native("no such folder/a.txt").string()), Error);
}

TEST(WholeFile, LargerThanTheLimitIsRefused) {
  const vm::TempDirectory folder;
  Store(folder.Native("a.txt").string(), "12345");
  EXPECT_EQ(ReadWholeFile(folder.Native("a.txt").string(), 5), "12345");
  EXPECT_THROW(ReadWholeFile(folder.Native("a.txt").string(), 4), Error);
  EXPECT_THROW(ReadWholeFile(folder.Native("none.txt").string(), 4), Error);
}
