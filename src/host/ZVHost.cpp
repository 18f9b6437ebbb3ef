#include "host/ZVHost.h"

#include "host/HostGlobals.h"
#include "image/ZvImage.h"
#include "platform/os/Events.h"

ZVHost::ZVHost(void* module) : mModule(module) {
  gHost = this;
}

ZVHost::~ZVHost() {
  gHost = nullptr;
}

void ZVHost::Initialize() {
  CP_Application::Initialize();
  mModule = nullptr;
}

void ZVHost::MakeMenuBar() {}

void ZVHost::StartUp() {}

int32_t ZVHost::RunHost() {
  Run();
  return 0;
}

void ZVHost::ShutDownHost() {}

bool ZVHost::GetSourceImage(ZvSmartPtr<ZvImage>&, ZvSmartPtr<ZvImage>&, uint8_t&) {
  return false;
}

bool ZVHost::PutResultImage(ZvSmartPtr<ZvImage>&, ZvSmartPtr<ZvImage>&) {
  return false;
}

void ZVHost::HostIdle() {}

bool ZVHost::IsHosted() {
  return mHosted != 0;
}

uint8_t ZVHost::GetHostFlag() {
  return mHostFlag;
}

void ZVHost::SetHostFlag(uint8_t flag) {
  mHostFlag = flag;
}

int32_t ZVHost::GetHostMode() {
  return 0;
}

intptr_t ZVHost::RunMessageLoop() {
  os::Message message;
  while (os::WaitForMessage(message))
    os::TranslateAndDeliver(message);
  return static_cast<intptr_t>(message.firstParameter);
}
