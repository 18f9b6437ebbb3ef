#pragma once

#include <cstdint>

// Mix-in with an intrusive owner count. A new object has one owner, its creator, who must give that
// reference back with `Release` (or hand it over to a handle). Counted classes derive from this one
// first, so that the count stands at the same place in all of them. Not thread safe.
class CP_M_ReferenceCounted {
 public:
  CP_M_ReferenceCounted() = default;
  // A copy is a new object with an owner of its own; assignment leaves the owners alone.
  CP_M_ReferenceCounted(const CP_M_ReferenceCounted&) {}
  CP_M_ReferenceCounted& operator=(const CP_M_ReferenceCounted&) { return *this; }

  // Leaves the count at 0, so that an access through a stale pointer finds a dead count as long as
  // the memory is intact.
  virtual ~CP_M_ReferenceCounted();

  // On a dead object (count 0) reports "fRefCount!=0" and counts nevertheless: the object then
  // looks alive again.
  void AddReference();

  // Deletes the object when its last reference goes. On a dead object does nothing.
  void Release();

  // The number of owners, 0 for an object that is destroyed or being destroyed.
  uint32_t GetRefCount() const { return fRefCount; }

 protected:
  uint32_t fRefCount = 1;
};
