#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CP_M_ReferenceCounted.h"
#include "foundation/ZvString.h"

class ZvStream;
class ZvStreamable;

// Turns typed values into the bytes of a stream and back, and text into values. This class is the
// system's serial form: binary, without field names, tags or lengths other than those of strings
// and of the class name in front of an object. Integers are big-endian unless set otherwise; floats
// and doubles always stand in host order (little-endian), so a file holds both: that mixture is
// part of the format.
//
// A parser for another form derives from this class and is attached by ZvStream::AttachParser. The
// stream owns its parser; the parser points at its stream without owning it. Without a stream it
// reads zeros and drops what it writes.
//
// Typed operations report nothing; what a short read doesn't deliver is zero.
class ZvParser : public CP_M_ReferenceCounted {
 public:
  // Objects read inside objects, at most; deeper ones read as null, with a report.
  static constexpr int32_t kMaxObjectDepth = 256;

  explicit ZvParser(ZvStream* stream);
  ~ZvParser() override;

  // Binary reads; the field's name is ignored here.
  virtual bool ReadBool(const char* name = nullptr);
  virtual int8_t ReadSInt8(const char* name = nullptr);
  virtual uint8_t ReadUInt8(const char* name = nullptr);
  virtual int16_t ReadSInt16(const char* name = nullptr);
  virtual uint16_t ReadUInt16(const char* name = nullptr);
  virtual int32_t ReadSInt32(const char* name = nullptr);
  virtual uint32_t ReadUInt32(const char* name = nullptr);
  virtual float ReadFloat(const char* name = nullptr);
  virtual double ReadDouble(const char* name = nullptr);
  // A 16-bit length and that many characters; `out` takes them up to the first zero byte.
  virtual void ReadString(ZvString& out, const char* name = nullptr);
  virtual void ReadBytes(void* buffer, uint32_t count, const char* name = nullptr);
  virtual void ReadFourCC(uint32_t* out, const char* name = nullptr);
  // Reads one field of a form that names its fields. This form has no names: a string is read into
  // `outValue` and `outName` stays as it is. Gives '{' when the value ends in one (which stays in
  // it), else 0.
  virtual char ReadField(ZvString& outValue, ZvString& outName);

  // Binary writes; name and flag are ignored here.
  virtual void WriteBool(bool value, const char* name, bool named);
  virtual void WriteSInt8(int8_t value, const char* name, bool named);
  virtual void WriteUInt8(uint8_t value, const char* name, bool named);
  virtual void WriteSInt16(int16_t value, const char* name, bool named);
  virtual void WriteUInt16(uint16_t value, const char* name, bool named);
  virtual void WriteSInt32(int32_t value, const char* name, bool named);
  virtual void WriteUInt32(uint32_t value, const char* name, bool named);
  virtual void WriteFloat(float value, const char* name, bool named);
  virtual void WriteDouble(double value, const char* name, bool named);
  // REQUIRED: the length goes out modulo 65,536 and only that many characters follow it.
  virtual void WriteString(const ZvString& value, const char* name, bool named);
  virtual void WriteBytes(const void* buffer, uint32_t count, bool named);
  virtual void WriteFourCC(uint32_t value, const char* name, bool named);

  // Text to values. No text is an error: each takes what it recognises and skips the rest.

  // False when the first character is one of N n 0 F f; true otherwise, for the empty text too.
  virtual void ParseBool(bool* out, const ZvString& text);
  // A letter in front gives its own code; otherwise the signed number rule, cut to 8 bits.
  virtual void ParseSInt8(int8_t* out, const ZvString& text);
  virtual void ParseUInt8(uint8_t* out, const ZvString& text);
  // "0x" (lower-case x only) in front means hexadecimal digits; otherwise decimal digits, negative
  // if a '-' stands anywhere in the text (signed forms only). All other characters are skipped.
  // Overflow wraps in 32 bits; the 16-bit forms are then cut.
  virtual void ParseSInt16(int16_t* out, const ZvString& text);
  virtual void ParseUInt16(uint16_t* out, const ZvString& text);
  virtual void ParseSInt32(int32_t* out, const ZvString& text);
  virtual void ParseUInt32(uint32_t* out, const ZvString& text);
  // Digits, '.', 'e' or 'E', and '-' in front of or behind the exponent mark; the rest is skipped.
  // Exponents stop at 9999.
  virtual void ParseFloat(float* out, const ZvString& text);
  virtual void ParseDouble(double* out, const ZvString& text);
  virtual void ParseString(ZvString* out, const ZvString& text);
  // 'abcd' in quotes or a word without them gives up to four characters, the first in the highest
  // byte used; anything else is a decimal number.
  virtual void ParseFourCC(uint32_t* out, const ZvString& text);

