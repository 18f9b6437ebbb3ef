#include "platform/os/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/os/posix/NativePath.h"

namespace os {
namespace {

constexpr int32_t kErrorAccessDenied = 5;
constexpr int32_t kErrorInvalidParameter = 87;
constexpr int32_t kErrorNegativeSeek = 131;

thread_local int32_t tLastError = 0;

int32_t WindowsError(int error) {
  switch (error) {
    case ENOENT:
      return 2;
    case ENOTDIR:
      return 3;
    case EMFILE:
    case ENFILE:
      return 4;
    case EACCES:
    case EPERM:
    case EISDIR:
      return kErrorAccessDenied;
    case EBADF:
      return 6;
    case EROFS:
      return 19;
    case EEXIST:
      return 80;
    case EINVAL:
      return kErrorInvalidParameter;
    case ENOSPC:
    case EDQUOT:
      return 112;
    case ENAMETOOLONG:
      return 206;
    case EFAULT:
      return 998;
    default:
      return 31;
  }
}

// Keeps the reason why a system call failed; false.
bool Failed() {
  tLastError = WindowsError(errno);
  return false;
}

bool FailedWith(int32_t error) {
  tLastError = error;
  return false;
}

int Native(FileHandle file) {
  return static_cast<int>(file);
}

int OpenFlags(uint32_t access, Creation creation) {
  const bool reads = (access & kAccessRead) != 0;
  const bool writes = (access & kAccessWrite) != 0;
  const int flags = O_CLOEXEC | (writes ? (reads ? O_RDWR : O_WRONLY) : O_RDONLY);
  switch (creation) {
    case Creation::kNewOnly:
      return flags | O_CREAT | O_EXCL;
    case Creation::kAlways:
      return flags | O_CREAT | O_TRUNC;
    case Creation::kExistingOnly:
      break;
  }
  return flags;
}

// The parts between the separators, with "." and ".." resolved; nothing stands above the root.
std::vector<std::string_view> ResolvedParts(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const std::string_view part = path.substr(0, path.find('\\'));
    path.remove_prefix(std::min(part.size() + 1, path.size()));
    if (part == "..") {
      if (!parts.empty())
        parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
  }
  return parts;
}

}  // namespace

FileHandle OpenFile(const char* path, uint32_t access, uint32_t, Creation creation) {
  const int file = open(posix::NativePath(path).c_str(), OpenFlags(access, creation), 0666);
  struct stat status;
  if (file == -1 || fstat(file, &status) != 0) {
    Failed();
    return kNoFile;
  }
  if (S_ISDIR(status.st_mode)) {
    close(file);
    FailedWith(kErrorAccessDenied);
    return kNoFile;
  }
  return file;
}

bool CloseFile(FileHandle file) {
  return close(Native(file)) == 0 || Failed();
}

bool ReadFile(FileHandle file, void* buffer, uint32_t count, uint32_t& outRead) {
  outRead = 0;
  for (;;) {
    const ssize_t got = read(Native(file), static_cast<char*>(buffer) + outRead, count - outRead);
    if (got < 0 && errno == EINTR)
      continue;
    if (got < 0)
      return Failed();
    outRead += static_cast<uint32_t>(got);
    if (got == 0 || outRead == count)
      return true;
  }
}

bool WriteFile(FileHandle file, const void* buffer, uint32_t count) {
  uint32_t done = 0;
  do {
    const ssize_t written =
        write(Native(file), static_cast<const char*>(buffer) + done, count - done);
    if (written < 0 && errno == EINTR)
      continue;
    if (written < 0)
      return Failed();
    done += static_cast<uint32_t>(written);
  } while (done < count);
  return true;
}

uint32_t SeekFile(FileHandle file, int32_t offset, int16_t from) {
  const auto fail = [](int32_t error) {
    tLastError = error;
    return kBadPosition;
  };
  int64_t base = 0;
  switch (from) {
    case kSeekFromBegin:
      break;
    case kSeekFromCurrent:
      base = lseek(Native(file), 0, SEEK_CUR);
      break;
    case kSeekFromEnd: {
      struct stat status;
      base = fstat(Native(file), &status) == 0 ? status.st_size : -1;
      break;
    }
    default:
      return fail(kErrorInvalidParameter);
  }
  if (base < 0)
    return fail(WindowsError(errno));
  const int64_t position = base + offset;
  if (position < 0)
    return fail(kErrorNegativeSeek);
  if (position > UINT32_MAX)
    return fail(kErrorInvalidParameter);
  if (lseek(Native(file), position, SEEK_SET) < 0)
    return fail(WindowsError(errno));
  tLastError = 0;
  return static_cast<uint32_t>(position);
}

bool EndFileHere(FileHandle file) {
  const off_t position = lseek(Native(file), 0, SEEK_CUR);
  return (position >= 0 && ftruncate(Native(file), position) == 0) || Failed();
}

bool IsDiskFile(FileHandle file) {
  struct stat status;
  return fstat(Native(file), &status) == 0 && S_ISREG(status.st_mode);
}

uint32_t FileSize(FileHandle file) {
  struct stat status;
  if (fstat(Native(file), &status) != 0) {
    Failed();
    return kBadSize;
  }
  return static_cast<uint32_t>(status.st_size);
}

bool RemoveFile(const char* path) {
  return unlink(posix::NativePath(path).c_str()) == 0 || Failed();
}

int32_t LastError() {
  return tLastError;
}

bool FullPath(const char* path, char (&buffer)[kMaxPath], char*& outFilePart) {
  outFilePart = nullptr;
  std::string full = posix::FrameworkPath(path);
  if (full.empty())
    return FailedWith(kErrorInvalidParameter);
  std::string drive;
  if (posix::HasDrive(full)) {
    drive = full.substr(0, 2);
    full.erase(0, 2);
  } else if (full[0] != '\\') {
    char directory[PATH_MAX];
    if (getcwd(directory, sizeof directory) == nullptr)
      return Failed();
    full = posix::FrameworkPath(directory) + '\\' + full;
  }

  std::string resolved = drive;
  for (const std::string_view part : ResolvedParts(full)) {
    resolved += '\\';
    resolved += part;
  }
  const bool named = resolved.size() > drive.size() && full.back() != '\\';
  if (!named)
    resolved += '\\';
  if (resolved.size() >= kMaxPath)
    return FailedWith(WindowsError(ENAMETOOLONG));

  std::memcpy(buffer, resolved.c_str(), resolved.size() + 1);
  if (named)
    outFilePart = buffer + resolved.rfind('\\') + 1;
  return true;
}

}  // namespace os
