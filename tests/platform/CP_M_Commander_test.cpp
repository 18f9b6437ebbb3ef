#include "platform/CP_M_Commander.h"

#include <optional>
#include <stdexcept>
#include <string>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_Command.h"
#include "platform/CP_EventHandlerAttachment.h"
#include "platform/FrameworkTest.h"
#include "platform/os/Menus.h"
#include "support/ReportRecorder.h"
#include "support/UnexpectedReports.h"
#include "support/VirtualSlot.h"

namespace {

class Commander : public vm::FrameworkTest {};

// Notes what it is asked, as "name:what".
class Noting : public CP_M_Commander {
 public:
  Noting(std::string name, std::string& log, CP_M_Commander* super = nullptr)
      : CP_M_Commander(super), mName(std::move(name)), mLog(log) {}

  bool CanBecomeTarget() override {
    Note("can");
    return mAgrees;
  }
  void OnBecomeTarget() override {
    Note("become");
    stateInBecome = fTargetState;
  }
  void OnLoseTarget() override {
    Note("lose");
    stateInLose = fTargetState;
  }
  int32_t HandleCommand(int32_t number) override {
    if (number != mCommand)
      return CP_M_Commander::HandleCommand(number);
    Note("handle");
    return 0;
  }
  int32_t HandleCommandWithData(int32_t number, void* data) override {
    if (number != mCommand)
      return CP_M_Commander::HandleCommandWithData(number, data);
    *static_cast<int*>(data) += 1;
    return 5;
  }
  void UpdateCommandState(int32_t number) override {
    Note("update" + std::to_string(number));
    if (number == mCommand && gMenuBar != nullptr)
      gMenuBar->EnableCommand(number);
    CP_M_Commander::UpdateCommandState(number);
  }
  bool ForwardInput(uint32_t a, uint32_t b) override {
    Note("input" + std::to_string(a) + "," + std::to_string(b));
    return CP_M_Commander::ForwardInput(a, b) && mForwards;
  }
  bool InputHook(uint32_t a, uint32_t b) override {
    Note("hook" + std::to_string(a) + "," + std::to_string(b));
    return CP_M_Commander::InputHook(a, b);
  }

  using CP_M_Commander::fSuperCommander;
  using CP_M_Commander::fTargetState;
  using CP_M_Commander::LoseTarget;
  using CP_M_Commander::TargetState;

  bool mAgrees = true;
  bool mForwards = true;
  int32_t mCommand = 50;
  std::optional<TargetState> stateInBecome;
  std::optional<TargetState> stateInLose;

 private:
  void Note(const std::string& what) { mLog += mName + ":" + what + " "; }

  std::string mName;
  std::string& mLog;
};

class Answering : public CP_EventHandlerAttachment {
 public:
  Answering(uint32_t code, std::string& log, bool answer)
      : CP_EventHandlerAttachment(code), mLog(log), mAnswer(answer) {}
  bool HandleEvent(uint32_t, void* data) override {
    mLog += "attachment" + std::to_string(CP_CommandOfEventData(data)) + " ";
    return mAnswer;
  }

 private:
  std::string& mLog;
  bool mAnswer;
};

TEST_F(Commander, StartsOutsideTheTargetWithStateTwo) {
  std::string log;
  Noting top("top", log);
  Noting below("below", log, &top);
  EXPECT_EQ(static_cast<int>(below.fTargetState), 2);
  EXPECT_EQ(below.GetSuperCommander(), &top);
  EXPECT_EQ(top.GetSuperCommander(), nullptr);
  EXPECT_EQ(log, "");
}

TEST_F(Commander, HasItsOperationsBehindTheDestructorInTheirOrder) {
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::PostCommand), 2u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::CanBecomeTarget), 3u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::HandleCommand), 4u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::HandleCommandWithData), 5u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::UpdateCommandState), 6u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::ProcessInput), 7u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::ProcessOtherInput), 8u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::RefusingHook), 9u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::AgreeingHook), 10u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::ForwardInput), 11u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::InputHook), 12u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::OnBecomeTarget), 13u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Commander::OnLoseTarget), 14u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Command::Execute), 2u) << "a command's second operation";
}

TEST_F(Commander, TheBaseAgreesToBecomeTargetAndItsHooksAnswerTheirConstants) {
  CP_M_Commander commander(nullptr);
  EXPECT_TRUE(commander.CanBecomeTarget());
  EXPECT_FALSE(commander.RefusingHook());
  EXPECT_TRUE(commander.AgreeingHook());
  EXPECT_TRUE(commander.ForwardInput(1, 2));
  EXPECT_FALSE(commander.InputHook(1, 2));
  EXPECT_TRUE(commander.ProcessInput(1, 2));
}

