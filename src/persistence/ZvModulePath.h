#pragma once

#include "foundation/ZvString.h"

// How a name beside the plug-in becomes a path. Paths have `\` between their parts.

// The directory of a loaded module's file, up to and including its last `\` or `:`; empty when the
// file's name holds neither. `module` is the platform's module handle. A name of more than 255
// characters is cut.
void GetModuleDirectory(ZvString& outDirectory, void* module);

// Cuts the last component off a path, together with any `\` behind it; the result ends in `\`.
// A path without a parent stays as it is.
void ParentDirectory(ZvString& path);

// Turns `path` into a path under `directory`. One dot in front stands for the directory, two for
// its parent: ".\Img.h" under `C:\a\` is `C:\a\Img.h`.
void ResolveRelativePath(ZvString& path, const ZvString& directory);
