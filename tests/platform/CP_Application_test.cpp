#include "platform/CP_Application.h"

#include <deque>
#include <list>
#include <stdexcept>
#include <string>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_Desktop.h"
#include "platform/CP_Event.h"
#include "platform/CP_EventHandlerAttachment.h"
#include "platform/CP_M_Idler.h"
#include "platform/FrameworkTest.h"
#include "support/ReportRecorder.h"
#include "support/UnexpectedReports.h"
#include "support/VirtualSlot.h"

namespace {

class Application : public vm::FrameworkTest {};

// Runs a script in the place of the system's queue: one letter for a pass, '-' for no event, any
// other one for a message of that number. Quits when the script is at its end.
class Scripted : public CP_Application {
 public:
  explicit Scripted(std::string script, std::string& inLog)
      : log(inLog), mScript(script.begin(), script.end()) {}

  void Initialize() override { log += "Initialize "; }
  void MakeMenuBar() override { log += "MakeMenuBar "; }
  void StartUp() override { log += "StartUp "; }
  bool GetEvent(CP_Event& event) override {
    if (mScript.empty()) {
      fDone = true;
      return false;
    }
    const char letter = mScript.front();
    mScript.pop_front();
    if (letter == '-')
      return false;
    event.fMessage = event.fMessageCopy = static_cast<uint32_t>(letter);
    return true;
  }
  void DispatchEvent(CP_Event& event) override { log += static_cast<char>(event.fMessage); }
  void ShowInformation() override { log += "information "; }
  void OnBecomeTarget() override { log += "target "; }

  using CP_Application::fAttachments;
  using CP_Application::fDone;
  std::string& log;

 private:
  std::deque<char> mScript;
};

class EventWatcher : public CP_EventHandlerAttachment {
 public:
  EventWatcher(std::string& log, uint32_t refused)
      : CP_EventHandlerAttachment(kCP_EventRaw), mLog(log), mRefused(refused) {}
  bool HandleEvent(uint32_t, void* data) override {
    mLog += '?';
    return static_cast<CP_Event*>(data)->fMessage != mRefused;
  }

 private:
  std::string& mLog;
  uint32_t mRefused;
};

class NotingIdler : public CP_M_Idler {
 public:
  NotingIdler(char name, std::string& log) : mName(name), mLog(log) { StartIdling(); }
  void SpendIdleTime(CP_Event&) override { mLog += mName; }

 private:
  char mName;
  std::string& mLog;
};

TEST_F(Application, IsTheGlobalApplicationAndDispatcherWhileItLives) {
  {
    CP_Application application;
    EXPECT_EQ(gApplication, static_cast<CP_M_Commander*>(&application));
    EXPECT_EQ(gEventDispatcher, static_cast<CP_M_EventDispatcher*>(&application));
    EXPECT_EQ(application.GetSuperCommander(), nullptr);
    EXPECT_FALSE(application.IsTarget());
    EXPECT_EQ(gTarget, nullptr);
  }
  EXPECT_EQ(gApplication, nullptr);
  EXPECT_EQ(gEventDispatcher, nullptr);
}

TEST_F(Application, HasOneSetOfAttachmentsForBothBases) {
  std::string log;
  CP_Application application;
  static_cast<CP_M_EventDispatcher&>(application)
      .AddAttachment(std::make_unique<EventWatcher>(log, 0));
  EXPECT_EQ(static_cast<CP_M_Commander&>(application).AttachmentCount(), 1u);
}

TEST_F(Application, HasItsOperationsBehindThoseOfTheDispatcherInTheirOrder) {
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::Run), 4u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::StartUp), 5u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::StartUpHook), 6u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::HandleCommand), 7u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::HandleCommandWithData), 8u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::UpdateCommandState), 9u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::ShowInformation), 10u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::AttemptQuit), 11u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::GetEvent), 12u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::Initialize), 13u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::MakeMenuBar), 14u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::FirstSpareHook), 15u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::SecondSpareHook), 16u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Application::AgreeingHook), 17u);
  CP_Application application;
  EXPECT_TRUE(application.AgreeingHook());
}

TEST_F(Application, RunsItsBeginningAsTheTargetAndInOrder) {
  std::string log;
  Scripted application("", log);
  application.Run();
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp ");
  EXPECT_EQ(gTarget, &application);
}

TEST_F(Application, TakesTheTargetBackFromWhateverStartUpMadeTheTarget) {
  struct WithPane : Scripted {
    explicit WithPane(std::string& log) : Scripted("", log) {}
    void StartUp() override { SwitchTarget(&pane); }
    CP_M_Commander pane{this};
  };
  std::string log;
  WithPane application(log);
  application.Run();
  EXPECT_EQ(gTarget, &application);
}

