#include "persistence/members/ZvSleekStreaming.h"

#include <algorithm>

#include "foundation/CP_DebugAssert.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/ZvStream.h"

namespace {

constexpr char kThisFile[] = "ZvSleekStreaming";
constexpr int16_t kLineNullMember = 164;
constexpr int16_t kLineBlankInName = 165;

constexpr std::size_t kMaxOneLinerMembers = 3;
constexpr int32_t kFieldsBetweenBreaks = 6;

using Int32Member = Zv32BitMember<int32_t, kTagInt32>;
using UInt32Member = Zv32BitMember<uint32_t, kTagUInt32>;
using IDMember = Zv32BitMember<ZvID, kTagID>;

bool NeedsLines(const ZvStreamingMember* member) {
  switch (member->TypeTag()) {
    case kTagObjectList:
    case kTagNamedStructList:
    case kTagNamedObject:
    case kTagSmartPtr:
    case kTagVariantList:
    case kTagStructList:
      return true;
    default:
      return false;
  }
}

// Breaks the line before a field that would be the seventh since the last break.
class FieldCounter {
 public:
  explicit FieldCounter(ZvStream& stream) : mStream(stream) {}
  void Count() {
    if (++mFields > kFieldsBetweenBreaks) {
      mFields = 0;
      mStream.WriteLineBreak();
    }
  }

 private:
  ZvStream& mStream;
  int32_t mFields = 0;
};

void WriteMember(ZvStreamingMember& member, ZvStream& stream, FieldCounter& counter) {
  const char* name = member.FieldName.c_str();
  switch (member.TypeTag()) {
    case kTagInt32:
      if (const auto& field = static_cast<Int32Member&>(member); field.IsPresent()) {
        counter.Count();
        stream.WriteSInt32(field.mValue, name, true);
      }
      break;
    case kTagUInt32:
      if (const auto& field = static_cast<UInt32Member&>(member); field.IsPresent()) {
        counter.Count();
        stream.WriteUInt32(field.mValue, name, true);
      }
      break;
    case kTagID:
      if (const auto& field = static_cast<IDMember&>(member); field.IsPresent()) {
        counter.Count();
        stream.WriteFourCC(field.mValue, name, true);
      }
      break;
    default: {
      auto& field = static_cast<ZvStreamingMemberVtable&>(member);
      // REQUIRED: an array at its default with mAlwaysWrite set is counted although it writes
      // nothing.
      if (!field.IsDefault() || field.mAlwaysWrite) {
        counter.Count();
      }
      field.WriteValue(stream);
    }
  }
}

void ReadMember(ZvStreamingMember& member, ZvStream& stream, const ZvString& value) {
  ZvParser& parser = *stream.GetParser();
  switch (member.TypeTag()) {
    case kTagInt32:
      parser.ParseSInt32(&static_cast<Int32Member&>(member).mValue, value);
      break;
    case kTagUInt32:
      parser.ParseUInt32(&static_cast<UInt32Member&>(member).mValue, value);
      break;
    case kTagID:
      parser.ParseFourCC(&static_cast<IDMember&>(member).mValue, value);
      break;
    case kTagObjectList:
    case kTagNamedStructList:
    case kTagSmartPtr:
    case kTagNamedStruct:
    case kTagNamedObject:
    case kTagStructList:
      static_cast<ZvStreamingMemberVtable&>(member).ReadValue(stream);
      break;
    default:
      static_cast<ZvStreamingMemberVtable&>(member).ParseValue(parser, value);
  }
}

}  // namespace

void ZvSleekStreaming::AddMember(ZvStreamingMember* member) {
  if (!CP_Check(member != nullptr, kThisFile, kLineNullMember, "tMember != nil")) {
    return;
  }
  CP_Check(!member->FieldName.Contains(' '), kThisFile, kLineBlankInName,
           "!tMember->FieldName().Contains(' ')");
  mMembers.push_back(member);
}

bool ZvSleekStreaming::IsOneLiner() const {
  return mMembers.size() <= kMaxOneLinerMembers &&
         std::none_of(mMembers.begin(), mMembers.end(), NeedsLines);
}

void ZvSleekStreaming::WriteTo(ZvStream& stream) {
  const bool oneLiner = IsOneLiner();
  if (!oneLiner) {
    stream.WriteLineBreak();
  }
  stream.WriteOpen(nullptr, '{');
  stream.Indent(1);
  if (!oneLiner) {
    stream.WriteLineBreak();
  }
  FieldCounter counter(stream);
  for (ZvStreamingMember* member : mMembers) {
    WriteMember(*member, stream, counter);
  }
  stream.Indent(-1);
  if (oneLiner) {
    stream.WriteSoftBreak();
  } else {
    stream.WriteLineBreak();
  }
  stream.WriteClose('}');
}

void ZvSleekStreaming::ReadFrom(ZvStream& stream) {
  if (stream.GetVersion() < 1.0f) {
    return;
  }
  stream.ReadOpen();
  while (!stream.ReadClose()) {
    ZvString name;
    ZvString value;
    stream.ReadField(value, name);
    if (name.empty()) {
      std::swap(name, value);  // A single token is the name of a block.
    }
    ZvStreamingMember* member = name.empty() ? nullptr : FindMember(name);
    if (member != nullptr) {
      ReadMember(*member, stream, value);
    }
  }
}

ZvStreamingMember* ZvSleekStreaming::FindMember(const ZvString& name) const {
  for (ZvStreamingMember* member : mMembers) {
    if (member->FieldName == name) {
      return member;
    }
  }
  return nullptr;
}
