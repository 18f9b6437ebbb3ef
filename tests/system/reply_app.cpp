// Stands in for the effects application in the system tests: does what a script beside it says.
//
// The n-th start in a folder reads reply-<n>.script, or reply.script if there is none, and writes
// its command line and its current folder to started-<n>. A script holds one step on each line:
//   wait-flag            until Flg.h is there, 10 seconds at most
//   sleep MS
//   copy FROM TO         both beside the program
//   delete NAME
//   done                 creates Flg2.h
//   hold-done MS         creates Flg2.h and keeps it open, shared with nobody, for so long
//   rewrite NAME MS      writes NAME into Img.h over and over, in pieces, for so long
//   wait-file NAME       until a file is there, 20 seconds at most
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

void WaitFor(const fs::path& file, int seconds) {
  for (int i = 0; i < seconds * 100 && !fs::exists(file); ++i) {
    Sleep(10);
  }
}

std::string Contents(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

void HoldDone(const fs::path& folder, DWORD milliseconds) {
  HANDLE file = CreateFileA((folder / "Flg2.h").string().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                            nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  Sleep(milliseconds);
  CloseHandle(file);
}

void Rewrite(const fs::path& folder, const std::string& bytes, DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  while (GetTickCount64() < end) {
    HANDLE file = CreateFileA((folder / "Img.h").string().c_str(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    for (std::size_t i = 0; i < bytes.size() && file != INVALID_HANDLE_VALUE; i += 97) {
      DWORD written = 0;
      WriteFile(file, bytes.data() + i,
                static_cast<DWORD>(std::min<std::size_t>(97, bytes.size() - i)), &written, nullptr);
    }
    if (file != INVALID_HANDLE_VALUE) {
      CloseHandle(file);
    }
  }
}

void Do(const std::string& line, const fs::path& folder) {
  std::istringstream words(line);
  std::string step;
  std::string first;
  std::string second;
  words >> step >> first >> second;
  std::error_code ignored;
  if (step == "wait-flag") {
    WaitFor(folder / "Flg.h", 10);
  } else if (step == "wait-file") {
    WaitFor(folder / first, 20);
  } else if (step == "sleep") {
    Sleep(static_cast<DWORD>(std::stoul(first)));
  } else if (step == "copy") {
    CopyFileA((folder / first).string().c_str(), (folder / second).string().c_str(), FALSE);
  } else if (step == "delete") {
    fs::remove(folder / first, ignored);
  } else if (step == "done") {
    std::ofstream(folder / "Flg2.h", std::ios::binary).flush();
  } else if (step == "hold-done") {
    HoldDone(folder, static_cast<DWORD>(std::stoul(first)));
  } else if (step == "rewrite") {
    Rewrite(folder, Contents(folder / first), static_cast<DWORD>(std::stoul(second)));
  }
}

}  // namespace

int main() {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof(path));
  const fs::path folder = fs::path(path).parent_path();
  int start = 1;
  while (fs::exists(folder / ("started-" + std::to_string(start)))) {
    ++start;
  }
  std::ofstream(folder / ("started-" + std::to_string(start)), std::ios::binary)
      << GetCommandLineA() << '\n'
      << fs::current_path().string() << '\n';
  fs::path script = folder / ("reply-" + std::to_string(start) + ".script");
  if (!fs::exists(script)) {
    script = folder / "reply.script";
  }
  std::istringstream lines(Contents(script));
  for (std::string line; std::getline(lines, line);) {
    Do(line, folder);
  }
  return 0;
}
