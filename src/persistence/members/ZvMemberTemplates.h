#pragma once

// All kinds of members that a ZvSleekStreaming object can have. A constructor takes the owner, the
// name of the field and, for values, the default, which is also the initial value.

#include <cstdint>

#include "persistence/members/ZvStreamingArrays.h"
#include "persistence/members/ZvStreamingMember.h"
#include "persistence/members/ZvStreamingObjectList.h"
#include "persistence/members/ZvValueForms.h"

// Identifies something within a document.
using ZvID = uint32_t;
// No identifier.
inline constexpr ZvID kInvalidID = 0;

// One bool, float, double or string.
template <class T>
class ZvMemberTemplate : public ZvStreamingMemberVtable {
 public:
  ZvMemberTemplate(ZvSleekStreaming* owner, const char* fieldName, const T& value)
      : ZvStreamingMemberVtable(owner, fieldName, 0), mValue(value), mDefault(value) {}
  ZvMemberTemplate& operator=(const ZvMemberTemplate&) = default;

  void WriteValue(ZvStream& stream) override {
    if (!ZvMemberTemplate::IsDefault()) {
      vm::WriteValue(stream, mValue, FieldName.c_str(), true);
    }
  }
  void ParseValue(ZvParser& parser, const ZvString& text) override {
    vm::ParseValue(parser, mValue, text);
  }
  void ReadValue(ZvStream& stream) override { vm::ReadThroughParse(*this, stream); }
  bool IsDefault() const override { return mValue == mDefault && !mAlwaysWrite; }

  T mValue;
  T mDefault;
};

// Numbers of 32 bits.
template <>
class ZvMemberTemplate<int32_t> : public Zv32BitMember<int32_t, kTagInt32> {
  using Zv32BitMember::Zv32BitMember;
};
template <>
class ZvMemberTemplate<uint32_t> : public Zv32BitMember<uint32_t, kTagUInt32> {
  using Zv32BitMember::Zv32BitMember;
};

// A ZvID, streamed as a four-character code.
using ZvStreamingID = Zv32BitMember<ZvID, kTagID>;

// An enumeration held in 8 bits.
template <class T>
class ZvStreamingEnumTemplate : public ZvStreamingMemberVtable {
 public:
  ZvStreamingEnumTemplate(ZvSleekStreaming* owner, const char* fieldName, T value)
      : ZvStreamingMemberVtable(owner, fieldName, 0), mValue(value), mDefault(value) {}
  ZvStreamingEnumTemplate& operator=(const ZvStreamingEnumTemplate&) = default;

  void WriteValue(ZvStream& stream) override {
    if (!ZvStreamingEnumTemplate::IsDefault()) {
      stream.WriteSInt8(static_cast<int8_t>(mValue), FieldName.c_str(), true);
    }
  }
  void ParseValue(ZvParser& parser, const ZvString& text) override {
    int8_t number = 0;
    parser.ParseSInt8(&number, text);
    mValue = static_cast<T>(number);
  }
  // REQUIRED: reads nothing; an enumeration is only ever set through ParseValue.
  void ReadValue(ZvStream& /*stream*/) override {}
  bool IsDefault() const override { return mValue == mDefault && !mAlwaysWrite; }

  T mValue;
  T mDefault;
};
