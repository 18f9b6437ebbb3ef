#include "platform/CP_FileSpec.h"

#include <cstring>

#include "foundation/CP_DebugAssert.h"
#include "platform/os/Files.h"

namespace {

// The text without one `\` at its end.
ZvString WithoutTrailingSeparator(const ZvString& path) {
  ZvString cut = path;
  if (!cut.empty() && cut[cut.length() - 1] == '\\')
    cut.resize(cut.length() - 1, true);
  return cut;
}

}  // namespace

CP_FileSpec::CP_FileSpec(const char* path) {
  SetFromPath(path, false);
}

CP_FileSpec::CP_FileSpec(const CP_FileSpec& source) {
  Set(source.fName, source.fPath, source.fIsDirectory);
}

CP_FileSpec& CP_FileSpec::operator=(const CP_FileSpec& source) {
  fIsDirectory = source.fIsDirectory;
  fName = source.fName;
  fPath = source.fPath;
  return *this;
}

CP_FileSpec::~CP_FileSpec() = default;

void CP_FileSpec::Clear() {
  fIsDirectory = false;
  fVolume = 0;
  fDirectoryNumber = 0;
  fName = ZvString();
  fPath = ZvString();
}

void CP_FileSpec::Set(const ZvString& name, const ZvString& path, bool isDirectory) {
  Clear();
  fPath = WithoutTrailingSeparator(path);
  fIsDirectory = isDirectory;
  fName = name;
}

void CP_FileSpec::SetFromPath(const char* inPath, bool isDirectory) {
  fIsDirectory = isDirectory;
  char buffer[os::kMaxPath];
  char* filePart = nullptr;
  const bool resolved = os::FullPath(inPath, buffer, filePart);
  if (isDirectory) {
    if (resolved) {
      if (char* const separator = std::strrchr(buffer, '\\'))
        *separator = '\0';
      fPath = buffer;
    }
    fName = filePart != nullptr ? filePart : "";
    return;
  }
  if (!resolved)
    return;
  if (CP_Check(filePart != nullptr, "CP_FileSpec", 640, "filePart != NULL")) {
    fName = filePart;
    filePart[-1] = '\0';
    fPath = buffer;
  } else {
    fName = "";
    fPath = WithoutTrailingSeparator(buffer);
  }
}

void CP_FileSpec::GetFullPath(ZvString& outPath) const {
  if (!fPath.empty()) {
    ZvString full = fPath;
    full.append("\\").append(fName, 0, ZvString::npos);
    outPath = full;
  } else if (fIsDirectory) {
    outPath = fName;
    outPath.append("\\");
  } else {
    outPath = "";
  }
}

void CP_FileSpec::Delete() const {
  ZvString path;
  GetFullPath(path);
  os::RemoveFile(path.c_str());
}
