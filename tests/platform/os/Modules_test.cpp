#include "platform/os/Modules.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(ModuleFileName, OfNullIsTheProgramsAbsolutePath) {
  char name[1024];
  const uint32_t length = os::ModuleFileName(nullptr, name, sizeof name);
  EXPECT_EQ(length, std::strlen(name));
  const std::string path = name;
  EXPECT_TRUE(path[0] == '\\' || path.substr(1, 2) == ":\\") << path;
  EXPECT_EQ(path.find('/'), std::string::npos);
  EXPECT_EQ(path.substr(path.rfind('\\') + 1).substr(0, 13), "test_platform");
}

TEST(ModuleFileName, IsCutToTheBufferWithANulAtItsEnd) {
  char whole[1024];
  ASSERT_GT(os::ModuleFileName(nullptr, whole, sizeof whole), 9U);
  char cut[12];
  std::memset(cut, '#', sizeof cut);
  EXPECT_EQ(os::ModuleFileName(nullptr, cut, 10), 9U);
  EXPECT_EQ(std::string(cut), std::string(whole, 9));
  EXPECT_EQ(cut[10], '#');
}

TEST(ModuleFileName, ABufferOfExactlyTheNamesSizeLosesTheLastCharacter) {
  char whole[1024];
  const uint32_t length = os::ModuleFileName(nullptr, whole, sizeof whole);
  char exact[1024];
  EXPECT_EQ(os::ModuleFileName(nullptr, exact, length), length - 1);
  EXPECT_EQ(std::string(exact), std::string(whole, length - 1));
  EXPECT_EQ(os::ModuleFileName(nullptr, exact, length + 1), length);
}

}  // namespace
