#include "support/TempDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace vm {
namespace {

std::filesystem::path MakeUniqueDirectory() {
  std::random_device entropy;
  for (;;) {
    const std::filesystem::path candidate =
        std::filesystem::temp_directory_path() / ("vm_test_" + std::to_string(entropy()));
    if (std::filesystem::create_directory(candidate))
      return candidate;
  }
}

}  // namespace

TempDirectory::TempDirectory() : mPath(MakeUniqueDirectory()) {}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

std::string TempDirectory::Path(std::string_view name) const {
  std::string path = Native(name).string();
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

std::filesystem::path TempDirectory::Native(std::string_view name) const {
  return name.empty() ? mPath : mPath / name;
}

void TempDirectory::Write(std::string_view name, std::string_view bytes) const {
  std::ofstream file(Native(name), std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  ASSERT_TRUE(file.flush()) << "can't write " << Native(name);
}

std::string TempDirectory::Read(std::string_view name) const {
  std::ifstream file(Native(name), std::ios::binary);
  if (!file) {
    ADD_FAILURE() << "can't read " << Native(name);
    return {};
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

CurrentDirectory::CurrentDirectory(const std::filesystem::path& directory)
    : mPrevious(std::filesystem::current_path()) {
  std::filesystem::current_path(directory);
}

CurrentDirectory::~CurrentDirectory() {
  std::error_code ignored;
  std::filesystem::current_path(mPrevious, ignored);
}

}  // namespace vm
