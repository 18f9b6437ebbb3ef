#include "framework_demo/Trace.h"

#include <cstdarg>
#include <cstdio>

namespace demo {
namespace {

bool gEnabled = false;

}  // namespace

void EnableTrace() {
  gEnabled = true;
}

void Trace(const char* format, ...) {
  if (!gEnabled)
    return;
  va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  std::putchar('\n');
  std::fflush(stdout);
}

}  // namespace demo
