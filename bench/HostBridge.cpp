// The four ways that a picture takes through the plug-in, at 24 megapixels: out of the host's
// buffer, into the exchange file, out of the exchange file, into the host's buffer. Beside each
// stands what the machine needs to move the same bytes plainly: a memcpy of the bytes that the
// transfer must touch, or a write and a read of a file of that size.
//
// The exchange file lies in the directory for temporary files, or in $VM_BENCH_DIRECTORY.

#include <benchmark/benchmark.h>

#include <algorithm>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/ZVHostPhotoshop.h"
#include "image/ZvImage.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvFileStream.h"

namespace {

constexpr int32_t kWidth = 6000;
constexpr int32_t kHeight = 4000;
constexpr int64_t kPixels = int64_t{kWidth} * kHeight;

struct Document {
  const char* name;
  int16_t mode;
  int16_t planes;
  int32_t hostBytesPerPixel;
  int32_t ownBytesPerPixel;  // in the tiled image and in the file
};

constexpr Document kDocuments[] = {
    {"RGB", plugInModeRGBColor, 3, 3, 4},
    {"RGBA", plugInModeRGBColor, 4, 4, 4},
    {"RGB48", plugInModeRGB48, 3, 6, 8},
    {"RGBA64", plugInModeRGB48, 4, 8, 8},
};

// --- A host with one document ------------------------------------------------------------------

FilterRecord gRecord;
std::vector<uint8_t> gInput;
std::vector<uint8_t> gOutput;
int32_t gRowBytes = 0;

OSErr VM_HOST_CALL AdvanceState() {
  gRecord.inData = gInput.data();
  gRecord.outData = gOutput.data();
  gRecord.inRowBytes = gRecord.outRowBytes = gRowBytes;
  return noErr;
}

class BenchPlugIn : public ZVHostPhotoshop {
 public:
  explicit BenchPlugIn(int16_t& result) : ZVHostPhotoshop(nullptr, &gRecord, &result) {}
  using ZVHostPhotoshop::ReadReply;
};

// Opens the document: pixels without a pattern that a cache or a disk could profit from.
void Open(const Document& document) {
  gRowBytes = kWidth * document.hostBytesPerPixel;
  const size_t size = static_cast<size_t>(gRowBytes) * kHeight;
  gInput.resize(size);
  gOutput.assign(size, 1);
  uint32_t random = 12345;
  for (size_t i = 0; i < size; ++i) {
    random = random * 1664525 + 1013904223;
    // The high byte of a 16-bit channel stays below the host's limit of 32768.
    gInput[i] = static_cast<uint8_t>(
        (random >> 24) & (document.mode == plugInModeRGB48 && i % 2 != 0 ? 0x7F : 0xFF));
  }
  gRecord = {};
  gRecord.imageMode = document.mode;
  gRecord.planes = document.planes;
  gRecord.imageSize = {.v = kHeight, .h = kWidth};
  gRecord.advanceState = &AdvanceState;
}

ZvSmartPtr<ZvImage> Acquire() {
  int16_t result = 0;
  BenchPlugIn plugIn(result);
  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  uint8_t colorType = 0;
  plugIn.GetSourceImage(image, mask, colorType);
  return image;
}

// --- The exchange file -------------------------------------------------------------------------

std::filesystem::path FilePath(const char* name) {
  const char* const directory = std::getenv("VM_BENCH_DIRECTORY");
  return (directory != nullptr ? std::filesystem::path(directory)
                               : std::filesystem::temp_directory_path()) /
         name;
}

std::unique_ptr<ZvFileStream> NewStream() {
  return std::make_unique<ZvFileStream>(CP_FileSpec(FilePath("vm-bench-Img.h").string().c_str()));
}

// What a request and a reply look like: neither name nor block, no mask.
void WriteExchange(ZvImage& image) {
  const auto stream = NewStream();
  stream->DeleteOnDisk();
  stream->CreateOnDisk();
  stream->Open(ZvFileStream::kModeReadWrite);
  UseBinaryParser(*stream);
  stream->WriteSInt32(0, nullptr, true);
  stream->WriteSInt32(0, nullptr, true);
  stream->WriteSInt32(1, "ColorType", true);
  stream->WriteBool(false, "Mask?", true);
  stream->WriteObject(&image);
  stream->Close();
}

// Large pieces through the C library, whose own buffer is off.
constexpr size_t kPiece = size_t{1} << 20;

void WritePlainFile(const std::vector<uint8_t>& bytes) {
  std::filesystem::remove(FilePath("vm-bench-plain"));
  std::FILE* const file = std::fopen(FilePath("vm-bench-plain").string().c_str(), "wb");
  std::setvbuf(file, nullptr, _IONBF, 0);
  for (size_t at = 0; at < bytes.size(); at += kPiece)
    std::fwrite(bytes.data() + at, 1, std::min(kPiece, bytes.size() - at), file);
  std::fclose(file);
}

void ReadPlainFile(std::vector<uint8_t>& bytes) {
  std::FILE* const file = std::fopen(FilePath("vm-bench-plain").string().c_str(), "rb");
  std::setvbuf(file, nullptr, _IONBF, 0);
  for (size_t at = 0; at < bytes.size(); at += kPiece)
    benchmark::DoNotOptimize(
        std::fread(bytes.data() + at, 1, std::min(kPiece, bytes.size() - at), file));
  std::fclose(file);
}

void CountBytes(benchmark::State& state, int64_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes);
}

