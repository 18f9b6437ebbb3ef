#include "host/WaitDialog.h"

#include <gtest/gtest.h>

#include "host/posix/ScriptedRun.h"

namespace vm {
namespace {

using os::posix::DialogScript;

class WaitDialog : public testing::Test {
 protected:
  // Runs the dialog by itself; gives what ended it.
  intptr_t Run() {
    return os::RunModalDialog(nullptr, kWaitDialogTemplate, nullptr, &DissolveProc, 0);
  }

  const DialogScript::Dialog& Dialog() const { return mRun.dialogs.dialogs.at(0); }

  // Lets the done file appear before the n-th message, counted from 0.
  void FinishBefore(int32_t message) {
    mRun.dialogs.beforeMessage = [this, message, count = 0](const DialogScript::Message&) mutable {
      if (count++ == message)
        mRun.directory.Write("Flg2.h", "done");
    };
  }

  ScriptedRun mRun;
};

TEST_F(WaitDialog, PollsOnTheTimer) {
  FinishBefore(5);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Dialog().delivered.size(), 6u);
  EXPECT_EQ(Dialog().delivered.back().message.number, 0x113u);
  EXPECT_EQ(Dialog().delivered.back().answer, 1);
  EXPECT_FALSE(mRun.directory.Has("Flg2.h")) << "the done file is taken away";
}

TEST_F(WaitDialog, SetsTimer1000To90MillisecondsWhenItIsInitialised) {
  Run();
  ASSERT_EQ(Dialog().timers.size(), 1u);
  EXPECT_EQ(Dialog().timers[0].id, 1000u);
  EXPECT_EQ(Dialog().timers[0].milliseconds, 90u);
}

TEST_F(WaitDialog, ADoneFileThatIsThereAlreadyEndsItOnTheFirstMessageBeforeTheTimerIsSet) {
  FinishBefore(0);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Dialog().delivered.size(), 1u);
  EXPECT_TRUE(Dialog().timers.empty());
}

TEST_F(WaitDialog, EveryMessagePollsWhicheverItIs) {
  // Set font, initialise, paint, and one that nobody knows.
  mRun.dialogs.messages = {{0xC123, 1, 2}};
  for (int32_t message = 0; message < 4; ++message) {
    FinishBefore(message);
    EXPECT_EQ(Run(), 1) << "message " << message;
    EXPECT_EQ(mRun.dialogs.dialogs.back().delivered.size(), static_cast<size_t>(message) + 1);
    mRun.dialogs.messages = {{0xC123, 1, 2}};
  }
}

TEST_F(WaitDialog, CancelEndsItWithTwoAndTouchesNoFile) {
  mRun.directory.Write("Img.h", "request");
  mRun.directory.Write("Flg.h", "flag");
  mRun.dialogs.messages = {{0x111, 2, 0}};
  EXPECT_EQ(Run(), 2);
  EXPECT_EQ(Dialog().delivered.back().answer, 1);
  EXPECT_EQ(mRun.directory.Read("Img.h"), "request");
  EXPECT_EQ(mRun.directory.Read("Flg.h"), "flag");
}

TEST_F(WaitDialog, CancelWhileTheDoneFileIsThereCountsAsDone) {
  mRun.dialogs.messages = {{0x111, 2, 0}};
  FinishBefore(3);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Dialog().delivered.back().message.number, 0x111u);
}

TEST_F(WaitDialog, AnswersOneForInitialiseAndCancelAndZeroForAllElse) {
  mRun.dialogs.messages = {
      {0x111, 1, 0},            // another control
      {0x111, 2 | 1 << 16, 0},  // the button, but not a click
      {0x0F, 0, 0},             // paint
      {0x113, 1000, 0},         // timer
      {0x10, 0, 0},             // close
      {0x02, 0, 0},
  };
  mRun.dialogs.timersBeforeCancel = 1;
  EXPECT_EQ(Run(), 2);
  std::vector<intptr_t> answers;
  for (const auto& delivered : Dialog().delivered)
    answers.push_back(delivered.answer);
  // Font, initialise, paint; the six; a timer; Cancel.
  EXPECT_EQ(answers, (std::vector<intptr_t>{0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(WaitDialog, ADirectoryInTheDoneFilesPlaceIsNotSeen) {
  // It can't be opened as a file, as one that the application holds can't.
  std::filesystem::create_directory(mRun.directory.Native("Flg2.h"));
  EXPECT_EQ(Run(), 2);
  EXPECT_TRUE(mRun.directory.Has("Flg2.h"));
}

TEST_F(WaitDialog, TheDoneFileOfTheCurrentDirectoryIsNotSeen) {
  const TempDirectory elsewhere;
  elsewhere.Write("Flg2.h", "");
  const CurrentDirectory there(elsewhere.Native());
  EXPECT_EQ(Run(), 2);
  EXPECT_TRUE(elsewhere.Has("Flg2.h"));
}

}  // namespace
}  // namespace vm
