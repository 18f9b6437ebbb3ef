#include "platform/CP_Application.h"

#include "foundation/CP_Exceptions.h"
#include "platform/CP_Clipboard.h"
#include "platform/CP_Constants.h"  // so that every program with an application has them
#include "platform/CP_Desktop.h"
#include "platform/CP_Event.h"
#include "platform/CP_EventCodes.h"
#include "platform/CP_Globals.h"
#include "platform/CP_M_Idler.h"
#include "platform/CP_MenuBar.h"
#include "platform/os/Events.h"

namespace {

constexpr int16_t kMenuBarResource = 128;

void WalkIdlers(CP_Event& ioEvent) {
  if (gIdlers == nullptr)
    return;
  for (auto node = gIdlers->begin(); node != gIdlers->end();) {
    CP_M_Idler* const idler = *node++;  // the idler may take its node out
    if (idler != nullptr && idler->IsIdling())
      idler->SpendIdleTime(ioEvent);
  }
}

}  // namespace

CP_Application::CP_Application() : CP_M_Commander(nullptr) {
  gApplication = this;
}

CP_Application::~CP_Application() {
  gApplication = nullptr;
}

void CP_Application::Run() {
  try {
    RunLoop();
  } catch (const CP_BaseException& exception) {
    exception.Report();
  } catch (...) {
    // Only the framework's own exceptions have anything to tell the user.
  }
}

void CP_Application::RunLoop() {
  SwitchTarget(this);
  Initialize();
  MakeMenuBar();
  StartUp();
  UpdateMenus();
  SwitchTarget(this);
  os::ShowArrowCursor();
  while (!fDone) {
    CP_Event event;
    const bool got = GetEvent(event);
    if (ExecuteAttachments(kCP_EventRaw, &event)) {
      if (got && gEventDispatcher != nullptr)
        gEventDispatcher->DispatchEvent(event);
      WalkIdlers(event);
    }
    os::SleepMilliseconds(1);
  }
}

void CP_Application::StartUp() {}

void CP_Application::StartUpHook() {}

int32_t CP_Application::HandleCommand(int32_t inCommandNumber) {
  switch (inCommandNumber) {
    case kCP_CommandQuit:
      return AttemptQuit() ? 1 : 0;
    case kCP_CommandShowInformation:
      ShowInformation();
      return 0;
    default:
      return CP_M_Commander::HandleCommand(inCommandNumber);
  }
}

int32_t CP_Application::HandleCommandWithData(int32_t, void*) {
  return kCP_CommandNotHandled;
}

void CP_Application::UpdateCommandState(int32_t inCommandNumber) {
  if (gMenuBar == nullptr)
    return;
  switch (inCommandNumber) {
    case kCP_CommandQuit:
    case kCP_CommandShowInformation:
      gMenuBar->EnableCommand(inCommandNumber);
      return;
    default:
      CP_M_Commander::UpdateCommandState(inCommandNumber);
  }
}

void CP_Application::ShowInformation() {}

bool CP_Application::AttemptQuit() {
  if (gDesktop == nullptr || gDesktop->AttemptCloseAll(kCP_WindowKindRegular))
    fDone = true;
  return fDone;
}

bool CP_Application::GetEvent(CP_Event& outEvent) {
  os::Message message;
  if (!os::TakeMessage(message))
    return false;
  outEvent.CopyFromPlatform(message);
  return true;
}

void CP_Application::Initialize() {
  new CP_MenuBar;
  new CP_Clipboard;
}

void CP_Application::MakeMenuBar() {
  if (gMenuBar != nullptr)
    gMenuBar->LoadFromResource(kMenuBarResource);
}

void CP_Application::FirstSpareHook() {}

void CP_Application::SecondSpareHook() {}

bool CP_Application::AgreeingHook() {
  return true;
}
