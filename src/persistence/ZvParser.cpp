#include "persistence/ZvParser.h"

#include <cmath>
#include <memory>
#include <string_view>
#include <type_traits>

#include "foundation/CP_DebugAssert.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvStream.h"
#include "persistence/ZvStreamable.h"

namespace {

constexpr char kThisFile[] = "ZvParser";
constexpr int16_t kLineNoObject = 250;

constexpr int32_t kMaxExponent = 9999;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

uint32_t DigitValue(char c) {
  return static_cast<uint32_t>(c - '0');
}

uint32_t CharacterCode(char c) {
  return static_cast<uint8_t>(c);
}

bool IsHexadecimal(std::string_view text) {
  return text.size() >= 2 && text[0] == '0' && text[1] == 'x';
}

uint32_t ParseHexDigits(std::string_view digits) {
  uint32_t value = 0;
  for (const char c : digits) {
    if (IsDigit(c)) {
      value = value * 16 + DigitValue(c);
    } else if (c >= 'A' && c <= 'F') {
      value = value * 16 + static_cast<uint32_t>(c - 'A' + 10);
    } else if (c >= 'a' && c <= 'f') {
      value = value * 16 + static_cast<uint32_t>(c - 'a' + 10);
    }
  }
  return value;
}

uint32_t ParseDecimalDigits(std::string_view text) {
  uint32_t value = 0;
  for (const char c : text) {
    if (IsDigit(c)) {
      value = value * 10 + DigitValue(c);
    }
  }
  return value;
}

uint32_t ParseUnsignedNumber(std::string_view text) {
  return IsHexadecimal(text) ? ParseHexDigits(text.substr(2)) : ParseDecimalDigits(text);
}

// The bits of the signed number; narrower results are cut from them.
uint32_t ParseSignedNumber(std::string_view text) {
  if (IsHexadecimal(text)) {
    return ParseHexDigits(text.substr(2));
  }
  const uint32_t magnitude = ParseDecimalDigits(text);
  return text.find('-') == std::string_view::npos ? magnitude : 0u - magnitude;
}

double ParseRealNumber(std::string_view text) {
  double mantissa = 0.0;
  double step = 0.1;
  int32_t exponent = 0;
  bool negative = false;
  bool negativeExponent = false;
  bool behindPoint = false;
  bool inExponent = false;
  for (const char c : text) {
    if (IsDigit(c)) {
      const int32_t digit = c - '0';
      if (inExponent) {
        exponent = 10 * exponent + digit;
        if (exponent > kMaxExponent) {
          exponent = kMaxExponent;
        }
      } else if (behindPoint) {
        mantissa = digit * step + mantissa;
        step = step * 0.1;
      } else {
        mantissa = 10.0 * mantissa + digit;
      }
    } else if (c == '.') {
      behindPoint = true;
      step = 0.1;
    } else if (c == 'e' || c == 'E') {
      inExponent = true;
    } else if (c == '-') {
      (inExponent ? negativeExponent : negative) = true;
    }
  }
  const double value = mantissa * std::pow(10.0, negativeExponent ? -exponent : exponent);
  return negative ? -value : value;
}

// At most four of the characters, the first in the highest byte used.
uint32_t PackCharacters(std::string_view characters, bool skipQuotes) {
  uint32_t code = 0;
  int taken = 0;
  for (const char c : characters) {
    if (skipQuotes && c == '\'') {
      continue;
    }
    if (taken == 4) {
      break;
    }
    code = (code << 8) | CharacterCode(c);
    ++taken;
  }
  return code;
}

template <class T>
T SwapBytes(T value) {
  using Unsigned = std::make_unsigned_t<T>;
  Unsigned from = static_cast<Unsigned>(value);
  if constexpr (sizeof(T) == 2) {
    from = static_cast<Unsigned>((from << 8) | (from >> 8));
  } else {
    static_assert(sizeof(T) == 4);
    from = (from << 24) | ((from << 8) & 0x00FF0000u) | ((from >> 8) & 0x0000FF00u) | (from >> 24);
  }
  return static_cast<T>(from);
}

}  // namespace

ZvParser::ZvParser(ZvStream* stream) : mStream(stream) {}

