#include "persistence/ZvTextParser.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "persistence/ZvStream.h"

namespace {

constexpr int kEnd = -1;
constexpr std::size_t kBlanksPerIndent = 2;
constexpr char kHexDigits[] = "0123456789ABCDEF";

// A zero byte too: the tail of a memory stream is full of them.
bool IsBlank(int c) {
  return c == ' ' || c == '\0' || c == '\t' || c == '\n' || c == '\r';
}

bool IsClosing(int c) {
  return c == ')' || c == ']' || c == '}';
}

bool IsOpening(int c) {
  return c == '(' || c == '[' || c == '{';
}

// Characters that end a word.
bool IsMark(int c) {
  return c == kEnd || IsBlank(c) || IsClosing(c) || IsOpening(c) || c == ',' || c == '=' ||
         c == '"' || c == '\'';
}

// Characters of words that are written without quotes.
bool IsPlain(char c) {
  return ZvParser::IsLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == ':' ||
         c == '<' || c == '>';
}

int HexValue(int c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  if (c >= 'a' && c <= 'f') {
    return c - 'a' + 10;
  }
  return -1;
}

ZvString ToZvString(const std::string& text) {
  return {text.data(), static_cast<uint32_t>(text.size())};
}

void AppendHex(std::string& out, uint8_t byte) {
  out += kHexDigits[byte >> 4];
  out += kHexDigits[byte & 0xF];
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
      case '\\':
        quoted += '\\';
        quoted += c;
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      default:
        if (static_cast<uint8_t>(c) < 0x20 || c == 0x7F) {
          quoted += "\\x";
          AppendHex(quoted, static_cast<uint8_t>(c));
        } else {
          quoted += c;
        }
    }
  }
  return quoted + '"';
}

// A word stands as it is; any other text needs quotes. A word begins with a letter, so that it
// can't be taken for a number or for bytes.
std::string Word(std::string_view text) {
  const bool plain = !text.empty() && (ZvParser::IsLetter(text[0]) || text[0] == '_') &&
                     std::all_of(text.begin(), text.end(), IsPlain);
  return plain ? std::string(text) : Quoted(text);
}

// Shortest digits that give the same value back.
template <class T>
std::string Digits(T value) {
  char digits[64];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), value);
  return {digits, result.ptr};
}

// Four characters in quotes where they can be told from each other, else a number.
std::string CodeText(uint32_t code) {
  std::string characters;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char c = static_cast<char>(code >> shift & 0xFF);
    if (c < 0x20 || c > 0x7E || c == '\'') {
      return Digits(code);
    }
    characters += c;
  }
  return '\'' + characters + '\'';
}

// False unless the whole text is one number.
template <class T>
bool ParseExactly(T* out, std::string_view text) {
  const std::from_chars_result result =
      std::from_chars(text.data(), text.data() + text.size(), *out);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

}  // namespace

ZvTextParser::ZvTextParser(ZvStream* stream) : ZvParser(stream) {}

void UseTextParser(ZvStream& stream) {
  auto* parser = new ZvTextParser(&stream);
  stream.AttachParser(parser);
  parser->Release();
}

// Characters and tokens.

int ZvTextParser::Next() {
  if (AtEndOfInput()) {
    return kEnd;
  }
  uint8_t c = 0;
  mStream->RawRead(&c, 1);
  return c;
}

int ZvTextParser::Peek() {
  const int c = Next();
  if (c != kEnd) {
    mStream->Seek(mStream->Tell() - 1);
  }
  return c;
}

void ZvTextParser::SkipBlanks() {
  while (IsBlank(Peek())) {
    Next();
  }
}

void ZvTextParser::SkipBlanksAndCommas() {
  for (int c = Peek(); IsBlank(c) || c == ','; c = Peek()) {
    Next();
  }
}

void ZvTextParser::SkipBlock() {
  int32_t depth = 0;
  do {
    switch (Next()) {
      case '{':
        ++depth;
        break;
      case '}':
        --depth;
        break;
      case '"': {
        std::string skipped;
        ReadQuoted(skipped);
        break;
      }
      case kEnd:
        return;
      default:
        break;
    }
  } while (depth > 0);
}

