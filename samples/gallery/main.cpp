// gallery: shows on one sheet what the image operations do.

#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>

#include "gallery/Gallery.h"
#include "persistence/png/ZvStreamerPng.h"
#include "persistence/ZvFileStream.h"

namespace {

constexpr char kHelp[] =
    R"(gallery writes a sheet of all resampling modes and drawing operations as PNG.

  gallery OUT.png
)";

constexpr uint32_t kReadWrite = 0xC0000000;

void WritePng(const char* path, ZvImage* image) {
  const auto stream = ZvSmartPtr<ZvFileStream>::Adopt(new ZvFileStream(CP_FileSpec(path)));
  try {
    stream->DeleteOnDisk();
    stream->CreateOnDisk();
    stream->Open(kReadWrite);
  } catch (...) {
    throw std::runtime_error(std::string("can't write ") + path);
  }
  ZvStreamerPng().Write(*stream, image);
  stream->Close();
}

}  // namespace

int main(int argc, char** argv) {
  const bool help = argc == 2 && std::strcmp(argv[1], "--help") == 0;
  if (help || argc != 2) {
    std::fputs(kHelp, help ? stdout : stderr);
    return help ? 0 : 1;
  }
  try {
    WritePng(argv[1], gallery::MakeGallery().Get());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "gallery: error: %s\n", error.what());
    return 1;
  }
  return 0;
}