ZvParser::~ZvParser() = default;

// Binary reads.

template <class T>
T ZvParser::ReadHostOrder() {
  T value{};
  if (mStream != nullptr) {
    mStream->RawRead(&value, sizeof(value));
  }
  return value;
}

template <class T>
T ZvParser::ReadInteger() {
  const T value = ReadHostOrder<T>();
  if constexpr (sizeof(T) > 1) {
    return mStreamLittleEndian != mHostLittleEndian ? SwapBytes(value) : value;
  }
  return value;
}

bool ZvParser::ReadBool(const char* /*name*/) {
  return ReadInteger<uint8_t>() != 0;
}
int8_t ZvParser::ReadSInt8(const char* /*name*/) {
  return ReadInteger<int8_t>();
}
uint8_t ZvParser::ReadUInt8(const char* /*name*/) {
  return ReadInteger<uint8_t>();
}
int16_t ZvParser::ReadSInt16(const char* /*name*/) {
  return ReadInteger<int16_t>();
}
uint16_t ZvParser::ReadUInt16(const char* /*name*/) {
  return ReadInteger<uint16_t>();
}
int32_t ZvParser::ReadSInt32(const char* /*name*/) {
  return ReadInteger<int32_t>();
}
uint32_t ZvParser::ReadUInt32(const char* /*name*/) {
  return ReadInteger<uint32_t>();
}
float ZvParser::ReadFloat(const char* /*name*/) {
  return ReadHostOrder<float>();
}
double ZvParser::ReadDouble(const char* /*name*/) {
  return ReadHostOrder<double>();
}

void ZvParser::ReadString(ZvString& out, const char* /*name*/) {
  constexpr uint32_t kShortText = 254;
  const uint32_t length = ReadUInt16();
  if (length == 0) {
    out = ZvString();
    return;
  }
  if (length <= kShortText) {
    char text[kShortText + 2] = {};
    ZvParser::ReadBytes(text, length);
    out = ZvString(text);
    return;
  }
  const auto text = std::make_unique<char[]>(length + 2);  // Zeroed, and so terminated.
  ZvParser::ReadBytes(text.get(), length);
  out = ZvString(text.get());
}

void ZvParser::ReadBytes(void* buffer, uint32_t count, const char* /*name*/) {
  if (mStream != nullptr) {
    mStream->RawRead(buffer, count);
  }
}

void ZvParser::ReadFourCC(uint32_t* out, const char* /*name*/) {
  *out = ReadInteger<uint32_t>();
}

char ZvParser::ReadField(ZvString& outValue, ZvString& /*outName*/) {
  ReadString(outValue);
  const std::string_view value = outValue.view();
  return !value.empty() && IsBlockOpen(value.back()) ? value.back() : '\0';
}

// Binary writes.

template <class T>
void ZvParser::WriteHostOrder(T value) {
  if (mStream != nullptr) {
    mStream->RawWrite(&value, sizeof(value));
  }
}

template <class T>
void ZvParser::WriteInteger(T value) {
  if constexpr (sizeof(T) > 1) {
    if (mStreamLittleEndian != mHostLittleEndian) {
      value = SwapBytes(value);
    }
  }
  WriteHostOrder(value);
}

