#pragma once

#include <string>
#include <string_view>

namespace os::posix {

// The path as this system knows it: `/` for each `\`, and no drive.
std::string NativePath(std::string_view path);

// The path as the framework knows it: `\` for each `/`.
std::string FrameworkPath(std::string_view nativePath);

// True for a path that begins with a drive, as in `C:\a`.
bool HasDrive(std::string_view path);

}  // namespace os::posix
