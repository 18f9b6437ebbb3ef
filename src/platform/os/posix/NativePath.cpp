#include "platform/os/posix/NativePath.h"

#include <algorithm>

namespace os::posix {

bool HasDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':')
    return false;
  const char drive = path[0];
  return (drive >= 'A' && drive <= 'Z') || (drive >= 'a' && drive <= 'z');
}

std::string NativePath(std::string_view path) {
  if (HasDrive(path))
    path.remove_prefix(2);
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string FrameworkPath(std::string_view nativePath) {
  std::string path(nativePath);
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace os::posix
