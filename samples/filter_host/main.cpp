// filter_host.exe: plays the image editor for one filter and one picture.

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "filter_host/HostPlanes.h"
#include "filter_host/HostSession.h"
#include "filter_host/Options.h"
#include "filter_host/OutputFile.h"
#include "filter_host/Picture.h"
#include "filter_host/PiplResource.h"
#include "filter_host/win32/FilterLibrary.h"
#include "filter_host/win32/HostWindow.h"

namespace {

using namespace filter_host;

enum ExitCode { kDone = 0, kWrongUse = 1, kCancelled = 2, kFilterFailed = 3, kCrashed = 4 };

// Largest file of recorded parameters that is read.
constexpr std::size_t kMaxDescriptorFile = 64 * 1024 * 1024;

bool EndsIn(const std::string& text, const std::string& ending) {
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

// Prints lines with the milliseconds since the program began, at once.
class Trace {
 public:
  explicit Trace(bool on) : mOn(on) {}
  void operator()(const std::string& line) const {
    if (!mOn) {
      return;
    }
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - mStart);
    std::printf("[%6lld ms] %s\n", static_cast<long long>(passed.count()), line.c_str());
    std::fflush(stdout);
  }

 private:
  bool mOn;
  std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};

std::string CodeText(uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char character = static_cast<char>(code >> shift);
    text += character >= ' ' && character <= '~' ? character : '.';
  }
  return text;
}

void PrintInfo(const PiplResource& pipl) {
  std::printf("name: %s\ncategory: %s\nfilter: %s\nentry point: %s\n", pipl.Name().c_str(),
              pipl.Category().c_str(), pipl.IsFilter() ? "yes" : "no", pipl.EntryPoint32().c_str());
  std::printf("modes:");
  for (int16_t mode = 0; mode < 16; ++mode) {
    if (pipl.AllowsMode(mode)) {
      std::printf(" %d", mode);
    }
  }
  std::printf("\n");
  for (int16_t filterCase = 1; filterCase <= 7; ++filterCase) {
    if (const auto info = pipl.CaseInfo(filterCase)) {
      std::printf("case %d: input %d, output %d, flags %02X %02X\n", filterCase, info->input,
                  info->output, info->flags1, info->flags2);
    }
  }
  for (const PiplProperty& property : pipl.Properties()) {
    std::printf("property %s: %u bytes\n", CodeText(property.key).c_str(),
                static_cast<unsigned>(property.data.size()));
  }
}

HostPlanes LoadInput(const Options& options, double& outDotsPerInch) {
  if (EndsIn(options.input, ".planes")) {
    if (options.format != nullptr) {
      throw Error("--mode is for pictures: '" + options.input + "' says its own mode");
    }
    return ReadPlanes(options.input);
  }
  const Picture picture = ReadPng(options.input);
  outDotsPerInch = picture.dotsPerInch;
  return PlanesFromPicture(picture,
                           options.format != nullptr ? *options.format : NaturalFormat(picture));
}

std::optional<Selection> LoadSelection(const Options& options, const HostPlanes& image) {
  if (options.mask.empty()) {
    return std::nullopt;
  }
  const Picture picture = ReadPng(options.mask);
  if (picture.width != image.width || picture.height != image.height) {
    throw Error("the mask '" + options.mask + "' has " + std::to_string(picture.width) + " by " +
                std::to_string(picture.height) + " pixels, the input " +
                std::to_string(image.width) + " by " + std::to_string(image.height));
  }
  Selection selection;
  selection.coverage = CoverageFromPicture(picture);
  selection.bounds = BoundsOfCoverage(selection.coverage, image.width, image.height);
  if (selection.bounds.right == 0) {
    throw Error("the mask '" + options.mask + "' selects nothing");
  }
  if (!options.selectionBounds) {
    selection.bounds =
        Rect{0, 0, static_cast<int16_t>(image.height), static_cast<int16_t>(image.width)};
  }
  return selection;
}

// Samples that differ.
std::size_t CountChanged(const HostPlanes& before, const HostPlanes& after) {
  std::size_t changed = 0;
  const auto bytes = static_cast<std::size_t>(before.format.bytesPerSample);
  for (std::size_t i = 0; i < before.samples.size(); i += bytes) {
    changed += before.samples[i] != after.samples[i] ||
               (bytes == 2 && before.samples[i + 1] != after.samples[i + 1]);
  }
  return changed;
}

void SaveOutput(const std::string& path, const HostPlanes& result, double dotsPerInch) {
  if (EndsIn(path, ".planes")) {
    WritePlanes(path, result);
    return;
  }
  std::size_t clamped = 0;
  Picture picture = PictureFromPlanes(result, &clamped);
  picture.dotsPerInch = dotsPerInch;
  if (clamped > 0) {
    std::printf("note: %lu samples lay above %d and were written as white\n",
                static_cast<unsigned long>(clamped), static_cast<int>(kHostWhite16));
  }
  WritePng(path, picture);
}

