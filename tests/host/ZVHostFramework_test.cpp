// The host classes as application objects of the framework.

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "host/FilterRecord.h"
#include "host/HostGlobals.h"
#include "host/PlugInMain.h"
#include "host/ZVHost.h"
#include "host/ZVHostPhotoshop.h"
#include "image/ZvImage.h"
#include "platform/CP_Clipboard.h"
#include "platform/CP_Event.h"
#include "platform/CP_Globals.h"
#include "platform/CP_MenuBar.h"
#include "support/VirtualSlot.h"

namespace {

static_assert(std::is_base_of_v<CP_Application, ZVHost>);
static_assert(std::is_base_of_v<CP_M_Listener, ZVHost>);
static_assert(std::is_convertible_v<ZVHost*, CP_M_EventHandlerAttachable*>, "one shared base");

void* const kModule = reinterpret_cast<void*>(0x10000);

struct Host : ZVHost {
  using ZVHost::fDone;
  using ZVHost::mModule;
  using ZVHost::ZVHost;
};

struct PhotoshopHost : ZVHostPhotoshop {
  PhotoshopHost() : ZVHostPhotoshop(kModule, nullptr, nullptr) {}
  using ZVHostPhotoshop::mModule;
};

TEST(HostInTheFramework, IsTheApplicationTheDispatcherAndTheHostWhileItLives) {
  {
    PhotoshopHost host;
    EXPECT_EQ(gApplication, static_cast<CP_M_Commander*>(&host));
    EXPECT_EQ(gEventDispatcher, static_cast<CP_M_EventDispatcher*>(&host));
    EXPECT_EQ(gHost, &host);
    EXPECT_EQ(host.GetSuperCommander(), nullptr);
    EXPECT_EQ(host.AttachmentCount(), 0u);
  }
  EXPECT_EQ(gApplication, nullptr);
  EXPECT_EQ(gEventDispatcher, nullptr);
  EXPECT_EQ(gHost, nullptr);
  EXPECT_EQ(gTarget, nullptr);
}

TEST(HostInTheFramework, LeavesNoGlobalBehindAfterASelector) {
  FilterRecord record{};
  int16_t result = 1;
  for (const int16_t selector : {filterSelectorAbout, filterSelectorParameters,
                                 filterSelectorPrepare, filterSelectorContinue, int16_t{6}}) {
    vm::RunSelector(selector, &record, &result);
    EXPECT_EQ(gApplication, nullptr);
    EXPECT_EQ(gEventDispatcher, nullptr);
    EXPECT_EQ(gHost, nullptr);
    EXPECT_EQ(gMenuBar, nullptr);
    EXPECT_EQ(gClipboard, nullptr);
  }
}

TEST(HostInTheFramework, ThePlugInsHostKeepsItsModuleAndMakesNoMenuBarAndNoClipboard) {
  PhotoshopHost host;
  EXPECT_EQ(host.mModule, kModule);
  host.Initialize();
  host.MakeMenuBar();
  host.StartUp();
  EXPECT_EQ(host.mModule, kModule);
  EXPECT_EQ(gMenuBar, nullptr);
  EXPECT_EQ(gClipboard, nullptr);
}

TEST(HostInTheFramework, TheConstructorCallsTheInitializeOfThePlugInsHostAndOfNoneDerived) {
  struct Derived : PhotoshopHost {
    void Initialize() override { called = true; }
    bool called = false;
  } host;
  EXPECT_FALSE(host.called);
}

TEST(HostInTheFramework, AHostOfItsOwnInitializesTheFrameworkAndForgetsItsModule) {
  Host host(kModule);
  EXPECT_EQ(host.mModule, kModule);
  host.Initialize();
  EXPECT_EQ(host.mModule, nullptr);
  ASSERT_NE(gMenuBar, nullptr);
  ASSERT_NE(gClipboard, nullptr);
  host.MakeMenuBar();
  EXPECT_EQ(gMenuBarHandle, nullptr);
  delete gMenuBar;
  CP_Clipboard* const clipboard = gClipboard;
  clipboard->CP_Clipboard::~CP_Clipboard();
  ::operator delete(clipboard);
}

TEST(HostInTheFramework, RunningTheHostRunsTheEventLoopAndYieldsZero) {
  struct Running : Host {
    Running() : Host(kModule) {}
    void Initialize() override {}
    bool GetEvent(CP_Event&) override {
      fDone = ++passes == 3;
      return false;
    }
    int passes = 0;
  } host;
  EXPECT_EQ(host.RunHost(), 0);
  EXPECT_EQ(host.passes, 3);
}

TEST(HostInTheFramework, AnswersTheTwoCommandsOfTheFramework) {
  Host host(kModule);
  EXPECT_EQ(host.HandleCommand(18), 0);
  EXPECT_EQ(host.HandleCommand(7), -1);
  EXPECT_EQ(host.HandleCommandWithData(9, nullptr), -1);
  EXPECT_FALSE(host.fDone);
  EXPECT_EQ(host.HandleCommand(9), 1);
  EXPECT_TRUE(host.fDone);
  EXPECT_TRUE(host.AgreeingHook());
}

TEST(HostInTheFramework, HasItsOperationsBehindThoseOfTheApplicationInTheirOrder) {
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::RunHost), 18u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::ShutDownHost), 19u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::GetSourceImage), 20u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::PutResultImage), 21u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::HostIdle), 22u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::IsHosted), 23u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::GetHostFlag), 24u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::SetHostFlag), 25u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::GetHostMode), 26u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::PickColor), 27u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::RunMessageLoop), 28u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHostPhotoshop::IsImageModeSupported), 29u);
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::Initialize), vm::VirtualSlot(&CP_Application::Initialize));
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::MakeMenuBar), vm::VirtualSlot(&CP_Application::MakeMenuBar));
  EXPECT_EQ(vm::VirtualSlot(&ZVHost::StartUp), vm::VirtualSlot(&CP_Application::StartUp));
}

}  // namespace
