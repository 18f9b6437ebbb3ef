#include "platform/os/Dialog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "platform/os/posix/DialogScript.h"

namespace os {
namespace {

using posix::DialogScript;

// Sets a timer of 1 ms and ends the dialog with 5 on the third timer message.
int32_t gTimerMessages = 0;
intptr_t EndOnThirdTimer(WindowHandle dialog, uint32_t message, uintptr_t, intptr_t) {
  if (message == kDialogMessageInit)
    StartDialogTimer(dialog, 7, 1);
  if (message == kDialogMessageTimer && ++gTimerMessages == 3)
    EndDialog(dialog, 5);
  return 0;
}

// Ends the dialog with 9 when its button is pressed.
intptr_t EndOnCancel(WindowHandle dialog, uint32_t message, uintptr_t first, intptr_t) {
  if (message == kDialogMessageCommand && first == kDialogCancelButton)
    EndDialog(dialog, 9);
  return message == kDialogMessageInit;
}

intptr_t Ignore(WindowHandle, uint32_t, uintptr_t, intptr_t) {
  return 0;
}

TEST(ModalDialog, WaitsForItsTimerUntilItIsEnded) {
  gTimerMessages = 0;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(RunModalDialog(nullptr, "X", nullptr, &EndOnThirdTimer, 0), 5);
  EXPECT_EQ(gTimerMessages, 3);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(3));
}

TEST(ModalDialog, OneThatNobodyCouldEndFails) {
  EXPECT_EQ(RunModalDialog(nullptr, "X", nullptr, &Ignore, 0), -1);
}

TEST(ScriptedDialog, DeliversItsFirstMessagesThenTheScriptsThenCancel) {
  DialogScript script;
  script.messages = {{0x1234, 5, 6}};
  int module = 0;
  EXPECT_EQ(RunModalDialog(&module, "TEMPLATE", nullptr, &EndOnCancel, 42), 9);
  ASSERT_EQ(script.dialogs.size(), 1u);
  const DialogScript::Dialog& dialog = script.dialogs[0];
  EXPECT_EQ(dialog.module, &module);
  EXPECT_EQ(dialog.templateName, "TEMPLATE");
  EXPECT_EQ(dialog.parameter, 42);
  EXPECT_EQ(dialog.result, 9);
  std::vector<DialogScript::Message> messages;
  std::vector<intptr_t> answers;
  for (const auto& delivered : dialog.delivered) {
    messages.push_back(delivered.message);
    answers.push_back(delivered.answer);
  }
  EXPECT_EQ(messages,
            (std::vector<DialogScript::Message>{
                {0x30, 0, 0}, {0x110, 0, 42}, {0x0F, 0, 0}, {0x1234, 5, 6}, {0x111, 2, 0}}));
  EXPECT_EQ(answers, (std::vector<intptr_t>{0, 1, 0, 0, 0}));
}

TEST(ScriptedDialog, TimePassesWithoutWaiting) {
  DialogScript script;
  script.timersBeforeCancel = 100;
  gTimerMessages = 0;
  EXPECT_EQ(RunModalDialog(nullptr, "X", nullptr, &EndOnThirdTimer, 0), 5);
  EXPECT_EQ(script.dialogs.at(0).delivered.size(), 6u);
  ASSERT_EQ(script.dialogs[0].timers.size(), 1u);
  EXPECT_EQ(script.dialogs[0].timers[0].id, 7u);
  EXPECT_EQ(script.dialogs[0].timers[0].milliseconds, 1u);
}

TEST(ScriptedDialog, OneThatNotEvenCancelEndsFails) {
  const DialogScript script;
  EXPECT_EQ(RunModalDialog(nullptr, "X", nullptr, &Ignore, 0), -1);
}

TEST(ScriptedDialog, MayBeImpossible) {
  DialogScript script;
  script.canMakeDialogs = false;
  EXPECT_EQ(RunModalDialog(nullptr, "X", nullptr, &EndOnCancel, 0), -1);
  EXPECT_TRUE(script.dialogs.empty());
}

TEST(ScriptedDialog, LetsTheWorldGoOnBeforeEachMessage) {
  DialogScript script;
  int32_t calls = 0;
  script.beforeMessage = [&](const DialogScript::Message&) { ++calls; };
  RunModalDialog(nullptr, "X", nullptr, &EndOnCancel, 0);
  EXPECT_EQ(calls, 4);
}

}  // namespace
}  // namespace os
