#include "persistence/ZvClassRegistry.h"

#include <stdexcept>

#include "persistence/ZvStreamable.h"

bool registrarsDone = false;

namespace {

// Function-local, so that static initialisers of any file may queue their registrars.
std::vector<ZvRegistrar>& QueuedRegistrars() {
  static std::vector<ZvRegistrar> registrars;
  return registrars;
}

}  // namespace

std::vector<ZvClassRecord>& GetClassRegistry() {
  static std::vector<ZvClassRecord> registry;
  return registry;
}

void AppendClass(const char* className, ZvStreamableFactory factory) {
  std::vector<ZvClassRecord>& registry = GetClassRegistry();
  if (registry.size() >= kMaxClassRecords) {
    throw std::length_error("vector::insert length error");
  }
  registry.push_back({ZvString(className), factory});
}

ZvStreamableFactory FindFactory(const ZvString& className) {
  for (const ZvClassRecord& record : GetClassRegistry()) {
    if (record.mClassName == className) {
      return record.mFactory;
    }
  }
  return nullptr;
}

void AddRegistrar(ZvRegistrar registrar) {
  QueuedRegistrars().push_back(registrar);
  if (registrarsDone) {
    registrar(true);
  }
}

void RunRegistrars() {
  registrarsDone = true;
  // By index: a registrar may queue another one.
  for (std::size_t i = 0; i < QueuedRegistrars().size(); ++i) {
    QueuedRegistrars()[i](true);
  }
}