TEST_F(Commander, BecomingTargetAsksFirstThenTakesTheTargetFromTheOldOne) {
  std::string log;
  Noting a("a", log);
  Noting b("b", log);
  CP_M_Commander::SwitchTarget(&a);
  EXPECT_EQ(gTarget, &a);
  EXPECT_EQ(static_cast<int>(a.fTargetState), 0);
  CP_M_Commander::SwitchTarget(&b);
  EXPECT_EQ(gTarget, &b);
  EXPECT_EQ(static_cast<int>(a.fTargetState), 2);
  EXPECT_EQ(static_cast<int>(b.fTargetState), 0);
  EXPECT_EQ(log, "a:can a:become b:can a:lose b:become ");
  EXPECT_EQ(static_cast<int>(*b.stateInBecome), 2) << "the state follows the call";
  EXPECT_EQ(static_cast<int>(*a.stateInLose), 0) << "the state follows the call";
}

TEST_F(Commander, SwitchingToTheTargetOrToNoneCallsNothing) {
  std::string log;
  Noting a("a", log);
  CP_M_Commander::SwitchTarget(&a);
  log.clear();
  CP_M_Commander::SwitchTarget(&a);
  CP_M_Commander::SwitchTarget(nullptr);
  EXPECT_EQ(log, "");
  EXPECT_EQ(gTarget, &a);
}

TEST_F(Commander, OneThatRefusesLeavesTheTargetAsItWas) {
  std::string log;
  Noting a("a", log);
  Noting b("b", log);
  b.mAgrees = false;
  CP_M_Commander::SwitchTarget(&a);
  log.clear();
  CP_M_Commander::SwitchTarget(&b);
  EXPECT_EQ(gTarget, &a);
  EXPECT_TRUE(a.IsTarget());
  EXPECT_EQ(log, "b:can ");
}

TEST_F(Commander, LosingTheTargetOfNobodyIsReportedAndDoesNothing) {
  vm::ReportRecorder reports;
  Noting::LoseTarget(nullptr);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_M_Commander(178) : inOldTarget != NULL"}));
}

TEST_F(Commander, ACommandNobodyKnowsComesBackFromTheTopAsMinusOne) {
  std::string log;
  Noting top("top", log);
  Noting middle("middle", log, &top);
  Noting bottom("bottom", log, &middle);
  EXPECT_EQ(bottom.HandleCommand(99), -1);
  EXPECT_EQ(top.HandleCommand(99), -1);
  EXPECT_EQ(bottom.HandleCommandWithData(99, nullptr), -1);
}

TEST_F(Commander, ACommandClimbsTheChainToTheOneThatKnowsIt) {
  std::string log;
  Noting top("top", log);
  Noting middle("middle", log, &top);
  Noting bottom("bottom", log, &middle);
  top.mCommand = 7;
  middle.mCommand = 8;
  EXPECT_EQ(bottom.HandleCommand(7), 0);
  EXPECT_EQ(bottom.HandleCommand(8), 0);
  EXPECT_EQ(log, "top:handle middle:handle ");
  int data = 1;
  EXPECT_EQ(bottom.HandleCommandWithData(7, &data), 5);
  EXPECT_EQ(data, 2);
}

TEST_F(Commander, AnAttachmentOfTheSuperCommanderCanTakeACommandWhichThenIsDone) {
  std::string log;
  Noting top("top", log);
  Noting bottom("bottom", log, &top);
  top.mCommand = 7;
  top.AddAttachment(std::make_unique<Answering>(kCP_EventCommandNumber, log, false));
  EXPECT_EQ(bottom.HandleCommand(7), 1);
  EXPECT_EQ(log, "attachment7 ");
  log.clear();
  int data = 0;
  EXPECT_EQ(bottom.HandleCommandWithData(7, &data), 5) << "attachments aren't asked here";
  EXPECT_EQ(log, "");
}

TEST_F(Commander, ItsOwnAttachmentsDontSeeACommandItIsGiven) {
  std::string log;
  Noting only("only", log);
  only.AddAttachment(std::make_unique<Answering>(kCP_EventAny, log, false));
  EXPECT_EQ(only.HandleCommand(99), -1);
  EXPECT_EQ(log, "");
}

TEST_F(Commander, TheStateOfACommandIsAskedUpTheChainUnlessAnAttachmentRefuses) {
  std::string log;
  Noting top("top", log);
  Noting bottom("bottom", log, &top);
  bottom.UpdateCommandState(3);
  EXPECT_EQ(log, "bottom:update3 top:update3 ");
  top.AddAttachment(std::make_unique<Answering>(kCP_EventCommandState, log, false));
  log.clear();
  bottom.UpdateCommandState(3);
  EXPECT_EQ(log, "bottom:update3 attachment3 ");
}

