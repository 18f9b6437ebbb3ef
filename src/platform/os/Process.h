#pragma once

namespace os {

// Starts a program without arguments, with this process's environment and with `directory` as its
// current directory. Doesn't wait for it and keeps no hold on it. False when it can't be started.
bool StartProcess(const char* programPath, const char* directory);

}  // namespace os
