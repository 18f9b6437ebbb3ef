#include "platform/CP_MenuBar.h"

#include <string>

#include "platform/FrameworkTest.h"
#include "platform/os/Menus.h"
#include "support/ReportRecorder.h"

namespace {

class MenuBar : public vm::FrameworkTest {
 protected:
  void SetUp() override { vm::DefineTestMenus(); }
};

// As "number:title" for each menu.
std::string Contents() {
  std::string contents;
  for (int32_t i = 1; i <= gMenuBar->CountMenus(); ++i) {
    const CP_Menu& menu = *gMenuBar->GetMenu(i);
    contents += std::to_string(menu.GetNumber()) + ":" + menu.GetTitle() + " ";
  }
  return contents;
}

TEST_F(MenuBar, IsTheGlobalOneWhileItLivesAndStartsWithoutAPlatformMenu) {
  gMenuBarHandle = reinterpret_cast<os::MenuHandle>(0x77);
  {
    CP_MenuBar bar;
    EXPECT_EQ(gMenuBar, &bar);
    EXPECT_EQ(gMenuBarHandle, nullptr);
    EXPECT_EQ(bar.CountMenus(), 0);
    EXPECT_EQ(bar.CountTopLevel(), -1);
    EXPECT_EQ(bar.GetAccelerators(), nullptr);
  }
  EXPECT_EQ(gMenuBar, nullptr);
}

TEST_F(MenuBar, LoadsNothingUnlessTheProgramWantsMenuBars) {
  CP_MenuBar bar;
  bar.LoadFromResource(128);
  EXPECT_EQ(bar.CountMenus(), 0);
  EXPECT_EQ(gMenuBarHandle, nullptr);
  EXPECT_EQ(bar.GetAccelerators(), nullptr);
}

TEST_F(MenuBar, LoadsTheMenusOfAResourceEachWithItsNumberAndTheSubMenusBehindTheirMenu) {
  const vm::LoadedMenuBar bar(128);
  // Number i stands at index i of the companion resource, as long as i is at most its count (1): so
  // the third menu has none. Submenus have the numbers of their resources and the title of the menu
  // around them.
  EXPECT_EQ(Contents(), "501:&File 201:&File 203:&File 202:&File 777:&Edit 0:&View ");
  EXPECT_NE(bar->GetAccelerators(), nullptr);
  for (int32_t i = 1; i <= 6; ++i)
    EXPECT_EQ(bar->GetMenu(i)->GetRefCount(), 2u);
  EXPECT_FALSE(bar->GetMenu(1)->IsPopup());
  EXPECT_TRUE(bar->GetMenu(2)->IsPopup());
}

TEST_F(MenuBar, AMarkedEntryFromTheSecondOnBecomesItsTextWithTheSubMenu) {
  const vm::LoadedMenuBar bar(128);
  const os::MenuHandle file = bar->GetMenu(1)->GetHandle();
  EXPECT_EQ(vm::EntryText(file, 1), "Open");
  const os::MenuHandle submenu = os::GetSubMenuAt(file, 1);
  ASSERT_EQ(submenu, bar->GetMenu(2)->GetHandle());
  EXPECT_EQ(vm::EntryText(submenu, 0), "Sub one");
  EXPECT_EQ(vm::EntryText(submenu, 1), "Sub two");
  EXPECT_EQ(bar->GetMenu(1)->GetCommand(2), 101) << "the command the entry came with";
  EXPECT_EQ(vm::EntryText(file, 5), "Last") << "the last entry is examined";
  EXPECT_EQ(os::GetSubMenuAt(file, 5), bar->GetMenu(4)->GetHandle());
}

TEST_F(MenuBar, TheFirstEntryOfAMenuIsNeverExamined) {
  const vm::LoadedMenuBar bar(128);
  const os::MenuHandle file = bar->GetMenu(1)->GetHandle();
  EXPECT_EQ(vm::EntryText(file, 0), "First[HIERARCHICAL201");
  EXPECT_EQ(os::GetSubMenuAt(file, 0), nullptr);
}

TEST_F(MenuBar, ABracketWithAnythingElseBehindItLeavesTheEntryAlone) {
  const vm::LoadedMenuBar bar(128);
  const os::MenuHandle file = bar->GetMenu(1)->GetHandle();
  EXPECT_EQ(vm::EntryText(file, 4), "Again[HIER]");
  EXPECT_EQ(os::GetMenuEntryCommand(file, 4), 102);
  EXPECT_EQ(os::GetSubMenuAt(file, 4), nullptr);
}

TEST_F(MenuBar, InASubMenuTheFirstEntryIsExaminedAndItsOwnSubMenuEntersTheBarAsWell) {
  const vm::LoadedMenuBar bar(128);
  const os::MenuHandle second = bar->GetMenu(4)->GetHandle();
  EXPECT_EQ(vm::EntryText(second, 0), "Deep");
  EXPECT_EQ(os::GetSubMenuAt(second, 0), bar->GetMenu(3)->GetHandle());
  // Three menus of the resource, and behind them the submenu of the submenu, under the title it
  // got.
  EXPECT_EQ(bar->CountTopLevel(), 4);
  EXPECT_EQ(vm::EntryText(gMenuBarHandle, 3), "&File");
  EXPECT_EQ(os::GetSubMenuAt(gMenuBarHandle, 3), bar->GetMenu(3)->GetHandle());
}

TEST_F(MenuBar, MenusWithoutACompanionResourceHaveNumberZero) {
  const vm::LoadedMenuBar bar(129);
  EXPECT_EQ(Contents(), "0:Only ");
  EXPECT_EQ(bar->GetAccelerators(), nullptr);
}

TEST_F(MenuBar, ACompanionResourceThatEndsEarlyGivesNoMoreNumbersThanItHas) {
  const vm::LoadedMenuBar bar(131);
  EXPECT_EQ(Contents(), "300:A 0:B ");
}

TEST_F(MenuBar, ACompanionResourceWithANegativeCountGivesNoNumbers) {
  const vm::LoadedMenuBar bar(132);
  EXPECT_EQ(Contents(), "0:A ");
}

TEST_F(MenuBar, AMissingMenuResourceGivesAnEmptyBarAndNoReport) {
  const vm::LoadedMenuBar bar(299);
  EXPECT_EQ(bar->CountMenus(), 0);
  EXPECT_EQ(bar->CountTopLevel(), -1);
  EXPECT_NO_THROW(bar->DisableAll());
  EXPECT_NO_THROW(bar->EnableCommand(1));
}

TEST_F(MenuBar, AMissingSubMenuResourceIsReportedAndLeavesTheEntryItsText) {
  vm::ReportRecorder reports;
  const vm::LoadedMenuBar bar(130);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Menu(541) : fMenuH != NULL"}));
  EXPECT_EQ(vm::EntryText(bar->GetMenu(1)->GetHandle(), 1), "Missing");
  EXPECT_EQ(Contents(), "0:Menu 299:Menu ");
}

TEST_F(MenuBar, AnEntryOfTheBarItselfThatOpensNothingIsReportedAndHarmless) {
  vm::ReportRecorder reports;
  const vm::LoadedMenuBar bar(133);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Menu(541) : fMenuH != NULL"}));
  EXPECT_EQ(Contents(), "0:A 0:Go ");
  EXPECT_EQ(bar->GetMenu(2)->CountCommands(), 0);
}

TEST_F(MenuBar, GivesMenusByPositionsFromOneOn) {
  const vm::LoadedMenuBar bar(129);
  EXPECT_EQ(bar->GetMenu(0), nullptr);
  EXPECT_NE(bar->GetMenu(1), nullptr);
  EXPECT_EQ(bar->GetMenu(2), nullptr);
  EXPECT_EQ(bar->GetMenu(-1), nullptr);
}

TEST_F(MenuBar, DisablesAllMenusButThreeThatKeepTheirState) {
  new CP_MenuBar;
  std::vector<CP_Menu*> menus;
  for (const int16_t number : {int16_t{128}, int16_t{129}, int16_t{501}, int16_t{500}, int16_t{502},
                               int16_t{0}, int16_t{-128}}) {
    const os::MenuHandle handle = os::CreatePopup();
    os::AppendMenuText(handle, 1, "On");
    os::AppendMenuText(handle, 2, "Off");
    menus.push_back(new CP_Menu(number, "", handle, false));
    menus.back()->DisableItem(2);
    gMenuBar->Add(menus.back());
  }
  gMenuBar->DisableAll();
  std::string states;
  for (const CP_Menu* menu : menus)
    states += vm::EntryStates(*menu) + " ";
  EXPECT_EQ(states, "Ed dd Ed dd Ed dd dd ");
  for (const CP_Menu* menu : menus)
    os::DestroyMenuTree(menu->GetHandle());
  vm::DestroyMenuBar();
}

TEST_F(MenuBar, EnablesACommandInTheFirstMenuThatKnowsItAlone) {
  const vm::LoadedMenuBar bar(128);
  bar->DisableAll();
  bar->EnableCommand(110);
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(5)), "EEd") << "both entries of the first menu";
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(6)), "dd");
  bar->EnableCommand(12345);
  EXPECT_EQ(vm::EntryStates(*bar->GetMenu(6)), "dd");
}

