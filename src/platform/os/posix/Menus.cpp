#include "platform/os/Menus.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "platform/os/posix/MenuScript.h"
#include "platform/os/posix/ResourceScript.h"

namespace os {
namespace {

struct Entry {
  std::string text;
  int32_t command = 0;
  MenuHandle submenu = nullptr;
  bool isSubMenu = false;
  bool enabled = true;
};

using Menu = std::vector<Entry>;

struct Menus {
  // Handles are numbers, so that one that has gone is recognised and never stands for another.
  std::map<MenuHandle, Menu> menus;
  uintptr_t lastMenu = 0;
  std::map<WindowHandle, MenuHandle> windowMenus;
  std::map<WindowHandle, uint32_t> redraws;
};

Menus& All() {
  static Menus menus;
  return menus;
}

MenuHandle Create() {
  const auto handle = reinterpret_cast<MenuHandle>(++All().lastMenu);
  All().menus[handle];
  return handle;
}

Menu* Find(MenuHandle menu) {
  const auto found = All().menus.find(menu);
  return found == All().menus.end() ? nullptr : &found->second;
}

Entry* Find(MenuHandle menu, int32_t position) {
  Menu* const found = Find(menu);
  if (found == nullptr || position < 0 || static_cast<size_t>(position) >= found->size()) {
    return nullptr;
  }
  return &(*found)[static_cast<size_t>(position)];
}

MenuHandle Build(const std::vector<posix::MenuEntry>& entries) {
  const MenuHandle menu = Create();
  for (const posix::MenuEntry& entry : entries) {
    if (entry.items.empty()) {
      AppendMenuText(menu, entry.command, entry.text.c_str());
    } else {
      AppendMenuSubMenu(menu, Build(entry.items), entry.text.c_str());
    }
  }
  return menu;
}

void ReplaceEntry(MenuHandle menu, int32_t position, const Entry& by) {
  Entry* const entry = Find(menu, position);
  if (entry == nullptr)
    return;
  const MenuHandle former = entry->submenu;
  *entry = by;
  if (former != by.submenu)
    DestroyMenuTree(former);
}

void SetEnabled(MenuHandle menu, int32_t position, bool enabled) {
  if (Entry* const entry = Find(menu, position))
    entry->enabled = enabled;
}

}  // namespace

namespace posix {

MenuHandle WindowMenu(WindowHandle window) {
  const auto found = All().windowMenus.find(window);
  return found == All().windowMenus.end() ? nullptr : found->second;
}

uint32_t MenuBarRedraws(WindowHandle window) {
  return All().redraws[window];
}

bool IsMenuAlive(MenuHandle menu) {
  return Find(menu) != nullptr;
}

}  // namespace posix

MenuHandle LoadMenuResource(int16_t number) {
  const std::vector<posix::MenuEntry>* const entries = posix::FindMenu(number);
  return entries == nullptr ? nullptr : Build(*entries);
}

AcceleratorHandle LoadAcceleratorResource(int16_t number) {
  if (!posix::HasAccelerators(number))
    return nullptr;
  return reinterpret_cast<AcceleratorHandle>(static_cast<uintptr_t>(static_cast<uint16_t>(number)));
}

int32_t CountMenuEntries(MenuHandle menu) {
  const Menu* const found = Find(menu);
  return found == nullptr ? -1 : static_cast<int32_t>(found->size());
}

int32_t GetMenuEntryText(MenuHandle menu, int32_t position, char* buffer, int32_t size) {
  if (size < 1)
    return 0;
  const Entry* const entry = Find(menu, position);
  const std::string text = entry == nullptr ? std::string() : entry->text;
  const size_t length = std::min(text.size(), static_cast<size_t>(size) - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return static_cast<int32_t>(length);
}

int32_t GetMenuEntryCommand(MenuHandle menu, int32_t position) {
  const Entry* const entry = Find(menu, position);
  return entry == nullptr || entry->isSubMenu ? -1 : entry->command;
}

MenuHandle GetSubMenuAt(MenuHandle menu, int32_t position) {
  const Entry* const entry = Find(menu, position);
  return entry == nullptr ? nullptr : entry->submenu;
}

void SetMenuEntryText(MenuHandle menu, int32_t position, int32_t command, const char* text) {
  ReplaceEntry(menu, position, {text, command, nullptr, false, true});
}

void SetMenuEntrySubMenu(MenuHandle menu, int32_t position, MenuHandle submenu, const char* text) {
  ReplaceEntry(menu, position, {text, 0, submenu, true, true});
}

MenuHandle CreatePopup() {
  return Create();
}

void AppendMenuText(MenuHandle menu, int32_t command, const char* text) {
  if (Menu* const found = Find(menu))
    found->push_back({text, command, nullptr, false, true});
}

void AppendMenuSubMenu(MenuHandle menu, MenuHandle submenu, const char* text) {
  if (Menu* const found = Find(menu))
    found->push_back({text, 0, submenu, true, true});
}

void DestroyMenuTree(MenuHandle menu) {
  const auto found = All().menus.find(menu);
  if (found == All().menus.end())
    return;
  const Menu entries = std::move(found->second);
  All().menus.erase(found);
  for (const Entry& entry : entries)
    DestroyMenuTree(entry.submenu);
}

void EnableMenuEntry(MenuHandle menu, int32_t position) {
  SetEnabled(menu, position, true);
}

void DisableMenuEntry(MenuHandle menu, int32_t position) {
  SetEnabled(menu, position, false);
}

bool IsMenuEntryEnabled(MenuHandle menu, int32_t position) {
  const Entry* const entry = Find(menu, position);
  return entry != nullptr && entry->enabled;
}

void SetWindowMenu(WindowHandle window, MenuHandle menu) {
  All().windowMenus[window] = menu;
}

void RedrawMenuBar(WindowHandle window) {
  ++All().redraws[window];
}

}  // namespace os
