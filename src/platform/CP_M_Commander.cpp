#include "platform/CP_M_Commander.h"

#include <algorithm>

#include "foundation/CP_DebugAssert.h"
#include "foundation/ReportHooks.h"
#include "platform/CP_Command.h"
#include "platform/CP_EventCodes.h"
#include "platform/CP_Globals.h"
#include "platform/CP_Menu.h"
#include "platform/CP_MenuBar.h"

namespace {

void UpdateCommandsOf(const CP_Menu& inMenu) {
  // Entries that came into the platform menu later have no command number here.
  const int32_t count = std::min(inMenu.CountItems(), inMenu.CountCommands());
  for (int32_t position = 1; position <= count; ++position) {
    const int32_t number = inMenu.GetCommand(position);
    if (number == 0)
      continue;
    if (gTarget->ExecuteAttachments(kCP_EventCommandState, CP_EventDataOfCommand(number))) {
      gTarget->UpdateCommandState(number);
    }
  }
}

// Runs at the end of an exception's report, in a handler that has nowhere to throw to.
void UpdateMenusAfterReport() {
  try {
    CP_M_Commander::UpdateMenus();
  } catch (...) {
    // The menus stay as far as they were updated.
  }
}

[[maybe_unused]] const bool gMenusFollowReports =
    (vm::CurrentReportHooks().updateMenus = &UpdateMenusAfterReport, true);

}  // namespace

CP_M_Commander::CP_M_Commander(CP_M_Commander* inSuperCommander)
    : fSuperCommander(inSuperCommander) {}

CP_M_Commander::~CP_M_Commander() {
  // Whoever takes over is asked after `gTarget` has let go of this object, so that no call reaches
  // it any more. The application is no heir of itself.
  CP_M_Commander* const application = gApplication == this ? nullptr : gApplication;
  if (fTargetState == TargetState::kTarget) {
    if (gTarget == this)
      gTarget = nullptr;
    if (fSuperCommander != nullptr) {
      SwitchTarget(fSuperCommander);
    } else {
      SwitchTarget(application);
    }
  }
  fSuperCommander = nullptr;
  if (gTarget == this) {
    gTarget = nullptr;
    SwitchTarget(application);
  }
}

void CP_M_Commander::PostCommand(CP_Command* inCommand) {
  if (!ExecuteAttachments(kCP_EventCommandObject, inCommand))
    return;
  if (inCommand == nullptr)
    return;
  try {
    inCommand->Execute();
  } catch (...) {
    delete inCommand;
  }
}

bool CP_M_Commander::CanBecomeTarget() {
  return true;
}

int32_t CP_M_Commander::HandleCommand(int32_t inCommandNumber) {
  if (fSuperCommander == nullptr)
    return kCP_CommandNotHandled;
  if (!fSuperCommander->ExecuteAttachments(kCP_EventCommandNumber,
                                           CP_EventDataOfCommand(inCommandNumber))) {
    return kCP_CommandTakenByAttachment;
  }
  return fSuperCommander->HandleCommand(inCommandNumber);
}

int32_t CP_M_Commander::HandleCommandWithData(int32_t inCommandNumber, void* ioData) {
  if (fSuperCommander == nullptr)
    return kCP_CommandNotHandled;
  return fSuperCommander->HandleCommandWithData(inCommandNumber, ioData);
}

void CP_M_Commander::UpdateCommandState(int32_t inCommandNumber) {
  if (fSuperCommander == nullptr)
    return;
  if (fSuperCommander->ExecuteAttachments(kCP_EventCommandState,
                                          CP_EventDataOfCommand(inCommandNumber))) {
    fSuperCommander->UpdateCommandState(inCommandNumber);
  }
}

bool CP_M_Commander::ProcessInput(uint32_t inFirst, uint32_t inSecond) {
  return ForwardInput(inFirst, inSecond);
}

void CP_M_Commander::ProcessOtherInput(uint32_t inFirst, uint32_t inSecond) {
  InputHook(inFirst, inSecond);
}

bool CP_M_Commander::RefusingHook() {
  return false;
}

bool CP_M_Commander::AgreeingHook() {
  return true;
}

bool CP_M_Commander::ForwardInput(uint32_t inFirst, uint32_t inSecond) {
  if (fSuperCommander != nullptr)
    fSuperCommander->ForwardInput(inFirst, inSecond);
  return true;
}

bool CP_M_Commander::InputHook(uint32_t, uint32_t) {
  return false;
}

void CP_M_Commander::OnBecomeTarget() {}

void CP_M_Commander::OnLoseTarget() {}

void CP_M_Commander::SwitchTarget(CP_M_Commander* inNewTarget) {
  if (inNewTarget == nullptr || inNewTarget == gTarget)
    return;
  if (!inNewTarget->CanBecomeTarget())
    return;
  if (gTarget != nullptr)
    LoseTarget(gTarget);
  gTarget = inNewTarget;
  inNewTarget->OnBecomeTarget();
  inNewTarget->fTargetState = TargetState::kTarget;
}

void CP_M_Commander::LoseTarget(CP_M_Commander* inOldTarget) {
  if (!CP_Check(inOldTarget != nullptr, "CP_M_Commander", 178, "inOldTarget != NULL"))
    return;
  inOldTarget->OnLoseTarget();
  inOldTarget->fTargetState = TargetState::kNotTarget;
}

void CP_M_Commander::UpdateMenus() {
  if (gMenuBar == nullptr)
    return;
  gMenuBar->DisableAll();
  if (gTarget != nullptr) {
    for (int32_t i = 1; i <= gMenuBar->CountMenus(); ++i) {
      if (const CP_Menu* const menu = gMenuBar->GetMenu(i))
        UpdateCommandsOf(*menu);
    }
  }
  gMenuBar->Redraw();
}
