#include "platform/CP_MenuBar.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "foundation/CP_DebugAssert.h"
#include "platform/CP_Globals.h"
#include "platform/CP_Menu.h"
#include "platform/os/Menus.h"
#include "platform/os/Resources.h"

namespace {

constexpr char kMenuNumbersType[] = "CPMB";

// Menus that keep their state when everything is disabled.
bool KeepsState(const CP_Menu& inMenu) {
  const int16_t number = inMenu.GetNumber();
  return number == 128 || number == 501 || number == 502;
}

int16_t ReadInt16(std::span<const uint8_t> inBytes, size_t inOffset) {
  int16_t value;
  std::memcpy(&value, inBytes.data() + inOffset, sizeof(value));
  return value;
}

// The number that the resource gives to the top-level menu at `inIndex`, or 0. The numbers are in
// the byte order of the platform.
int16_t MenuNumberAt(std::span<const uint8_t> inNumbers, int32_t inIndex) {
  if (inNumbers.size() < sizeof(int16_t))
    return 0;
  if (inIndex > ReadInt16(inNumbers, 0))
    return 0;
  const size_t offset = sizeof(int16_t) * (static_cast<size_t>(inIndex) + 1);
  if (offset + sizeof(int16_t) > inNumbers.size())
    return 0;
  return ReadInt16(inNumbers, offset);
}

}  // namespace

CP_MenuBar::CP_MenuBar() : fMenus(new std::vector<CP_Menu*>) {
  gMenuBarHandle = nullptr;
  gMenuBar = this;
}

CP_MenuBar::~CP_MenuBar() {
  for (int32_t i = 1; i <= CountMenus(); ++i)
    GetMenu(i)->Release();
  delete fMenus;
  gMenuBar = nullptr;
}

void CP_MenuBar::LoadFromResource(int16_t inNumber) {
  const std::span<const uint8_t> numbers = os::FindResourceBytes(kMenuNumbersType, inNumber);
  if (!gLoadsMenuBars)
    return;
  gMenuBarHandle = os::LoadMenuResource(inNumber);
  const int32_t topLevelCount = os::CountMenuEntries(gMenuBarHandle);
  for (int32_t i = 0; i < topLevelCount; ++i) {
    const os::MenuHandle menuH = os::GetSubMenuAt(gMenuBarHandle, i);
    char title[CP_Menu::kTextBufferSize];
    os::GetMenuEntryText(gMenuBarHandle, i, title, sizeof(title));
    // REQUIRED: as for submenus, the creator's reference is never given back.
    CP_Menu* const menu = new CP_Menu(MenuNumberAt(numbers, i), title, menuH, false);
    menu->AddReference();
    const bool entered = CP_Check(fMenus != nullptr, "CP_MenuBar", 870, "fMenus != NULL");
    if (entered)
      fMenus->push_back(menu);

    // REQUIRED: counted from 1 where the first entry is 0, so the first entry of a menu keeps its
    // mark as text, and one position past the last entry is asked for, which has an empty text.
    const int32_t count = os::CountMenuEntries(menuH);
    for (int32_t position = 1; position <= count; ++position) {
      menu->BuildSubMenuAt(position, &CP_MenuBar::Add);
    }
    if (!entered) {
      menu->Release();
      menu->Release();
    }
  }
  fAccelerators = os::LoadAcceleratorResource(inNumber);
}

void CP_MenuBar::AddTopLevel(CP_Menu* inMenu) {
  if (!CP_Check(inMenu != nullptr, "CP_MenuBar", 487, "inMenu != NULL"))
    return;
  inMenu->AddReference();
  Enter(inMenu);
  os::AppendMenuSubMenu(gMenuBarHandle, inMenu->GetHandle(), inMenu->GetTitle());
  Redraw();
}

void CP_MenuBar::Add(CP_Menu* inMenu) {
  if (!CP_Check(inMenu != nullptr, "CP_MenuBar", 686, "inMenu != NULL"))
    return;
  inMenu->AddReference();
  Enter(inMenu);
}

void CP_MenuBar::Enter(CP_Menu* inMenu) {
  const bool haveMenu = CP_Check(inMenu != nullptr, "CP_MenuBar", 703, "inMenu != NULL");
  const bool haveList = CP_Check(fMenus != nullptr, "CP_MenuBar", 704, "fMenus != NULL");
  if (!haveMenu || !haveList)
    return;
  if (std::find(fMenus->begin(), fMenus->end(), inMenu) == fMenus->end()) {
    fMenus->push_back(inMenu);
  }
}

CP_Menu* CP_MenuBar::GetMenu(int32_t inPosition) const {
  if (inPosition < 1 || inPosition > CountMenus())
    return nullptr;
  return (*fMenus)[static_cast<size_t>(inPosition - 1)];
}

int32_t CP_MenuBar::CountTopLevel() const {
  return os::CountMenuEntries(gMenuBarHandle);
}

void CP_MenuBar::EnableCommand(int32_t inCommandNumber) {
  for (int32_t i = 1; i <= CountMenus(); ++i) {
    if (GetMenu(i)->EnableCommand(inCommandNumber))
      return;
  }
}

void CP_MenuBar::DisableAll() {
  for (int32_t i = 1; i <= CountMenus(); ++i) {
    CP_Menu* const menu = GetMenu(i);
    if (!KeepsState(*menu))
      menu->DisableAll();
  }
}

void CP_MenuBar::AttachToWindow(os::WindowHandle inWindow) {
  fWindow = inWindow;
  os::SetWindowMenu(inWindow, gMenuBarHandle);
}

void CP_MenuBar::Redraw() {
  if (fWindow != nullptr)
    os::RedrawMenuBar(fWindow);
}
