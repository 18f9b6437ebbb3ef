#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CP_M_ReferenceCounted.h"
#include "platform/os/Handles.h"

class CP_MenuBar;

// What an entry text says about a submenu: behind the text stands "[HIERARCHICAL" and the number of
// the submenu's resource in three digits, as in "Zoom[HIERARCHICAL201".
struct CP_SubMenuMark {
  int16_t number;
  int32_t textLength;  // of the text in front of the mark
};

// True when the first '[' of the text begins a mark, which is then stored in `outMark`.
bool CP_FindSubMenuMark(const char* inText, CP_SubMenuMark& outMark);

// One platform menu and the command numbers of its entries. Positions count from 1. The platform
// menu is not owned: it belongs to the menu or the window that it hangs in.
class CP_Menu : public CP_M_ReferenceCounted {
 public:
  static constexpr int32_t kTextBufferSize = 256;

  // Loads menu resource `inNumber` and builds the submenus that its entries are marked with; these
  // enter the menu bar, if there is one, with AddTopLevel. `inCopy` replaces the loaded menu by a
  // popup of its own with the same texts and command numbers. `inTitle` is cut to 255 characters;
  // null counts as empty. Without such a resource the menu has no handle, which every operation
  // that needs one reports.
  CP_Menu(int16_t inNumber, const char* inTitle, bool inCopy, bool inPopup);

  // Wraps a platform menu as it stands.
  CP_Menu(int16_t inNumber, const char* inTitle, os::MenuHandle inMenuH, bool inPopup);

  CP_Menu(const CP_Menu&) = delete;
  CP_Menu& operator=(const CP_Menu&) = delete;
  ~CP_Menu() override;

  os::MenuHandle GetHandle() const { return fMenuH; }
  int16_t GetNumber() const { return fNumber; }
  const char* GetTitle() const { return fTitle; }
  bool IsPopup() const { return fPopup; }

  // The platform's count. Reports "fMenuH != NULL" at 541.
  int32_t CountItems() const;
  // The entries whose command number is known: those that stood in the menu at construction.
  int32_t CountCommands() const { return static_cast<int32_t>(fCommands->size()); }

  // Copies the text, up to `inSize` - 1 characters and a NUL, and yields its length; an empty text
  // for a position that doesn't exist. Reports "inIndex >= 1" at 740.
  int32_t GetItemText(int32_t inIndex, char* outBuffer, int32_t inSize) const;

  // Throws std::out_of_range for a position without a known command number.
  int32_t GetCommand(int32_t inPosition) const;

  void EnableItem(int32_t inPosition);
  void DisableItem(int32_t inPosition);
  void DisableAll();

  // Enables every entry with this command number. False when there is none.
  bool EnableCommand(int32_t inCommandNumber);

 private:
  friend class CP_MenuBar;

  CP_Menu(int16_t inNumber, const char* inTitle, bool inPopup);

  void FillCommands();
  void BuildSubMenus();
  void ReplaceByCopy();

  // If the entry at `inPosition`, which counts from 0 here, has a submenu mark, takes the mark out
  // of its text and hangs the submenu into it. `inEnter` is how the submenu enters the menu bar.
  void BuildSubMenuAt(int32_t inPosition, void (CP_MenuBar::*inEnter)(CP_Menu*));

  os::MenuHandle fMenuH = nullptr;
  int16_t fNumber;
  char fTitle[kTextBufferSize];
  bool fBuilt = false;
  bool fPopup;
  std::vector<int32_t>* fCommands;
};
