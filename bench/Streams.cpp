// Typed values and rows of bytes through the streams, beside a memcpy of the same bytes.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "persistence/ZvFileStream.h"
#include "persistence/ZvMemoryStream.h"
#include "persistence/ZvTextParser.h"

namespace {

constexpr uint32_t kRowBytes = 6000 * 3;
constexpr uint32_t kRows = 4000;
constexpr uint32_t kValues = 1 << 20;

// A file of this many bytes in the directory for temporary files, which goes with the object.
class ScratchFile {
 public:
  explicit ScratchFile(std::size_t bytes) {
    std::ofstream file(mPath, std::ios::binary);
    const std::vector<char> content(bytes, 'x');
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() { std::filesystem::remove(mPath); }
  CP_FileSpec Spec() const {
    std::string path = mPath.string();
    for (char& c : path) {
      c = c == '/' ? '\\' : c;
    }
    return CP_FileSpec(path.c_str());
  }

 private:
  std::filesystem::path mPath = std::filesystem::temp_directory_path() / "vm_bench_streams.bin";
};

void CountBytes(benchmark::State& state, uint64_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(static_cast<uint64_t>(state.iterations()) * bytes));
}

void Memcpy(benchmark::State& state) {
  const std::vector<uint8_t> from(std::size_t{kRowBytes} * kRows, 1);
  std::vector<uint8_t> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  CountBytes(state, from.size());
}
BENCHMARK(Memcpy)->Unit(benchmark::kMillisecond);

// Rows through WriteBytes into a memory stream that has the room.
void WriteRowsToMemory(benchmark::State& state) {
  const std::vector<uint8_t> row(kRowBytes, 1);
  std::vector<uint8_t> to(std::size_t{kRowBytes} * kRows);
  ZvMemoryStream stream(to.data(), static_cast<uint32_t>(to.size()), false);
  for (auto _ : state) {
    stream.Seek(0);
    for (uint32_t y = 0; y < kRows; ++y) {
      stream.WriteBytes(row.data(), kRowBytes, true);
    }
    benchmark::ClobberMemory();
  }
  CountBytes(state, to.size());
}
BENCHMARK(WriteRowsToMemory)->Unit(benchmark::kMillisecond);

void ReadRowsFromMemory(benchmark::State& state) {
  std::vector<uint8_t> from(std::size_t{kRowBytes} * kRows, 1);
  std::vector<uint8_t> row(kRowBytes);
  ZvMemoryStream stream(from.data(), static_cast<uint32_t>(from.size()), false);
  for (auto _ : state) {
    stream.Seek(0);
    for (uint32_t y = 0; y < kRows; ++y) {
      stream.ReadBytes(row.data(), kRowBytes);
      benchmark::DoNotOptimize(row.data());
    }
  }
  CountBytes(state, from.size());
}
BENCHMARK(ReadRowsFromMemory)->Unit(benchmark::kMillisecond);

template <uint32_t kMode>
void ReadRowsFromFile(benchmark::State& state) {
  const ScratchFile file(std::size_t{kRowBytes} * kRows);
  std::vector<uint8_t> row(kRowBytes);
  ZvFileStream stream(file.Spec());
  stream.Open(kMode);
  for (auto _ : state) {
    stream.Seek(0);
    for (uint32_t y = 0; y < kRows; ++y) {
      stream.ReadBytes(row.data(), kRowBytes);
      benchmark::DoNotOptimize(row.data());
    }
  }
  CountBytes(state, uint64_t{kRowBytes} * kRows);
}
BENCHMARK_TEMPLATE(ReadRowsFromFile, ZvFileStream::kModeRead)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadRowsFromFile, ZvFileStream::kModeReadWrite)->Unit(benchmark::kMillisecond);

// Typed values one by one: the block read ahead against a platform call each.
template <uint32_t kMode>
void ReadValuesFromFile(benchmark::State& state) {
  const ScratchFile file(kValues * 4);
  ZvFileStream stream(file.Spec());
  stream.Open(kMode);
  for (auto _ : state) {
    stream.Seek(0);
    uint32_t sum = 0;
    for (uint32_t i = 0; i < kValues; ++i) {
      sum += stream.ReadUInt32();
    }
    benchmark::DoNotOptimize(sum);
  }
  CountBytes(state, kValues * 4);
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK_TEMPLATE(ReadValuesFromFile, ZvFileStream::kModeRead)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReadValuesFromFile, ZvFileStream::kModeReadWrite)->Unit(benchmark::kMillisecond);

void ReadValuesFromMemory(benchmark::State& state) {
  std::vector<uint8_t> from(kValues * 4, 1);
  ZvMemoryStream stream(from.data(), static_cast<uint32_t>(from.size()), false);
  for (auto _ : state) {
    stream.Seek(0);
    uint32_t sum = 0;
    for (uint32_t i = 0; i < kValues; ++i) {
      sum += stream.ReadUInt32();
    }
    benchmark::DoNotOptimize(sum);
  }
  CountBytes(state, kValues * 4);
  state.SetItemsProcessed(state.iterations() * kValues);
}
BENCHMARK(ReadValuesFromMemory)->Unit(benchmark::kMillisecond);

// Values as text.
void ReadValuesFromText(benchmark::State& state) {
  constexpr uint32_t kTextValues = kValues / 16;
  std::string text;
  for (uint32_t i = 0; i < kTextValues; ++i) {
    text += std::to_string(i) + ' ';
  }
  ZvMemoryStream stream(text.data(), static_cast<uint32_t>(text.size()), false);
  UseTextParser(stream);
  for (auto _ : state) {
    stream.Seek(0);
    uint32_t sum = 0;
    for (uint32_t i = 0; i < kTextValues; ++i) {
      sum += stream.ReadUInt32();
    }
    benchmark::DoNotOptimize(sum);
  }
  CountBytes(state, text.size());
  state.SetItemsProcessed(state.iterations() * kTextValues);
}
BENCHMARK(ReadValuesFromText)->Unit(benchmark::kMillisecond);

}  // namespace
