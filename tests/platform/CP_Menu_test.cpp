#include "platform/CP_Menu.h"

#include <cstring>
#include <stdexcept>

#include "platform/FrameworkTest.h"
#include "platform/os/Menus.h"
#include "support/ReportRecorder.h"

namespace {

class Menu : public vm::FrameworkTest {
 protected:
  void SetUp() override { vm::DefineTestMenus(); }
};

struct Mark {
  bool found;
  int number;
  int length;
  bool operator==(const Mark&) const = default;
};

Mark Find(const char* text) {
  CP_SubMenuMark mark{-7, -7};
  const bool found = CP_FindSubMenuMark(text, mark);
  return {found, mark.number, mark.textLength};
}

TEST_F(Menu, ASubMenuMarkIsItsWordAndThreeDigits) {
  EXPECT_EQ(Find("Zoom[HIERARCHICAL201"), (Mark{true, 201, 4}));
  EXPECT_EQ(Find("[HIERARCHICAL007"), (Mark{true, 7, 0}));
  EXPECT_EQ(Find("Zoom[HIERARCHICAL2019]"), (Mark{true, 201, 4})) << "three characters, no more";
  EXPECT_EQ(Find("Zoom[HIERARCHICAL12"), (Mark{true, 12, 4}));
  EXPECT_EQ(Find("Zoom[HIERARCHICAL"), (Mark{true, 0, 4}));
  EXPECT_EQ(Find("Zoom[HIERARCHICALx01"), (Mark{true, 0, 4}));
}

TEST_F(Menu, AnythingElseBehindTheFirstBracketIsNoMark) {
  const Mark none{false, -7, -7};
  EXPECT_EQ(Find(""), none);
  EXPECT_EQ(Find("Zoom"), none);
  EXPECT_EQ(Find("Zoom["), none);
  EXPECT_EQ(Find("Zoom[HIER]"), none);
  EXPECT_EQ(Find("Zoom[hierarchical201"), none);
  EXPECT_EQ(Find("Zoom [x] [HIERARCHICAL201"), none) << "only the first bracket counts";
}

TEST_F(Menu, WrapsAPlatformMenuWithTheCommandsThatItHasThen) {
  const os::MenuHandle handle = os::CreatePopup();
  os::AppendMenuText(handle, 5, "Five");
  os::AppendMenuText(handle, 6, "Six");
  CP_Menu menu(300, "Title", handle, true);
  EXPECT_EQ(menu.GetRefCount(), 1u);
  EXPECT_EQ(menu.GetHandle(), handle);
  EXPECT_EQ(menu.GetNumber(), 300);
  EXPECT_STREQ(menu.GetTitle(), "Title");
  EXPECT_TRUE(menu.IsPopup());
  EXPECT_EQ(menu.CountItems(), 2);
  EXPECT_EQ(menu.GetCommand(1), 5);
  EXPECT_EQ(menu.GetCommand(2), 6);
  os::AppendMenuText(handle, 7, "Seven");
  EXPECT_EQ(menu.CountItems(), 3);
  EXPECT_EQ(menu.CountCommands(), 2);
  os::DestroyMenuTree(handle);
}

TEST_F(Menu, CutsItsTitleTo255Characters) {
  const os::MenuHandle handle = os::CreatePopup();
  const std::string exact(255, 'x');
  EXPECT_EQ(CP_Menu(1, exact.c_str(), handle, false).GetTitle(), exact);
  EXPECT_EQ(CP_Menu(1, (exact + "y").c_str(), handle, false).GetTitle(), exact);
  EXPECT_STREQ(CP_Menu(1, nullptr, handle, false).GetTitle(), "");
  os::DestroyMenuTree(handle);
}

TEST_F(Menu, ReadsItsTextsByPositionsFromOneOn) {
  CP_Menu menu(201, "", false, false);
  char text[256] = "before";
  EXPECT_EQ(menu.GetItemText(1, text, sizeof(text)), 7);
  EXPECT_STREQ(text, "Sub one");
  EXPECT_EQ(menu.GetItemText(2, text, sizeof(text)), 7);
  EXPECT_STREQ(text, "Sub two");
  EXPECT_EQ(menu.GetItemText(3, text, sizeof(text)), 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(menu.GetItemText(1, text, 4), 3);
  EXPECT_STREQ(text, "Sub");
  text[0] = 'z';
  EXPECT_EQ(menu.GetItemText(1, text, 0), 0);
  EXPECT_EQ(text[0], 'z');
}

TEST_F(Menu, ATextBeforeTheFirstPositionIsReportedAndEmpty) {
  CP_Menu menu(201, "", false, false);
  char text[256] = "before";
  vm::ReportRecorder reports;
  EXPECT_EQ(menu.GetItemText(0, text, sizeof(text)), 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(menu.GetItemText(-2147483647, text, sizeof(text)), 0);
  EXPECT_EQ(reports.Lines(),
            vm::Reports({"CP_Menu(740) : inIndex >= 1", "CP_Menu(740) : inIndex >= 1"}));
}

TEST_F(Menu, ACommandOutOfRangeIsThrown) {
  CP_Menu menu(201, "", false, false);
  for (const int32_t position : {0, 3, -1, 2147483647}) {
    try {
      menu.GetCommand(position);
      ADD_FAILURE() << position;
    } catch (const std::out_of_range& exception) {
      EXPECT_STREQ(exception.what(), "vector::at index out of range");
    }
  }
}

TEST_F(Menu, EnablesAndDisablesEntriesByPosition) {
  CP_Menu menu(201, "", false, false);
  EXPECT_EQ(vm::EntryStates(menu), "EE");
  menu.DisableItem(2);
  EXPECT_EQ(vm::EntryStates(menu), "Ed");
  menu.DisableAll();
  EXPECT_EQ(vm::EntryStates(menu), "dd");
  menu.EnableItem(1);
  EXPECT_EQ(vm::EntryStates(menu), "Ed");
  menu.EnableItem(0);
  menu.EnableItem(3);
  menu.DisableItem(99);
  EXPECT_EQ(vm::EntryStates(menu), "Ed");
}

TEST_F(Menu, EnablesACommandInEveryEntryThatCarriesIt) {
  const os::MenuHandle handle = os::CreatePopup();
  for (const int32_t command : {4, 5, 4})
    os::AppendMenuText(handle, command, "Entry");
  CP_Menu menu(1, "", handle, false);
  menu.DisableAll();
  EXPECT_TRUE(menu.EnableCommand(4));
  EXPECT_EQ(vm::EntryStates(menu), "EdE");
  EXPECT_FALSE(menu.EnableCommand(6));
  EXPECT_EQ(vm::EntryStates(menu), "EdE");
  os::DestroyMenuTree(handle);
}

TEST_F(Menu, AMissingResourceIsReportedByTheNextOperationThatNeedsAHandle) {
  vm::ReportRecorder reports;
  CP_Menu menu(299, "", false, false);
  EXPECT_EQ(menu.GetHandle(), nullptr);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Menu(541) : fMenuH != NULL"}));
  reports.Clear();
  EXPECT_EQ(menu.CountItems(), -1);
  menu.DisableAll();
  EXPECT_EQ(reports.Lines(),
            vm::Reports({"CP_Menu(541) : fMenuH != NULL", "CP_Menu(541) : fMenuH != NULL"}));
  reports.Clear();
  menu.EnableItem(1);
  EXPECT_FALSE(menu.EnableCommand(1));
  char text[8];
  EXPECT_EQ(menu.GetItemText(1, text, sizeof(text)), 0);
  EXPECT_TRUE(reports.Empty());
}

TEST_F(Menu, WrappingNoMenuIsReported) {
  vm::ReportRecorder reports;
  CP_Menu menu(1, "Title", os::MenuHandle(nullptr), false);
  EXPECT_EQ(menu.CountCommands(), 0);
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Menu(541) : fMenuH != NULL"}));
}

TEST_F(Menu, BuildsTheSubMenusOfAResourceFromTheFirstEntryOn) {
  new CP_MenuBar;
  {
    CP_Menu menu(202, "Title", false, false);
    EXPECT_EQ(vm::EntryText(menu.GetHandle(), 0), "Deep");
    EXPECT_EQ(vm::EntryText(menu.GetHandle(), 1), "Flat");
    EXPECT_EQ(menu.GetCommand(1), 310) << "the command the entry came with";
    ASSERT_EQ(gMenuBar->CountMenus(), 1);
    CP_Menu& submenu = *gMenuBar->GetMenu(1);
    EXPECT_EQ(submenu.GetNumber(), 203);
    EXPECT_STREQ(submenu.GetTitle(), "Title") << "the enclosing menu's";
    EXPECT_TRUE(submenu.IsPopup());
    EXPECT_EQ(submenu.GetRefCount(), 2u);
    EXPECT_EQ(os::GetSubMenuAt(menu.GetHandle(), 0), submenu.GetHandle());
    os::DestroyMenuTree(menu.GetHandle());
  }
  vm::DestroyMenuBar();
}

TEST_F(Menu, ASubMenuOfASubMenuEntersTheBarItselfToo) {
  new CP_MenuBar;
  gMenuBarHandle = os::CreatePopup();
  CP_Menu menu(202, "Title", false, false);
  EXPECT_EQ(gMenuBar->CountTopLevel(), 1);
  EXPECT_EQ(vm::EntryText(gMenuBarHandle, 0), "Title");
  EXPECT_EQ(os::GetSubMenuAt(gMenuBarHandle, 0), gMenuBar->GetMenu(1)->GetHandle());
  os::DestroyMenuTree(menu.GetHandle());
  vm::DestroyMenuBar();
}

// The leak checker of the sanitizer build watches that the submenu's object goes.
TEST_F(Menu, BuildsItsSubMenusWithoutAMenuBarToo) {
  CP_Menu menu(202, "Title", false, false);
  const os::MenuHandle submenu = os::GetSubMenuAt(menu.GetHandle(), 0);
  ASSERT_NE(submenu, nullptr);
  EXPECT_EQ(vm::EntryText(submenu, 0), "Bottom");
  os::DestroyMenuTree(menu.GetHandle());
}

TEST_F(Menu, AMenuMarkedAsASubMenuOfItselfIsBuiltOnce) {
  new CP_MenuBar;
  CP_Menu menu(210, "Title", false, false);
  EXPECT_EQ(vm::EntryText(menu.GetHandle(), 0), "Me");
  EXPECT_EQ(os::GetSubMenuAt(menu.GetHandle(), 0), nullptr);
  EXPECT_EQ(gMenuBar->CountMenus(), 0);
  os::DestroyMenuTree(menu.GetHandle());
  vm::DestroyMenuBar();
}

TEST_F(Menu, ACopyIsAPopupOfItsOwnWithTheSameTextsAndCommands) {
  CP_Menu menu(201, "Title", true, true);
  ASSERT_NE(menu.GetHandle(), nullptr);
  EXPECT_EQ(menu.CountItems(), 2);
  EXPECT_EQ(vm::EntryText(menu.GetHandle(), 0), "Sub one");
  EXPECT_EQ(vm::EntryText(menu.GetHandle(), 1), "Sub two");
  EXPECT_EQ(os::GetMenuEntryCommand(menu.GetHandle(), 0), 301);
  EXPECT_EQ(os::GetMenuEntryCommand(menu.GetHandle(), 1), 302);
  EXPECT_EQ(menu.GetCommand(2), 302);
  os::DestroyMenuTree(menu.GetHandle());
}

TEST_F(Menu, ACopyHasNoSubMenusBecauseTheyWentWithTheLoadedMenu) {
  CP_Menu menu(202, "Title", true, true);
  EXPECT_EQ(vm::EntryText(menu.GetHandle(), 0), "Deep");
  EXPECT_EQ(os::GetSubMenuAt(menu.GetHandle(), 0), nullptr);
  EXPECT_EQ(os::GetMenuEntryCommand(menu.GetHandle(), 0), 310);
  os::DestroyMenuTree(menu.GetHandle());
}

TEST_F(Menu, ACopyOfAMissingResourceIsAnEmptyPopup) {
  vm::ReportRecorder reports;
  CP_Menu menu(299, "Title", true, true);
  EXPECT_EQ(reports.Lines(),
            vm::Reports({"CP_Menu(541) : fMenuH != NULL", "CP_Menu(541) : fMenuH != NULL"}));
  EXPECT_EQ(menu.CountItems(), 0);
  os::DestroyMenuTree(menu.GetHandle());
}

}  // namespace
