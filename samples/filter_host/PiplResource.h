// The resource in which a filter tells a host what it is: the `PIPL` resource of its library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace filter_host {

// How a filter wants one filter case served: input matte, output handling, and two bytes of flags.
struct FilterCaseInfo {
  uint8_t input = 0;
  uint8_t output = 0;
  uint8_t flags1 = 0;
  uint8_t flags2 = 0;
};

// Values of FilterCaseInfo::input.
inline constexpr uint8_t kCannotFilter = 0;
inline constexpr uint8_t kMatteNone = 1;
inline constexpr uint8_t kMatteBlack = 2;
inline constexpr uint8_t kMatteGray = 3;
inline constexpr uint8_t kMatteWhite = 4;
// A bit of flags1: the filter minds the selection itself, the host doesn't mask its output.
inline constexpr uint8_t kWritesOutsideSelection = 0x08;

struct PiplProperty {
  uint32_t vendor = 0;
  uint32_t key = 0;
  int32_t id = 0;
  std::vector<uint8_t> data;
};

class PiplResource {
 public:
  // Throws Error when the bytes are cut or no such resource.
  explicit PiplResource(std::span<const uint8_t> bytes);

  const std::vector<PiplProperty>& Properties() const { return mProperties; }
  // Null when there is none with the key (under vendor '8BIM').
  const PiplProperty* Find(uint32_t key) const;

  // True when the property 'kind' says that this is a filter.
  bool IsFilter() const;
  std::string Name() const;
  std::string Category() const;
  // Name of the exported entry point for 32-bit x86 Windows, the property 'wx86'; empty when none.
  std::string EntryPoint32() const;
  // What 'mode' says about an image mode; true for all when there is no such property.
  bool AllowsMode(int16_t imageMode) const;
  // What 'fici' says about a filter case from 1 to 7; empty when it says nothing about it.
  std::optional<FilterCaseInfo> CaseInfo(int16_t filterCase) const;

 private:
  std::vector<PiplProperty> mProperties;
};

}  // namespace filter_host
