#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vm {

// A directory of its own for one test, removed with all it holds at the end.
class TempDirectory {
 public:
  TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;
  ~TempDirectory();

  // The path of a name within the directory, with `\` between its parts as the framework has them;
  // without a name, the directory's own path without a `\` at its end.
  std::string Path(std::string_view name = {}) const;

  // The same for the standard library's use.
  std::filesystem::path Native(std::string_view name = {}) const;

  bool Has(std::string_view name) const { return std::filesystem::exists(Native(name)); }
  void Write(std::string_view name, std::string_view bytes) const;
  // The file's bytes; fails the running test and yields nothing if it can't be read.
  std::string Read(std::string_view name) const;

 private:
  std::filesystem::path mPath;
};

// Changes the current directory until the end of the scope.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::filesystem::path& directory);
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;
  ~CurrentDirectory();

 private:
  std::filesystem::path mPrevious;
};

}  // namespace vm
