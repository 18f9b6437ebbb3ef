#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The resources of a program that has no resource section. Defining one again replaces it.
namespace os::posix {

struct MenuEntry {
  std::string text;
  int32_t command = 0;           // 0 with an empty text: a separator
  std::vector<MenuEntry> items;  // the submenu that hangs there, if not empty
};

void DefineMenu(int16_t number, std::vector<MenuEntry> entries);
void DefineAccelerators(int16_t number);
void DefineResource(const std::string& type, int16_t number, std::vector<uint8_t> bytes);
void ForgetResources();

// Null when it isn't defined.
const std::vector<MenuEntry>* FindMenu(int16_t number);
bool HasAccelerators(int16_t number);

}  // namespace os::posix
