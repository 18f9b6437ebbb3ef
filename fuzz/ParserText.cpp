// Parses arbitrary text as every kind of value, and checks the one-pass split of a list against its
// single fields.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "persistence/ZvTextParser.h"

namespace {

void ParseAll(ZvParser& parser, const ZvString& text) {
  bool flag;
  int8_t s8;
  uint8_t u8;
  int16_t s16;
  uint16_t u16;
  int32_t s32;
  uint32_t u32;
  float f;
  double d;
  ZvString s;
  parser.ParseBool(&flag, text);
  parser.ParseSInt8(&s8, text);
  parser.ParseUInt8(&u8, text);
  parser.ParseSInt16(&s16, text);
  parser.ParseUInt16(&u16, text);
  parser.ParseSInt32(&s32, text);
  parser.ParseUInt32(&u32, text);
  parser.ParseFloat(&f, text);
  parser.ParseDouble(&d, text);
  parser.ParseString(&s, text);
  parser.ParseFourCC(&u32, text);
  parser.ResolveVariable(s);
}

void CheckSplit(ZvParser& parser, const ZvString& text) {
  std::vector<ZvString> fields;
  parser.SplitFields(fields, text);
  for (std::size_t i = 0; i < fields.size() && i < 64; ++i) {
    ZvString field;
    parser.GetField(field, text, static_cast<int16_t>(i));
    if (!(field == fields[i])) {
      std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const ZvString text(reinterpret_cast<const char*>(data), static_cast<uint32_t>(size));
  ZvParser binary(nullptr);
  ZvTextParser named(nullptr);
  ParseAll(binary, text);
  ParseAll(named, text);
  CheckSplit(binary, text);
  return 0;
}