TEST_F(Application, TheEndOfTheTargetApplicationLeavesNoTarget) {
  std::string log;
  { Scripted("", log).Run(); }
  EXPECT_EQ(gTarget, nullptr);
}

TEST_F(Application, DoesNotEnterTheLoopWhenItIsDoneBefore) {
  struct Quitting : Scripted {
    explicit Quitting(std::string& log) : Scripted("abc", log) {}
    void StartUp() override { AttemptQuit(); }
  };
  std::string log;
  Quitting application(log);
  application.Run();
  EXPECT_EQ(log.find('a', log.find("MakeMenuBar ") + 12), std::string::npos);
}

TEST_F(Application, DispatchesEachEventAndIdlesInEveryPass) {
  std::string log;
  Scripted application("a-b", log);
  NotingIdler idler('i', log);
  std::list<CP_M_Idler*> idlers{&idler};
  gIdlers = &idlers;
  application.Run();
  // The last pass is the one in which the script is found at its end.
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp aiibii");
}

TEST_F(Application, AskAttachmentsInEveryPassAndARefusalSkipsDispatchAndIdling) {
  std::string log;
  Scripted application("a-b", log);
  application.AddAttachment(std::make_unique<EventWatcher>(log, 'a'));
  NotingIdler idler('i', log);
  std::list<CP_M_Idler*> idlers{&idler};
  gIdlers = &idlers;
  application.Run();
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp ??i?bi?i");
}

TEST_F(Application, AnEventWithoutAMessageIsAllZeroForItsAttachments) {
  struct Looking : CP_EventHandlerAttachment {
    explicit Looking(int& count) : CP_EventHandlerAttachment(kCP_EventAny), mCount(count) {}
    bool HandleEvent(uint32_t code, void* data) override {
      EXPECT_EQ(code, kCP_EventRaw);
      os::Message message;
      static_cast<CP_Event*>(data)->CopyToPlatform(message);
      EXPECT_EQ(message, os::Message());
      ++mCount;
      return true;
    }
    int& mCount;
  };
  std::string log;
  int count = 0;
  Scripted application("-", log);
  application.AddAttachment(std::make_unique<Looking>(count));
  application.Run();
  EXPECT_EQ(count, 2);
}

TEST_F(Application, OnlyIdlersThatIdleGetTime) {
  std::string log;
  Scripted application("-", log);
  NotingIdler one('1', log);
  NotingIdler two('2', log);
  one.StopIdling();
  EXPECT_FALSE(one.IsIdling());
  std::list<CP_M_Idler*> idlers{&one, nullptr, &two};
  gIdlers = &idlers;
  log.clear();
  application.Run();
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp 22");
}

TEST_F(Application, AnIdlerMayTakeItselfOutOfTheList) {
  struct Leaving : NotingIdler {
    using NotingIdler::NotingIdler;
    void SpendIdleTime(CP_Event& event) override {
      NotingIdler::SpendIdleTime(event);
      gIdlers->remove(this);
    }
  };
  std::string log;
  Scripted application("-", log);
  Leaving one('1', log);
  NotingIdler two('2', log);
  std::list<CP_M_Idler*> idlers{&one, &two};
  gIdlers = &idlers;
  application.Run();
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp 122");
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Idler::StartIdling), 2u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Idler::StopIdling), 3u);
  EXPECT_EQ(vm::VirtualSlot(&CP_M_Idler::SpendIdleTime), 4u);
}

struct ThrowingApplication : Scripted {
  using Scripted::Scripted;
  void DispatchEvent(CP_Event& event) override {
    Scripted::DispatchEvent(event);
    switch (event.fMessage) {
      case 'p':
        throw CP_PlfrmErrorException(-36, "CP_File", 100);
      case 'm':
        throw CP_MemoryException("NULL Pointer", "CP_Clipboard", 131);
      case 's':
        throw std::runtime_error("a standard one");
      case 'i':
        throw 5;
    }
  }
};

TEST_F(Application, AnExceptionOfTheFrameworkEndsTheLoopAfterItsReport) {
  std::string log;
  ThrowingApplication application("amb", log);
  vm::ReportRecorder reports;
  EXPECT_NO_THROW(application.Run());
  EXPECT_EQ(log, "target Initialize MakeMenuBar StartUp am");
  EXPECT_FALSE(application.fDone);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Clipboard(131) : NULL Pointer"}));
  ASSERT_EQ(reports.Boxes().size(), 1u);
  EXPECT_EQ(reports.Boxes()[0],
            (vm::ShownBox{"Exception thrown\rFile: CP_Clipboard\rLine:131\rException: NULL Pointer",
                          "CP_Exception", 17}));
  EXPECT_EQ(reports.MenuUpdates(), 1);
}

