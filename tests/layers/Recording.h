#pragma once

#include <string>
#include <vector>

#include "persistence/ByteStream.h"
#include "persistence/RecordingParser.h"
#include "persistence/ZvMemoryStream.h"
#include "persistence/ZvTextParser.h"

namespace vm {

// The operations that an object gives a parser when it is written.
inline std::vector<std::string> OperationsOf(ZvStreamable& object, float version = 1.0F) {
  ByteStream stream;
  const auto parser = ZvSmartPtr<RecordingParser>::Adopt(new RecordingParser);
  stream.AttachParser(parser.Get());
  stream.SetVersion(version);
  object.WriteTo(stream);
  return parser->Lines();
}

// A new object of the same class, read from the text that the given one writes. Null if nothing
// comes back.
template <class T>
ZvSmartPtr<T> ThroughText(T& object) {
  ZvMemoryStream written;
  UseTextParser(written);
  written.WriteObject(&object);
  ZvMemoryStream read(written.GetBuffer(), written.Tell(), false);
  UseTextParser(read);
  return ZvSmartPtr<T>::Adopt(dynamic_cast<T*>(read.ReadObject()));
}

}  // namespace vm
