// Vm.exe: plays the effects application. The plug-in starts it without arguments in its own folder.

#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>

#include "effects_app/Conversation.h"
#include "effects_app/EffectSettings.h"
#include "foundation/CP_Exceptions.h"
#include "foundation/ZvString.h"
#include "persistence/ZvModulePath.h"

namespace {

using namespace effects_app;

constexpr char kHelp[] = R"(Vm is an effects application for the Velvetmoor filter plug-in.

  Vm                 serve one request beside this program, and end
  Vm --dir FOLDER    serve one request in another folder
  Vm --help

The plug-in starts it without arguments. It waits for Flg.h, reads the request from Img.h, removes
Flg.h, applies its effect (sharpening, saturation, brightness, colour balance) in the image's own
format, writes the reply to Img.h and creates Flg2.h last. A request that carries parameters (a
replayed action) gets the effect that those describe; any other gets that of the settings.

Vm.settings, if there is such a file beside the program, holds lines 'key = value':
  name = Crisp and Warm    the effect's name
  sharpen = 80             percent, 0 to 500
  saturation = 40          percent, -100 to 100, as all that follow
  brightness = 6
  red = 6
  green = 2
  blue = -2
  delay-ms = 0             wait so long before answering
  flag-timeout-ms = 10000  wait so long for a request
  log = Vm.log             append what is done to this file beside the program
The values shown hold for what the file doesn't name.

A mask of the image's size limits the effect to what it selects. A smaller one comes without its
place in the image, so it is passed back and otherwise ignored.

The plug-in writes 16-bit CMYK under names that it can't read itself: ZvImageCmyka64 (4 channels) and
ZvImageCmyka80 (5). Both are answered as ZvImageRgba64, holding what the image reads as in that form.

Exit codes: 0 answered, 1 wrong use or a file that can't be read or written, 2 no request came,
3 the request can't be read, 4 a newer request is there.
)";

// Puts `name` into the folder, in the form that this system's files are opened by.
std::string FileIn(const ZvString& folder, const std::string& name) {
  std::string path(folder.view());
  path += name;
#if !defined(_WIN32)
  for (char& character : path) {
    if (character == '\\') {
      character = '/';
    }
  }
#endif
  return path;
}

int Run(const ZvString& folder) {
  AppSettings settings;
  std::ifstream file(FileIn(folder, "Vm.settings"), std::ios::binary);
  if (file) {
    settings = ParseSettingsFile(std::string(std::istreambuf_iterator<char>(file), {}));
  }
  std::ofstream logFile;
  if (!settings.log.empty()) {
    logFile.open(FileIn(folder, settings.log), std::ios::app);
  }
  const auto start = std::chrono::steady_clock::now();
  const Outcome outcome = Serve(folder, settings, [&](const std::string& line) {
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    char text[40];
    std::snprintf(text, sizeof(text), "[%6lld ms] Vm: ", static_cast<long long>(passed.count()));
    std::printf("%s%s\n", text, line.c_str());
    std::fflush(stdout);
    logFile << text << line << '\n' << std::flush;
  });
  switch (outcome) {
    case Outcome::kAnswered:
      return 0;
    case Outcome::kNoRequest:
      return 2;
    case Outcome::kUnreadable:
      return 3;
    case Outcome::kNewerRequest:
      return 4;
  }
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "";
  if (first == "--help") {
    std::fputs(kHelp, stdout);
    return 0;
  }
  ZvString folder;
  if (first == "--dir" && argc == 3) {
    folder = argv[2];
#if !defined(_WIN32)
    for (uint32_t i = 0; i < folder.length(); ++i) {
      if (folder[i] == '/') {
        folder.data()[i] = '\\';
      }
    }
#endif
    if (!folder.empty() && folder[folder.length() - 1] != '\\') {
      folder.append("\\");
    }
  } else if (argc == 1) {
    GetModuleDirectory(folder, nullptr);
  } else {
    std::fprintf(stderr, "Vm: error: unknown arguments; --help tells what it does\n");
    return 1;
  }
  RegisterReadableImages();
  try {
    return Run(folder);
  } catch (const SettingsError& error) {
    std::fprintf(stderr, "Vm: error: Vm.settings, %s\n", error.what());
  } catch (const CP_BaseException&) {
    std::fprintf(stderr, "Vm: error: cannot read or write the exchange files\n");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "Vm: error: %s\n", error.what());
  }
  return 1;
}
