// Reads a PNG from arbitrary bytes, as a row image and as a tiled one, and writes and reads again
// what came.

#include <cstdint>
#include <cstdlib>

#include "layers/ZvImageLayer.h"
#include "persistence/png/ZvStreamerPng.h"
#include "persistence/ZvMemoryStream.h"

namespace {

// Larger pictures only cost time.
constexpr int32_t kMaxSide = 512;

ZvSmartPtr<ZvImage> Read(const uint8_t* data, size_t size, bool tiled) {
  ZvMemoryStream stream(const_cast<uint8_t*>(data), static_cast<uint32_t>(size), false);
  const auto hint = ZvSmartPtr<ZvImageStreamInfo>::Adopt(new ZvImageStreamInfo);
  hint->mUseTiles = tiled;
  ZvSmartPtr<ZvStreamable> result;
  ZvStreamerPng().Read(stream, result, hint.Get());
  auto* const layer = dynamic_cast<ZvImageLayer*>(result.Get());
  return layer == nullptr ? ZvSmartPtr<ZvImage>() : layer->GetImageRef();
}

bool IsSmall(const uint8_t* data, size_t size) {
  const auto side = [&](size_t at) {
    return uint32_t{data[at]} << 24 | uint32_t{data[at + 1]} << 16 | uint32_t{data[at + 2]} << 8 |
           data[at + 3];
  };
  return size < 24 || (side(16) <= kMaxSide && side(20) <= kMaxSide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (!IsSmall(data, size))
    return 0;
  const ZvSmartPtr<ZvImage> row = Read(data, size, false);
  const ZvSmartPtr<ZvImage> tiled = Read(data, size, true);
  if ((row == nullptr) != (tiled == nullptr))
    std::abort();
  if (row == nullptr)
    return 0;
  ZvMemoryStream stream;
  ZvStreamerPng().Write(stream, tiled.Get());
  if (Read(stream.GetBuffer(), stream.Tell(), false) == nullptr)
    std::abort();
  return 0;
}
