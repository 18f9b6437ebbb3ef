#pragma once

#include "foundation/CP_M_ReferenceCounted.h"
#include "foundation/ZvString.h"

class ZvStream;

// Base of everything that can stand in a stream and be rebuilt from its class name: images, memory
// streams, layers, shapes. One chain of bases, so the reference count stands first in each of them.
//
// An object carries no mark of its own in a stream: ReadFrom must consume exactly what WriteTo
// produced. The class name in front of it is written by ZvParser::WriteObject.
class ZvStreamable : public CP_M_ReferenceCounted {
 public:
  ~ZvStreamable() override = default;

  // A new default instance of the class that ClassName names, at count 1 and owned by the caller;
  // nothing of this object's content is copied. Null when no factory is registered for the name.
  virtual ZvStreamable* CreateSameClass() const;

  // The name that stands in a stream in front of the object and that the class registry is asked
  // for. The default is the name of the run-time type as it is written in the source.
  virtual void ClassName(ZvString& outName) const;

  virtual void WriteTo(ZvStream& stream);
  virtual void ReadFrom(ZvStream& stream);

 protected:
  ZvStreamable() = default;
  ZvStreamable(const ZvStreamable&) = delete;
  ZvStreamable& operator=(const ZvStreamable&) = delete;
};
