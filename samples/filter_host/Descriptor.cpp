#include "filter_host/Descriptor.h"

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "filter_host/Picture.h"
#include "foundation/FourCharCode.h"

namespace filter_host {

namespace {

constexpr std::string_view kFirstLine = "filter-descriptor 1";

struct TypeName {
  DescriptorType type;
  const char* name;
  uint32_t published;
};

constexpr std::array<TypeName, 13> kTypes = {{
    {DescriptorType::kInteger, "integer", FourCC("long")},
    {DescriptorType::kFloat, "float", FourCC("doub")},
    {DescriptorType::kUnitFloat, "unit-float", FourCC("UntF")},
    {DescriptorType::kBoolean, "boolean", FourCC("bool")},
    {DescriptorType::kText, "text", FourCC("TEXT")},
    {DescriptorType::kAlias, "alias", FourCC("alis")},
    {DescriptorType::kString, "string", FourCC("TEXT")},
    {DescriptorType::kEnumerated, "enumerated", FourCC("enum")},
    {DescriptorType::kClass, "class", FourCC("type")},
    {DescriptorType::kScopedClass, "scoped-class", FourCC("GlbC")},
    {DescriptorType::kObject, "object", FourCC("Objc")},
    {DescriptorType::kScopedObject, "scoped-object", FourCC("GlbO")},
    {DescriptorType::kCount, "count", FourCC("VlLs")},
}};

const TypeName& Named(DescriptorType type) {
  for (const TypeName& entry : kTypes) {
    if (entry.type == type) {
      return entry;
    }
  }
  return kTypes.front();
}

void AppendQuoted(std::string& text, std::string_view bytes, char quote) {
  text += quote;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte > 0x7E || character == '\\' || character == '\'' || character == '"') {
      char escape[8];
      std::snprintf(escape, sizeof(escape), "\\x%02X", static_cast<unsigned>(byte));
      text += escape;
    } else {
      text += character;
    }
  }
  text += quote;
}

void AppendCode(std::string& text, uint32_t code) {
  const char characters[4] = {static_cast<char>(code >> 24), static_cast<char>(code >> 16),
                              static_cast<char>(code >> 8), static_cast<char>(code)};
  AppendQuoted(text, std::string_view(characters, 4), '\'');
}

void AppendNumber(std::string& text, double number) {
  char digits[40];
  std::snprintf(digits, sizeof(digits), "%.17g", number);
  text += digits;
}

// Reads the parts of one line from left to right.
class LineReader {
 public:
  LineReader(std::string_view line, const std::string& where) : mRest(line), mWhere(where) {}

  [[noreturn]] void Fail(const std::string& what) const { throw Error(mWhere + ": " + what); }

  std::string Word() {
    SkipBlanks();
    std::size_t length = 0;
    while (length < mRest.size() && mRest[length] != ' ') {
      ++length;
    }
    if (length == 0) {
      Fail("the line ends too early");
    }
    const std::string word(mRest.substr(0, length));
    mRest.remove_prefix(length);
    return word;
  }

  std::string Quoted(char quote) {
    SkipBlanks();
    if (mRest.empty() || mRest.front() != quote) {
      Fail(std::string("expected ") + quote);
    }
    mRest.remove_prefix(1);
    std::string bytes;
    while (!mRest.empty() && mRest.front() != quote) {
      if (mRest.front() != '\\') {
        bytes += mRest.front();
        mRest.remove_prefix(1);
        continue;
      }
      if (mRest.size() < 4 || mRest[1] != 'x') {
        Fail("a backslash is followed by x and two hexadecimal digits");
      }
      const int high = HexDigit(mRest[2]);
      const int low = HexDigit(mRest[3]);
      bytes += static_cast<char>(high * 16 + low);
      mRest.remove_prefix(4);
    }
    if (mRest.empty()) {
      Fail(std::string("missing ") + quote);
    }
    mRest.remove_prefix(1);
    return bytes;
  }

  uint32_t Code() {
    const std::string code = Quoted('\'');
    if (code.size() != 4) {
      Fail("a code has four characters");
    }
    uint32_t value = 0;
    for (const char character : code) {
      value = value << 8 | static_cast<unsigned char>(character);
    }
    return value;
  }

  int64_t Integer(int64_t low, int64_t high) {
    const std::string word = Word();
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(word.c_str(), &end, 10);
    if (*end != '\0' || errno != 0 || value < low || value > high) {
      Fail("'" + word + "' is no number between " + std::to_string(low) + " and " +
           std::to_string(high));
    }
    return value;
  }

  double Number() {
    const std::string word = Word();
    char* end = nullptr;
    const double value = std::strtod(word.c_str(), &end);
    if (*end != '\0') {
      Fail("'" + word + "' is no number");
    }
    return value;
  }

  void End() {
    SkipBlanks();
    if (!mRest.empty()) {
      Fail("'" + std::string(mRest) + "' stands behind the value");
    }
  }

