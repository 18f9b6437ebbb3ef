// A scripting descriptor: the list of keyed values in which a host keeps a filter's parameters, and
// its text form, which is also the format of the files that --record writes and --replay reads.
//
// The text form is lines. The first is `filter-descriptor 1`; then one line for each entry, in
// order, as key, type and value:
//
//   'aeAU' string "Golden \x22Hour\x22"
//   'aeCT' float 61
//
// Keys, units and other four-character codes stand in single quotes, bytes in double quotes; in
// both, a byte that is not printable ASCII, a quote or a backslash is written `\x` and two
// hexadecimal digits. Numbers are decimal. Empty lines and lines that begin with `#` mean nothing.
// Types and their values:
//
//   integer N             float X               unit-float 'unit' X     boolean 0 or 1
//   text "bytes"          alias "bytes"         string "bytes" (255 at most)
//   enumerated 'type' 'value'                   class 'code'            scoped-class 'code'
//   object 'type' "bytes"                       scoped-object 'type' "bytes"
//   count N
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace filter_host {

enum class DescriptorType {
  kInteger,
  kFloat,
  kUnitFloat,
  kBoolean,
  kText,
  kAlias,
  kString,
  kEnumerated,
  kClass,
  kScopedClass,
  kObject,
  kScopedObject,
  kCount,
};

struct DescriptorEntry {
  uint32_t key = 0;
  DescriptorType type = DescriptorType::kInteger;
  uint32_t code = 0;    // unit, enumeration type or object type
  uint32_t value = 0;   // enumerated value, class, count
  int32_t integer = 0;  // integer, boolean
  double number = 0.0;  // float, unit-float
  std::string bytes;    // text, alias, string, object

  bool operator==(const DescriptorEntry&) const = default;
};

using Descriptor = std::vector<DescriptorEntry>;

std::string FormatDescriptor(const Descriptor& descriptor);
// Throws Error that names `source` and the line for anything that is not the text form.
Descriptor ParseDescriptor(std::string_view text, const std::string& source);

// The four-character code by which a host's getKeyProc tells a value's type, 'doub' for a float.
uint32_t PublishedTypeCode(DescriptorType type);

}  // namespace filter_host