ExitCode ReportFailure(const RunOutcome& outcome) {
  const std::string where = SelectorName(outcome.failedSelector);
  if (!outcome.fault.empty()) {
    std::fprintf(stderr, "filter_host: the filter crashed in %s: %s\n", where.c_str(),
                 outcome.fault.c_str());
    return kCrashed;
  }
  std::fprintf(stderr, "filter_host: the filter answered %s with %d (%s)%s%s\n", where.c_str(),
               outcome.result, DescribeResult(outcome.result).c_str(),
               outcome.errorString.empty() ? "" : ": ", outcome.errorString.c_str());
  return outcome.result == userCanceledErr ? kCancelled : kFilterFailed;
}

ExitCode Run(const Options& options) {
  const Trace trace(options.trace);
  const PiplResource pipl(ReadPiplResource(options.plugin));
  if (options.info) {
    PrintInfo(pipl);
    return kDone;
  }
  if (!pipl.IsFilter() || pipl.EntryPoint32().empty()) {
    throw Error("'" + options.plugin + "' is no filter for 32-bit Windows");
  }
  trace("filter '" + pipl.Name() + "' in '" + pipl.Category() + "', entry point " +
        pipl.EntryPoint32());

  SessionSettings settings = options.session;
  HostPlanes image;
  double dotsPerInch = 72.0;
  std::optional<Selection> selection;
  std::optional<FilterCaseInfo> caseInfo;
  std::string output;
  std::string record;
  if (options.about) {
    image = PlanesFromPicture(Picture{1, 1, 1, 1, 72.0, {0}}, PlaneFormats().front());
  } else {
    image = LoadInput(options, dotsPerInch);
    selection = LoadSelection(options, image);
    output = std::filesystem::absolute(options.output).string();
    CheckWritable(output);
    if (!options.record.empty()) {
      record = std::filesystem::absolute(options.record).string();
      CheckWritable(record);
    }
    if (!options.replay.empty()) {
      settings.replay = ReadWholeFile(options.replay, kMaxDescriptorFile);
      ParseDescriptor(settings.replay, options.replay);
    }
    if (settings.filterCase == 0) {
      settings.filterCase = HostSession::NaturalFilterCase(image.format, selection.has_value());
    }
    const int16_t mode = settings.imageMode.value_or(image.format.imageMode);
    if (!pipl.AllowsMode(mode)) {
      throw Error("the filter does not offer itself for image mode " + std::to_string(mode));
    }
    caseInfo = pipl.CaseInfo(settings.filterCase);
    if (caseInfo.has_value() && caseInfo->input == kCannotFilter) {
      throw Error("the filter does not take filter case " + std::to_string(settings.filterCase));
    }
    trace("image " + std::to_string(image.width) + " by " + std::to_string(image.height) +
          ", mode " + std::to_string(mode) + ", planes " + std::to_string(image.format.planes) +
          ", filter case " + std::to_string(settings.filterCase));
  }

  std::unique_ptr<HostWindow> window;
  void* noWindow = nullptr;
  settings.platformData = &noWindow;
  if (options.window) {
    window = std::make_unique<HostWindow>("filter_host", PictureFromPlanes(image));
    settings.platformData = window->PlatformData();
  }

  const FilterLibrary library(options.plugin, pipl.EntryPoint32());
  if (!options.workingDirectory.empty()) {
    std::error_code error;
    std::filesystem::current_path(options.workingDirectory, error);
    if (error) {
      throw Error("cannot change to '" + options.workingDirectory + "': " + error.message());
    }
  }

  ExitCode exitCode = kDone;
  for (int run = 1; run <= options.runs; ++run) {
    HostSession session(image, selection, settings, caseInfo);
    session.SetLog(trace);
    session.SetGuard(&CallGuardingStructuredExceptions);
    session.SetPainter(&HostWindow::Paint);
    const RunOutcome outcome = options.about ? session.Call(library.Entry(), filterSelectorAbout)
                                             : session.Run(library.Entry(), options.askParameters);
    for (const int16_t selector : options.extraSelectors) {
      const RunOutcome extra = session.Call(library.Entry(), selector);
      std::printf("selector %d: result %d\n", selector, extra.result);
    }
    for (const std::string& warning : session.CollectWarnings()) {
      std::printf("warning: %s\n", warning.c_str());
    }
    exitCode = outcome.Succeeded() ? kDone : ReportFailure(outcome);
    if (exitCode == kCrashed) {
      break;
    }
    if (exitCode != kDone || options.about || run < options.runs) {
      continue;
    }
    const HostPlanes result = session.Result();
    if (window != nullptr) {
      window->Show(PictureFromPlanes(result));
    }
    SaveOutput(output, result, dotsPerInch);
    trace("wrote " + options.output + ", " + std::to_string(CountChanged(image, result)) +
          " samples changed");
    if (!record.empty()) {
      const std::string descriptor = session.RecordedDescriptor();
      if (descriptor.empty()) {
        std::printf("note: the filter recorded no parameters, '%s' is not written\n",
                    options.record.c_str());
      } else {
        OutputFile file(record);
        file.Write(descriptor.data(), descriptor.size());
        file.Commit();
        trace("wrote " + options.record);
      }
    }
  }
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = ParseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (options.help) {
      std::fputs(HelpText().c_str(), stdout);
      return kDone;
    }
    return Run(options);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "filter_host: error: out of memory\n");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "filter_host: error: %s\n", error.what());
  }
  return kWrongUse;
}
