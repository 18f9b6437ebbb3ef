#pragma once

#include <cstdint>
#include <memory>

#include "persistence/ZvStream.h"
#include "platform/CP_File.h"

// A stream over a file on disk. Building one doesn't touch the disk. Writes go to the file at once,
// one platform call each; reads of a file opened for reading only go through a block read ahead.
//
// Failures of the file are the exceptions and reports of CP_File. A read on a closed stream opens
// it silently in the last mode and leaves it open; a write does not.
class ZvFileStream : public ZvStream {
 public:
  // Access modes, the values that the platform gives these rights.
  static constexpr uint32_t kModeRead = 0x80000000u;
  static constexpr uint32_t kModeWrite = 0x40000000u;
  static constexpr uint32_t kModeReadWrite = 0xC0000000u;

  // Bytes of the block that is read ahead.
  static constexpr uint32_t kReadAheadSize = 0xFFFF;

  explicit ZvFileStream(const CP_FileSpec& spec);
  // Closes the file when it is open.
  ~ZvFileStream() override;

  bool IsOpen() override;
  bool CanWrite() override;
  bool CanRead() override;
  bool CanSeek() override;
  void GetFullName(ZvString& outName) override;
  void GetName(ZvString& outName) override;
  uint32_t Tell() override;
  bool Seek(uint32_t position) override;
  uint32_t GetLength() override;
  const uint8_t* PeekHead(uint32_t count) override;
  uint32_t RawRead(void* buffer, uint32_t count) override;
  uint32_t RawWrite(const void* buffer, uint32_t count) override;

  // Closes first when open. Throws CP_PlfrmErrorException (-36) when the file can't be opened; the
  // stream is then closed and its mode is the one it had.
  void Open(uint32_t mode);
  // REQUIRED: the block read ahead stays in force, so that reading goes on in it after a reopening.
  void Close();
  // Creates an empty file, replacing one that is there, and leaves it closed. The stream must be
  // closed. Throws CP_PlfrmErrorException (-36) on failure.
  void CreateOnDisk();
  // Deletes the file; one that isn't there is no error.
  void DeleteOnDisk();

 private:
  // Opens, and leaves the stream closed where that fails.
  void OpenSilently(uint32_t mode);
  uint32_t ReadFromFile(void* buffer, uint32_t count);
  // Reads a fresh block at the file's position, which is `position`.
  void FillReadAhead(uint32_t position);

  CP_FileSpec mFileSpec;
  CP_File mFile;
  uint32_t mMode = kModeRead;
  bool mIsOpen = false;
  std::unique_ptr<uint8_t[]> mReadAhead;
  uint32_t mAheadStart = 0;   // File offset of the block's first byte.
  uint32_t mAheadOffset = 0;  // Next byte within the block.
  uint32_t mAheadSize = 0;    // Valid bytes; 0 when no block is in force.
};
