// The system clipboard: one memory block for each format number. All but the query need the
// clipboard to be open, and fail (false, null) when it isn't.
#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

bool IsClipboardFormatThere(uint32_t format);

// Opens the clipboard for no window in particular. False while another program holds it.
bool OpenSystemClipboard();
bool EmptySystemClipboard();
void CloseSystemClipboard();

// True when the clipboard has taken the block over.
bool PutClipboardBlock(uint32_t format, MemoryHandle block);

// The clipboard keeps the block.
MemoryHandle GetClipboardBlock(uint32_t format);

}  // namespace os
