#include "platform/CP_FileSpec.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "support/ReportRecorder.h"
#include "support/TempDirectory.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

static_assert(std::has_virtual_destructor_v<CP_FileSpec>);

std::string NameOf(const CP_FileSpec& spec) {
  ZvString name("was here before");
  spec.GetName(name);
  return name.c_str();
}

std::string FullPathOf(const CP_FileSpec& spec) {
  ZvString path("was here before");
  spec.GetFullPath(path);
  return path.c_str();
}

// The stored path, told by a directory without a name: "path\" or, when there is none, "\".
std::string PathOf(const CP_FileSpec& spec) {
  CP_FileSpec probe;
  probe = spec;
  probe.SetName("");
  std::string path = FullPathOf(probe);
  if (!path.empty())
    path.pop_back();
  return path;
}

CP_FileSpec FileSpec(const char* name, const char* path) {
  CP_FileSpec spec;
  spec.Set(name, path, false);
  return spec;
}

CP_FileSpec DirectorySpec(const char* name, const char* path) {
  CP_FileSpec spec;
  spec.Set(name, path, true);
  return spec;
}

TEST(FileSpec, ANewOneIsEmpty) {
  const CP_FileSpec spec;
  EXPECT_FALSE(spec.IsDirectory());
  EXPECT_EQ(spec.GetVolume(), 0);
  EXPECT_EQ(spec.GetDirectoryNumber(), 0);
  EXPECT_EQ(NameOf(spec), "");
  EXPECT_EQ(FullPathOf(spec), "");
}

TEST(FileSpec, ClearMakesItNewAgain) {
  CP_FileSpec spec = DirectorySpec("name", "C:\\a");
  spec.SetVolume(5);
  spec.SetDirectoryNumber(6);
  spec.Clear();
  EXPECT_FALSE(spec.IsDirectory());
  EXPECT_EQ(spec.GetVolume(), 0);
  EXPECT_EQ(spec.GetDirectoryNumber(), 0);
  EXPECT_EQ(NameOf(spec), "");
  EXPECT_EQ(FullPathOf(spec), "");
}

TEST(FileSpec, VolumeAndDirectoryNumberAreKept) {
  CP_FileSpec spec;
  spec.SetVolume(-3);
  spec.SetDirectoryNumber(70000);
  EXPECT_EQ(spec.GetVolume(), -3);
  EXPECT_EQ(spec.GetDirectoryNumber(), 70000);
}

TEST(FileSpec, SetNameReplacesTheNameOnly) {
  CP_FileSpec spec = FileSpec("old.txt", "C:\\a");
  spec.SetName("new.txt");
  EXPECT_EQ(NameOf(spec), "new.txt");
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\new.txt");
}

TEST(FileSpecSet, DropsOneTrailingSeparatorFromThePath) {
  EXPECT_EQ(PathOf(FileSpec("n", "C:\\a")), "C:\\a");
  EXPECT_EQ(PathOf(FileSpec("n", "C:\\a\\")), "C:\\a");
  CP_FileSpec doubled;
  doubled.Set("n", "C:\\a\\\\", false);
  EXPECT_EQ(PathOf(doubled), "C:\\a\\");
}

TEST(FileSpecSet, ResetsTheNumbers) {
  CP_FileSpec spec;
  spec.SetVolume(5);
  spec.SetDirectoryNumber(6);
  spec.Set("n", "C:\\a", true);
  EXPECT_EQ(spec.GetVolume(), 0);
  EXPECT_EQ(spec.GetDirectoryNumber(), 0);
  EXPECT_TRUE(spec.IsDirectory());
}

// REQUIRED: a copy goes through Set.
TEST(FileSpecCopy, DropsOneMoreTrailingSeparatorAndTheNumbers) {
  CP_FileSpec original;
  original.Set("n", "C:\\a\\\\", true);
  original.SetVolume(5);
  original.SetDirectoryNumber(6);
  const CP_FileSpec copy(original);
  EXPECT_EQ(PathOf(original), "C:\\a\\");
  EXPECT_EQ(PathOf(copy), "C:\\a");
  EXPECT_EQ(NameOf(copy), "n");
  EXPECT_TRUE(copy.IsDirectory());
  EXPECT_EQ(copy.GetVolume(), 0);
  EXPECT_EQ(copy.GetDirectoryNumber(), 0);
}

// REQUIRED: assignment copies the strings as they are and leaves the numbers alone.
TEST(FileSpecAssignment, KeepsTheStringsAsTheyAreAndTheReceiversNumbers) {
  CP_FileSpec original;
  original.Set("n", "C:\\a\\\\", true);
  original.SetVolume(5);
  original.SetDirectoryNumber(6);
  CP_FileSpec receiver;
  receiver.SetVolume(50);
  receiver.SetDirectoryNumber(60);
  receiver = original;
  EXPECT_EQ(PathOf(receiver), "C:\\a\\");
  EXPECT_EQ(NameOf(receiver), "n");
  EXPECT_TRUE(receiver.IsDirectory());
  EXPECT_EQ(receiver.GetVolume(), 50);
  EXPECT_EQ(receiver.GetDirectoryNumber(), 60);
}

TEST(FileSpecFullPath, OfAFileIsPathAndName) {
  EXPECT_EQ(FullPathOf(FileSpec("n.txt", "C:\\a")), "C:\\a\\n.txt");
}

