#include "persistence/ZvModulePath.h"

#include <gtest/gtest.h>

#include <string>

#ifndef _WIN32
#include "platform/os/posix/ModuleScript.h"
#endif

namespace {

std::string Parent(const char* path) {
  ZvString text(path);
  ParentDirectory(text);
  return std::string(text.view());
}

std::string Resolved(const char* path, const char* directory) {
  ZvString text(path);
  ResolveRelativePath(text, directory);
  return std::string(text.view());
}

TEST(ParentDirectory, CutsTheLastComponent) {
  EXPECT_EQ(Parent("C:\\a\\b"), "C:\\a\\");
  EXPECT_EQ(Parent("C:\\a"), "C:\\");
  EXPECT_EQ(Parent("a\\b"), "a\\");
}

TEST(ParentDirectory, SkipsAnyRunOfTrailingMarks) {
  EXPECT_EQ(Parent("C:\\a\\b\\"), "C:\\a\\");
  EXPECT_EQ(Parent("C:\\a\\b\\\\\\"), "C:\\a\\");
}

TEST(ParentDirectory, EndsOneBehindTheLastCharacterOfTheComponentBefore) {
  EXPECT_EQ(Parent("C:\\a\\\\b"), "C:\\a\\");
}

TEST(ParentDirectory, LeavesAPathWithoutAParent) {
  for (const char* path : {"", "a", "C:\\", "\\", "\\\\", "\\a", "a\\"}) {
    EXPECT_EQ(Parent(path), path);
  }
}

TEST(ResolveRelativePath, OneDotStandsForTheDirectory) {
  EXPECT_EQ(Resolved(".\\Img.h", "C:\\host\\plug-ins\\"), "C:\\host\\plug-ins\\Img.h");
  EXPECT_EQ(Resolved(".\\Img.h", "C:\\host"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved(".Img.h", "C:\\host\\"), "C:\\host\\Img.h");
}

TEST(ResolveRelativePath, TwoDotsStandForItsParent) {
  EXPECT_EQ(Resolved("..\\Img.h", "C:\\host\\plug-ins\\"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved("..\\Img.h", "C:\\host\\plug-ins"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved("..", "C:\\host\\plug-ins"), "C:\\host\\");
}

TEST(ResolveRelativePath, ABareNameIsAppendedBehindAMark) {
  EXPECT_EQ(Resolved("Img.h", "C:\\host"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved("Img.h", "C:\\host\\"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved("Img.h", ""), "Img.h");
}

TEST(ResolveRelativePath, ALeadingMarkIsNotDoubled) {
  EXPECT_EQ(Resolved("\\Img.h", "C:\\host\\"), "C:\\host\\Img.h");
  EXPECT_EQ(Resolved("\\Img.h", "C:\\host"), "C:\\host\\Img.h");
}

TEST(ResolveRelativePath, OnlyTheDotsInFrontCount) {
  EXPECT_EQ(Resolved(".\\..\\Img.h", "C:\\host\\"), "C:\\host\\..\\Img.h");
  EXPECT_EQ(Resolved("...\\Img.h", "C:\\host\\a\\"), "C:\\host\\.\\Img.h");
}

TEST(ResolveRelativePath, AnEmptyPathIsTheDirectoryWithAMark) {
  EXPECT_EQ(Resolved("", "C:\\host"), "C:\\host\\");
  EXPECT_EQ(Resolved(".", "C:\\host"), "C:\\host");
}

TEST(GetModuleDirectory, OfTheProgramEndsInItsLastMark) {
  ZvString directory("before");
  GetModuleDirectory(directory, nullptr);
  ASSERT_FALSE(directory.empty());
  EXPECT_TRUE(directory.view().ends_with("\\")) << directory.view();
  EXPECT_FALSE(directory.view().ends_with("\\\\"));
}

#ifndef _WIN32
std::string DirectoryOf(std::string fileName) {
  const os::posix::ModuleScript script(std::move(fileName));
  ZvString directory("before");
  GetModuleDirectory(directory, nullptr);
  return std::string(directory.view());
}

TEST(GetModuleDirectory, EndsInTheLastMarkOrColon) {
  EXPECT_EQ(DirectoryOf("C:\\host\\VM_PlugIn.8bf"), "C:\\host\\");
  EXPECT_EQ(DirectoryOf("C:VM_PlugIn.8bf"), "C:");
  EXPECT_EQ(DirectoryOf("\\VM_PlugIn.8bf"), "\\");
}

TEST(GetModuleDirectory, OfABareNameIsEmpty) {
  EXPECT_EQ(DirectoryOf("VM_PlugIn.8bf"), "");
  EXPECT_EQ(DirectoryOf(""), "");
}

TEST(GetModuleDirectory, OfANameThatFillsTheBufferIsWhatTheCutNameHas) {
  // 255 characters fit: `C:\a\` and 250 more.
  EXPECT_EQ(DirectoryOf("C:\\a\\" + std::string(300, 'x')), "C:\\a\\");
  EXPECT_EQ(DirectoryOf("C:\\a\\" + std::string(249, 'x') + "\\y"),
            "C:\\a\\" + std::string(249, 'x') + "\\");
  EXPECT_EQ(DirectoryOf("C:\\a\\" + std::string(250, 'x') + "\\y"), "C:\\a\\");
}
#endif

}  // namespace
