#include "host/ZVHost.h"

#include "host/HostGlobals.h"
#include "image/ZvImage.h"

ZVHost::ZVHost(void* module) : mModule(module) {
    gHost = this;
}

ZVHost::~ZVHost() {
    gHost = nullptr;
}

int32_t ZVHost::RunHost() {
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

bool ZVHost::PickColor(PxRgba64*) {
    return false;
}

intptr_t ZVHost::RunMessageLoop() {
    return 0;
}
