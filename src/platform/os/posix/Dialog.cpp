#include "platform/os/Dialog.h"

#include <chrono>
#include <thread>
#include <utility>

#include "platform/os/posix/DialogScript.h"

namespace os {
namespace posix {
namespace {

constinit DialogScript* gCurrent = nullptr;

// What a dialog's handle points at.
struct RunningDialog {
  DialogScript::Dialog state;
  DialogProcedure procedure;
  DialogScript* script;

  void Deliver(const DialogScript::Message& message) {
    if (state.result)
      return;
    if (script != nullptr && script->beforeMessage)
      script->beforeMessage(message);
    const intptr_t answer = procedure(reinterpret_cast<WindowHandle>(this), message.number,
                                      message.first, message.second);
    state.delivered.push_back({message, answer});
  }

  void RunScripted() {
    while (!script->messages.empty() && !state.result) {
      const DialogScript::Message message = script->messages.front();
      script->messages.pop_front();
      Deliver(message);
    }
    for (int32_t i = 0; i < script->timersBeforeCancel && !state.timers.empty() && !state.result;
         ++i)
      Deliver({kDialogMessageTimer, state.timers.front().id, 0});
    Deliver({kDialogMessageCommand, kDialogCancelButton, 0});
    if (!state.result)
      state.result = -1;
  }

  void RunInRealTime() {
    while (!state.result) {
      // Nobody could ever end a dialog without a timer.
      if (state.timers.empty()) {
        state.result = -1;
        return;
      }
      const DialogScript::Dialog::Timer timer = state.timers.front();
      std::this_thread::sleep_for(std::chrono::milliseconds(timer.milliseconds));
      state.delivered.clear();
      Deliver({kDialogMessageTimer, timer.id, 0});
    }
  }
};

}  // namespace

DialogScript::DialogScript() : mPrevious(gCurrent) {
  gCurrent = this;
}

DialogScript::~DialogScript() {
  gCurrent = mPrevious;
}

DialogScript* DialogScript::Current() {
  return gCurrent;
}

}  // namespace posix

intptr_t RunModalDialog(void* module, const char* templateName, WindowHandle owner,
                        DialogProcedure procedure, intptr_t parameter) {
  posix::DialogScript* const script = posix::DialogScript::Current();
  if (script != nullptr && !script->canMakeDialogs)
    return -1;
  posix::RunningDialog dialog{
      {module, templateName, owner, parameter, {}, {}, {}}, procedure, script};
  dialog.Deliver({kDialogMessageSetFont, 0, 0});
  dialog.Deliver({kDialogMessageInit, 0, parameter});
  dialog.Deliver({kDialogMessagePaint, 0, 0});
  if (script != nullptr)
    dialog.RunScripted();
  else
    dialog.RunInRealTime();
  const intptr_t result = *dialog.state.result;
  if (script != nullptr)
    script->dialogs.push_back(std::move(dialog.state));
  return result;
}

void EndDialog(WindowHandle dialog, intptr_t result) {
  reinterpret_cast<posix::RunningDialog*>(dialog)->state.result = result;
}

void StartDialogTimer(WindowHandle dialog, uintptr_t id, uint32_t milliseconds) {
  reinterpret_cast<posix::RunningDialog*>(dialog)->state.timers.push_back({id, milliseconds});
}

}  // namespace os