  // The field behind exactly `index` commas of the list, empty when there are fewer.
  virtual void GetField(ZvString& out, const ZvString& list, int16_t index);
  // 0 for the empty list, otherwise the number of commas plus 1, in 16 bits.
  virtual int16_t CountFields(const ZvString& list);

  // Reads a class name and the object behind it. The caller owns the object's one reference and
  // narrows it by a checked cast. Null for an empty name; null with the report "object != NULL"
  // (line 250) for a name that is not registered and for an object nested too deep.
  virtual ZvStreamable* ReadObject();
  // The class name, a line break and the object's own bytes. Null is an empty name, which reads as
  // null.
  virtual void WriteObject(ZvStreamable* object);

  // Layout for forms that people read; nothing here.
  virtual void WriteLineBreak();
  virtual void WriteSoftBreak();
  virtual void Indent(int32_t delta);

  // Brackets give a member table its blocks: one byte each. The name is ignored here.
  virtual void WriteOpen(const char* name, char bracket);
  virtual void WriteSeparator();
  virtual void WriteClose(char bracket);
  // Reads a byte and remembers it as an open bracket.
  virtual void ReadOpen();
  // Remembers an open bracket without reading.
  virtual void PushOpen(char bracket);
  // Reads a byte. False when it doesn't close the innermost open bracket, which then stays open;
  // otherwise true, and that bracket (if any) is closed. At the end of the input nothing is read
  // and the answer is true, so that a loop over a cut block ends.
  virtual bool ReadClose();

  void SetStream(ZvStream* stream) { mStream = stream; }
  ZvStream* GetStream() const { return mStream; }
  // Takes over the other parser's variables and variable marker.
  void CopyStateFrom(const ZvParser& other);
  void SetStreamLittleEndian(bool littleEndian) { mStreamLittleEndian = littleEndian; }

  // All the fields that CountFields counts, each as GetField gives it, in one pass over the list.
  void SplitFields(std::vector<ZvString>& out, const ZvString& list);

  // Replaces a text that is the key of a variable, with or without the marker in front, by the
  // variable's value. True when one was found; otherwise the text stays as it is.
  bool ResolveVariable(ZvString& text) const;

  // Makes an object of the class, lets it read itself and gives it to the caller. Null, with the
  // report "object != NULL" under the given file and line, for a name that is not registered and
  // for an object nested too deep. `name` must not be empty.
  ZvStreamable* ReadObjectOfClass(const ZvString& className, const char* reportFile,
                                  int16_t reportLine);

  static char ClosingBracket(char bracket);
  static bool IsSeparator(char character) { return character == ','; }
  static bool IsBlockOpen(char character) { return character == '{'; }
  static bool IsLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
  }

 protected:
  struct OpenBracket {
    char mBracket;
    int32_t mDepth;  // Open brackets below this one.
    bool mFlag;      // Always false.
  };
  struct Variable {
    ZvString mKey;
    ZvString mValue;
  };

  // True behind the last byte of the stream. Opens a closed file stream, as a read does.
  bool AtEndOfInput();

  bool mStreamLittleEndian = false;
  bool mHostLittleEndian = true;
  std::vector<OpenBracket> mOpenBrackets;
  std::vector<Variable> mVariables;
  char mVariableMarker = '#';
  ZvStream* mStream;

 private:
  template <class T>
  T ReadInteger();
  template <class T>
  void WriteInteger(T value);
  template <class T>
  T ReadHostOrder();
  template <class T>
  void WriteHostOrder(T value);

  int32_t mObjectDepth = 0;
};
