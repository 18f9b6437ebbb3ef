#include "persistence/ZvStream.h"

#include <algorithm>

// The stream's own reference is the parser's first one.
ZvStream::ZvStream() {
  auto* parser = new ZvParser(this);
  mParser = parser;
  parser->Release();
}

ZvStream::~ZvStream() {
  // Somebody else may hold the parser for longer than this stream lives.
  if (mParser.Get() != nullptr && mParser->GetStream() == this) {
    mParser->SetStream(nullptr);
  }
}

bool ZvStream::AtEnd() {
  return GetLength() <= Tell();
}

bool ZvStream::ReadBool(const char* name) {
  return mParser->ReadBool(name);
}
int8_t ZvStream::ReadSInt8(const char* name) {
  return mParser->ReadSInt8(name);
}
uint8_t ZvStream::ReadUInt8(const char* name) {
  return mParser->ReadUInt8(name);
}
int16_t ZvStream::ReadSInt16(const char* name) {
  return mParser->ReadSInt16(name);
}
uint16_t ZvStream::ReadUInt16(const char* name) {
  return mParser->ReadUInt16(name);
}
int32_t ZvStream::ReadSInt32(const char* name) {
  return mParser->ReadSInt32(name);
}
uint32_t ZvStream::ReadUInt32(const char* name) {
  return mParser->ReadUInt32(name);
}
float ZvStream::ReadFloat(const char* name) {
  return mParser->ReadFloat(name);
}
double ZvStream::ReadDouble(const char* name) {
  return mParser->ReadDouble(name);
}
void ZvStream::ReadString(ZvString& out, const char* name) {
  mParser->ReadString(out, name);
}
void ZvStream::ReadBytes(void* buffer, uint32_t count, const char* name) {
  mParser->ReadBytes(buffer, count, name);
}
void ZvStream::ReadFourCC(uint32_t* out, const char* name) {
  mParser->ReadFourCC(out, name);
}
char ZvStream::ReadField(ZvString& outValue, ZvString& outName) {
  return mParser->ReadField(outValue, outName);
}

void ZvStream::WriteBool(bool value, const char* name, bool named) {
  mParser->WriteBool(value, name, named);
}
void ZvStream::WriteSInt8(int8_t value, const char* name, bool named) {
  mParser->WriteSInt8(value, name, named);
}
void ZvStream::WriteUInt8(uint8_t value, const char* name, bool named) {
  mParser->WriteUInt8(value, name, named);
}
void ZvStream::WriteSInt16(int16_t value, const char* name, bool named) {
  mParser->WriteSInt16(value, name, named);
}
void ZvStream::WriteUInt16(uint16_t value, const char* name, bool named) {
  mParser->WriteUInt16(value, name, named);
}
void ZvStream::WriteSInt32(int32_t value, const char* name, bool named) {
  mParser->WriteSInt32(value, name, named);
}
void ZvStream::WriteUInt32(uint32_t value, const char* name, bool named) {
  mParser->WriteUInt32(value, name, named);
}
void ZvStream::WriteFloat(float value, const char* name, bool named) {
  mParser->WriteFloat(value, name, named);
}
void ZvStream::WriteDouble(double value, const char* name, bool named) {
  mParser->WriteDouble(value, name, named);
}
void ZvStream::WriteString(const ZvString& value, const char* name, bool named) {
  mParser->WriteString(value, name, named);
}
void ZvStream::WriteBytes(const void* buffer, uint32_t count, bool named) {
  mParser->WriteBytes(buffer, count, named);
}
void ZvStream::WriteFourCC(uint32_t value, const char* name, bool named) {
  mParser->WriteFourCC(value, name, named);
}

ZvStreamable* ZvStream::ReadObject() {
  return mParser->ReadObject();
}
void ZvStream::WriteObject(ZvStreamable* object) {
  mParser->WriteObject(object);
}
void ZvStream::WriteLineBreak() {
  mParser->WriteLineBreak();
}
void ZvStream::WriteSoftBreak() {
  mParser->WriteSoftBreak();
}
void ZvStream::Indent(int32_t delta) {
  mParser->Indent(delta);
}
void ZvStream::WriteOpen(const char* name, char bracket) {
  mParser->WriteOpen(name, bracket);
}
void ZvStream::WriteSeparator() {
  mParser->WriteSeparator();
}
void ZvStream::WriteClose(char bracket) {
  mParser->WriteClose(bracket);
}
void ZvStream::ReadOpen() {
  mParser->ReadOpen();
}
bool ZvStream::ReadClose() {
  return mParser->ReadClose();
}
void ZvStream::PushOpen(char bracket) {
  mParser->PushOpen(bracket);
}

void ZvStream::AttachParser(ZvParser* parser) {
  if (parser == nullptr) {
    return;
  }
  if (mParser.Get() != nullptr) {
    parser->CopyStateFrom(*mParser.Get());
  }
  mParser = parser;
  mParser->SetStream(this);  // The checked access reports a parser with a bad count.
}

bool ZvStream::StartHead(uint32_t& count) {
  count = std::max(count, kMinHeadSize);
  if (mHeadCapacity >= count) {
    return false;
  }
  mHeadCapacity = 0;
  mHeadBuffer.reset(static_cast<uint8_t*>(std::calloc(count, 1)));
  return mHeadBuffer != nullptr;
}

void ZvStream::SetStreamLittleEndian(bool littleEndian) {
  mParser->SetStreamLittleEndian(littleEndian);
}

void UseBinaryParser(ZvStream& stream) {
  auto* parser = new ZvParser(&stream);
  stream.AttachParser(parser);
  parser->Release();
}
