// compose: makes a layered picture, renders it and writes it as PNG; writes the layers themselves
// as text too.

#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>

#include "compose/LayeredPicture.h"
#include "persistence/png/ZvStreamerPng.h"
#include "persistence/ZvFileStream.h"
#include "persistence/ZvTextParser.h"

namespace {

constexpr char kHelp[] = R"(compose makes a layered picture and writes it as PNG.

  compose OUT.png [LAYERS.txt]   720 by 480 pixels; with a second name the layers are written there as text
)";

constexpr int32_t kWidth = 720;
constexpr int32_t kHeight = 480;
constexpr uint32_t kReadWrite = 0xC0000000;

// Calls `write` with a new file's stream. Throws when the file can't be made.
template <class Write>
void WriteFile(const char* path, Write&& write) {
  const auto stream = ZvSmartPtr<ZvFileStream>::Adopt(new ZvFileStream(CP_FileSpec(path)));
  try {
    stream->DeleteOnDisk();
    stream->CreateOnDisk();
    stream->Open(kReadWrite);
  } catch (...) {
    throw std::runtime_error(std::string("can't write ") + path);
  }
  write(*stream);
  stream->Close();
}

}  // namespace

int main(int argc, char** argv) {
  const bool help = argc == 2 && std::strcmp(argv[1], "--help") == 0;
  if (help || argc < 2 || argc > 3) {
    std::fputs(kHelp, help ? stdout : stderr);
    return help ? 0 : 1;
  }
  try {
    const ZvSmartPtr<ZvLayer> picture = compose::MakeLayeredPicture(kWidth, kHeight);
    ZvRenderContext context;
    context.mLimit = {0, 0, kWidth - 1, kHeight - 1};
    ZvSmartPtr<ZvImage> image;
    picture->Render(image, context);
    WriteFile(argv[1], [&](ZvStream& stream) { ZvStreamerPng().Write(stream, image.Get()); });
    if (argc == 3) {
      WriteFile(argv[2], [&](ZvStream& stream) {
        UseTextParser(stream);
        stream.WriteObject(picture.Get());
      });
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "compose: error: %s\n", error.what());
    return 1;
  }
  return 0;
}
