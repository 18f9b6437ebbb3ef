#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "foundation/ZvGeometry.h"
#include "image/pixels/PxViews.h"
#include "persistence/ZvStream.h"

// How members write single values and short tuples of values, and how they set them from text.
namespace vm {

// The typed operations for one value.
template <class T>
struct ValueForm;

template <>
struct ValueForm<bool> {
  static constexpr auto kWrite = &ZvStream::WriteBool;
  static constexpr auto kParse = &ZvParser::ParseBool;
};
template <>
struct ValueForm<uint16_t> {
  static constexpr auto kWrite = &ZvStream::WriteUInt16;
  static constexpr auto kParse = &ZvParser::ParseUInt16;
};
template <>
struct ValueForm<int32_t> {
  static constexpr auto kWrite = &ZvStream::WriteSInt32;
  static constexpr auto kParse = &ZvParser::ParseSInt32;
};
template <>
struct ValueForm<float> {
  static constexpr auto kWrite = &ZvStream::WriteFloat;
  static constexpr auto kParse = &ZvParser::ParseFloat;
};
template <>
struct ValueForm<double> {
  static constexpr auto kWrite = &ZvStream::WriteDouble;
  static constexpr auto kParse = &ZvParser::ParseDouble;
};
template <>
struct ValueForm<ZvString> {
  static constexpr auto kWrite = &ZvStream::WriteString;
  static constexpr auto kParse = &ZvParser::ParseString;
};

template <class T>
void WriteValue(ZvStream& stream, const T& value, const char* name, bool named) {
  (stream.*ValueForm<T>::kWrite)(value, name, named);
}

template <class T>
void ParseValue(ZvParser& parser, T& out, const ZvString& text) {
  (parser.*ValueForm<T>::kParse)(&out, text);
}

// The elements of a tuple. `At` gives the element that a field of the tuple's text belongs to, or
// null where there is none; the tuple is written from its first kCount elements.
template <class T>
struct TupleForm;

template <>
struct TupleForm<ZvPoint> {
  static constexpr int32_t kCount = 2;
  static int32_t* At(ZvPoint& point, int32_t index) { return &point[index]; }
};
template <>
struct TupleForm<ZvRect> {
  static constexpr int32_t kCount = 4;
  static int32_t* At(ZvRect& rect, int32_t index) { return &rect[index]; }
};
template <>
struct TupleForm<ZvDPoint2d> {
  static constexpr int32_t kCount = 2;
  static double* At(ZvDPoint2d& point, int32_t index) { return index == 0 ? &point.x : &point.y; }
};
template <>
struct TupleForm<PxRgba64> {
  static constexpr int32_t kCount = 4;
  static uint16_t* At(PxRgba64& color, int32_t index) {
    switch (index) {
      case 0:
        return &color.red;
      case 1:
        return &color.green;
      case 2:
        return &color.blue;
      case 3:
        return &color.alpha;
      default:
        return nullptr;
    }
  }
};

template <class T>
concept HasTupleForm = requires {
  TupleForm<T>::kCount;
};

// A bracketed list of the elements: "(", values with separators between them, ")". `write` writes
// one element.
template <class T, class Write>
void WriteTuple(ZvStream& stream, const T& value, const char* name, Write write) {
  T elements = value;
  stream.WriteOpen(name, '(');
  for (int32_t i = 0; i < TupleForm<T>::kCount; ++i) {
    if (i != 0) {
      stream.WriteSeparator();
    }
    write(*TupleForm<T>::At(elements, i));
  }
  stream.WriteClose(')');
}

template <class T>
void WriteTuple(ZvStream& stream, const T& value, const char* name) {
  WriteTuple(stream, value, name,
             [&stream](const auto& element) { WriteValue(stream, element, nullptr, false); });
}

// Sets the elements from a list of fields, which may be names of variables. An empty field leaves
// its element as it was. `parse` sets one element from its text.
template <class T, class Parse>
void ParseTuple(ZvParser& parser, T& out, const ZvString& text, Parse parse) {
  std::vector<ZvString> fields;
  parser.SplitFields(fields, text);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    parser.ResolveVariable(fields[i]);
    auto* element = TupleForm<T>::At(out, static_cast<int32_t>(i));
    if (!fields[i].empty() && element != nullptr) {
      parse(*element, fields[i]);
    }
  }
}

template <class T>
void ParseTuple(ZvParser& parser, T& out, const ZvString& text) {
  ParseTuple(parser, out, text, [&parser](auto& element, const ZvString& field) {
    ParseValue(parser, element, field);
  });
}

}  // namespace vm
