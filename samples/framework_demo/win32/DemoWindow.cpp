#include "framework_demo/win32/DemoWindow.h"

#include <string>

#include "framework_demo/DemoCommands.h"
#include "framework_demo/DemoDocument.h"
#include "framework_demo/Trace.h"
#include "platform/CP_EventCodes.h"
#include "platform/CP_Globals.h"
#include "platform/CP_M_EventDispatcher.h"

namespace {

constexpr char kClassName[] = "VelvetmoorFrameworkDemo";
constexpr UINT kBecomeTarget = WM_APP;
constexpr DWORD kBlinkMilliseconds = 500;

COLORREF ToPlatform(const CP_RGBColor& inColor) {
  return RGB(inColor.GetRed() >> 8, inColor.GetGreen() >> 8, inColor.GetBlue() >> 8);
}

}  // namespace

void GiveCommand(int32_t inCommandNumber) {
  if (gTarget == nullptr)
    return;
  if (gTarget->ExecuteAttachments(kCP_EventCommandNumber, CP_EventDataOfCommand(inCommandNumber))) {
    const int32_t result = gTarget->HandleCommand(inCommandNumber);
    demo::Trace("command %d: result %d", static_cast<int>(inCommandNumber),
                static_cast<int>(result));
  }
  CP_M_Commander::UpdateMenus();
}

DemoWindow::DemoWindow(DemoDocument& inDocument)
    : CP_Window(kCP_WindowKindRegular), mDocument(inDocument) {
  WNDCLASSA description{};
  description.lpfnWndProc = Procedure;
  description.hInstance = GetModuleHandleA(nullptr);
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  description.lpszClassName = kClassName;
  RegisterClassA(&description);
  mHandle = CreateWindowA(kClassName, "Framework demo", WS_OVERLAPPEDWINDOW, 40, 40, 480, 260,
                          nullptr, nullptr, description.hInstance, this);
  // The loop makes the application the target once more before its first pass.
  PostMessageA(mHandle, kBecomeTarget, 0, 0);
  StartIdling();
}

DemoWindow::~DemoWindow() {
  CP_WindowList::RemoveFromAll(this);
  if (mHandle != nullptr)
    DestroyWindow(mHandle);
}

bool DemoWindow::AttemptClose() {
  demo::Trace("window: asked to close, %s", mKeepsOpen ? "refuses" : "agrees");
  if (mKeepsOpen)
    return false;
  StopIdling();
  DestroyWindow(mHandle);
  return true;
}

void DemoWindow::SpendIdleTime(CP_Event&) {
  const bool shown = GetTickCount() / kBlinkMilliseconds % 2 == 0;
  if (shown == mCaretShown)
    return;
  mCaretShown = shown;
  InvalidateRect(mHandle, nullptr, TRUE);
}

LRESULT CALLBACK DemoWindow::Procedure(HWND inWindow, UINT inMessage, WPARAM inFirst,
                                       LPARAM inSecond) {
  if (inMessage == WM_NCCREATE) {
    auto* const created =
        static_cast<DemoWindow*>(reinterpret_cast<const CREATESTRUCTA*>(inSecond)->lpCreateParams);
    created->mHandle = inWindow;
    SetWindowLongPtrA(inWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* const window = reinterpret_cast<DemoWindow*>(GetWindowLongPtrA(inWindow, GWLP_USERDATA));
  if (window == nullptr)
    return DefWindowProcA(inWindow, inMessage, inFirst, inSecond);
  LRESULT result = 0;
  CP_GuardCallback([&] { result = window->Handle(inMessage, inFirst, inSecond); });
  return result;
}

LRESULT DemoWindow::Handle(UINT inMessage, WPARAM inFirst, LPARAM inSecond) {
  switch (inMessage) {
    case kBecomeTarget:
      CP_M_Commander::SwitchTarget(&mDocument);
      CP_M_Commander::UpdateMenus();
      return 0;
    case WM_INITMENU:
      CP_M_Commander::UpdateMenus();
      return 0;
    case WM_COMMAND:
      GiveCommand(LOWORD(inFirst));
      if (mHandle != nullptr)
        InvalidateRect(mHandle, nullptr, TRUE);
      return 0;
    case WM_CHAR:
      if (gTarget != nullptr) {
        gTarget->ProcessOtherInput(static_cast<uint32_t>(inFirst), static_cast<uint32_t>(inSecond));
        CP_M_Commander::UpdateMenus();
        InvalidateRect(mHandle, nullptr, TRUE);
      }
      return 0;
    case WM_PAINT:
      Paint();
      return 0;
    case WM_CLOSE:
      GiveCommand(kCP_CommandQuit);
      return 0;
    case WM_NCDESTROY: {
      const HWND handle = mHandle;
      SetWindowLongPtrA(handle, GWLP_USERDATA, 0);
      mHandle = nullptr;
      return DefWindowProcA(handle, inMessage, inFirst, inSecond);
    }
    default:
      return DefWindowProcA(mHandle, inMessage, inFirst, inSecond);
  }
}

void DemoWindow::Paint() {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(mHandle, &paint);
  const HFONT font = CreateFontA(-24 * mDocument.GetZoom(), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                 DEFAULT_CHARSET, 0, 0, ANTIALIASED_QUALITY, 0, "Tahoma");
  const HGDIOBJ former = SelectObject(context, font);
  SetTextColor(context, ToPlatform(mDocument.GetColor()));
  const std::string text = mDocument.GetText() + (mCaretShown ? "|" : "");
  TextOutA(context, 16, 16, text.data(), static_cast<int>(text.size()));
  SelectObject(context, former);
  DeleteObject(font);
  const RECT swatch{16, 140, 96, 180};
  const HBRUSH brush = CreateSolidBrush(ToPlatform(mDocument.GetColor()));
  FillRect(context, &swatch, brush);
  DeleteObject(brush);
  EndPaint(mHandle, &paint);
}
