#pragma once

#include <cstdint>

#include "foundation/FourCharCode.h"
#include "foundation/ZvString.h"

class ZvParser;
class ZvSleekStreaming;
class ZvStream;

// Kinds of members that ZvSleekStreaming treats apart; every other member has the tag 0.
inline constexpr uint32_t kTagInt32 = FourCC("In32");
inline constexpr uint32_t kTagUInt32 = FourCC("UI32");
inline constexpr uint32_t kTagID = FourCC("ZvID");
inline constexpr uint32_t kTagObjectList = FourCC("ObLi");
inline constexpr uint32_t kTagSmartPtr = FourCC("ObPr");
inline constexpr uint32_t kTagStructList = FourCC("StLi");
inline constexpr uint32_t kTagNamedStructList = FourCC("NSLi");
inline constexpr uint32_t kTagNamedStruct = FourCC("NStr");
inline constexpr uint32_t kTagNamedObject = FourCC("NObj");
inline constexpr uint32_t kTagVariantList = FourCC("vtLi");

// One persistent field of a ZvSleekStreaming object: a data field of that object which knows its
// name in the stream. The object lists a pointer to it, so a member never moves.
//
// Assigning one member to another of its class copies all that it holds: name, flag, value and
// default.
class ZvStreamingMember {
 public:
  ZvStreamingMember(const ZvStreamingMember&) = delete;

  uint32_t TypeTag() const { return mTypeTag; }

  // Without a blank.
  ZvString FieldName;

  // Writes the field even if it has its default. Arrays and lists of objects don't honour it.
  bool mAlwaysWrite = false;

 protected:
  // Joins the owner's list; a member without an owner (null) is written and read by itself. The
  // tags kTagInt32, kTagUInt32 and kTagID belong to Zv32BitMember, all others to
  // ZvStreamingMemberVtable.
  ZvStreamingMember(ZvSleekStreaming* owner, const char* fieldName, uint32_t typeTag);
  ZvStreamingMember& operator=(const ZvStreamingMember&) = default;
  ~ZvStreamingMember() = default;

 private:
  uint32_t mTypeTag;
};

// A member that writes and reads itself.
class ZvStreamingMemberVtable : public ZvStreamingMember {
 public:
  // Writes the field unless it has its default.
  virtual void WriteValue(ZvStream& stream) = 0;
  // Sets the field from its text.
  virtual void ParseValue(ZvParser& parser, const ZvString& text) = 0;
  // Reads the field from a stream that stands behind its name.
  virtual void ReadValue(ZvStream& stream) = 0;
  // True when the value is the default (lists and pointers: when there is nothing in them) and
  // `mAlwaysWrite` is clear.
  virtual bool IsDefault() const = 0;
  virtual ~ZvStreamingMemberVtable() = default;

 protected:
  ZvStreamingMemberVtable(ZvSleekStreaming* owner, const char* fieldName, uint32_t typeTag)
      : ZvStreamingMember(owner, fieldName, typeTag) {}
  ZvStreamingMemberVtable& operator=(const ZvStreamingMemberVtable&) = default;
};

// A member of 32 bits, which ZvSleekStreaming writes and reads by its tag.
template <class T, uint32_t kTag>
class Zv32BitMember : public ZvStreamingMember {
 public:
  Zv32BitMember(ZvSleekStreaming* owner, const char* fieldName, T value)
      : ZvStreamingMember(owner, fieldName, kTag), mValue(value), mDefault(value) {}
  Zv32BitMember& operator=(const Zv32BitMember&) = default;

  bool IsPresent() const { return mValue != mDefault || mAlwaysWrite; }

  T mValue;
  T mDefault;
};
