#pragma once

#include "persistence/members/ZvStreamingMember.h"
#include "persistence/members/ZvValueForms.h"

namespace vm {

// Reads one field and sets the member from its value.
template <class Member>
void ReadThroughParse(Member& member, ZvStream& stream) {
  ZvString value;
  ZvString name;
  stream.ReadField(value, name);
  member.Member::ParseValue(*stream.GetParser(), value);
}

}  // namespace vm

// A short tuple of numbers (ZvPoint, ZvRect, ZvDPoint2d, PxRgba64), written as a bracketed list.
// REQUIRED: a tuple at its default is not written even with mAlwaysWrite set.
template <class T>
class ZvStreamingArrayTemplate : public ZvStreamingMemberVtable {
 public:
  ZvStreamingArrayTemplate(ZvSleekStreaming* owner, const char* fieldName, const T& value)
      : ZvStreamingMemberVtable(owner, fieldName, 0), mValue(value), mDefault(value) {}
  // For a value on its way out that must be told from another one.
  ZvStreamingArrayTemplate(ZvSleekStreaming* owner, const char* fieldName, const T& value,
                           const T& defaultValue)
      : ZvStreamingMemberVtable(owner, fieldName, 0), mValue(value), mDefault(defaultValue) {}
  ZvStreamingArrayTemplate& operator=(const ZvStreamingArrayTemplate&) = default;

  void WriteValue(ZvStream& stream) override {
    if (!(mValue == mDefault)) {
      vm::WriteTuple(stream, mValue, FieldName.c_str());
    }
  }
  void ParseValue(ZvParser& parser, const ZvString& text) override {
    vm::ParseTuple(parser, mValue, text);
  }
  void ReadValue(ZvStream& stream) override {
    vm::ReadThroughParse<ZvStreamingArrayTemplate>(*this, stream);
  }
  bool IsDefault() const override { return mValue == mDefault && !mAlwaysWrite; }

  T mValue;
  T mDefault;
};

// A colour shown as four numbers from 0 to 1.
// REQUIRED: ReadValue takes the fields as the base class does, as words from 0 to 65535; only
// ParseValue takes what WriteValue wrote.
class ZvStreamingRgba64 : public ZvStreamingArrayTemplate<PxRgba64> {
 public:
  using ZvStreamingArrayTemplate::ZvStreamingArrayTemplate;

  void WriteValue(ZvStream& stream) override;
  // Fractions outside 0 to 1 wrap in 16 bits.
  void ParseValue(ZvParser& parser, const ZvString& text) override;
};
