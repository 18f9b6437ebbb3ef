#include "framework_demo/win32/DemoApplication.h"

#include "foundation/CP_DebugAssert.h"
#include "foundation/CP_Exceptions.h"
#include "framework_demo/DemoCommands.h"
#include "framework_demo/Trace.h"
#include "platform/CP_Event.h"
#include "platform/CP_EventHandlerAttachment.h"
#include "platform/CP_Globals.h"
#include "platform/CP_Menu.h"
#include "platform/CP_MenuBar.h"

namespace {

// Turns key strokes into commands, in front of the dispatcher.
class AcceleratorAttachment : public CP_EventHandlerAttachment {
 public:
  AcceleratorAttachment() : CP_EventHandlerAttachment(kCP_EventRaw) {}

  bool HandleEvent(uint32_t, void* ioEventData) override {
    os::Message event;
    static_cast<CP_Event*>(ioEventData)->CopyToPlatform(event);
    if (event.window == nullptr || gMenuBar->GetAccelerators() == nullptr)
      return true;
    MSG message{};
    message.hwnd = reinterpret_cast<HWND>(event.window);
    message.message = event.message;
    message.wParam = event.firstParameter;
    message.lParam = static_cast<LPARAM>(event.secondParameter);
    const bool taken =
        TranslateAcceleratorA(message.hwnd, reinterpret_cast<HACCEL>(gMenuBar->GetAccelerators()),
                              &message) != 0;
    return !taken;
  }
};

// Sees every key stroke, also those that the attachment before it has taken.
class KeyCounter : public CP_EventHandlerAttachment {
 public:
  KeyCounter() : CP_EventHandlerAttachment(kCP_EventRaw) {}

  bool HandleEvent(uint32_t, void* ioEventData) override {
    if (static_cast<CP_Event*>(ioEventData)->fMessage == WM_KEYDOWN) {
      demo::Trace("key %d", static_cast<int>(++mCount));
    }
    return true;
  }

 private:
  int32_t mCount = 0;
};

}  // namespace

DemoApplication::DemoApplication() {
  gDesktop = &mDesktop;
  gIdlers = &mIdlers;
  AddAttachment(std::make_unique<AcceleratorAttachment>());
  AddAttachment(std::make_unique<KeyCounter>());
}

DemoApplication::~DemoApplication() {
  gIdlers = nullptr;
  gDesktop = nullptr;
}

void DemoApplication::StartUp() {
  mDocument = std::make_unique<DemoDocument>(this);
  mWindow = std::make_unique<DemoWindow>(*mDocument);
  mDesktop.Add(mWindow.get());
  mIdlers.push_back(mWindow.get());
  const auto handle = reinterpret_cast<os::WindowHandle>(mWindow->GetHandle());
  gDialogOwner = handle;
  gMenuBar->AttachToWindow(handle);
  ShowWindow(mWindow->GetHandle(), SW_SHOW);
  demo::Trace("application: started");
}

int32_t DemoApplication::HandleCommand(int32_t inCommandNumber) {
  switch (inCommandNumber) {
    case DEMO_KEEP_WINDOW:
      mWindow->KeepOpen();
      return 0;
    case DEMO_FAIL_CHECK:
      CP_DebugAssert("DemoApplication", 1, "the demo is in trouble");
      demo::Trace("application: went on behind the failed check");
      return 0;
    case DEMO_THROW:
      throw CP_RuntimeException("Trouble", "DemoApplication", 2);
    case DEMO_MISSING_MENU: {
      CP_Menu* const menu = new CP_Menu(DEMO_NO_SUCH_MENU, "Missing", false, true);
      menu->Release();
      demo::Trace("application: went on without the menu");
      return 0;
    }
    case DEMO_HOLD_CLIPBOARD:
      demo::Trace("application: clipboard %s",
                  OpenClipboard(mWindow->GetHandle()) != 0 ? "held" : "not to be had");
      return 0;
    default:
      return CP_Application::HandleCommand(inCommandNumber);
  }
}

void DemoApplication::UpdateCommandState(int32_t inCommandNumber) {
  switch (inCommandNumber) {
    case DEMO_KEEP_WINDOW:
    case DEMO_FAIL_CHECK:
    case DEMO_THROW:
    case DEMO_MISSING_MENU:
    case DEMO_HOLD_CLIPBOARD:
      if (gMenuBar != nullptr)
        gMenuBar->EnableCommand(inCommandNumber);
      return;
    default:
      CP_Application::UpdateCommandState(inCommandNumber);
  }
}

void DemoApplication::ShowInformation() {
  MessageBoxA(mWindow->GetHandle(), "A small program on the application framework.",
              "About the demo", MB_OK | MB_ICONINFORMATION);
}

void DemoApplication::OnBecomeTarget() {
  demo::Trace("application: is the target");
}
