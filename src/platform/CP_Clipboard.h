#pragma once

#include <cstdint>

class CP_HandleBlock;

// The system clipboard. There is one object, `gClipboard`. Formats are the platform's numbers. A
// clipboard that another program holds is no error: data then doesn't arrive.
class CP_Clipboard {
 public:
  // Becomes `gClipboard`.
  CP_Clipboard();
  CP_Clipboard(const CP_Clipboard&) = delete;
  CP_Clipboard& operator=(const CP_Clipboard&) = delete;
  // Clears `gClipboard`, if that is this object. Not virtual.
  ~CP_Clipboard();

  // Replaces the clipboard's contents by a copy of the block. Throws CP_MemoryException when there
  // is no memory for it, and for a block of no bytes; a CP_PlfrmErrorException is reported.
  virtual void PutData(uint32_t inFormat, CP_HandleBlock& ioBlock);

  // A copy of the clipboard's data in this format, or null when there is none. The caller owns the
  // one reference. Data is limited to 32767 bytes. The clipboard is left open, so that other
  // programs have to wait until the next PutData or the end of this one.
  virtual CP_HandleBlock* GetData(uint32_t inFormat);

  virtual bool HasPrivateData();
};
