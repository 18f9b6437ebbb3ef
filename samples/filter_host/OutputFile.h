// A file that appears under its name only when it is complete.
#pragma once

#include <cstdio>
#include <string>

namespace filter_host {

// Opens a temporary file in the directory of `path`. Unless Commit was called, the destructor
// deletes it and `path` stays as it was.
class OutputFile {
 public:
  // Throws Error when no file can be created there.
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::FILE* Stream() const { return mStream; }
  void Write(const void* bytes, std::size_t count);
  // Closes the file and puts it in the place of `path`. Throws Error, also for earlier failed
  // writes.
  void Commit();

 private:
  std::string mPath;
  std::string mTemporaryPath;
  std::FILE* mStream;
};

// Throws Error unless a file can be created where `path` lies. Leaves nothing behind.
void CheckWritable(const std::string& path);

// The whole file. Throws Error when it can't be read or holds more than `limit` bytes.
std::string ReadWholeFile(const std::string& path, std::size_t limit);

}  // namespace filter_host