void ZvParser::WriteBool(bool value, const char* /*name*/, bool /*named*/) {
  WriteInteger<uint8_t>(value ? 1 : 0);
}
void ZvParser::WriteSInt8(int8_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteUInt8(uint8_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteSInt16(int16_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteUInt16(uint16_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteSInt32(int32_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteUInt32(uint32_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}
void ZvParser::WriteFloat(float value, const char* /*name*/, bool /*named*/) {
  WriteHostOrder(value);
}
void ZvParser::WriteDouble(double value, const char* /*name*/, bool /*named*/) {
  WriteHostOrder(value);
}

void ZvParser::WriteString(const ZvString& value, const char* /*name*/, bool /*named*/) {
  const auto length = static_cast<uint16_t>(value.length());
  WriteUInt16(length, nullptr, true);
  if (length != 0) {
    ZvParser::WriteBytes(value.c_str(), length, true);
  }
}

void ZvParser::WriteBytes(const void* buffer, uint32_t count, bool /*named*/) {
  if (mStream != nullptr) {
    mStream->RawWrite(buffer, count);
  }
}

void ZvParser::WriteFourCC(uint32_t value, const char* /*name*/, bool /*named*/) {
  WriteInteger(value);
}

// Text to values.

void ZvParser::ParseBool(bool* out, const ZvString& text) {
  switch (text.c_str()[0]) {
    case 'N':
    case 'n':
    case '0':
    case 'F':
    case 'f':
      *out = false;
      break;
    default:
      *out = true;
  }
}

void ZvParser::ParseSInt8(int8_t* out, const ZvString& text) {
  const char first = text.c_str()[0];
  *out =
      static_cast<int8_t>(IsLetter(first) ? CharacterCode(first) : ParseSignedNumber(text.view()));
}

void ZvParser::ParseUInt8(uint8_t* out, const ZvString& text) {
  const char first = text.c_str()[0];
  *out =
      static_cast<uint8_t>(IsLetter(first) ? CharacterCode(first) : ParseSignedNumber(text.view()));
}

void ZvParser::ParseSInt16(int16_t* out, const ZvString& text) {
  *out = static_cast<int16_t>(ParseSignedNumber(text.view()));
}

void ZvParser::ParseUInt16(uint16_t* out, const ZvString& text) {
  *out = static_cast<uint16_t>(ParseUnsignedNumber(text.view()));
}

void ZvParser::ParseSInt32(int32_t* out, const ZvString& text) {
  *out = static_cast<int32_t>(ParseSignedNumber(text.view()));
}

void ZvParser::ParseUInt32(uint32_t* out, const ZvString& text) {
  *out = ParseUnsignedNumber(text.view());
}

void ZvParser::ParseFloat(float* out, const ZvString& text) {
  *out = static_cast<float>(ParseRealNumber(text.view()));
}

void ZvParser::ParseDouble(double* out, const ZvString& text) {
  *out = ParseRealNumber(text.view());
}

void ZvParser::ParseString(ZvString* out, const ZvString& text) {
  *out = text;
}

void ZvParser::ParseFourCC(uint32_t* out, const ZvString& text) {
  const std::string_view characters = text.view();
  if (!characters.empty() && characters[0] == '\'') {
    if (characters.size() == 1) {
      *out = CharacterCode('\'');
    } else if (characters[1] == '\'') {
      *out = 0;
    } else {
      *out = PackCharacters(characters.substr(1), true);
    }
  } else if (!characters.empty() && IsLetter(characters[0])) {
    *out = PackCharacters(characters, false);
  } else {
    *out = ParseDecimalDigits(characters);
  }
}

void ZvParser::GetField(ZvString& out, const ZvString& list, int16_t index) {
  // REQUIRED: commas are counted in 16 bits, so in a list with more of them the count comes by the
  // same index again, and those fields are joined.
  ZvString field;
  int16_t commas = 0;
  std::string_view rest = list.view();
  while (true) {
    const std::size_t end = rest.find(',');
    if (commas == index) {
      const std::string_view part = rest.substr(0, end);
      field.append(part.data(), static_cast<uint32_t>(part.size()));
    }
    if (end == std::string_view::npos) {
      break;
    }
    rest.remove_prefix(end + 1);
    commas = static_cast<int16_t>(commas + 1);
  }
  out = field;
}

int16_t ZvParser::CountFields(const ZvString& list) {
  const std::string_view characters = list.view();
  if (characters.empty()) {
    return 0;
  }
  uint32_t fields = 1;
  for (const char c : characters) {
    fields += IsSeparator(c) ? 1u : 0u;
  }
  return static_cast<int16_t>(fields);
}

// Objects.

ZvStreamable* ZvParser::ReadObject() {
  ZvString className;
  ReadString(className);
  if (className.length() == 0) {
    return nullptr;
  }
  return ReadObjectOfClass(className, kThisFile, kLineNoObject);
}

ZvStreamable* ZvParser::ReadObjectOfClass(const ZvString& className, const char* reportFile,
                                          int16_t reportLine) {
  const ZvStreamableFactory factory =
      mObjectDepth < kMaxObjectDepth ? FindFactory(className) : nullptr;
  std::unique_ptr<ZvStreamable> object(factory != nullptr ? factory() : nullptr);
  if (!CP_Check(object != nullptr, reportFile, reportLine, "object != NULL")) {
    return nullptr;
  }
  if (mStream != nullptr) {
    struct DepthGuard {
      int32_t& mDepth;
      explicit DepthGuard(int32_t& depth) : mDepth(depth) { ++mDepth; }
      ~DepthGuard() { --mDepth; }
    };
    const DepthGuard guard(mObjectDepth);
    object->ReadFrom(*mStream);
  }
  return object.release();
}

void ZvParser::WriteObject(ZvStreamable* object) {
  ZvString className;
  if (object != nullptr) {
    object->ClassName(className);
  }
  WriteString(className, nullptr, true);
  WriteLineBreak();
  if (object != nullptr && mStream != nullptr) {
    object->WriteTo(*mStream);
  }
}

// Layout and brackets.

void ZvParser::WriteLineBreak() {}

void ZvParser::WriteSoftBreak() {}

void ZvParser::Indent(int32_t /*delta*/) {}

void ZvParser::WriteOpen(const char* /*name*/, char bracket) {
  WriteUInt8(static_cast<uint8_t>(bracket), nullptr, true);
}

void ZvParser::WriteSeparator() {
  WriteUInt8(',', nullptr, true);
}

void ZvParser::WriteClose(char bracket) {
  WriteUInt8(static_cast<uint8_t>(bracket), nullptr, true);
}

void ZvParser::ReadOpen() {
  PushOpen(static_cast<char>(ReadSInt8()));
}

void ZvParser::PushOpen(char bracket) {
  mOpenBrackets.push_back({bracket, static_cast<int32_t>(mOpenBrackets.size()), false});
}

bool ZvParser::ReadClose() {
  if (!AtEndOfInput()) {
    const char open = mOpenBrackets.empty() ? ' ' : mOpenBrackets.back().mBracket;
    const char close = static_cast<char>(ReadSInt8());
    if (!mOpenBrackets.empty() && close != ClosingBracket(open)) {
      return false;
    }
  }
  if (!mOpenBrackets.empty()) {
    mOpenBrackets.pop_back();
  }
  return true;
}

bool ZvParser::AtEndOfInput() {
  if (mStream == nullptr) {
    return true;
  }
  if (!mStream->IsOpen()) {
    // A read opens a closed file stream; only an open one knows its length.
    uint8_t nothing = 0;
    mStream->RawRead(&nothing, 0);
  }
  return mStream->AtEnd();
}

char ZvParser::ClosingBracket(char bracket) {
  switch (bracket) {
    case '(':
      return ')';
    case '[':
      return ']';
    case '{':
      return '}';
    default:
      return bracket;
  }
}

// State.

void ZvParser::CopyStateFrom(const ZvParser& other) {
  mVariableMarker = other.mVariableMarker;
  mVariables = other.mVariables;
}

void ZvParser::SplitFields(std::vector<ZvString>& out, const ZvString& list) {
  const int16_t count = CountFields(list);
  out.assign(count > 0 ? static_cast<std::size_t>(count) : 0, ZvString());
  std::string_view rest = list.view();
  int16_t index = 0;
  while (true) {
    const std::size_t end = rest.find(',');
    if (index >= 0 && index < count) {
      const std::string_view field = rest.substr(0, end);
      out[static_cast<std::size_t>(index)].append(field.data(),
                                                  static_cast<uint32_t>(field.size()));
    }
    if (end == std::string_view::npos) {
      break;
    }
    rest.remove_prefix(end + 1);
    index = static_cast<int16_t>(index + 1);
  }
}

bool ZvParser::ResolveVariable(ZvString& text) const {
  std::string_view key = text.view();
  if (!key.empty() && key.front() == mVariableMarker) {
    key.remove_prefix(1);
  }
  for (const Variable& variable : mVariables) {
    if (variable.mKey.view() == key) {
      text = variable.mValue;
      return true;
    }
  }
  return false;
}
