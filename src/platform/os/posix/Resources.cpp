#include "platform/os/Resources.h"

#include <map>
#include <set>
#include <utility>

#include "platform/os/posix/ResourceScript.h"

namespace os {
namespace {

struct Store {
  std::map<int16_t, std::vector<posix::MenuEntry>> menus;
  std::set<int16_t> accelerators;
  std::map<std::pair<std::string, int16_t>, std::vector<uint8_t>> others;
};

Store& TheStore() {
  static Store store;
  return store;
}

}  // namespace

namespace posix {

void DefineMenu(int16_t number, std::vector<MenuEntry> entries) {
  TheStore().menus[number] = std::move(entries);
}

void DefineAccelerators(int16_t number) {
  TheStore().accelerators.insert(number);
}

void DefineResource(const std::string& type, int16_t number, std::vector<uint8_t> bytes) {
  TheStore().others[{type, number}] = std::move(bytes);
}

void ForgetResources() {
  TheStore() = Store();
}

const std::vector<MenuEntry>* FindMenu(int16_t number) {
  const auto found = TheStore().menus.find(number);
  return found == TheStore().menus.end() ? nullptr : &found->second;
}

bool HasAccelerators(int16_t number) {
  return TheStore().accelerators.count(number) != 0;
}

}  // namespace posix

void SetResourceModule(void*) {}

std::span<const uint8_t> FindResourceBytes(const char* type, int16_t number) {
  const auto found = TheStore().others.find({type, number});
  if (found == TheStore().others.end())
    return {};
  return found->second;
}

}  // namespace os