TEST_F(Application, APlatformErrorIsReportedByItsOwnReport) {
  std::string log;
  ThrowingApplication application("pb", log);
  vm::ReportRecorder reports;
  application.Run();
  ASSERT_EQ(reports.Boxes().size(), 1u);
  EXPECT_EQ(reports.Boxes()[0].text, "Exception thrown\rFile: CP_File\rLine:100\rException: ");
}

TEST_F(Application, AnyOtherExceptionEndsTheLoopWithoutAReport) {
  for (const char* script : {"sb", "ib"}) {
    std::string log;
    ThrowingApplication application(script, log);
    EXPECT_NO_THROW(application.Run());
    EXPECT_EQ(log.substr(log.size() - 1), std::string(script, 1));
  }
}

TEST_F(Application, AnExceptionInTheBeginningEndsRunAsInTheLoop) {
  struct Failing : Scripted {
    explicit Failing(std::string& log) : Scripted("ab", log) {}
    void StartUp() override { throw CP_RuntimeException("no start", "Failing", 7); }
  };
  std::string log;
  Failing application(log);
  vm::ReportRecorder reports;
  EXPECT_NO_THROW(application.Run());
  EXPECT_EQ(reports.Lines(), vm::Reports({"Failing(7) : no start"}));
  EXPECT_EQ(log, "target Initialize MakeMenuBar ");
}

TEST_F(Application, AReportAfterTheApplicationsEndFindsNoMenusToUpdate) {
  std::string log;
  { Scripted("", log).Run(); }
  vm::ReportRecorder reports;
  vm::CurrentReportHooks().updateMenus = vm::HooksAtStart().updateMenus;
  EXPECT_NO_THROW(CP_RuntimeException("late", "File", 1).Report());
  EXPECT_EQ(reports.Lines(), vm::Reports({"File(1) : late"}));
}

TEST_F(Application, HandlesQuitAndInformationAndNothingElse) {
  std::string log;
  Scripted application("", log);
  EXPECT_EQ(application.HandleCommand(18), 0);
  EXPECT_EQ(log, "information ");
  EXPECT_EQ(application.HandleCommand(10), -1);
  EXPECT_EQ(application.HandleCommand(0), -1);
  EXPECT_FALSE(application.fDone);
  EXPECT_EQ(application.HandleCommand(9), 1);
  EXPECT_TRUE(application.fDone);
  EXPECT_EQ(application.HandleCommandWithData(9, nullptr), -1);
  EXPECT_EQ(application.HandleCommandWithData(18, nullptr), -1);
  CP_Application plain;
  EXPECT_EQ(plain.HandleCommand(18), 0);
}

TEST_F(Application, QuitsAtOnceWithoutADesktop) {
  std::string log;
  Scripted application("", log);
  EXPECT_TRUE(application.AttemptQuit());
  EXPECT_TRUE(application.fDone);
}

struct Window : CP_Window {
  Window(uint32_t kind, bool inAgrees) : CP_Window(kind), agrees(inAgrees) {}
  bool AttemptClose() override { return agrees; }
  bool agrees;
};

TEST_F(Application, QuitsOnlyWhenTheRegularWindowsAgree) {
  std::string log;
  Scripted application("", log);
  CP_WindowList desktop;
  gDesktop = &desktop;
  Window window(1, false);
  desktop.Add(&window);
  EXPECT_FALSE(application.AttemptQuit());
  EXPECT_FALSE(application.fDone);
  EXPECT_EQ(application.HandleCommand(9), 0);
  window.agrees = true;
  EXPECT_TRUE(application.AttemptQuit());
  EXPECT_EQ(desktop.Count(), 0u);
}

TEST_F(Application, OnceItIsToEndARefusalChangesNothing) {
  std::string log;
  Scripted application("", log);
  application.AttemptQuit();
  CP_WindowList desktop;
  gDesktop = &desktop;
  Window window(1, false);
  desktop.Add(&window);
  EXPECT_TRUE(application.AttemptQuit());
}

TEST_F(Application, EnablesItsTwoCommandsInTheMenuBar) {
  const vm::LoadedMenuBar bar(128);
  CP_Application application;
  CP_Menu& edit = *bar->GetMenu(5);
  edit.DisableAll();
  bar->GetMenu(1)->DisableAll();
  application.UpdateCommandState(18);
  EXPECT_EQ(vm::EntryStates(edit), "ddE");
  application.UpdateCommandState(9);
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(1)), "ddE-dd");
  application.UpdateCommandState(110);
  EXPECT_EQ(vm::EntryStates(edit), "ddE");
}

