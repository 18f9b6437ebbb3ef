#pragma once

#include <cstdint>

// Files by path and handle. Paths are those of Windows: `\` stands between the parts and `/` means
// the same. The other systems' backend keeps to that: a leading `\` is the root, and the drive of a
// path like `C:\a` is ignored when the file is touched.
//
// A failing operation leaves the reason for `LastError`.
namespace os {

using FileHandle = intptr_t;
inline constexpr FileHandle kNoFile = -1;

// Access rights, to be combined.
inline constexpr uint32_t kAccessRead = 0x80000000;
inline constexpr uint32_t kAccessWrite = 0x40000000;

// What others may do with the file while it is open. Only Windows enforces this.
inline constexpr uint32_t kShareRead = 1;
inline constexpr uint32_t kShareWrite = 2;

enum class Creation : uint32_t {
  kNewOnly = 1,       // fails when there is such a file
  kAlways = 2,        // empties a file that is there
  kExistingOnly = 3,  // fails when there is none
};

// The values of a `from` below.
inline constexpr int16_t kSeekFromBegin = 0;
inline constexpr int16_t kSeekFromCurrent = 1;
inline constexpr int16_t kSeekFromEnd = 2;

inline constexpr uint32_t kBadPosition = 0xFFFFFFFF;
inline constexpr uint32_t kBadSize = 0xFFFFFFFF;

// Opens a file, not a directory, with the attributes of a normal file. kNoFile on failure.
FileHandle OpenFile(const char* path, uint32_t access, uint32_t share, Creation creation);

// False when `file` wasn't open.
bool CloseFile(FileHandle file);

// Reads up to `count` bytes at the position; fewer at the end of the file, which is no failure.
bool ReadFile(FileHandle file, void* buffer, uint32_t count, uint32_t& outRead);

// Writes all `count` bytes at the position or fails.
bool WriteFile(FileHandle file, const void* buffer, uint32_t count);

// Moves the position and yields the new one, or kBadPosition: with `LastError` 0 that is the true
// position. Positions before the begin and above 2^32 - 1 are refused.
uint32_t SeekFile(FileHandle file, int32_t offset, int16_t from);

// Makes the position the end of the file.
bool EndFileHere(FileHandle file);

// True for a file on a disk, as opposed to a device, a pipe or no file at all.
bool IsDiskFile(FileHandle file);

// The low 32 bits of the file's length, or kBadSize.
uint32_t FileSize(FileHandle file);

bool RemoveFile(const char* path);

// The system's error code of the calling thread's last failing operation; the codes are those of
// Windows, such as 6 for a handle that isn't open.
int32_t LastError();

inline constexpr uint32_t kMaxPath = 260;

// Writes the absolute form of `path`, resolved against the current directory and with single `\`
// between its parts, into `buffer`; `outFilePart` becomes the begin of the last part within it, or
// null when the path ends in `\`. False, with `outFilePart` null, when the path is empty or its
// absolute form doesn't fit. The file itself is not looked at.
bool FullPath(const char* path, char (&buffer)[kMaxPath], char*& outFilePart);

}  // namespace os
