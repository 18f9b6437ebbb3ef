#include "platform/CP_M_EventHandlerAttachable.h"

#include "platform/CP_EventHandlerAttachment.h"

CP_M_EventHandlerAttachable::~CP_M_EventHandlerAttachable() {
  if (fAttachments == nullptr)
    return;
  for (CP_EventHandlerAttachment* attachment : *fAttachments)
    delete attachment;
  delete fAttachments;
}

bool CP_M_EventHandlerAttachable::ExecuteAttachments(uint32_t inEventCode, void* ioEventData) {
  bool doDefault = true;
  // By index: an attachment may add another one while it runs.
  for (size_t i = 0; i < AttachmentCount(); ++i) {
    CP_EventHandlerAttachment* const attachment = (*fAttachments)[i];
    const uint32_t code = attachment->GetEventCode();
    if (code != kCP_EventAny && code != inEventCode)
      continue;
    // REQUIRED: no early stop. An attachment that only watches still sees the events that one
    // before it has refused.
    const bool answer = attachment->HandleEvent(inEventCode, ioEventData);
    doDefault = doDefault && answer;
  }
  return doDefault;
}

void CP_M_EventHandlerAttachable::AddAttachment(
    std::unique_ptr<CP_EventHandlerAttachment> inAttachment) {
  if (inAttachment == nullptr)
    return;
  if (fAttachments == nullptr)
    fAttachments = new std::vector<CP_EventHandlerAttachment*>;
  fAttachments->push_back(inAttachment.get());
  inAttachment.release();
}

size_t CP_M_EventHandlerAttachable::AttachmentCount() const {
  return fAttachments == nullptr ? 0 : fAttachments->size();
}