TEST_F(MenuBar, AddingAMenuTakesAReferenceAndEntersItOnce) {
  new CP_MenuBar;
  const os::MenuHandle handle = os::CreatePopup();
  CP_Menu* const menu = new CP_Menu(1, "Title", handle, true);
  gMenuBar->Add(menu);
  EXPECT_EQ(menu->GetRefCount(), 2u);
  EXPECT_EQ(gMenuBar->CountMenus(), 1);
  gMenuBar->Add(menu);
  EXPECT_EQ(menu->GetRefCount(), 3u);
  EXPECT_EQ(gMenuBar->CountMenus(), 1);
  menu->Release();
  os::DestroyMenuTree(handle);
  vm::DestroyMenuBar();
}

TEST_F(MenuBar, AddingAtTheTopLevelAppendsTheMenuToTheBarUnderItsTitle) {
  const vm::LoadedMenuBar bar(129);
  const os::MenuHandle handle = os::CreatePopup();
  bar->AddTopLevel(new CP_Menu(7, "Tools", handle, true));
  EXPECT_EQ(bar->CountTopLevel(), 2);
  EXPECT_EQ(vm::EntryText(gMenuBarHandle, 1), "Tools");
  EXPECT_EQ(os::GetSubMenuAt(gMenuBarHandle, 1), handle);
  EXPECT_EQ(Contents(), "0:Only 7:Tools ");
}

