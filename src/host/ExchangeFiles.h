#pragma once

#include <memory>

#include "foundation/ZvString.h"
#include "persistence/ZvFileStream.h"

// The files in which the plug-in and the effects application meet. All lie beside the plug-in; the
// host's current directory plays no part.
namespace vm {

// The full path of a file beside the plug-in. `name` is one of the names of HostGlobals.h,
// `directory` what GetModuleDirectory gives.
ZvString ExchangePath(const ZvString& name, const ZvString& directory);

CP_FileSpec ExchangeFile(const ZvString& name, const ZvString& directory);

// A closed stream on such a file; the file is not touched. The streams of the hand-off are deleted
// directly and never shared.
std::unique_ptr<ZvFileStream> NewExchangeStream(const ZvString& name, const ZvString& directory);

// Replaces the stream's file by an empty one and opens it for reading and writing. Throws when that
// fails.
void Recreate(ZvFileStream& stream);

}  // namespace vm
