#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class CP_EventHandlerAttachment;

// Mix-in of objects that attachments can be hung onto. Always inherited virtually, so that an
// object with several such bases has one set of attachments.
class CP_M_EventHandlerAttachable {
 public:
  CP_M_EventHandlerAttachable() = default;
  CP_M_EventHandlerAttachable(const CP_M_EventHandlerAttachable&) = delete;
  CP_M_EventHandlerAttachable& operator=(const CP_M_EventHandlerAttachable&) = delete;

  // Runs every attachment whose code is the event's or kCP_EventAny, in the order they were added.
  // False, when at least one of them said so, means that the default handling shall not happen.
  virtual bool ExecuteAttachments(uint32_t inEventCode, void* ioEventData);

  // Puts an attachment behind the others and owns it from now on. None is ignored.
  void AddAttachment(std::unique_ptr<CP_EventHandlerAttachment> inAttachment);
  size_t AttachmentCount() const;

 protected:
  // Destroys the attachments. Not virtual: nobody deletes an object through this mix-in.
  ~CP_M_EventHandlerAttachable();

  // Null until there is an attachment. Owned, with the attachments in it.
  std::vector<CP_EventHandlerAttachment*>* fAttachments = nullptr;
};
