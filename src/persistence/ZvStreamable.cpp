#include "persistence/ZvStreamable.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

#include "persistence/ZvClassRegistry.h"

ZvStreamable* ZvStreamable::CreateSameClass() const {
  ZvString name;
  ClassName(name);
  const ZvStreamableFactory factory = FindFactory(name);
  return factory != nullptr ? factory() : nullptr;
}

void ZvStreamable::ClassName(ZvString& outName) const {
  const char* encoded = typeid(*this).name();
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> readable(
      abi::__cxa_demangle(encoded, nullptr, nullptr, &status), &std::free);
  outName = ZvString(status == 0 ? readable.get() : encoded);
}

void ZvStreamable::WriteTo(ZvStream& /*stream*/) {}

void ZvStreamable::ReadFrom(ZvStream& /*stream*/) {}