TEST_F(Commander, InputIsForwardedToTheTopAndItsResultIsTheObjectsOwn) {
  std::string log;
  Noting top("top", log);
  Noting bottom("bottom", log, &top);
  top.mForwards = false;
  EXPECT_TRUE(bottom.ProcessInput(1, 2)) << "what the super commander says doesn't count";
  EXPECT_EQ(log, "bottom:input1,2 top:input1,2 ");
  EXPECT_FALSE(top.ProcessInput(1, 2));
}

TEST_F(Commander, OtherInputEndsAtTheObjectsHook) {
  std::string log;
  Noting top("top", log);
  Noting bottom("bottom", log, &top);
  bottom.ProcessOtherInput(3, 4);
  EXPECT_EQ(log, "bottom:hook3,4 ");
}

struct NotingCommand : CP_Command {
  explicit NotingCommand(std::string& inLog, bool inThrows = false, bool inThrowsInt = false)
      : log(inLog), throws(inThrows), throwsInt(inThrowsInt) {}
  ~NotingCommand() override { log += "~"; }
  void Execute() override {
    log += "execute ";
    if (throwsInt)
      throw 42;
    if (throws)
      throw CP_PlfrmErrorException(-36, "File", 1);
  }
  std::string& log;
  bool throws;
  bool throwsInt;
};

TEST_F(Commander, APostedCommandIsExecutedAndStaysTheCallers) {
  std::string log;
  NotingCommand command(log);
  CP_M_Commander commander(nullptr);
  commander.PostCommand(&command);
  EXPECT_EQ(log, "execute ");
  commander.PostCommand(nullptr);
  EXPECT_EQ(log, "execute ");
}

TEST_F(Commander, APostedCommandThatThrowsAnythingIsDestroyedWithoutAReport) {
  std::string log;
  CP_M_Commander commander(nullptr);
  EXPECT_NO_THROW(commander.PostCommand(new NotingCommand(log, true)));
  EXPECT_NO_THROW(commander.PostCommand(new NotingCommand(log, false, true)));
  EXPECT_EQ(log, "execute ~execute ~");
}

TEST_F(Commander, AnAttachmentCanRefuseAPostedCommand) {
  std::string log;
  NotingCommand command(log);
  CP_M_Commander commander(nullptr);
  std::string attachmentLog;
  commander.AddAttachment(
      std::make_unique<Answering>(kCP_EventCommandObject, attachmentLog, false));
  commander.PostCommand(&command);
  commander.PostCommand(nullptr);
  EXPECT_EQ(log, "");
  EXPECT_NE(attachmentLog.find("attachment0 "), std::string::npos) << "asked without a command too";
}

TEST_F(Commander, TheTargetsEndHandsTheTargetToTheSuperCommander) {
  std::string log;
  Noting application("application", log);
  gApplication = &application;
  Noting top("top", log);
  {
    Noting bottom("bottom", log, &top);
    CP_M_Commander::SwitchTarget(&bottom);
    log.clear();
  }
  EXPECT_EQ(gTarget, &top);
  EXPECT_TRUE(top.IsTarget());
  EXPECT_EQ(log, "top:can top:become ") << "no call reaches the dying object";
}

TEST_F(Commander, TheTargetsEndHandsTheTargetToTheApplicationWithoutASuperCommander) {
  std::string log;
  Noting application("application", log);
  gApplication = &application;
  {
    Noting only("only", log);
    CP_M_Commander::SwitchTarget(&only);
    log.clear();
  }
  EXPECT_EQ(gTarget, &application);
  EXPECT_EQ(log, "application:can application:become ");
}

TEST_F(Commander, TheTargetsEndLeavesNoTargetWhenNobodyTakesOver) {
  std::string log;
  {
    Noting only("only", log);
    CP_M_Commander::SwitchTarget(&only);
  }
  EXPECT_EQ(gTarget, nullptr);

  Noting top("top", log);
  top.mAgrees = false;
  {
    Noting bottom("bottom", log, &top);
    CP_M_Commander::SwitchTarget(&bottom);
  }
  EXPECT_EQ(gTarget, nullptr);
}

TEST_F(Commander, TheApplicationAsTargetIsNoHeirOfItself) {
  std::string log;
  {
    Noting application("application", log);
    gApplication = &application;
    CP_M_Commander::SwitchTarget(&application);
    log.clear();
  }
  EXPECT_EQ(gTarget, nullptr);
  EXPECT_EQ(log, "");
}

