// Runs a fuzz target over files instead of generated input: every argument is a file or a folder of
// files.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool Replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    std::fprintf(stderr, "cannot read %s\n", file.string().c_str());
    return false;
  }
  const std::vector<char> text{std::istreambuf_iterator<char>(stream),
                               std::istreambuf_iterator<char>()};
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path argument(argv[i]);
    if (std::filesystem::is_directory(argument)) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(argument)) {
        if (entry.is_regular_file())
          files.push_back(entry.path());
      }
    } else {
      files.push_back(argument);
    }
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) {
    if (!Replay(file))
      return 1;
  }
  std::printf("replayed %zu inputs\n", files.size());
  return 0;
}
