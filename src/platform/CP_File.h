#pragma once

#include <cstdint>

#include "platform/CP_FileSpec.h"
#include "platform/os/Files.h"

inline constexpr os::FileHandle kCP_BAD_FILE_REF_NUM = -1;

// From where `SetPosition` counts.
inline constexpr int16_t CP_FILE_SEEK__FROM_BEGIN = 0;
inline constexpr int16_t CP_FILE_SEEK__FROM_CURRENT = 1;
inline constexpr int16_t CP_FILE_SEEK__FROM_END = 2;

static_assert(CP_FILE_SEEK__FROM_BEGIN == os::kSeekFromBegin);
static_assert(CP_FILE_SEEK__FROM_CURRENT == os::kSeekFromCurrent);
static_assert(CP_FILE_SEEK__FROM_END == os::kSeekFromEnd);

// A handle on the file that a CP_FileSpec names, open or closed. Access rights are os::kAccessRead
// and os::kAccessWrite.
//
// A failing platform call throws CP_PlfrmErrorException with the code -36, save for the position
// calls, which pass the platform's own code. Misuse is reported in `CP_File` and goes on to the
// platform, where it fails. An object that is destroyed leaves an open file open.
class CP_File {
 public:
  CP_File() = default;
  explicit CP_File(const CP_FileSpec& spec);

  // `Create` under another name, which the object keeps.
  virtual void CreateAs(const CP_FileSpec& spec, uint32_t access, uint32_t creator, uint32_t type,
                        bool replace);
  // Makes an empty file and leaves it closed. Without `replace` fails when there is such a file.
  // The creator and type codes have no meaning on this platform.
  virtual void Create(uint32_t access, uint32_t creator, uint32_t type, bool replace);
  // Deletes the file from the disk; failure is no error.
  virtual void Delete();
  // Opens a file that exists; others may read it meanwhile. A handle that is open is forgotten, not
  // closed.
  virtual void Open(uint32_t access);
  virtual void Close();
  // Yields the new position.
  virtual uint32_t SetPosition(int16_t inMode, int32_t inOffset);
  virtual uint32_t GetPosition();
  // Reads up to `*inBytes` bytes and stores how many came. Fewer than asked is no error.
  virtual void Read(void* inBuffer, uint32_t* inBytes);
  // Writes `*inBytes` bytes and leaves that number alone.
  virtual void Write(const void* inBuffer, const uint32_t* inBytes);
  // Writes, then makes the position reached the end of the file.
  virtual void WriteTruncate(const void* inBuffer, const uint32_t* inBytes);

  uint32_t GetLength();
  bool IsOpen() const { return fFileRef != kCP_BAD_FILE_REF_NUM; }
  const CP_FileSpec& GetSpec() const { return fFileSpec; }

 private:
  CP_FileSpec fFileSpec;
  os::FileHandle fFileRef = kCP_BAD_FILE_REF_NUM;
};
