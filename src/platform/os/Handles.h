// Opaque handles of the operating system's objects. What stands behind one is the backend's matter;
// null means "none" everywhere.
#pragma once

namespace os {

using WindowHandle = struct WindowTag*;
using MenuHandle = struct MenuTag*;
using AcceleratorHandle = struct AcceleratorTag*;
using MemoryHandle = struct MemoryTag*;
using RegionHandle = struct RegionTag*;

}  // namespace os
