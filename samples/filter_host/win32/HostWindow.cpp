#include "filter_host/win32/HostWindow.h"

#include <windows.h>

#include <algorithm>

namespace filter_host {

namespace {

constexpr char kClassName[] = "FilterHostWindow";

std::vector<uint8_t> ToBgrx(const Picture& picture) {
  std::vector<uint8_t> bgrx;
  bgrx.reserve(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
               4);
  const auto bytes = static_cast<std::size_t>(picture.bytesPerSample);
  for (int32_t y = 0; y < picture.height; ++y) {
    const uint8_t* row = picture.Row(y);
    for (int32_t x = 0; x < picture.width; ++x) {
      const std::size_t first =
          static_cast<std::size_t>(x) * static_cast<std::size_t>(picture.channels);
      for (std::size_t channel : {2u, 1u, 0u}) {
        const std::size_t index = first + (picture.channels >= 3 ? channel : 0);
        bgrx.push_back(row[index * bytes + bytes - 1]);  // the high byte stands last
      }
      bgrx.push_back(0);
    }
  }
  return bgrx;
}

BITMAPINFO TopDownBitmap(int32_t width, int32_t height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

}  // namespace

struct HostWindow::WindowProcedure {
  static LRESULT CALLBACK Call(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (message != WM_PAINT || self == nullptr) {
      return DefWindowProcA(window, message, wParam, lParam);
    }
    PAINTSTRUCT paint;
    HDC context = BeginPaint(window, &paint);
    RECT area;
    GetClientRect(window, &area);
    const BITMAPINFO info = TopDownBitmap(self->mWidth, self->mHeight);
    SetStretchBltMode(context, HALFTONE);
    StretchDIBits(context, 0, 0, area.right, area.bottom, 0, 0, self->mWidth, self->mHeight,
                  self->mBgrx.data(), &info, DIB_RGB_COLORS, SRCCOPY);
    EndPaint(window, &paint);
    return 0;
  }
};

HostWindow::HostWindow(const std::string& title, const Picture& picture)
    : mHandle(nullptr), mWidth(picture.width), mHeight(picture.height), mBgrx(ToBgrx(picture)) {
  WNDCLASSA description{};
  description.lpfnWndProc = &WindowProcedure::Call;
  description.hInstance = GetModuleHandleA(nullptr);
  description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  description.lpszClassName = kClassName;
  RegisterClassA(&description);

  const int32_t room = GetSystemMetrics(SM_CXSCREEN) * 9 / 10;
  const int32_t roomBelow = GetSystemMetrics(SM_CYSCREEN) * 8 / 10;
  const double scale = std::min({1.0, static_cast<double>(room) / picture.width,
                                 static_cast<double>(roomBelow) / picture.height});
  constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  RECT frame{0, 0, std::max(1, static_cast<int>(picture.width * scale)),
             std::max(1, static_cast<int>(picture.height * scale))};
  AdjustWindowRect(&frame, kStyle, FALSE);
  HWND window =
      CreateWindowA(kClassName, title.c_str(), kStyle, 20, 20, frame.right - frame.left,
                    frame.bottom - frame.top, nullptr, nullptr, description.hInstance, nullptr);
  if (window == nullptr) {
    throw Error("cannot open a window");
  }
  mHandle = window;
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  ShowWindow(window, SW_SHOWNORMAL);
  UpdateWindow(window);
  PumpMessages();
}

HostWindow::~HostWindow() {
  DestroyWindow(static_cast<HWND>(mHandle));
}

void HostWindow::Show(const Picture& picture) {
  mBgrx = ToBgrx(picture);
  mWidth = picture.width;
  mHeight = picture.height;
  InvalidateRect(static_cast<HWND>(mHandle), nullptr, FALSE);
  UpdateWindow(static_cast<HWND>(mHandle));
}

void HostWindow::PumpMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

void HostWindow::Paint(const PaintedArea& area, void* deviceContext) {
  const BITMAPINFO info = TopDownBitmap(area.width, area.height);
  SetDIBitsToDevice(static_cast<HDC>(deviceContext), area.column, area.row,
                    static_cast<DWORD>(area.width), static_cast<DWORD>(area.height), 0, 0, 0,
                    static_cast<UINT>(area.height), area.bgrx.data(), &info, DIB_RGB_COLORS);
}

}  // namespace filter_host
