#pragma once

#include <string>

#include "persistence/ZvParser.h"

// A form of the stream that people can read and that names its fields, so that objects with member
// tables survive a write and a read:
//
//   ZvLayer
//   {
//     Offset=(12, -3) Name="sky \"2\"" LayerOpacity=0.5
//     SubLayers
//     {
//       ZvLayer
//       {
//       }
//     }
//   }
//
// A value is a number, true or false, a text in double quotes (with \" \\ \n \r \t and \xHH
// inside), a four-character code in single quotes, a list of values in parentheses, or bytes as
// hexadecimal digits between < and >. A field is a value with its name and '=' in front. Words
// without quotes name blocks, classes and records. Line breaks, blanks and commas between values
// mean nothing to the reader. Floats are written with as many digits as it takes to get the same
// number back.
//
// The reader takes what it understands and skips the rest: a block in a place where a name is
// expected belongs to a name that nobody knew, and is skipped whole. Every operation of a reading
// loop moves on, so damaged text ends.
//
// A typed read takes the next field whatever its name is. The stream has to seek: reading looks one
// character ahead and goes back.
class ZvTextParser : public ZvParser {
 public:
  explicit ZvTextParser(ZvStream* stream);

  bool ReadBool(const char* name = nullptr) override;
  // A comma reads as the byte of the separator that it is.
  int8_t ReadSInt8(const char* name = nullptr) override;
  uint8_t ReadUInt8(const char* name = nullptr) override;
  int16_t ReadSInt16(const char* name = nullptr) override;
  uint16_t ReadUInt16(const char* name = nullptr) override;
  int32_t ReadSInt32(const char* name = nullptr) override;
  uint32_t ReadUInt32(const char* name = nullptr) override;
  float ReadFloat(const char* name = nullptr) override;
  double ReadDouble(const char* name = nullptr) override;
  void ReadString(ZvString& out, const char* name = nullptr) override;
  // Takes up to `count` bytes of what stands between < and >; the rest of them is skipped, and so
  // is anything else that stands in their place.
  void ReadBytes(void* buffer, uint32_t count, const char* name = nullptr) override;
  void ReadFourCC(uint32_t* out, const char* name = nullptr) override;
  // A field gives its name and its value, a single value or word an empty name. Lists come without
  // their parentheses and blanks. Gives '{' when a block follows.
  char ReadField(ZvString& outValue, ZvString& outName) override;

  void WriteBool(bool value, const char* name, bool named) override;
  void WriteSInt8(int8_t value, const char* name, bool named) override;
  void WriteUInt8(uint8_t value, const char* name, bool named) override;
  void WriteSInt16(int16_t value, const char* name, bool named) override;
  void WriteUInt16(uint16_t value, const char* name, bool named) override;
  void WriteSInt32(int32_t value, const char* name, bool named) override;
  void WriteUInt32(uint32_t value, const char* name, bool named) override;
  void WriteFloat(float value, const char* name, bool named) override;
  void WriteDouble(double value, const char* name, bool named) override;
  void WriteString(const ZvString& value, const char* name, bool named) override;
  void WriteBytes(const void* buffer, uint32_t count, bool named) override;
  void WriteFourCC(uint32_t value, const char* name, bool named) override;

  // Exact for a number that is well formed; any other text goes by the rules of the base class.
  void ParseFloat(float* out, const ZvString& text) override;
  void ParseDouble(double* out, const ZvString& text) override;

  void WriteObject(ZvStreamable* object) override;

  // Breaks in a row make one.
  void WriteLineBreak() override;
  void Indent(int32_t delta) override;

  void WriteOpen(const char* name, char bracket) override;
  void WriteSeparator() override;
  void WriteClose(char bracket) override;
  // Takes an opening bracket; where there is none, a block is taken for open all the same.
  void ReadOpen() override;
  // Takes a closing bracket, if one comes next; true if it closes the innermost open one, at the
  // end of the input, and when nothing is open.
  bool ReadClose() override;

 private:
  // What comes next is -1 at the end.
  int Next();
  int Peek();
  void SkipBlanks();
  void SkipBlanksAndCommas();
  void SkipBlock();
  ZvString ReadToken();
  void ReadQuoted(std::string& out);
  void ReadTuple(std::string& out);
  void ReadWord(std::string& out);
  ZvString ReadValueText();

  void Put(const std::string& text);
  void PutField(const char* name, const std::string& value);
  void PutRaw(const std::string& text);

  int32_t mIndent = 0;
  bool mAtLineStart = true;
  bool mBlankNext = false;  // The next token on this line needs a blank in front.
};

// Gives the stream a new ZvTextParser.
void UseTextParser(ZvStream& stream);
