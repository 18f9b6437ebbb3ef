// The image editor's window: shows the picture and owns the filter's dialogs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "filter_host/Picture.h"
#include "filter_host/PixelMap.h"

namespace filter_host {

class HostWindow {
 public:
  // Shows `picture`, scaled down to fit the screen. Throws Error when there is no window to be had.
  HostWindow(const std::string& title, const Picture& picture);
  ~HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  // What a filter record's platformData points at: the window's handle is its first word.
  void* PlatformData() { return &mHandle; }
  void* Handle() const { return mHandle; }

  // Another picture of the same size.
  void Show(const Picture& picture);
  // Serves the messages that wait, without waiting for one.
  static void PumpMessages();
  // Draws into a device context.
  static void Paint(const PaintedArea& area, void* deviceContext);

 private:
  struct WindowProcedure;
  void* mHandle;
  int32_t mWidth;
  int32_t mHeight;
  std::vector<uint8_t> mBgrx;
};

}  // namespace filter_host
