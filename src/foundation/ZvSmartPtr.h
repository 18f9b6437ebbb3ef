#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

#include "foundation/CP_DebugAssert.h"
#include "foundation/CP_M_ReferenceCounted.h"

// Counts above this are taken for the contents of a corrupted object.
inline constexpr uint32_t kMaxPlausibleRefCount = 10000;

// Owning handle on a counted object, one pointer wide; null when empty. T derives from
// CP_M_ReferenceCounted and must be complete where the handle is used.
//
// A handle made from a raw pointer takes a reference of its own: the creator of a fresh object
// still has to give back the one it was born with, or uses `Adopt` / `TakeOver`.
//
// `->` and `*` check the object's count on the way and report an implausible one as "0" in `ZvPtr`,
// then go on. A null handle is not checked: the access faults as any null access does.
template <class T>
class ZvSmartPtr {
 public:
  ZvSmartPtr() = default;
  ZvSmartPtr(std::nullptr_t) {}
  ZvSmartPtr(T* pointer) { Assign(pointer); }
  ZvSmartPtr(const ZvSmartPtr& other) { Assign(other.fPointer); }
  ZvSmartPtr(ZvSmartPtr&& other) noexcept : fPointer(other.fPointer) { other.fPointer = nullptr; }
  template <class U>
  requires std::convertible_to<U*, T*> ZvSmartPtr(const ZvSmartPtr<U>& other) {
    Assign(other.Get());
  }

  ~ZvSmartPtr() {
    if (fPointer == nullptr)
      return;
    const uint32_t count = CountOf(fPointer);
    fPointer->Release();
    // A pointer to a deleted object must not stay behind in the handle's memory; volatile keeps the
    // compiler from dropping the store at the end of the handle's life.
    if (count < 2)
      *const_cast<T* volatile*>(&fPointer) = nullptr;
  }

  ZvSmartPtr& operator=(std::nullptr_t) {
    Clear();
    return *this;
  }
  ZvSmartPtr& operator=(T* pointer) {
    Assign(pointer);
    return *this;
  }
  ZvSmartPtr& operator=(const ZvSmartPtr& other) {  // NOLINT(bugprone-unhandled-self-assignment)
    Assign(other.fPointer);
    return *this;
  }
  ZvSmartPtr& operator=(ZvSmartPtr&& other) noexcept {
    if (this != &other) {
      T* const pointer = other.fPointer;
      other.fPointer = nullptr;
      TakeOver(pointer);
    }
    return *this;
  }

  // A handle that owns the reference which the caller holds.
  static ZvSmartPtr Adopt(T* pointer) {
    ZvSmartPtr handle;
    handle.fPointer = pointer;
    return handle;
  }

  // Drops the old object and owns the reference on `pointer` which the caller holds.
  void TakeOver(T* pointer) {
    if (fPointer != nullptr)
      fPointer->Release();
    fPointer = pointer;
  }

  void Clear() {
    if (fPointer != nullptr)
      fPointer->Release();
    fPointer = nullptr;
  }

  T* operator->() const {
    CheckCount(169);
    return fPointer;
  }
  T& operator*() const {
    CheckCount(171);
    return *fPointer;
  }

  // The raw pointer, unchecked and still owned by the handle.
  T* Get() const { return fPointer; }
  explicit operator bool() const { return fPointer != nullptr; }
  friend bool operator==(const ZvSmartPtr& a, const ZvSmartPtr& b) {
    return a.fPointer == b.fPointer;
  }
  friend bool operator==(const ZvSmartPtr& a, const T* b) { return a.fPointer == b; }
  friend bool operator==(const ZvSmartPtr& a, std::nullptr_t) { return a.fPointer == nullptr; }

 protected:
  static uint32_t CountOf(const CP_M_ReferenceCounted* object) { return object->GetRefCount(); }

  void CheckCount(int16_t line) const {
    if (fPointer == nullptr)
      return;
    const uint32_t count = CountOf(fPointer);
    if (count == 0 || count > kMaxPlausibleRefCount) [[unlikely]] {
      CP_DebugAssert("ZvPtr", line, "0");
    }
  }

  // Adds before it releases: assigning a handle its own object is safe at count 1 too.
  void Assign(T* pointer) {
    if (pointer != nullptr)
      pointer->AddReference();
    if (fPointer != nullptr)
      fPointer->Release();
    fPointer = pointer;
  }

  T* fPointer = nullptr;
};