TEST(FileSpecFullPath, OfAFileWithoutAPathIsEmptyEvenIfANameIsThere) {
  EXPECT_EQ(FullPathOf(FileSpec("n.txt", "")), "");
}

TEST(FileSpecFullPath, OfADirectoryWithAPathHasNoTrailingSeparator) {
  EXPECT_EQ(FullPathOf(DirectorySpec("b", "C:\\a")), "C:\\a\\b");
}

TEST(FileSpecFullPath, OfADirectoryWithoutAPathHasATrailingSeparator) {
  EXPECT_EQ(FullPathOf(DirectorySpec("b", "")), "b\\");
}

TEST(FileSpecFromPath, OfAFileCutsAtTheLastPart) {
  const CP_FileSpec spec("C:\\a\\b\\n.txt");
  EXPECT_FALSE(spec.IsDirectory());
  EXPECT_EQ(NameOf(spec), "n.txt");
  EXPECT_EQ(PathOf(spec), "C:\\a\\b");
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\b\\n.txt");
}

TEST(FileSpecFromPath, ResolvesDotsAndForwardSlashes) {
  EXPECT_EQ(FullPathOf(CP_FileSpec("C:\\a\\.\\b\\..\\n.txt")), "C:\\a\\n.txt");
  EXPECT_EQ(FullPathOf(CP_FileSpec("C:/a//b/n.txt")), "C:\\a\\b\\n.txt");
}

TEST(FileSpecFromPath, OfAFileInTheRootHasTheDriveForItsPath) {
  const CP_FileSpec spec("C:\\n.txt");
  EXPECT_EQ(NameOf(spec), "n.txt");
  EXPECT_EQ(PathOf(spec), "C:");
}

TEST(FileSpecFromPath, ARelativeNameIsResolvedAgainstTheCurrentDirectory) {
  const vm::TempDirectory directory;
  const vm::CurrentDirectory current(directory.Native());
  const CP_FileSpec spec(".\\Img.h");
  EXPECT_EQ(NameOf(spec), "Img.h");
  EXPECT_EQ(FullPathOf(spec), directory.Path("Img.h"));
}

TEST(FileSpecFromPath, AFilePathThatEndsInASeparatorIsReportedAndHasNoName) {
  ReportRecorder reports;
  const CP_FileSpec spec("C:\\a\\b\\");
  EXPECT_EQ(reports.Lines(), Reports({"CP_FileSpec(640) : filePart != NULL"}));
  EXPECT_EQ(NameOf(spec), "");
  EXPECT_EQ(PathOf(spec), "C:\\a\\b");
}

TEST(FileSpecFromPath, OfADirectoryTakesThePathBeforeTheLastSeparator) {
  ReportRecorder reports;
  CP_FileSpec spec;
  spec.SetFromPath("C:\\a\\b", true);
  EXPECT_TRUE(spec.IsDirectory());
  EXPECT_EQ(NameOf(spec), "b");
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\b");
  EXPECT_TRUE(reports.Empty());
}

TEST(FileSpecFromPath, ADirectoryPathThatEndsInASeparatorHasNoNameAndIsNotReported) {
  ReportRecorder reports;
  CP_FileSpec spec;
  spec.SetFromPath("C:\\a\\b\\", true);
  EXPECT_EQ(NameOf(spec), "");
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\b\\");
  EXPECT_TRUE(reports.Empty());
}

TEST(FileSpecFromPath, AFilesFailureLeavesNameAndPathButStoresTheFlag) {
  CP_FileSpec spec = DirectorySpec("n.txt", "C:\\a");
  spec.SetFromPath("", false);
  EXPECT_FALSE(spec.IsDirectory());
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\n.txt");
}

TEST(FileSpecFromPath, ADirectorysFailureLeavesThePathAndEmptiesTheName) {
  CP_FileSpec spec = FileSpec("n.txt", "C:\\a");
  spec.SetFromPath("", true);
  EXPECT_TRUE(spec.IsDirectory());
  EXPECT_EQ(NameOf(spec), "");
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\");
}

TEST(FileSpecFromPath, APathOf259CharactersFitsAndALongerOneIsAFailure) {
  const std::string path259 = "C:\\" + std::string(127, 'd') + "\\" + std::string(128, 'n');
  ASSERT_EQ(path259.size(), 259U);
  EXPECT_EQ(FullPathOf(CP_FileSpec(path259.c_str())), path259);

  CP_FileSpec spec = FileSpec("n.txt", "C:\\a");
  spec.SetFromPath((path259 + "n").c_str(), false);
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\n.txt");
  spec.SetFromPath((path259 + "nn").c_str(), false);
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\n.txt");
  spec.SetFromPath(std::string(5000, 'n').c_str(), false);
  EXPECT_EQ(FullPathOf(spec), "C:\\a\\n.txt");
}

TEST(FileSpecDelete, RemovesTheFileAndIgnoresOneThatIsNotThere) {
  const vm::TempDirectory directory;
  directory.Write("n.txt", "x");
  const CP_FileSpec spec(directory.Path("n.txt").c_str());
  ReportRecorder reports;
  spec.Delete();
  EXPECT_FALSE(directory.Has("n.txt"));
  spec.Delete();
  EXPECT_TRUE(reports.Empty());
}

}  // namespace