// Behind the opening quote, up to and with the closing one.
void ZvTextParser::ReadQuoted(std::string& out) {
  for (int c = Next(); c != kEnd && c != '"'; c = Next()) {
    if (c == '\\') {
      c = Next();
      switch (c) {
        case kEnd:
          return;
        case 'n':
          c = '\n';
          break;
        case 'r':
          c = '\r';
          break;
        case 't':
          c = '\t';
          break;
        case 'x': {
          const int high = std::max(HexValue(Next()), 0);
          const int low = std::max(HexValue(Next()), 0);
          c = high * 16 + low;
          break;
        }
        default:
          break;
      }
    }
    out += static_cast<char>(c);
  }
}

// Behind the opening parenthesis, up to and with the closing one.
void ZvTextParser::ReadTuple(std::string& out) {
  for (int c = Next(); c != kEnd && c != ')'; c = Next()) {
    if (!IsBlank(c)) {
      out += static_cast<char>(c);
    }
  }
}

void ZvTextParser::ReadWord(std::string& out) {
  while (!IsMark(Peek())) {
    out += static_cast<char>(Next());
  }
}

// Takes at least one character, unless a closing bracket or the end comes next.
ZvString ZvTextParser::ReadToken() {
  std::string token;
  SkipBlanksAndCommas();
  while (Peek() == '{') {
    SkipBlock();
    SkipBlanksAndCommas();
  }
  const int first = Peek();
  if (first == kEnd || IsClosing(first)) {
    return {};
  }
  Next();
  switch (first) {
    case '"':
      ReadQuoted(token);
      break;
    case '(':
      ReadTuple(token);
      break;
    case '\'':
      token += '\'';
      for (int c = Next(); c != kEnd; c = Next()) {
        token += static_cast<char>(c);
        if (c == '\'') {
          break;
        }
      }
      break;
    default:
      token += static_cast<char>(first);
      if (!IsMark(first)) {
        ReadWord(token);
      }
  }
  return ToZvString(token);
}

char ZvTextParser::ReadField(ZvString& outValue, ZvString& outName) {
  outName = ZvString();
  outValue = ReadToken();
  SkipBlanks();
  if (Peek() == '=') {
    Next();
    SkipBlanks();
    outName = outValue;
    outValue = Peek() == '{' ? ZvString() : ReadToken();
    SkipBlanks();
  }
  return Peek() == '{' ? '{' : '\0';
}

ZvString ZvTextParser::ReadValueText() {
  ZvString value;
  ZvString name;
  ZvTextParser::ReadField(value, name);
  return value;
}

// Typed reads.

bool ZvTextParser::ReadBool(const char* /*name*/) {
  bool value = false;
  ParseBool(&value, ReadValueText());
  return value;
}

int8_t ZvTextParser::ReadSInt8(const char* name) {
  return static_cast<int8_t>(ReadUInt8(name));
}

uint8_t ZvTextParser::ReadUInt8(const char* /*name*/) {
  SkipBlanks();
  if (Peek() == ',') {
    return static_cast<uint8_t>(Next());
  }
  uint8_t value = 0;
  ParseUInt8(&value, ReadValueText());
  return value;
}

int16_t ZvTextParser::ReadSInt16(const char* /*name*/) {
  int16_t value = 0;
  ParseSInt16(&value, ReadValueText());
  return value;
}

uint16_t ZvTextParser::ReadUInt16(const char* /*name*/) {
  uint16_t value = 0;
  ParseUInt16(&value, ReadValueText());
  return value;
}

int32_t ZvTextParser::ReadSInt32(const char* /*name*/) {
  int32_t value = 0;
  ParseSInt32(&value, ReadValueText());
  return value;
}

uint32_t ZvTextParser::ReadUInt32(const char* /*name*/) {
  uint32_t value = 0;
  ParseUInt32(&value, ReadValueText());
  return value;
}

float ZvTextParser::ReadFloat(const char* /*name*/) {
  float value = 0;
  ParseFloat(&value, ReadValueText());
  return value;
}

double ZvTextParser::ReadDouble(const char* /*name*/) {
  double value = 0;
  ParseDouble(&value, ReadValueText());
  return value;
}

void ZvTextParser::ReadString(ZvString& out, const char* /*name*/) {
  out = ReadValueText();
}

void ZvTextParser::ReadBytes(void* buffer, uint32_t count, const char* /*name*/) {
  SkipBlanksAndCommas();
  const int first = Peek();
  if (first != '<') {
    // Somebody may ask as long as the stream holds anything.
    if (IsClosing(first)) {
      Next();
    } else {
      ReadToken();
    }
    return;
  }
  Next();
  auto* to = static_cast<uint8_t*>(buffer);
  uint32_t digits = 0;
  int high = 0;
  for (int c = Next(); c != kEnd && c != '>'; c = Next()) {
    const int value = HexValue(c);
    if (value < 0) {
      continue;
    }
    if (digits % 2 == 0) {
      high = value;
    } else if (digits / 2 < count) {
      to[digits / 2] = static_cast<uint8_t>(high * 16 + value);
    }
    ++digits;
  }
}