 private:
  int HexDigit(char digit) const {
    if (digit >= '0' && digit <= '9')
      return digit - '0';
    if (digit >= 'A' && digit <= 'F')
      return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
      return digit - 'a' + 10;
    Fail("a backslash is followed by x and two hexadecimal digits");
  }

  void SkipBlanks() {
    while (!mRest.empty() && mRest.front() == ' ') {
      mRest.remove_prefix(1);
    }
  }

  std::string_view mRest;
  std::string mWhere;
};

DescriptorEntry ParseEntry(LineReader& line) {
  DescriptorEntry entry;
  entry.key = line.Code();
  const std::string typeName = line.Word();
  const TypeName* type = nullptr;
  for (const TypeName& candidate : kTypes) {
    if (typeName == candidate.name) {
      type = &candidate;
    }
  }
  if (type == nullptr) {
    line.Fail("'" + typeName + "' is no type");
  }
  entry.type = type->type;
  switch (entry.type) {
    case DescriptorType::kInteger:
      entry.integer = static_cast<int32_t>(line.Integer(INT32_MIN, INT32_MAX));
      break;
    case DescriptorType::kBoolean:
      entry.integer = static_cast<int32_t>(line.Integer(0, 1));
      break;
    case DescriptorType::kFloat:
      entry.number = line.Number();
      break;
    case DescriptorType::kUnitFloat:
      entry.code = line.Code();
      entry.number = line.Number();
      break;
    case DescriptorType::kText:
    case DescriptorType::kAlias:
      entry.bytes = line.Quoted('"');
      break;
    case DescriptorType::kString:
      entry.bytes = line.Quoted('"');
      if (entry.bytes.size() > 255) {
        line.Fail("a string has 255 bytes at most");
      }
      break;
    case DescriptorType::kEnumerated:
      entry.code = line.Code();
      entry.value = line.Code();
      break;
    case DescriptorType::kClass:
    case DescriptorType::kScopedClass:
      entry.value = line.Code();
      break;
    case DescriptorType::kObject:
    case DescriptorType::kScopedObject:
      entry.code = line.Code();
      entry.bytes = line.Quoted('"');
      break;
    case DescriptorType::kCount:
      entry.value = static_cast<uint32_t>(line.Integer(0, UINT32_MAX));
      break;
  }
  line.End();
  return entry;
}

void AppendEntry(std::string& text, const DescriptorEntry& entry) {
  AppendCode(text, entry.key);
  text += ' ';
  text += Named(entry.type).name;
  text += ' ';
  switch (entry.type) {
    case DescriptorType::kInteger:
    case DescriptorType::kBoolean:
      text += std::to_string(entry.integer);
      break;
    case DescriptorType::kFloat:
      AppendNumber(text, entry.number);
      break;
    case DescriptorType::kUnitFloat:
      AppendCode(text, entry.code);
      text += ' ';
      AppendNumber(text, entry.number);
      break;
    case DescriptorType::kText:
    case DescriptorType::kAlias:
    case DescriptorType::kString:
      AppendQuoted(text, entry.bytes, '"');
      break;
    case DescriptorType::kEnumerated:
      AppendCode(text, entry.code);
      text += ' ';
      AppendCode(text, entry.value);
      break;
    case DescriptorType::kClass:
    case DescriptorType::kScopedClass:
      AppendCode(text, entry.value);
      break;
    case DescriptorType::kObject:
    case DescriptorType::kScopedObject:
      AppendCode(text, entry.code);
      text += ' ';
      AppendQuoted(text, entry.bytes, '"');
      break;
    case DescriptorType::kCount:
      text += std::to_string(entry.value);
      break;
  }
  text += '\n';
}

}  // namespace

uint32_t PublishedTypeCode(DescriptorType type) {
  return Named(type).published;
}

std::string FormatDescriptor(const Descriptor& descriptor) {
  std::string text(kFirstLine);
  text += '\n';
  for (const DescriptorEntry& entry : descriptor) {
    AppendEntry(text, entry);
  }
  return text;
}

Descriptor ParseDescriptor(std::string_view text, const std::string& source) {
  Descriptor descriptor;
  int number = 0;
  while (!text.empty()) {
    const std::size_t length = text.find('\n');
    std::string_view line = text.substr(0, length);
    text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
    if (!line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    ++number;
    if (number == 1) {
      if (line != kFirstLine) {
        throw Error(source + ": the first line is not '" + std::string(kFirstLine) + "'");
      }
      continue;
    }
    if (line.empty() || line.front() == '#') {
      continue;
    }
    LineReader reader(line, source + ", line " + std::to_string(number));
    descriptor.push_back(ParseEntry(reader));
  }
  if (number == 0) {
    throw Error(source + ": the file is empty");
  }
  return descriptor;
}

}  // namespace filter_host
