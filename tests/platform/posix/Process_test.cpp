#include "platform/os/Process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>

#include "platform/os/posix/ProcessScript.h"
#include "support/TempDirectory.h"

namespace {

TEST(StartProcess, StartsTheProgramInTheDirectoryWithoutArguments) {
  const vm::TempDirectory directory;
  directory.Write("Vm.exe", "#!/bin/sh\necho \"$# $PWD\" > out\n");
  std::filesystem::permissions(directory.Native("Vm.exe"), std::filesystem::perms::owner_all);
  ASSERT_TRUE(
      os::StartProcess(directory.Path("Vm.exe").c_str(), (directory.Path() + "\\").c_str()));
  int status = -1;
  ASSERT_GT(wait(&status), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(directory.Read("out"),
            "0 " + std::filesystem::canonical(directory.Native()).string() + "\n");
}

TEST(StartProcess, FailsForAProgramThatIsNotThere) {
  const vm::TempDirectory directory;
  EXPECT_FALSE(os::StartProcess(directory.Path("Vm.exe").c_str(), directory.Path().c_str()));
}

TEST(StartProcess, FailsInADirectoryThatIsNotThere) {
  const vm::TempDirectory directory;
  EXPECT_FALSE(os::StartProcess("\\bin\\true", directory.Path("missing").c_str()));
}

TEST(ProcessScript, StandsInForStarting) {
  std::string started;
  bool answer = true;
  const os::posix::ProcessScript script(
      [&](const std::string& program, const std::string& directory) {
        started += program + " in " + directory + ";";
        return answer;
      });
  EXPECT_TRUE(os::StartProcess("\\a\\Vm.exe", "\\a\\"));
  answer = false;
  EXPECT_FALSE(os::StartProcess("\\b\\Vm.exe", "\\b\\"));
  EXPECT_EQ(started, "\\a\\Vm.exe in \\a\\;\\b\\Vm.exe in \\b\\;");
}

}  // namespace
