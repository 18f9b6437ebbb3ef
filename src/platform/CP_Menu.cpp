#include "platform/CP_Menu.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "foundation/CP_DebugAssert.h"
#include "platform/CP_Globals.h"
#include "platform/CP_MenuBar.h"
#include "platform/os/Menus.h"

namespace {

constexpr char kSubMenuMark[] = "[HIERARCHICAL";
constexpr size_t kSubMenuMarkLength = sizeof(kSubMenuMark) - 1;
constexpr int kSubMenuNumberDigits = 3;

// The resources that are being built into menus right now, outermost first. A resource that is
// marked as a submenu of itself would be built without end.
std::vector<int16_t> gNumbersInWork;

class NumberInWork {
 public:
  explicit NumberInWork(int16_t inNumber) { gNumbersInWork.push_back(inNumber); }
  NumberInWork(const NumberInWork&) = delete;
  NumberInWork& operator=(const NumberInWork&) = delete;
  ~NumberInWork() { gNumbersInWork.pop_back(); }

  static bool Contains(int16_t inNumber) {
    return std::find(gNumbersInWork.begin(), gNumbersInWork.end(), inNumber) !=
           gNumbersInWork.end();
  }
};

}  // namespace

bool CP_FindSubMenuMark(const char* inText, CP_SubMenuMark& outMark) {
  const char* const bracket = std::strchr(inText, '[');
  if (bracket == nullptr)
    return false;
  if (std::strncmp(bracket, kSubMenuMark, kSubMenuMarkLength) != 0)
    return false;
  int number = 0;
  const char* const digits = bracket + kSubMenuMarkLength;
  for (int i = 0; i < kSubMenuNumberDigits && digits[i] >= '0' && digits[i] <= '9'; ++i) {
    number = number * 10 + (digits[i] - '0');
  }
  outMark.number = static_cast<int16_t>(number);
  outMark.textLength = static_cast<int32_t>(bracket - inText);
  return true;
}

CP_Menu::CP_Menu(int16_t inNumber, const char* inTitle, bool inPopup)
    : fNumber(inNumber), fPopup(inPopup), fCommands(new std::vector<int32_t>) {
  std::strncpy(fTitle, inTitle == nullptr ? "" : inTitle, sizeof(fTitle) - 1);
  fTitle[sizeof(fTitle) - 1] = '\0';
}

CP_Menu::CP_Menu(int16_t inNumber, const char* inTitle, bool inCopy, bool inPopup)
    : CP_Menu(inNumber, inTitle, inPopup) {
  const NumberInWork inWork(inNumber);
  fMenuH = os::LoadMenuResource(inNumber);
  if (fMenuH != nullptr)
    FillCommands();
  BuildSubMenus();
  if (inCopy)
    ReplaceByCopy();
}

CP_Menu::CP_Menu(int16_t inNumber, const char* inTitle, os::MenuHandle inMenuH, bool inPopup)
    : CP_Menu(inNumber, inTitle, inPopup) {
  fMenuH = inMenuH;
  FillCommands();
}

CP_Menu::~CP_Menu() {
  delete fCommands;
}

void CP_Menu::FillCommands() {
  const int32_t count = CountItems();
  for (int32_t i = 0; i < count; ++i)
    fCommands->push_back(os::GetMenuEntryCommand(fMenuH, i));
}

void CP_Menu::BuildSubMenus() {
  // One position past the last entry is asked for too; it has an empty text.
  const int32_t count = CountItems();
  for (int32_t i = 0; i <= count; ++i)
    BuildSubMenuAt(i, &CP_MenuBar::AddTopLevel);
}

void CP_Menu::BuildSubMenuAt(int32_t inPosition, void (CP_MenuBar::*inEnter)(CP_Menu*)) {
  char text[kTextBufferSize];
  os::GetMenuEntryText(fMenuH, inPosition, text, sizeof(text));
  CP_SubMenuMark mark;
  if (!CP_FindSubMenuMark(text, mark))
    return;
  text[mark.textLength] = '\0';
  os::SetMenuEntryText(fMenuH, inPosition, os::GetMenuEntryCommand(fMenuH, inPosition), text);
  if (NumberInWork::Contains(mark.number))
    return;

  CP_Menu* const submenu = new CP_Menu(mark.number, fTitle, false, true);
  const os::MenuHandle submenuH = submenu->GetHandle();
  if (gMenuBar != nullptr) {
    // REQUIRED: the menu bar takes a reference of its own and the creator's is never given back, so
    // the menu outlives the bar.
    (gMenuBar->*inEnter)(submenu);
  } else {
    submenu->Release();
  }
  os::SetMenuEntrySubMenu(fMenuH, inPosition, submenuH, text);
}

void CP_Menu::ReplaceByCopy() {
  const os::MenuHandle copy = os::CreatePopup();
  const int32_t count = CountItems();
  for (int32_t i = 0; i < count; ++i) {
    char text[kTextBufferSize];
    os::GetMenuEntryText(fMenuH, i, text, sizeof(text));
    os::AppendMenuText(copy, fCommands->at(static_cast<size_t>(i)), text);
  }
  os::DestroyMenuTree(fMenuH);
  fMenuH = copy;
}

int32_t CP_Menu::CountItems() const {
  CP_Check(fMenuH != nullptr, "CP_Menu", 541, "fMenuH != NULL");
  return os::CountMenuEntries(fMenuH);
}

int32_t CP_Menu::GetItemText(int32_t inIndex, char* outBuffer, int32_t inSize) const {
  CP_Check(inIndex >= 1, "CP_Menu", 740, "inIndex >= 1");
  return os::GetMenuEntryText(fMenuH, inIndex - 1, outBuffer, inSize);
}

int32_t CP_Menu::GetCommand(int32_t inPosition) const {
  if (inPosition < 1 || inPosition > CountCommands()) {
    throw std::out_of_range("vector::at index out of range");
  }
  return (*fCommands)[static_cast<size_t>(inPosition - 1)];
}

void CP_Menu::EnableItem(int32_t inPosition) {
  os::EnableMenuEntry(fMenuH, inPosition - 1);
}

void CP_Menu::DisableItem(int32_t inPosition) {
  os::DisableMenuEntry(fMenuH, inPosition - 1);
}

void CP_Menu::DisableAll() {
  const int32_t count = CountItems();
  for (int32_t position = 1; position <= count; ++position)
    DisableItem(position);
}

bool CP_Menu::EnableCommand(int32_t inCommandNumber) {
  bool known = false;
  for (int32_t position = 1; position <= CountCommands(); ++position) {
    if (GetCommand(position) != inCommandNumber)
      continue;
    EnableItem(position);
    known = true;
  }
  return known;
}
