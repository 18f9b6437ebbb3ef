#pragma once

#include <vector>

#include "persistence/members/ZvStreamingMember.h"
#include "persistence/ZvStreamable.h"

// An object that declares what it keeps: its persistent fields are member objects
// (ZvMemberTemplates.h), and they stream in the order of their declaration as one block. Fields
// that have their defaults take no room.
//
//   class ZvPoodle : public ZvSleekStreaming {
//   public:
//       ZvMemberTemplate<ZvString> mName{this, "Name", ""};
//       ZvMemberTemplate<float> mHeight{this, "Height", 0.45f};
//   };
//
// Reading expects the names and values of fields, which the binary ZvParser doesn't write: through
// that parser the two directions don't match. ZvTextParser has both.
class ZvSleekStreaming : public ZvStreamable {
 public:
  // Writes '{', the members and '}'. Unless the object is a one-liner the block stands on lines of
  // its own, with a line break before every seventh field that is present.
  void WriteTo(ZvStream& stream) override;

  // Reads a block of fields in any order. A name that no member has is skipped; a member for which
  // no field came keeps its value. Nothing is read from a stream whose version is below 1.0.
  // REQUIRED: only the closing mark (or the end of the input) ends the block, however many fields
  // there are.
  void ReadFrom(ZvStream& stream) override;

  // Appends a member, which stays the caller's and must live as long as this object. Reports
  // "tMember != nil" for null, which is not appended, and "!tMember->FieldName().Contains(' ')" for
  // a name with a blank, which is.
  void AddMember(ZvStreamingMember* member);

  // True for an object with fewer than 4 members and without lists or objects among them.
  bool IsOneLiner() const;

 protected:
  ZvStreamingMember* FindMember(const ZvString& name) const;

  std::vector<ZvStreamingMember*> mMembers;
};
