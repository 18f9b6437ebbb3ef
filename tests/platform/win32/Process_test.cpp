#include "platform/os/Process.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/os/Modules.h"
#include "support/TempDirectory.h"

namespace {

// The tests start this very program. With this variable set it only writes what it was started with
// into the file named there. The file appears whole: it is written under another name first.
constexpr char kChildVariable[] = "VM_TEST_PROCESS_OUTPUT";
constexpr char kHandleVariable[] = "VM_TEST_PROCESS_HANDLE";

const bool kIsParent = [] {
  const char* const output = std::getenv(kChildVariable);
  if (output == nullptr)
    return true;
  char directory[MAX_PATH];
  GetCurrentDirectoryA(sizeof directory, directory);
  DWORD flags;
  const bool inherited = GetHandleInformation(
      reinterpret_cast<HANDLE>(std::strtoul(std::getenv(kHandleVariable), nullptr, 10)), &flags);
  const std::string unfinished = std::string(output) + ".part";
  std::ofstream(unfinished) << GetCommandLineA() << '\n' << directory << '\n' << inherited << '\n';
  std::filesystem::rename(unfinished, output);
  std::_Exit(0);
}();

std::string ProgramPath() {
  char program[MAX_PATH];
  os::ModuleFileName(nullptr, program, sizeof program);
  return program;
}

TEST(StartProcess, StartsTheProgramInTheDirectoryWithoutArgumentsAndInheritedHandles) {
  ASSERT_TRUE(kIsParent);
  const vm::TempDirectory directory;
  const std::string output = directory.Path("out");
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const HANDLE event = CreateEventA(&inheritable, TRUE, FALSE, nullptr);
  SetEnvironmentVariableA(kChildVariable, output.c_str());
  SetEnvironmentVariableA(kHandleVariable, std::to_string(reinterpret_cast<DWORD>(event)).c_str());
  const bool started = os::StartProcess(ProgramPath().c_str(), (directory.Path() + "\\").c_str());
  SetEnvironmentVariableA(kChildVariable, nullptr);
  SetEnvironmentVariableA(kHandleVariable, nullptr);
  ASSERT_TRUE(started);
  for (int tries = 0; tries < 600 && !directory.Has("out"); ++tries)
    Sleep(50);
  CloseHandle(event);

  std::ifstream file(directory.Native("out"));
  std::string commandLine;
  std::string current;
  std::string inherited;
  std::getline(file, commandLine);
  std::getline(file, current);
  std::getline(file, inherited);
  // The system makes a missing command line of the program's path, quoted if it holds blanks.
  EXPECT_TRUE(commandLine == ProgramPath() || commandLine == '"' + ProgramPath() + '"')
      << commandLine;
  EXPECT_TRUE(std::filesystem::equivalent(current, directory.Native())) << current;
  EXPECT_EQ(inherited, "0");
}

TEST(StartProcess, FailsForAProgramThatIsNotThere) {
  const vm::TempDirectory directory;
  EXPECT_FALSE(os::StartProcess(directory.Path("Vm.exe").c_str(), directory.Path().c_str()));
}

}  // namespace
