#include "platform/os/Modules.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(ModuleFileName, OfALibraryIsTheLibrarysFile) {
  char name[MAX_PATH];
  ASSERT_NE(os::ModuleFileName(GetModuleHandleA("kernel32.dll"), name, sizeof name), 0U);
  const char* const lastPart = std::strrchr(name, '\\');
  ASSERT_NE(lastPart, nullptr);
  EXPECT_STRCASEEQ(lastPart, "\\kernel32.dll");
}

}  // namespace
