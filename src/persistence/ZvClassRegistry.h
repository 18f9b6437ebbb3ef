#pragma once

#include <cstddef>
#include <vector>

#include "foundation/ZvString.h"

class ZvStreamable;

// The class registry maps the class names that stand in streams to factories. It is one global list
// in registration order. It fills when RunRegistrars calls the registrars which static initialisers
// have queued.
//
// REQUIRED: registration never looks for doubles. The host bridge runs the registrars at every
// Start, so the list grows by one whole set each time; the first record of a name is the one found.

// Makes a new default object at count 1; the caller owns that reference.
using ZvStreamableFactory = ZvStreamable* (*)();

// Given true, a registrar appends its classes to the registry; given false, it does nothing.
using ZvRegistrar = void (*)(bool doRegister);

struct ZvClassRecord {
  ZvString mClassName;
  ZvStreamableFactory mFactory;
};

inline constexpr std::size_t kMaxClassRecords = 0xFFFFFFF;

std::vector<ZvClassRecord>& GetClassRegistry();

// Throws std::length_error when the registry holds kMaxClassRecords records.
void AppendClass(const char* className, ZvStreamableFactory factory);

// The factory of the first record with exactly this name (length and bytes), or null.
ZvStreamableFactory FindFactory(const ZvString& className);

// Queues a registrar. Once RunRegistrars has run, it is called at once with true as well.
void AddRegistrar(ZvRegistrar registrar);

// Calls every queued registrar with true, in the order of queueing.
void RunRegistrars();

// Set by RunRegistrars, never cleared.
extern bool registrarsDone;

namespace vm {

// Queues the registrar of one default-constructible class from a static initialiser. The class
// names itself in a constant:
//   class ZvPoodle : public ZvStreamable {
//    public:
//     static constexpr char kClassName[] = "ZvPoodle";
//   ...
//   const vm::ClassRegistration<ZvPoodle> kPoodleRegistration;
template <class T>
class ClassRegistration {
 public:
  ClassRegistration() {
    AddRegistrar([](bool doRegister) {
      if (doRegister) {
        AppendClass(T::kClassName, []() -> ZvStreamable* { return new T; });
      }
    });
  }
};

}  // namespace vm
