#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "persistence/ZvParser.h"
#include "persistence/ZvStreamable.h"

// The one object through which persistent data is read and written: an abstract byte sink and
// source with a position, and a parser that turns typed values into those bytes and back. Every
// typed operation is forwarded to the parser, so the parser decides the serial form; a concrete
// stream supplies RawRead and RawWrite, on which all parsers rest.
//
// A stream always has a parser (a big-endian binary ZvParser from the start). It owns one reference
// on it; the parser points back at its stream without owning it.
//
// Streams report nothing and typed operations give no result code: a read behind the end delivers
// zeros.
class ZvStream : public ZvStreamable {
 public:
  ~ZvStream() override;

  // Position and state. Positions and lengths are in bytes from the stream's first byte.
  virtual bool IsOpen() = 0;
  virtual bool CanWrite() = 0;
  virtual bool CanRead() = 0;
  virtual bool CanSeek() = 0;
  virtual void GetFullName(ZvString& outName) = 0;
  virtual void GetName(ZvString& outName) = 0;
  virtual uint32_t Tell() = 0;
  // True on success.
  virtual bool Seek(uint32_t position) = 0;
  virtual uint32_t GetLength() = 0;
  virtual bool AtEnd();
  // The first bytes of the stream whatever its state, for a codec that must recognise its format:
  // at least max(count, 40) bytes, zero behind the end of the data. The stream owns the buffer and
  // keeps it until a larger count is asked for; until then the first answer is given again, even if
  // the data has changed since. Null only when the buffer can't be allocated.
  virtual const uint8_t* PeekHead(uint32_t count) = 0;

  // Typed reads. The name of the field is for parsers that know names; others ignore it.
  virtual bool ReadBool(const char* name = nullptr);
  virtual int8_t ReadSInt8(const char* name = nullptr);
  virtual uint8_t ReadUInt8(const char* name = nullptr);
  virtual int16_t ReadSInt16(const char* name = nullptr);
  virtual uint16_t ReadUInt16(const char* name = nullptr);
  virtual int32_t ReadSInt32(const char* name = nullptr);
  virtual uint32_t ReadUInt32(const char* name = nullptr);
  virtual float ReadFloat(const char* name = nullptr);
  virtual double ReadDouble(const char* name = nullptr);
  virtual void ReadString(ZvString& out, const char* name = nullptr);
  virtual void ReadBytes(void* buffer, uint32_t count, const char* name = nullptr);
  virtual void ReadFourCC(uint32_t* out, const char* name = nullptr);
  virtual char ReadField(ZvString& outValue, ZvString& outName);

  // Typed writes. The name may be null. `named` is true for a field of its own and false for an
  // element inside a bracketed list.
  virtual void WriteBool(bool value, const char* name, bool named);
  virtual void WriteSInt8(int8_t value, const char* name, bool named);
  virtual void WriteUInt8(uint8_t value, const char* name, bool named);
  virtual void WriteSInt16(int16_t value, const char* name, bool named);
  virtual void WriteUInt16(uint16_t value, const char* name, bool named);
  virtual void WriteSInt32(int32_t value, const char* name, bool named);
  virtual void WriteUInt32(uint32_t value, const char* name, bool named);
  virtual void WriteFloat(float value, const char* name, bool named);
  virtual void WriteDouble(double value, const char* name, bool named);
  virtual void WriteString(const ZvString& value, const char* name, bool named);
  virtual void WriteBytes(const void* buffer, uint32_t count, bool named);
  virtual void WriteFourCC(uint32_t value, const char* name, bool named);

  // Objects and layout; see ZvParser for the meaning of each.
  virtual ZvStreamable* ReadObject();
  virtual void WriteObject(ZvStreamable* object);
  virtual void WriteLineBreak();
  virtual void WriteSoftBreak();
  virtual void Indent(int32_t delta);
  virtual void WriteOpen(const char* name, char bracket);
  virtual void WriteSeparator();
  virtual void WriteClose(char bracket);
  virtual void ReadOpen();
  virtual bool ReadClose();
  virtual void PushOpen(char bracket);

  // Moves up to `count` bytes at the position and advances it. RawRead gives the number of bytes
  // delivered (ZvMemoryStream has a rule of its own), RawWrite the number accepted.
  virtual uint32_t RawRead(void* buffer, uint32_t count) = 0;
  virtual uint32_t RawWrite(const void* buffer, uint32_t count) = 0;

  // Binds this stream to another parser and takes a reference on it. The new parser inherits the
  // old one's variables and variable marker, nothing else. A null parser is ignored.
  void AttachParser(ZvParser* parser);
  // Not counted for the caller; valid until the next AttachParser. Never null.
  ZvParser* GetParser() const { return mParser.Get(); }
  void SetStreamLittleEndian(bool littleEndian);

  // Format version of what is being read, 1.0 from the start. Below 1.0, member tables read nothing
  // and layers use their fixed form.
  float GetVersion() const { return mVersion; }
  void SetVersion(float version) { mVersion = version; }

  // The "Compress" byte of the last image read, which is also written into the next image.
  int8_t GetCompress() const { return static_cast<int8_t>(mCompress); }
  void SetCompress(int8_t compress) { mCompress = static_cast<uint8_t>(compress); }

  void SetStreamName(const ZvString& name) { mStreamName = name; }

 protected:
  ZvStream();

  // Smallest number of bytes that PeekHead delivers.
  static constexpr uint32_t kMinHeadSize = 40;

  // First half of PeekHead: raises the count to the smallest one, and unless the head on hand is
  // large enough makes a zeroed buffer for a new one. True when the caller has to fill it and then
  // to set mHeadCapacity.
  bool StartHead(uint32_t& count);

  struct FreeBytes {
    void operator()(uint8_t* bytes) const { std::free(bytes); }
  };

  std::unique_ptr<uint8_t[], FreeBytes> mHeadBuffer;  // What PeekHead returned; null before.
  uint32_t mHeadCapacity = 0;
  ZvString mStreamName;
  float mVersion = 1.0f;
  uint8_t mFlagA = 0;
  uint8_t mCompress = 0;
  ZvSmartPtr<ZvParser> mParser;
};

// Gives the stream a new ZvParser, so that typed traffic has the binary form with big-endian
// integers.
void UseBinaryParser(ZvStream& stream);