TEST_F(Commander, ATargetThatLostItsStateStillHandsTheTargetOverToTheApplication) {
  std::string log;
  Noting application("application", log);
  gApplication = &application;
  {
    Noting only("only", log);
    CP_M_Commander::SwitchTarget(&only);
    only.fTargetState = Noting::TargetState::kNotTarget;
    log.clear();
  }
  EXPECT_EQ(gTarget, &application);
  EXPECT_EQ(log, "application:can application:become ");
}

TEST_F(Commander, TheEndOfAnotherCommanderLeavesTheTargetAlone) {
  std::string log;
  Noting target("target", log);
  CP_M_Commander::SwitchTarget(&target);
  { Noting other("other", log, &target); }
  EXPECT_EQ(gTarget, &target);
  EXPECT_EQ(log, "target:can target:become ");
}

TEST_F(Commander, MenusAreNotTouchedWithoutAMenuBar) {
  std::string log;
  Noting target("target", log);
  CP_M_Commander::SwitchTarget(&target);
  log.clear();
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(log, "");
}

TEST_F(Commander, UpdatingTheMenusAsksTheTargetForEveryCommandOfEveryMenuAndSubmenu) {
  const vm::LoadedMenuBar bar(128);
  std::string log;
  Noting target("t", log);
  CP_M_Commander::SwitchTarget(&target);
  log.clear();
  CP_M_Commander::UpdateMenus();
  // The submenus stand behind the top-level menu that they were found in; the third level was
  // built, and entered, before the second one. The separator has no command.
  EXPECT_EQ(log,
            "t:update100 t:update101 t:update9 t:update102 t:update103 "
            "t:update301 t:update302 t:update320 t:update310 t:update311 "
            "t:update110 t:update110 t:update18 "
            "t:update120 t:update110 ");
}

TEST_F(Commander, UpdatingTheMenusDisablesWhatNobodyEnables) {
  const vm::LoadedMenuBar bar(128);
  std::string log;
  Noting target("t", log);
  target.mCommand = 110;
  CP_M_Commander::SwitchTarget(&target);
  CP_M_Commander::UpdateMenus();
  // The File menu is number 501 and keeps its state. Command 110 stands in Edit twice, and once in
  // View, which isn't reached any more.
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "EEE-EE");
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(2)), "dd") << "the submenu under Open";
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(5)), "EEd") << "Edit";
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(6)), "dd") << "View";

  target.mCommand = 0;
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(5)), "ddd");
}

TEST_F(Commander, UpdatingTheMenusWithoutATargetDisablesThemAll) {
  const vm::LoadedMenuBar bar(128);
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(5)), "ddd");
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "EEE-EE");
}

TEST_F(Commander, AnAttachmentOfTheTargetKeepsACommandDisabled) {
  const vm::LoadedMenuBar bar(129);
  std::string log;
  Noting target("t", log);
  target.mCommand = 1;
  CP_M_Commander::SwitchTarget(&target);
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "E");
  target.AddAttachment(std::make_unique<Answering>(kCP_EventCommandState, log, false));
  log.clear();
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "d");
  EXPECT_EQ(log, "attachment1 ");
}

TEST_F(Commander, AReportedExceptionUpdatesTheMenus) {
  const vm::LoadedMenuBar bar(129);
  std::string log;
  Noting target("t", log);
  CP_M_Commander::SwitchTarget(&target);
  log.clear();
  vm::ReportRecorder reports;
  vm::CurrentReportHooks().updateMenus = vm::HooksAtStart().updateMenus;
  CP_RuntimeException("text", "File", 1).Report();
  EXPECT_EQ(log, "t:update1 ");
}

TEST_F(Commander, ACommanderThatThrowsWhileAReportUpdatesTheMenusDoesNoHarm) {
  struct Throwing : CP_M_Commander {
    Throwing() : CP_M_Commander(nullptr) {}
    void UpdateCommandState(int32_t) override { throw std::runtime_error("no state"); }
  };
  const vm::LoadedMenuBar bar(129);
  Throwing target;
  CP_M_Commander::SwitchTarget(&target);
  vm::ReportRecorder reports;
  vm::CurrentReportHooks().updateMenus = vm::HooksAtStart().updateMenus;
  EXPECT_NO_THROW(CP_RuntimeException("text", "File", 1).Report());
  EXPECT_THROW(CP_M_Commander::UpdateMenus(), std::runtime_error);
}

TEST_F(Commander, EntriesThatCameIntoAMenuLaterHaveNoCommandToAskFor) {
  const vm::LoadedMenuBar bar(129);
  os::MenuHandle menu = bar->GetMenu(1)->GetHandle();
  os::AppendMenuText(menu, 77, "Late");
  std::string log;
  Noting target("t", log);
  CP_M_Commander::SwitchTarget(&target);
  log.clear();
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(log, "t:update1 ");
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "dd");
}

}  // namespace
