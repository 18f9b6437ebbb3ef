#include "filter_host/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>

#include "filter_host/Picture.h"

namespace filter_host {

namespace {

std::string TemporaryName(const std::string& path) {
  static std::random_device device;
  char suffix[24];
  std::snprintf(suffix, sizeof(suffix), ".%08x.tmp", static_cast<unsigned>(device()));
  return path + suffix;
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : mPath(path), mTemporaryPath(TemporaryName(path)), mStream(nullptr) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) {
    throw Error("cannot write '" + path + "': it is a folder");
  }
  mStream = std::fopen(mTemporaryPath.c_str(), "wb");
  if (mStream == nullptr) {
    throw Error("cannot write '" + path + "': " + std::strerror(errno));
  }
}

OutputFile::~OutputFile() {
  if (mStream != nullptr) {
    std::fclose(mStream);
  }
  if (!mTemporaryPath.empty()) {
    std::remove(mTemporaryPath.c_str());
  }
}

void OutputFile::Write(const void* bytes, std::size_t count) {
  if (std::fwrite(bytes, 1, count, mStream) != count) {
    throw Error("cannot write '" + mPath + "': " + std::strerror(errno));
  }
}

void OutputFile::Commit() {
  const bool failedBefore = std::ferror(mStream) != 0;
  std::FILE* stream = mStream;
  mStream = nullptr;
  if (std::fclose(stream) != 0 || failedBefore) {
    throw Error("cannot write '" + mPath + "': the disk may be full");
  }
  std::error_code error;
  std::filesystem::rename(mTemporaryPath, mPath, error);
  if (error) {
    throw Error("cannot write '" + mPath + "': " + error.message());
  }
  mTemporaryPath.clear();
}

void CheckWritable(const std::string& path) {
  OutputFile probe(path);
}

std::string ReadWholeFile(const std::string& path, std::size_t limit) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                       &std::fclose);
  if (file == nullptr) {
    throw Error("cannot read '" + path + "': " + std::strerror(errno));
  }
  std::string contents;
  char buffer[65536];
  std::size_t count = 0;
  while ((count = std::fread(buffer, 1, sizeof(buffer), file.get())) > 0) {
    contents.append(buffer, count);
    if (contents.size() > limit) {
      throw Error("cannot read '" + path + "': it is larger than " + std::to_string(limit) +
                  " bytes");
    }
  }
  if (std::ferror(file.get()) != 0) {
    throw Error("cannot read '" + path + "': " + std::strerror(errno));
  }
  return contents;
}

}  // namespace filter_host