TEST_F(Application, WithoutAMenuBarItsCommandsHaveNoState) {
  CP_Application application;
  EXPECT_NO_THROW(application.UpdateCommandState(9));
  EXPECT_NO_THROW(application.UpdateCommandState(18));
  EXPECT_NO_THROW(application.UpdateCommandState(1));
}

TEST_F(Application, TakesOneMessageAtATimeFromTheQueue) {
  vm::EmptyQueue();
  const vm::TestWindow window([](const os::Message&) {});
  CP_Application application;
  CP_Event event;
  event.fMessage = 5;
  EXPECT_FALSE(application.GetEvent(event));
  EXPECT_EQ(event.fMessage, 5u) << "untouched without a message";
  window.Post(vm::kTestMessage, 11, 0x80000000);
  window.Post(vm::kTestMessage + 1);
  ASSERT_TRUE(application.GetEvent(event));
  EXPECT_EQ(event.fMessage, vm::kTestMessage);
  EXPECT_EQ(event.fMessageCopy, vm::kTestMessage);
  EXPECT_EQ(event.fWindow, window.Handle());
  EXPECT_EQ(event.fFirstParameter, 11u);
  EXPECT_EQ(event.fSecondParameter, 0x80000000u);
  ASSERT_TRUE(application.GetEvent(event));
  EXPECT_EQ(event.fMessage, vm::kTestMessage + 1);
  EXPECT_FALSE(application.GetEvent(event));
}

TEST_F(Application, RunsOverTheSystemsQueueUntilACommandQuits) {
  vm::EmptyQueue();
  std::vector<uint32_t> seen;
  CP_Application* running = nullptr;
  const vm::TestWindow window([&](const os::Message& message) {
    seen.push_back(message.message);
    if (message.message == vm::kTestMessage + 9)
      running->HandleCommand(kCP_CommandQuit);
  });
  struct Quiet : CP_Application {
    void Initialize() override {}
  } application;
  running = &application;
  window.Post(vm::kTestMessage + 1);
  vm::PostQuit(3);  // ends nothing: only a command does
  window.Post(vm::kTestMessage + 2);
  window.Post(vm::kTestMessage + 9);
  window.Post(vm::kTestMessage + 3);
  application.Run();
  // The system may hold its quit message back until the queue is empty, but not the order of ours.
  EXPECT_EQ(seen, (std::vector<uint32_t>{vm::kTestMessage + 1, vm::kTestMessage + 2,
                                         vm::kTestMessage + 9}));
  vm::EmptyQueue();
}

TEST_F(Application, AnExceptionInAGuardedWindowProcedureIsReportedAndEndsTheLoop) {
  vm::EmptyQueue();
  const vm::TestWindow window([&](const os::Message&) {
    CP_GuardCallback([] { throw CP_RuntimeException("in the window", "Window", 3); });
  });
  struct Quiet : CP_Application {
    void Initialize() override {}
  } application;
  window.Post(vm::kTestMessage);
  vm::ReportRecorder reports;
  application.Run();
  EXPECT_EQ(reports.Lines(), vm::Reports({"Window(3) : in the window"}));
}

TEST_F(Application, MakesTheMenuBarAndTheClipboardWithoutLoadingAnything) {
  CP_Application application;
  vm::DefineTestMenus();
  application.MakeMenuBar();  // no bar yet: nothing
  EXPECT_EQ(gMenuBar, nullptr);
  application.Initialize();
  ASSERT_NE(gMenuBar, nullptr);
  ASSERT_NE(gClipboard, nullptr);
  application.MakeMenuBar();
  EXPECT_EQ(gMenuBar->CountMenus(), 0) << "menu bars aren't wanted";
  EXPECT_EQ(gMenuBarHandle, nullptr);
  gLoadsMenuBars = true;
  application.MakeMenuBar();
  EXPECT_EQ(gMenuBar->CountMenus(), 6) << "resource 128";
  vm::DestroyMenuBar();
  vm::DestroyClipboard();
  EXPECT_EQ(gClipboard, nullptr);
}

TEST_F(Application, RunsWithItsOwnMenusWhoseCommandsItEnables) {
  vm::EmptyQueue();
  vm::DefineTestMenus();
  gLoadsMenuBars = true;
  struct Once : CP_Application {
    bool GetEvent(CP_Event&) override {
      fDone = true;
      return false;
    }
  } application;
  application.Run();
  ASSERT_NE(gMenuBar, nullptr);
  EXPECT_EQ(vm::EntryStates(*gMenuBar->GetMenu(5)), "ddE");
  vm::DestroyMenuBar();
  vm::DestroyClipboard();
}

}  // namespace
