#include "platform/CP_M_EventDispatcher.h"

#include <utility>

#include "platform/CP_Event.h"
#include "platform/CP_Globals.h"

namespace {

std::exception_ptr gCarriedException;

}  // namespace

void CP_CarryException() noexcept {
  if (gCarriedException == nullptr)
    gCarriedException = std::current_exception();
}

CP_M_EventDispatcher::CP_M_EventDispatcher() {
  gEventDispatcher = this;
}

CP_M_EventDispatcher::~CP_M_EventDispatcher() {
  gEventDispatcher = nullptr;
}

void CP_M_EventDispatcher::DispatcherHook() {}

void CP_M_EventDispatcher::DispatchEvent(CP_Event& ioEvent) {
  os::Message message;
  ioEvent.CopyToPlatform(message);
  os::TranslateAndDeliver(message);
  if (gCarriedException != nullptr) {
    std::rethrow_exception(std::exchange(gCarriedException, nullptr));
  }
}