// --- The benchmarks ----------------------------------------------------------------------------

// As many bytes as a transfer reads and writes, into memory that was used before.
void MemcpyOf(benchmark::State& state, int64_t bytes) {
  std::vector<uint8_t> from(static_cast<size_t>(bytes), 3);
  std::vector<uint8_t> to(static_cast<size_t>(bytes), 4);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  CountBytes(state, bytes);
}

// The same into fresh memory each time, as an image that is made has it.
void MemcpyIntoFreshMemoryOf(benchmark::State& state, int64_t bytes) {
  std::vector<uint8_t> from(static_cast<size_t>(bytes), 3);
  for (auto _ : state) {
    const std::unique_ptr<void, void (*)(void*)> to(std::malloc(from.size()), &std::free);
    std::memcpy(to.get(), from.data(), from.size());
    benchmark::ClobberMemory();
  }
  CountBytes(state, bytes);
}

void Acquisition(benchmark::State& state, const Document& document) {
  Open(document);
  for (auto _ : state)
    benchmark::DoNotOptimize(Acquire().Get());
  CountBytes(state, kPixels * document.ownBytesPerPixel);
}

void WriteBack(benchmark::State& state, const Document& document) {
  Open(document);
  ZvSmartPtr<ZvImage> image = Acquire();
  ZvSmartPtr<ZvImage> mask;
  int16_t result = 0;
  BenchPlugIn plugIn(result);
  for (auto _ : state)
    plugIn.PutResultImage(image, mask);
  CountBytes(state, kPixels * document.hostBytesPerPixel);
}

void WriteRequest(benchmark::State& state, const Document& document) {
  Open(document);
  const ZvSmartPtr<ZvImage> image = Acquire();
  for (auto _ : state)
    WriteExchange(*image);
  CountBytes(state, kPixels * document.ownBytesPerPixel);
  std::filesystem::remove(FilePath("vm-bench-Img.h"));
}

void PlainFileWrite(benchmark::State& state, const Document& document) {
  const std::vector<uint8_t> bytes(static_cast<size_t>(kPixels * document.ownBytesPerPixel), 5);
  for (auto _ : state)
    WritePlainFile(bytes);
  CountBytes(state, static_cast<int64_t>(bytes.size()));
  std::filesystem::remove(FilePath("vm-bench-plain"));
}

void ReadReply(benchmark::State& state, const Document& document) {
  RunRegistrars();
  Open(document);
  WriteExchange(*Acquire());
  int16_t result = 0;
  BenchPlugIn plugIn(result);
  for (auto _ : state) {
    const auto stream = NewStream();
    stream->Open(ZvFileStream::kModeReadWrite);
    UseBinaryParser(*stream);
    ZvSmartPtr<ZvImage> image;
    ZvSmartPtr<ZvImage> mask;
    plugIn.ReadReply(*stream, image, mask);
    stream->Close();
    if (!image)
      state.SkipWithError("no image");
  }
  CountBytes(state, kPixels * document.ownBytesPerPixel);
  std::filesystem::remove(FilePath("vm-bench-Img.h"));
}

void PlainFileRead(benchmark::State& state, const Document& document) {
  WritePlainFile(std::vector<uint8_t>(static_cast<size_t>(kPixels * document.ownBytesPerPixel), 5));
  for (auto _ : state) {
    std::vector<uint8_t> bytes(static_cast<size_t>(kPixels * document.ownBytesPerPixel));
    ReadPlainFile(bytes);
  }
  CountBytes(state, kPixels * document.ownBytesPerPixel);
  std::filesystem::remove(FilePath("vm-bench-plain"));
}

const bool kRegistered = [] {
  for (const Document& document : kDocuments) {
    const std::string name = document.name;
    const int64_t touched = kPixels * (document.hostBytesPerPixel + document.ownBytesPerPixel) / 2;
    const auto add = [](const std::string& title, auto function) {
      benchmark::RegisterBenchmark(title.c_str(), function)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime();
    };
    add("Acquisition/" + name,
        [&document](benchmark::State& state) { Acquisition(state, document); });
    add("Acquisition/" + name + "/memcpy_into_fresh_memory",
        [touched](benchmark::State& state) { MemcpyIntoFreshMemoryOf(state, touched); });
    add("WriteBack/" + name, [&document](benchmark::State& state) { WriteBack(state, document); });
    add("WriteBack/" + name + "/memcpy",
        [touched](benchmark::State& state) { MemcpyOf(state, touched); });
    add("WriteRequest/" + name,
        [&document](benchmark::State& state) { WriteRequest(state, document); });
    add("WriteRequest/" + name + "/plain_file",
        [&document](benchmark::State& state) { PlainFileWrite(state, document); });
    add("ReadReply/" + name, [&document](benchmark::State& state) { ReadReply(state, document); });
    add("ReadReply/" + name + "/plain_file",
        [&document](benchmark::State& state) { PlainFileRead(state, document); });
  }
  return true;
}();

}  // namespace
