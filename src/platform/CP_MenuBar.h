#pragma once

#include <cstdint>
#include <vector>

#include "platform/os/Handles.h"

class CP_Menu;

// The menus of the application. There is one menu bar, `gMenuBar`; the platform menu behind it is
// `gMenuBarHandle`. Positions count from 1.
class CP_MenuBar {
 public:
  // Becomes `gMenuBar`; `gMenuBarHandle` is null until a resource is loaded.
  CP_MenuBar();
  CP_MenuBar(const CP_MenuBar&) = delete;
  CP_MenuBar& operator=(const CP_MenuBar&) = delete;
  // Gives back the bar's references on its menus and clears `gMenuBar`.
  virtual ~CP_MenuBar();

  // Loads menu resource `inNumber` with its submenus, and the accelerators of that number, if
  // `gLoadsMenuBars` says that the program wants a menu bar. Resource `inNumber` of type "CPMB"
  // gives the top-level menus their numbers: a signed 16-bit count, then one number more than that.
  // Menus without one there have number 0.
  //
  // An entry can have a submenu (see CP_SubMenuMark) from the second position of its menu on.
  void LoadFromResource(int16_t inNumber);

  // Takes a reference on the menu and puts it at the end of the bar. Reports "inMenu != NULL" at
  // 487.
  void AddTopLevel(CP_Menu* inMenu);

  // Takes a reference on the menu, which hangs somewhere in the bar already. Reports
  // "inMenu != NULL" at 686.
  void Add(CP_Menu* inMenu);

  // The menu and submenus that the bar knows, top-level menus before the submenus in them.
  int32_t CountMenus() const {
    return fMenus == nullptr ? 0 : static_cast<int32_t>(fMenus->size());
  }
  // Null out of range.
  CP_Menu* GetMenu(int32_t inPosition) const;
  // The entries of the platform menu; -1 when there is none.
  int32_t CountTopLevel() const;

  // Enables the command in the first menu that knows it.
  void EnableCommand(int32_t inCommandNumber);

  // Disables the entries of all menus but those numbered 128, 501 and 502.
  void DisableAll();

  // Stores the window that the bar is drawn in, and gives it the platform menu.
  void AttachToWindow(os::WindowHandle inWindow);
  void Redraw();

  // Null when the resource had none.
  os::AcceleratorHandle GetAccelerators() const { return fAccelerators; }

 protected:
  // Reports "inMenu != NULL" at 703 and "fMenus != NULL" at 704. A menu enters once.
  void Enter(CP_Menu* inMenu);

  // Owned, each menu in it with a reference.
  std::vector<CP_Menu*>* fMenus;
  os::WindowHandle fWindow = nullptr;
  os::AcceleratorHandle fAccelerators = nullptr;
};