struct BrokenBar : CP_MenuBar {
  using CP_MenuBar::Enter;
  void LoseMenus() {
    delete fMenus;
    fMenus = nullptr;
  }
};

TEST_F(MenuBar, AddingNothingIsReportedAndDoesNothing) {
  BrokenBar bar;
  vm::ReportRecorder reports;
  bar.AddTopLevel(nullptr);
  bar.Add(nullptr);
  bar.Enter(nullptr);
  EXPECT_EQ(reports.Lines(),
            vm::Reports({"CP_MenuBar(487) : inMenu != NULL", "CP_MenuBar(686) : inMenu != NULL",
                         "CP_MenuBar(703) : inMenu != NULL"}));
  EXPECT_EQ(bar.CountMenus(), 0);
}

TEST_F(MenuBar, ABarThatHasLostItsListReportsItAndDoesNothing) {
  BrokenBar bar;
  bar.LoseMenus();
  vm::ReportRecorder reports;
  const os::MenuHandle handle = os::CreatePopup();
  CP_Menu menu(1, "Title", handle, true);
  bar.Add(&menu);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_MenuBar(704) : fMenus != NULL"}));
  reports.Clear();
  gLoadsMenuBars = true;
  bar.LoadFromResource(129);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_MenuBar(870) : fMenus != NULL"}));
  EXPECT_EQ(bar.CountMenus(), 0);
  EXPECT_EQ(bar.GetMenu(1), nullptr);
  bar.DisableAll();
  bar.EnableCommand(1);
  os::DestroyMenuTree(handle);
}

TEST_F(MenuBar, RedrawsNothingWithoutAWindow) {
  CP_MenuBar bar;
  EXPECT_NO_THROW(bar.Redraw());
}

}  // namespace
