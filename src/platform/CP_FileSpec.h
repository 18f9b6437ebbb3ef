#pragma once

#include <cstdint>

#include "foundation/ZvString.h"

// Names a file or a directory: its last part, and the directory that holds it. It is a name
// only; whether there is such a file is not its business. Parts are parted by `\`.
class CP_FileSpec {
 public:
  CP_FileSpec() = default;
  // As `SetFromPath(path, false)`.
  explicit CP_FileSpec(const char* path);
  // REQUIRED: a copy is made by `Set`, so it drops one `\` more from the end of the path, and its
  // volume and directory number are 0.
  CP_FileSpec(const CP_FileSpec& source);
  // REQUIRED: copies the flag and both strings as they are and keeps the receiver's own volume and
  // directory number.
  CP_FileSpec& operator=(const CP_FileSpec& source);
  virtual ~CP_FileSpec();

  // Back to the state of a new, empty one.
  void Clear();

  // `path` is stored without one trailing `\`; the volume and the directory number become 0.
  void Set(const ZvString& name, const ZvString& path, bool isDirectory);

  // Takes name and path from a path that may be relative to the current directory. When it can't be
  // made absolute (it is empty or too long), that of a file keeps its name and path, and a
  // directory's its path. A file path that ends in `\` reports "filePart != NULL" in `CP_FileSpec`
  // at 640 and yields an empty name.
  void SetFromPath(const char* inPath, bool isDirectory);

  bool IsDirectory() const { return fIsDirectory; }
  void GetName(ZvString& outName) const { outName = fName; }
  void SetName(const ZvString& name) { fName = name; }

  // Two numbers that are kept and mean nothing here.
  int16_t GetVolume() const { return fVolume; }
  void SetVolume(int16_t volume) { fVolume = volume; }
  int32_t GetDirectoryNumber() const { return fDirectoryNumber; }
  void SetDirectoryNumber(int32_t number) { fDirectoryNumber = number; }

  // Path, `\` and name. Without a path: empty for a file, whatever its name; name and `\` for a
  // directory.
  void GetFullPath(ZvString& outPath) const;

  // Deletes the file from the disk. One that isn't there is no error.
  void Delete() const;

 private:
  bool fIsDirectory = false;
  int16_t fVolume = 0;
  int32_t fDirectoryNumber = 0;
  ZvString fName;
  ZvString fPath;
};
