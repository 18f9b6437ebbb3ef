#include "effects_app/EffectSettings.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace effects_app {

namespace {

constexpr std::string_view kBlockMark = "velvetmoor-effect 1";
constexpr std::size_t kMaxName = 100;

struct Field {
  const char* key;
  int32_t EffectSettings::*value;
  int32_t low;
  int32_t high;
};

constexpr std::array<Field, 6> kFields = {{
    {"sharpen", &EffectSettings::sharpen, 0, 500},
    {"saturation", &EffectSettings::saturation, -100, 100},
    {"brightness", &EffectSettings::brightness, -100, 100},
    {"red", &EffectSettings::red, -100, 100},
    {"green", &EffectSettings::green, -100, 100},
    {"blue", &EffectSettings::blue, -100, 100},
}};

std::optional<int32_t> Number(std::string_view text, int32_t low, int32_t high) {
  int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value < low || value > high) {
    return std::nullopt;
  }
  return value;
}

bool IsName(std::string_view text) {
  return text.size() <= kMaxName && std::all_of(text.begin(), text.end(), [](char character) {
           return character >= ' ' && character <= '~' && character != ';';
         });
}

// Stores one value; false for an unknown key or a value out of its range.
bool Store(EffectSettings& settings, std::string_view key, std::string_view value) {
  if (key == "name") {
    settings.name = value;
    return IsName(value);
  }
  for (const Field& field : kFields) {
    if (key == field.key) {
      const std::optional<int32_t> number = Number(value, field.low, field.high);
      settings.*(field.value) = number.value_or(0);
      return number.has_value();
    }
  }
  return false;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Takes what stands before the next `mark` off the front.
std::string_view TakeUpTo(std::string_view& text, char mark) {
  const std::size_t length = text.find(mark);
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
  return taken;
}

}  // namespace

std::vector<uint8_t> FormatParameters(const EffectSettings& settings) {
  std::string text(kBlockMark);
  text += ";name=" + settings.name;
  for (const Field& field : kFields) {
    text += ';' + std::string(field.key) + '=' + std::to_string(settings.*(field.value));
  }
  std::vector<uint8_t> block(text.begin(), text.end());
  block.push_back(0);
  return block;
}

std::optional<EffectSettings> ParseParameters(const std::vector<uint8_t>& block) {
  const std::string all(block.begin(), std::find(block.begin(), block.end(), uint8_t{0}));
  std::string_view rest(all);
  if (TakeUpTo(rest, ';') != kBlockMark) {
    return std::nullopt;
  }
  EffectSettings settings;
  std::size_t fields = 0;
  while (!rest.empty()) {
    std::string_view value = TakeUpTo(rest, ';');
    const std::string_view key = TakeUpTo(value, '=');
    if (!Store(settings, key, value)) {
      return std::nullopt;
    }
    ++fields;
  }
  // A block that was cut between two fields would else pass with defaults in it.
  return fields == kFields.size() + 1 ? std::optional(settings) : std::nullopt;
}

AppSettings ParseSettingsFile(std::string_view text) {
  constexpr int32_t kMaxWait = 24 * 60 * 60 * 1000;
  AppSettings settings;
  int line = 0;
  while (!text.empty()) {
    ++line;
    std::string_view value = Trimmed(TakeUpTo(text, '\n'));
    if (value.empty() || value.front() == '#') {
      continue;
    }
    const std::string_view key = Trimmed(TakeUpTo(value, '='));
    value = Trimmed(value);
    const std::optional<int32_t> wait = Number(value, 0, kMaxWait);
    bool good = true;
    if (key == "delay-ms") {
      settings.delay = std::chrono::milliseconds(wait.value_or(0));
      good = wait.has_value();
    } else if (key == "flag-timeout-ms") {
      settings.flagTimeout = std::chrono::milliseconds(wait.value_or(0));
      good = wait.has_value();
    } else if (key == "log") {
      settings.log = value;
    } else {
      good = Store(settings.effect, key, value);
    }
    if (!good) {
      throw SettingsError("line " + std::to_string(line) + ": '" + std::string(key) + " = " +
                          std::string(value) + "' is no setting");
    }
  }
  return settings;
}

}  // namespace effects_app
