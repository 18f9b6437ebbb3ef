#include "filter_host/Options.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <map>

namespace filter_host {

namespace {

int64_t Number(const std::string& option, const std::string& text, int64_t low, int64_t high) {
  char* end = nullptr;
  errno = 0;
  const long long value = std::strtoll(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0 || value < low || value > high) {
    throw Error(option + " wants a number from " + std::to_string(low) + " to " +
                std::to_string(high) + ", not '" + text + "'");
  }
  return value;
}

std::array<int64_t, 3> Triple(const std::string& option, const std::string& text, int64_t high) {
  std::array<int64_t, 3> values{};
  std::size_t start = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t comma = i < 2 ? text.find(',', start) : text.size();
    if (comma == std::string::npos) {
      throw Error(option + " wants RED,GREEN,BLUE, not '" + text + "'");
    }
    values[i] = Number(option, text.substr(start, comma - start), 0, high);
    start = comma + 1;
  }
  return values;
}

std::array<uint16_t, 3> WideColour(const std::string& option, const std::string& text) {
  std::array<uint16_t, 3> colour{};
  const std::array<int64_t, 3> values = Triple(option, text, 255);
  for (std::size_t i = 0; i < 3; ++i) {
    colour[i] = static_cast<uint16_t>(values[i] * 0x101);
  }
  return colour;
}

// FIRST[-LAST]:CODE
void ParseAdvanceFailure(const std::string& text, SessionSettings& session) {
  const std::string option = "--fail-advance";
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) {
    throw Error(option + " wants FIRST[-LAST]:CODE, not '" + text + "'");
  }
  const std::string calls = text.substr(0, colon);
  const std::size_t dash = calls.find('-');
  session.failAdvanceFirst = static_cast<int>(Number(option, calls.substr(0, dash), 1, 1000000));
  session.failAdvanceLast =
      dash == std::string::npos
          ? session.failAdvanceFirst
          : static_cast<int>(Number(option, calls.substr(dash + 1), 1, 1000000));
  session.failAdvanceWith =
      static_cast<OSErr>(Number(option, text.substr(colon + 1), -32768, 32767));
}

void ParseMissing(const std::string& text, SessionSettings& session) {
  const std::map<std::string, bool SessionSettings::*> callbacks = {
      {"abort", &SessionSettings::withoutAbort},
      {"progress", &SessionSettings::withoutProgress},
      {"advance", &SessionSettings::withoutAdvance},
      {"display", &SessionSettings::withoutDisplay},
      {"handles", &SessionSettings::withoutHandles},
      {"descriptors", &SessionSettings::withoutDescriptors},
  };
  const auto found = callbacks.find(text);
  if (found == callbacks.end()) {
    throw Error("--without wants abort, progress, advance, display, handles or descriptors, not '" +
                text + "'");
  }
  session.*(found->second) = true;
}

int16_t ParsePlayInfo(const std::string& text) {
  if (text == "dont-display")
    return plugInDialogDontDisplay;
  if (text == "display")
    return plugInDialogDisplay;
  if (text == "silent")
    return plugInDialogSilent;
  throw Error("--play-info wants display, dont-display or silent, not '" + text + "'");
}

std::string FormatNames() {
  std::string names;
  for (const PlaneFormat& format : PlaneFormats()) {
    names += (names.empty() ? "" : ", ") + std::string(format.name);
  }
  return names;
}

