#include "platform/FrameworkTest.h"

#include <cstring>

#include "platform/CP_Clipboard.h"
#include "platform/os/Memory.h"
#include "platform/os/Menus.h"

namespace vm {

void EmptyQueue() {
  os::Message message;
  while (os::TakeMessage(message)) {
  }
}

void PutForeignData(uint32_t format, const std::vector<uint8_t>& bytes) {
  const os::MemoryHandle block =
      os::AllocateMemory(os::MemoryUse::kClipboard, static_cast<uint32_t>(bytes.size()));
  ASSERT_NE(block, nullptr);
  if (!bytes.empty())
    std::memcpy(os::LockMemory(block), bytes.data(), bytes.size());
  os::UnlockMemory(block);
  ASSERT_TRUE(os::OpenSystemClipboard());
  ASSERT_TRUE(os::EmptySystemClipboard());
  ASSERT_TRUE(os::PutClipboardBlock(format, block));
  os::CloseSystemClipboard();
}

void DestroyMenuBar() {
  std::vector<CP_Menu*> menus;
  for (int32_t i = 1; i <= gMenuBar->CountMenus(); ++i)
    menus.push_back(gMenuBar->GetMenu(i));
  delete gMenuBar;
  for (CP_Menu* menu : menus) {
    EXPECT_EQ(menu->GetRefCount(), 1u) << "the creator's reference is left";
    menu->Release();
  }
  os::DestroyMenuTree(gMenuBarHandle);
  gMenuBarHandle = nullptr;
}

void DestroyClipboard() {
  CP_Clipboard* const clipboard = gClipboard;
  clipboard->CP_Clipboard::~CP_Clipboard();
  ::operator delete(clipboard);
}

std::string EntryText(os::MenuHandle menu, int32_t position) {
  char text[256];
  os::GetMenuEntryText(menu, position, text, sizeof(text));
  return text;
}

std::string EntryStates(const CP_Menu& menu) {
  std::string states;
  const int32_t count = menu.CountItems();
  for (int32_t i = 0; i < count; ++i) {
    const bool separates = os::GetMenuEntryCommand(menu.GetHandle(), i) == 0;
    states += separates ? '-' : os::IsMenuEntryEnabled(menu.GetHandle(), i) ? 'E' : 'd';
  }
  return states;
}

}  // namespace vm
