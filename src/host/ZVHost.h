#pragma once

#include <cstdint>

#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "platform/CP_Application.h"
#include "platform/CP_M_Listener.h"

class ZvImage;
struct PxRgba64;

// The program that the toolkit runs in, seen from the toolkit: where pictures come from and go to,
// and the services of the surroundings. While one lives, it is `gHost`. The defaults suit a host
// that offers nothing.
//
// It is an application object of the framework, although a plug-in runs no event loop: of the
// framework only construction and destruction run, once for each call of the entry point.
//
// The virtual operations stand in a fixed order behind those of CP_Application: do not reorder
// them.
class ZVHost : public CP_Application, public CP_M_Listener {
 public:
  // `module` is the handle of the library that speaks for the host; its file's directory is where
  // the exchange files lie.
  explicit ZVHost(void* module);
  ~ZVHost() override;

  // What the framework does, and then forgets the module.
  void Initialize() override;
  // Do nothing.
  void MakeMenuBar() override;
  void StartUp() override;

  // Runs the event loop, then yields 0.
  virtual int32_t RunHost();
  virtual void ShutDownHost();

  // Yields the host's picture, its selection mask if there is one, and the colour type that travels
  // with the picture. The holders are null on entry and stay so where there is nothing. True when
  // `image` was made.
  virtual bool GetSourceImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask,
                              uint8_t& colorType);
  // Hands a finished picture to the host. True when it was taken.
  virtual bool PutResultImage(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask);

  virtual void HostIdle();
  // Whether this is a plug-in in another program.
  virtual bool IsHosted();
  // A flag for callers to keep; nothing here reads it.
  virtual uint8_t GetHostFlag();
  virtual void SetHostFlag(uint8_t flag);
  virtual int32_t GetHostMode();

  // Asks the user for a colour: through the host's picker when there is one, otherwise through the
  // system's dialog. Always false: only `color` tells whether anything was chosen. The host's
  // picker makes the colour opaque, the dialog leaves its alpha.
  virtual bool PickColor(PxRgba64* color);
  // Delivers messages until the quit message, and yields that one's code.
  virtual intptr_t RunMessageLoop();

 protected:
  void* mModule;
  uint8_t mHosted = 0;
  ZvString mAppName;
  uint8_t mHostFlag = 0;
};