const PlaneFormat* ParseFormat(const std::string& text) {
  const PlaneFormat* format = FindPlaneFormat(text);
  if (format == nullptr) {
    throw Error("--mode wants one of " + FormatNames() + ", not '" + text + "'");
  }
  return format;
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  bool playInfoGiven = false;
  using Setter = std::function<void(const std::string&)>;
  SessionSettings& session = options.session;
  const std::map<std::string, Setter> withValue = {
      {"--mode", [&](const std::string& v) { options.format = ParseFormat(v); }},
      {"--mask", [&](const std::string& v) { options.mask = v; }},
      {"--filter-rect",
       [&](const std::string& v) {
         if (v != "image" && v != "selection") {
           throw Error("--filter-rect wants image or selection, not '" + v + "'");
         }
         options.selectionBounds = v == "selection";
       }},
      {"--filter-case",
       [&](const std::string& v) {
         session.filterCase = static_cast<int16_t>(Number("--filter-case", v, 1, 7));
       }},
      {"--play-info",
       [&](const std::string& v) {
         session.playInfo = ParsePlayInfo(v);
         playInfoGiven = true;
       }},
      {"--record", [&](const std::string& v) { options.record = v; }},
      {"--replay", [&](const std::string& v) { options.replay = v; }},
      {"--cd", [&](const std::string& v) { options.workingDirectory = v; }},
      {"--runs",
       [&](const std::string& v) {
         options.runs = static_cast<int>(Number("--runs", v, 1, 1000));
       }},
      {"--selector",
       [&](const std::string& v) {
         options.extraSelectors.push_back(
             static_cast<int16_t>(Number("--selector", v, -32768, 32767)));
       }},
      {"--image-mode",
       [&](const std::string& v) {
         session.imageMode = static_cast<int16_t>(Number("--image-mode", v, -32768, 32767));
       }},
      {"--row-padding",
       [&](const std::string& v) {
         session.rowPadding = static_cast<int32_t>(Number("--row-padding", v, 0, 65536));
       }},
      {"--without", [&](const std::string& v) { ParseMissing(v, session); }},
      {"--fail-advance", [&](const std::string& v) { ParseAdvanceFailure(v, session); }},
      {"--abort-after",
       [&](const std::string& v) {
         session.abortAfter = std::chrono::milliseconds(Number("--abort-after", v, 0, 86400000));
       }},
      {"--pick-colour",
       [&](const std::string& v) {
         const auto values = Triple("--pick-colour", v, 255);
         session.pickedColour = {static_cast<int16_t>(values[0]), static_cast<int16_t>(values[1]),
                                 static_cast<int16_t>(values[2])};
       }},
      {"--foreground",
       [&](const std::string& v) { session.foreground = WideColour("--foreground", v); }},
      {"--background",
       [&](const std::string& v) { session.background = WideColour("--background", v); }},
  };
  const std::map<std::string, bool Options::*> flags = {
      {"--help", &Options::help},   {"-h", &Options::help},         {"--info", &Options::info},
      {"--about", &Options::about}, {"--window", &Options::window}, {"--trace", &Options::trace},
  };

  std::vector<std::string> names;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument.size() < 2 || argument[0] != '-') {
      names.push_back(argument);
    } else if (const auto flag = flags.find(argument); flag != flags.end()) {
      options.*(flag->second) = true;
    } else if (argument == "--no-parameters") {
      options.askParameters = false;
    } else if (const auto setter = withValue.find(argument); setter != withValue.end()) {
      if (i + 1 == arguments.size()) {
        throw Error(argument + " wants a value");
      }
      setter->second(arguments[++i]);
    } else {
      throw Error("unknown option '" + argument + "'; --help lists them");
    }
  }
  if (options.help) {
    return options;
  }
  const std::size_t wanted = options.info || options.about ? 1 : 3;
  if (names.size() != wanted) {
    throw Error(wanted == 1 ? "this wants one argument, the filter"
                            : "this wants three arguments: the filter, the input picture and the "
                              "output picture; --help tells more");
  }
  options.plugin = names[0];
  if (wanted == 3) {
    options.input = names[1];
    options.output = names[2];
  }
  if (options.selectionBounds && options.mask.empty()) {
    throw Error("--filter-rect selection wants a --mask");
  }
  if (!options.replay.empty()) {
    // A recorded action is played without asking anything, unless the caller says otherwise.
    options.askParameters = false;
    if (!playInfoGiven) {
      session.playInfo = plugInDialogDontDisplay;
    }
  }
  return options;
}

