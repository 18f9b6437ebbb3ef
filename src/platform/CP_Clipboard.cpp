#include "platform/CP_Clipboard.h"

#include "foundation/CP_Exceptions.h"
#include "foundation/CP_Utility.h"
#include "platform/CP_Globals.h"
#include "platform/CP_HandleBlock.h"
#include "platform/os/Clipboard.h"
#include "platform/os/Memory.h"

namespace {

// Memory for the clipboard, given back unless the clipboard has taken it over.
class ClipboardMemory {
 public:
  explicit ClipboardMemory(int32_t inSize)
      : fHandle(inSize < 0 ? nullptr
                           : os::AllocateMemory(os::MemoryUse::kClipboard,
                                                static_cast<uint32_t>(inSize))) {}
  ClipboardMemory(const ClipboardMemory&) = delete;
  ClipboardMemory& operator=(const ClipboardMemory&) = delete;
  ~ClipboardMemory() {
    if (fHandle != nullptr)
      os::FreeMemory(fHandle);
  }

  os::MemoryHandle Get() const { return fHandle; }
  void PutInto(uint32_t inFormat) {
    if (os::PutClipboardBlock(inFormat, fHandle))
      fHandle = nullptr;
  }

 private:
  os::MemoryHandle fHandle;
};

void ReportUnlocked(const CP_PlfrmErrorException& inException, CP_HandleBlock* ioBlock) {
  if (ioBlock != nullptr && ioBlock->IsLocked())
    ioBlock->Unlock();
  inException.Report();
}

}  // namespace

CP_Clipboard::CP_Clipboard() {
  gClipboard = this;
}

CP_Clipboard::~CP_Clipboard() {
  if (gClipboard == this)
    gClipboard = nullptr;
}

void CP_Clipboard::PutData(uint32_t inFormat, CP_HandleBlock& ioBlock) {
  try {
    const int32_t size = ioBlock.GetSize();
    ClipboardMemory memory(size);
    CP_ThrowIfNull(memory.Get(), "CP_Clipboard", 131);
    void* const bytes = os::LockMemory(memory.Get());
    CP_ThrowIfNull(bytes, "CP_Clipboard", 134);
    CP_Utility::CopyBytes(ioBlock.GetPointer(), bytes, size);
    ioBlock.Unlock();
    os::UnlockMemory(memory.Get());
    os::OpenSystemClipboard();
    os::EmptySystemClipboard();
    memory.PutInto(inFormat);
    os::CloseSystemClipboard();
  } catch (const CP_PlfrmErrorException& exception) {
    ReportUnlocked(exception, &ioBlock);
  }
}

CP_HandleBlock* CP_Clipboard::GetData(uint32_t inFormat) {
  CP_HandleBlock* block = nullptr;
  try {
    if (!os::IsClipboardFormatThere(inFormat))
      return nullptr;
    os::OpenSystemClipboard();
    const os::MemoryHandle data = os::GetClipboardBlock(inFormat);
    if (data == nullptr)
      return nullptr;
    // REQUIRED: the size is cut to 16 bits, so that longer data comes out wrong: from 32768 bytes
    // on the size is negative, which the block reports, and from 65536 on only the rest arrives.
    const int16_t size = static_cast<int16_t>(os::SizeOfMemory(data));
    block = new CP_HandleBlock(size);
    void* const destination = block->GetPointer();
    const void* const source = os::LockMemory(data);
    if (destination != nullptr && source != nullptr) {
      CP_Utility::CopyBytes(source, destination, size);
    }
    block->Unlock();
    // REQUIRED: no closing of the clipboard and no unlocking of its data. Callers may take the data
    // of several formats in turn, and nobody else can change the clipboard between two of them.
  } catch (const CP_PlfrmErrorException& exception) {
    ReportUnlocked(exception, block);
  }
  return block;
}

bool CP_Clipboard::HasPrivateData() {
  return false;
}
