// The command line of filter_host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "filter_host/HostSession.h"

namespace filter_host {

struct Options {
  bool help = false;
  bool info = false;   // tell what the filter's resource says, run nothing
  bool about = false;  // call the About selector, run nothing
  std::string plugin;
  std::string input;
  std::string output;
  std::string mask;
  std::string record;
  std::string replay;
  std::string workingDirectory;
  const PlaneFormat* format = nullptr;  // null: what the input calls for
  bool selectionBounds = false;         // filterRect is the selection's, not the image's
  bool askParameters = true;
  bool window = false;
  bool trace = false;
  int runs = 1;
  std::vector<int16_t> extraSelectors;  // called after the run, for trying a filter
  SessionSettings session;
};

// `arguments` without the program's name. Throws Error that names the argument at fault.
Options ParseOptions(const std::vector<std::string>& arguments);
// The text of --help, ended by a line feed.
std::string HelpText();

// The format for a picture when none is asked for: gray or RGB, with alpha and with 16 bits where
// the picture has them.
const PlaneFormat& NaturalFormat(const Picture& picture);

}  // namespace filter_host
