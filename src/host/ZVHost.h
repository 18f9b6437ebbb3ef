#pragma once

#include <cstdint>

#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"

class ZvImage;
struct PxRgba64;

// The program that the toolkit runs in, seen from the toolkit: where pictures come from and go to, and the
// services of the surroundings. While one lives, it is `gHost`. The defaults suit a host that offers nothing.
//
// The virtual operations stand in a fixed order: do not reorder them.
class ZVHost {
public:
    // `module` is the handle of the library that speaks for the host; its file's directory is where the
    // exchange files lie.
    explicit ZVHost(void* module);
    ZVHost(const ZVHost&) = delete;
    ZVHost& operator=(const ZVHost&) = delete;
    virtual ~ZVHost();

    virtual int32_t RunHost();
    virtual void ShutDownHost();

    // Yields the host's picture, its selection mask if there is one, and the colour type that travels with
    // the picture. The holders are null on entry and stay so where there is nothing. True when `image` was
    // made.
    virtual bool GetSourceImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask, uint8_t& colorType);
    // Hands a finished picture to the host. True when it was taken.
    virtual bool PutResultImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask);

    virtual void HostIdle();
    // Whether this is a plug-in in another program.
    virtual bool IsHosted();
    // A flag for callers to keep; nothing here reads it.
    virtual uint8_t GetHostFlag();
    virtual void SetHostFlag(uint8_t flag);
    virtual int32_t GetHostMode();

    // Asks the user for a colour. Always false: only `color` tells whether anything was chosen.
    virtual bool PickColor(PxRgba64* color);
    virtual intptr_t RunMessageLoop();

protected:
    void* mModule;
    uint8_t mHosted = 0;
    ZvString mAppName;
    uint8_t mHostFlag = 0;
};
