#include "foundation/CP_M_ReferenceCounted.h"

#include "foundation/CP_DebugAssert.h"

CP_M_ReferenceCounted::~CP_M_ReferenceCounted() {
  // Volatile, because the compiler may otherwise drop a store into an object that is about to end.
  *const_cast<volatile uint32_t*>(&fRefCount) = 0;
}

void CP_M_ReferenceCounted::AddReference() {
  CP_Check(fRefCount != 0, "CP_M_ReferenceCounted", 58, "fRefCount!=0");
  ++fRefCount;
}

void CP_M_ReferenceCounted::Release() {
  if (fRefCount == 0)
    return;
  if (--fRefCount == 0)
    delete this;
}