const PlaneFormat& NaturalFormat(const Picture& picture) {
  const bool wide = picture.bytesPerSample == 2;
  static constexpr const char* kNames[2][4] = {{"gray", "graya", "rgb", "rgba"},
                                               {"gray16", "graya32", "rgb48", "rgba64"}};
  return *FindPlaneFormat(kNames[wide ? 1 : 0][picture.channels - 1]);
}

std::string HelpText() {
  return R"(filter_host runs an image editor's filter plug-in on a picture file.

  filter_host [OPTION...] FILTER.8bf INPUT.png OUTPUT.png
  filter_host --info FILTER.8bf
  filter_host --about FILTER.8bf

It loads the filter as an image editor does: it reads the library's PIPL resource, finds the entry
point under 'wx86' and calls the selectors Parameters, Prepare, Start, Continue (while a rectangle
is left) and Finish with one filter record. Its own side of the record is real: advanceState with a
row pitch of its own, handles, scripting descriptors, colour services, progress, abort, display.
OUTPUT.png appears only when the whole run succeeded.

INPUT and OUTPUT whose names end in .planes hold the host's samples as they are: a line
'planes 1 WIDTH HEIGHT PLANES BYTES-PER-SAMPLE IMAGE-MODE', then the interleaved samples.

The document
  --mode MODE             image mode and planes that INPUT is converted to; without it, what INPUT
                          calls for. One of gray, graya, gray16, graya32, rgb, rgba, rgb48, rgba64,
                          cmyk, cmyka, cmyk64, cmyka80. 16-bit channels span 0 to 32768.
  --mask MASK.png         the selection: white is selected, black is not. As large as INPUT.
  --filter-rect WHAT      what the filter is told to work on: 'image' (the default) or 'selection',
                          the smallest rectangle around it
  --filter-case N         1 to 7; without it 1 or 2 (flat image, without or with selection) or, with
                          alpha, 4 or 5. 6 and 7 protect the transparency.
  --foreground R,G,B      the host's colours, 0 to 255 each; black
  --background R,G,B      and white

Scripting
  --record FILE           write the parameters that the filter recorded
  --replay FILE           play parameters that were recorded; Parameters is then not called and
                          play-info is dont-display
  --play-info WHAT        display, dont-display or silent
  --no-parameters         leave out the selector Parameters

  FILE is text: 'filter-descriptor 1', then one line for each entry, as in
    'aeAU' string "Golden Hour"
    'aeCT' float 61
  Types: integer, float, unit-float, boolean, text, alias, string, enumerated, class, scoped-class,
  object, scoped-object, count. Bytes that are not printable stand as \xHH.

The run
  --trace                 print every step with its time in milliseconds
  --window                show the picture in a window that owns the filter's dialogs
  --cd FOLDER             change to this folder before the filter is called
  --runs N                run the filter N times while it stays loaded; OUTPUT is the last run's, and
                          a run that is cancelled or fails does not stop the next
  --abort-after MS        let abortProc say yes after so many milliseconds
  --pick-colour R,G,B     what the colour picker answers; without it the user cancels

For trying how a filter takes it
  --image-mode N          another number in the record's imageMode
  --row-padding N         bytes behind each delivered row; 16
  --without WHAT          leave out abort, progress, advance, display, handles or descriptors;
                          may be given more than once
  --fail-advance F[-L]:E  let the advanceState calls F to L fail with the code E
  --selector N            call this selector too, after the run; may be given more than once

Exit codes: 0 done, 1 wrong use or a file that can't be read or written, 2 the filter cancelled,
3 the filter failed, 4 the filter crashed.

Not there: buffer, property, channel port and other suites newer than handles and descriptors; their
pointers are null. The host doesn't scale: inputRate is 1.
)";
}

}  // namespace filter_host
