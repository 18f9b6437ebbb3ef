#include "persistence/ZvGeometryStreaming.h"

#include "persistence/ZvStream.h"

namespace {

// Marks around two values, which are read or written by one typed operation of the stream.
template <class Write, class T>
void WritePair(ZvStream& stream, Write write, T first, T second) {
  stream.WriteOpen(nullptr, '(');
  (stream.*write)(first, nullptr, false);
  stream.WriteSeparator();
  (stream.*write)(second, nullptr, false);
  stream.WriteClose(')');
}

template <class Read, class T>
void ReadPair(ZvStream& stream, Read read, T& first, T& second) {
  stream.ReadOpen();
  first = (stream.*read)(nullptr);
  stream.ReadUInt8();  // The separator.
  second = (stream.*read)(nullptr);
  stream.ReadClose();
}

}  // namespace

void WriteTo(const ZvPoint& point, ZvStream& stream) {
  WritePair(stream, &ZvStream::WriteSInt32, point.x, point.y);
}

void WriteTo(const ZvFloatPoint& point, ZvStream& stream) {
  WritePair(stream, &ZvStream::WriteFloat, point.x, point.y);
}

void WriteTo(const ZvDPoint2d& point, ZvStream& stream) {
  WritePair(stream, &ZvStream::WriteDouble, point.x, point.y);
}

void WriteTo(const ZvSimpleTransform& transform, ZvStream& stream) {
  WriteTo(transform.mPosition, stream);
  WriteTo(transform.mScale, stream);
  stream.WriteFloat(transform.mExtra1, nullptr, true);
  stream.WriteFloat(transform.mExtra2, nullptr, true);
}

void ReadFrom(ZvPoint& point, ZvStream& stream) {
  ReadPair(stream, &ZvStream::ReadSInt32, point.x, point.y);
}

void ReadFrom(ZvFloatPoint& point, ZvStream& stream) {
  ReadPair(stream, &ZvStream::ReadFloat, point.x, point.y);
}

void ReadFrom(ZvDPoint2d& point, ZvStream& stream) {
  ReadPair(stream, &ZvStream::ReadDouble, point.x, point.y);
}

void ReadFrom(ZvSimpleTransform& transform, ZvStream& stream) {
  ReadFrom(transform.mPosition, stream);
  ReadFrom(transform.mScale, stream);
  transform.mExtra1 = stream.ReadFloat();
  transform.mExtra2 = stream.ReadFloat();
}
