#include "platform/os/Modules.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/os/posix/ModuleScript.h"

namespace {

std::string NameOf(void* module) {
  char name[1024];
  os::ModuleFileName(module, name, sizeof name);
  return name;
}

TEST(ModuleFileName, OfAnAddressIsTheFileThatHoldsIt) {
  static int inThisProgram = 0;
  EXPECT_EQ(NameOf(&inThisProgram), NameOf(nullptr));
  EXPECT_NE(NameOf(reinterpret_cast<void*>(&std::getenv)).find("libc"), std::string::npos);
}

TEST(ModuleScript, NamesTheFileOfEveryModule) {
  const std::string program = NameOf(nullptr);
  {
    const os::posix::ModuleScript script("\\plugins\\VM_PlugIn.8bf");
    EXPECT_EQ(NameOf(nullptr), "\\plugins\\VM_PlugIn.8bf");
    char cut[10];
    EXPECT_EQ(os::ModuleFileName(nullptr, cut, sizeof cut), 9U);
    EXPECT_STREQ(cut, "\\plugins\\");
  }
  EXPECT_EQ(NameOf(nullptr), program);
}

}  // namespace
