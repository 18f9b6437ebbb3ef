// pictures: makes a picture to try a filter on, and joins one from before and after.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "filter_host/Picture.h"
#include "pictures/Scene.h"

namespace {

constexpr char kHelp[] = R"(pictures makes the pictures of a filter's run.

  pictures scene OUT.png [WIDTH HEIGHT]     a photograph-like landscape; 1200 by 800, the same every time
  pictures join BEFORE.png AFTER.png OUT.png  left half from before, right half from after
)";

int32_t Side(const char* text) {
  const long value = std::strtol(text, nullptr, 10);
  if (value < 16 || value > 8192) {
    throw filter_host::Error(std::string("a side has 16 to 8192 pixels, not '") + text + "'");
  }
  return static_cast<int32_t>(value);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  try {
    if (command == "scene" && (argc == 3 || argc == 5)) {
      const int32_t width = argc == 5 ? Side(argv[3]) : 1200;
      const int32_t height = argc == 5 ? Side(argv[4]) : 800;
      filter_host::WritePng(argv[2], pictures::MakeScene(width, height));
      return 0;
    }
    if (command == "join" && argc == 5) {
      filter_host::WritePng(argv[4], pictures::JoinHalves(filter_host::ReadPng(argv[2]),
                                                          filter_host::ReadPng(argv[3])));
      return 0;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "pictures: error: %s\n", error.what());
    return 1;
  }
  std::fputs(kHelp, command == "--help" ? stdout : stderr);
  return command == "--help" ? 0 : 1;
}
