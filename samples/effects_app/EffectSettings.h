// What an effect does, and the two texts in which that is kept: the parameter block that travels in
// the exchange file and in a host's recorded action, and the settings file beside the application.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace effects_app {

// All in percent. Applied in this order; a value of 0 leaves the image as it is.
struct EffectSettings {
  std::string name = "Crisp and Warm";  // 100 bytes at most, printable, no `;`
  int32_t sharpen = 80;                 // 0 to 500: difference to the neighbourhood, added
  int32_t saturation = 40;              // -100 to 100
  int32_t brightness = 6;               // -100 to 100
  int32_t red = 6;                      // -100 to 100, and so the next two
  int32_t green = 2;
  int32_t blue = -2;

  bool operator==(const EffectSettings&) const = default;
};

// The parameter block: text `velvetmoor-effect 1;name=...;sharpen=...;...` and one zero byte.
//
// The road through a recorded action loses the block's last byte and puts two zero bytes there. The
// terminator is what gets lost, so the settings come back whole.
std::vector<uint8_t> FormatParameters(const EffectSettings& settings);
// Reads a block up to its first zero byte. Empty for a block that is none of ours or damaged.
std::optional<EffectSettings> ParseParameters(const std::vector<uint8_t>& block);

// What stands in the settings file: the effect for a run without parameters, and how to hold the
// answer up.
struct AppSettings {
  EffectSettings effect;
  std::chrono::milliseconds delay{0};  // waited between reading the request and answering it
  std::chrono::milliseconds flagTimeout{10000};  // waited for the request
  std::string log;  // file beside the application that gets the log lines
};

class SettingsError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Lines `key = value`; empty lines and those that begin with `#` mean nothing. Throws SettingsError
// that names the line.
AppSettings ParseSettingsFile(std::string_view text);

}  // namespace effects_app