void ZvTextParser::ReadFourCC(uint32_t* out, const char* /*name*/) {
  ParseFourCC(out, ReadValueText());
}

void ZvTextParser::ParseFloat(float* out, const ZvString& text) {
  if (!ParseExactly(out, text.view())) {
    ZvParser::ParseFloat(out, text);
  }
}

void ZvTextParser::ParseDouble(double* out, const ZvString& text) {
  if (!ParseExactly(out, text.view())) {
    ZvParser::ParseDouble(out, text);
  }
}

// Typed writes.

void ZvTextParser::PutRaw(const std::string& text) {
  if (mStream != nullptr) {
    mStream->RawWrite(text.data(), static_cast<uint32_t>(text.size()));
  }
}

void ZvTextParser::Put(const std::string& text) {
  std::string out;
  if (mAtLineStart) {
    out.assign(static_cast<std::size_t>(mIndent) * kBlanksPerIndent, ' ');
  } else if (mBlankNext) {
    out = " ";
  }
  PutRaw(out + text);
  mAtLineStart = false;
  mBlankNext = true;
}

void ZvTextParser::PutField(const char* name, const std::string& value) {
  Put(name != nullptr ? Word(name) + '=' + value : value);
}

void ZvTextParser::WriteBool(bool value, const char* name, bool /*named*/) {
  PutField(name, value ? "true" : "false");
}
void ZvTextParser::WriteSInt8(int8_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(int32_t{value}));
}
void ZvTextParser::WriteUInt8(uint8_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(int32_t{value}));
}
void ZvTextParser::WriteSInt16(int16_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}
void ZvTextParser::WriteUInt16(uint16_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}
void ZvTextParser::WriteSInt32(int32_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}
void ZvTextParser::WriteUInt32(uint32_t value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}
void ZvTextParser::WriteFloat(float value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}
void ZvTextParser::WriteDouble(double value, const char* name, bool /*named*/) {
  PutField(name, Digits(value));
}

void ZvTextParser::WriteString(const ZvString& value, const char* name, bool named) {
  const bool mayBeBare = name == nullptr && named;
  PutField(name, mayBeBare ? Word(value.view()) : Quoted(value.view()));
}

void ZvTextParser::WriteBytes(const void* buffer, uint32_t count, bool /*named*/) {
  const auto* bytes = static_cast<const uint8_t*>(buffer);
  std::string text = "<";
  for (uint32_t i = 0; i < count; ++i) {
    AppendHex(text, bytes[i]);
  }
  Put(text + '>');
}

void ZvTextParser::WriteFourCC(uint32_t value, const char* name, bool /*named*/) {
  PutField(name, CodeText(value));
}

// Objects, layout and brackets.

void ZvTextParser::WriteObject(ZvStreamable* object) {
  ZvParser::WriteObject(object);
  WriteLineBreak();
}

void ZvTextParser::WriteLineBreak() {
  if (!mAtLineStart) {
    PutRaw("\n");
  }
  mAtLineStart = true;
}

void ZvTextParser::Indent(int32_t delta) {
  mIndent = std::max(mIndent + delta, 0);
}

void ZvTextParser::WriteOpen(const char* name, char bracket) {
  PutField(name, std::string(1, bracket));
  mBlankNext = false;
}

void ZvTextParser::WriteSeparator() {
  PutRaw(",");
  mBlankNext = true;
}

void ZvTextParser::WriteClose(char bracket) {
  mBlankNext = false;
  Put(std::string(1, bracket));
}

void ZvTextParser::ReadOpen() {
  SkipBlanksAndCommas();
  PushOpen(IsOpening(Peek()) ? static_cast<char>(Next()) : '{');
}

bool ZvTextParser::ReadClose() {
  SkipBlanksAndCommas();
  const int next = Peek();
  const bool closing = IsClosing(next);
  if (closing) {
    Next();
  }
  if (mOpenBrackets.empty()) {
    return true;
  }
  const char wanted = ClosingBracket(mOpenBrackets.back().mBracket);
  if (next != kEnd && !(closing && next == wanted)) {
    return false;
  }
  mOpenBrackets.pop_back();
  return true;
}
