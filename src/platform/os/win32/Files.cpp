#include "platform/os/Files.h"

#include <windows.h>

namespace os {
namespace {

HANDLE Native(FileHandle file) {
  return reinterpret_cast<HANDLE>(file);
}

}  // namespace

static_assert(kAccessRead == GENERIC_READ && kAccessWrite == GENERIC_WRITE);
static_assert(kShareRead == FILE_SHARE_READ && kShareWrite == FILE_SHARE_WRITE);
static_assert(static_cast<DWORD>(Creation::kNewOnly) == CREATE_NEW);
static_assert(static_cast<DWORD>(Creation::kAlways) == CREATE_ALWAYS);
static_assert(static_cast<DWORD>(Creation::kExistingOnly) == OPEN_EXISTING);
static_assert(kSeekFromBegin == FILE_BEGIN && kSeekFromCurrent == FILE_CURRENT &&
              kSeekFromEnd == FILE_END);
static_assert(kBadPosition == INVALID_SET_FILE_POINTER && kBadSize == INVALID_FILE_SIZE);
static_assert(kMaxPath == MAX_PATH);

FileHandle OpenFile(const char* path, uint32_t access, uint32_t share, Creation creation) {
  return reinterpret_cast<FileHandle>(CreateFileA(
      path, access, share, nullptr, static_cast<DWORD>(creation), FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool CloseFile(FileHandle file) {
  // The system takes -1 for the running process and calls closing it a success.
  return CloseHandle(Native(file)) != FALSE && file != kNoFile;
}

bool ReadFile(FileHandle file, void* buffer, uint32_t count, uint32_t& outRead) {
  DWORD read = 0;
  const BOOL done = ::ReadFile(Native(file), buffer, count, &read, nullptr);
  outRead = read;
  return done != FALSE;
}

bool WriteFile(FileHandle file, const void* buffer, uint32_t count) {
  DWORD written = 0;
  return ::WriteFile(Native(file), buffer, count, &written, nullptr) != FALSE;
}

uint32_t SeekFile(FileHandle file, int32_t offset, int16_t from) {
  return SetFilePointer(Native(file), offset, nullptr, static_cast<DWORD>(from));
}

bool EndFileHere(FileHandle file) {
  return SetEndOfFile(Native(file)) != FALSE;
}

bool IsDiskFile(FileHandle file) {
  return GetFileType(Native(file)) == FILE_TYPE_DISK;
}

uint32_t FileSize(FileHandle file) {
  return GetFileSize(Native(file), nullptr);
}

bool RemoveFile(const char* path) {
  return DeleteFileA(path) != FALSE;
}

int32_t LastError() {
  return static_cast<int32_t>(GetLastError());
}

bool FullPath(const char* path, char (&buffer)[kMaxPath], char*& outFilePart) {
  outFilePart = nullptr;
  const DWORD length = GetFullPathNameA(path, kMaxPath, buffer, &outFilePart);
  if (length != 0 && length < kMaxPath)
    return true;
  outFilePart = nullptr;
  return false;
}

}  // namespace os
