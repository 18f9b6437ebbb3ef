#include "persistence/members/ZvStreamingMember.h"

#include "persistence/members/ZvSleekStreaming.h"

ZvStreamingMember::ZvStreamingMember(ZvSleekStreaming* owner, const char* fieldName,
                                     uint32_t typeTag)
    : FieldName(fieldName), mTypeTag(typeTag) {
  if (owner != nullptr) {
    owner->AddMember(this);
  }
}
