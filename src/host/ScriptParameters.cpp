// Recording and replaying: the effects application's parameter block is opaque here, so it stands
// in the host's descriptor as a sequence of Pascal strings.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/FourCharCode.h"
#include "host/HostGlobals.h"
#include "host/ZVHostPhotoshop.h"

namespace {

constexpr DescriptorKeyID kKeyEffectName = FourCC("aeAU");
constexpr DescriptorKeyID kKeySize = FourCC("aeCT");
constexpr DescriptorKeyID kKeyFiller = FourCC("aeSA");
// REQUIRED: the n-th piece's key is this number plus n; past 'aeSZ' it goes on with whatever letter
// follows.
constexpr DescriptorKeyID kKeyFirstPiece = FourCC("aeSK");

constexpr int32_t kMaxPieceLength = 255;
constexpr int32_t kBlanksInFiller = 254;

// Largest block that can be rebuilt: one byte is added to its size, and a size has 31 bits.
constexpr double kMaxBlockSize = 2147483646.0;

struct FreeBlock {
  void operator()(uint8_t* block) const { std::free(block); }
};
using Block = std::unique_ptr<uint8_t[], FreeBlock>;

Block NewZeroedBlock(int32_t size) {
  return Block(static_cast<uint8_t*>(std::calloc(static_cast<size_t>(size), 1)));
}

// REQUIRED: the length byte of a longer name is its length modulo 256. At most 255 characters are
// copied.
void ToPascalString(const ZvString& text, Str255 out) {
  std::memset(out, 0, sizeof(Str255));
  out[0] = static_cast<uint8_t>(text.length());
  std::memcpy(out + 1, text.c_str(), std::min<uint32_t>(text.length(), 255));
}

// The pieces of a block that is being read back, in the order in which they come.
class BlockBuilder {
 public:
  // A size that no block can have leaves the builder without a block. A second size starts over.
  void Begin(double size) {
    mBlock.reset();
    mOffset = 0;
    mSize = size;
    // Also false for NaN.
    if (!(size >= 0.0 && size <= kMaxBlockSize))
      return;
    mCapacity = static_cast<int32_t>(size) + 1;
    mBlock = NewZeroedBlock(mCapacity);
  }

  // Adds a piece and a zero byte behind it. What doesn't fit is dropped, and so is a piece that
  // comes before the size.
  void Add(const Str255 piece) {
    if (!mBlock)
      return;
    const int32_t count = std::min<int32_t>(piece[0], mCapacity - 1 - mOffset);
    std::memcpy(mBlock.get() + mOffset, piece + 1, static_cast<size_t>(count));
    mOffset += count;
    mBlock[static_cast<size_t>(mOffset)] = 0;
  }

  bool HasBlock() const { return mBlock != nullptr && mSize > 0.0; }
  double Size() const { return mSize; }
  // The bytes that came, with zeros up to `Capacity`, which is the size cut to an integer plus 1.
  const uint8_t* Bytes() const { return mBlock.get(); }
  int32_t Capacity() const { return mCapacity; }

 private:
  Block mBlock;
  int32_t mCapacity = 0;
  int32_t mOffset = 0;
  double mSize = 0.0;
};

// Reads everything that the descriptor holds; stops at the first error.
void ReadPieces(const ReadDescriptorProcs& procs, PIReadDescriptor token, BlockBuilder& builder) {
  DescriptorKeyID key = 0;
  DescriptorTypeID type = 0;
  int32_t flags = 0;
  OSErr error = noErr;
  while (error == noErr && procs.getKeyProc(token, &key, &type, &flags) != 0) {
    switch (key) {
      case kKeySize: {
        double size = 0.0;
        error = procs.getFloatProc(token, &size);
        if (error == noErr)
          builder.Begin(size);
        break;
      }
      case kKeyEffectName:
      case kKeyFiller:
        break;
      default: {
        Str255 piece = {};
        error = procs.getStringProc(token, piece);
        if (error == noErr)
          builder.Add(piece);
      }
    }
  }
}

void DisposeDescriptor(const FilterRecord& record) {
  PIDescriptorParameters& parameters = *record.descriptorParameters;
  if (parameters.descriptor != nullptr && record.handleProcs != nullptr)
    record.handleProcs->disposeProc(parameters.descriptor);
  parameters.descriptor = nullptr;
}

}  // namespace

int32_t ZVHostPhotoshop::WriteScriptParameters() {
  if (!gScriptState)
    return -1;
  const int64_t size = gScriptState->GetLength();
  const uint8_t* const data = gScriptState->GetBuffer();

  PIDescriptorParameters* const parameters = mFilterRecord->descriptorParameters;
  if (parameters == nullptr || parameters->writeDescriptorProcs == nullptr)
    return 0;
  const WriteDescriptorProcs& procs = *parameters->writeDescriptorProcs;
  const PIWriteDescriptor token = procs.openWriteDescriptorProc();
  if (token == nullptr)
    return 0;

  Str255 text;
  ToPascalString(gEffectName, text);
  procs.putStringProc(token, kKeyEffectName, text);

  const auto sizeAsFloat = static_cast<double>(size);
  procs.putFloatProc(token, kKeySize, &sizeAsFloat);

  // REQUIRED: a filler of length 255 of which only 254 characters are blank; hosts have recorded it
  // so.
  std::memset(text, 0, sizeof(text));
  text[0] = kMaxPieceLength;
  std::memset(text + 1, ' ', kBlanksInFiller);
  procs.putStringProc(token, kKeyFiller, text);

  // REQUIRED: the block's last byte is never recorded. ReadScriptParameters puts zeros in its
  // place.
  DescriptorKeyID key = kKeyFirstPiece;
  for (int64_t i = 0; i < size - 1; ++key) {
    const int64_t count = std::min<int64_t>(kMaxPieceLength, size - i - 1);
    std::memset(text, 0, sizeof(text));
    text[0] = static_cast<uint8_t>(count);
    std::memcpy(text + 1, data + i, static_cast<size_t>(count));
    procs.putStringProc(token, key, text);
    i += count;
  }

  DisposeDescriptor(*mFilterRecord);
  Handle descriptor = nullptr;
  procs.closeWriteDescriptorProc(token, &descriptor);
  parameters->descriptor = descriptor;
  parameters->recordInfo = plugInDialogNone;
  return 0;
}

bool ZVHostPhotoshop::ReadScriptParameters() {
  PIDescriptorParameters* const parameters = mFilterRecord->descriptorParameters;
  if (parameters == nullptr || parameters->readDescriptorProcs == nullptr ||
      parameters->descriptor == nullptr)
    return true;
  const ReadDescriptorProcs& procs = *parameters->readDescriptorProcs;
  // The host may mark the keys that it finds, so they are not constant.
  DescriptorKeyID keys[] = {kKeySize, kKeyFiller, kKeyEffectName, 0};
  const PIReadDescriptor token = procs.openReadDescriptorProc(parameters->descriptor, keys);
  if (token == nullptr)
    return true;

  BlockBuilder builder;
  ReadPieces(procs, token, builder);
  procs.closeReadDescriptorProc(token);
  DisposeDescriptor(*mFilterRecord);

  const bool askUser = parameters->playInfo == plugInDialogDisplay;
  if (builder.HasBlock()) {
    std::free(mScriptState);
    mScriptState = nullptr;
    mScriptStateSize = 0;
    // REQUIRED: one byte more than was recorded: the received bytes, a zero for the last one that
    // is never recorded, and one more. The effects application expects the length so.
    const auto size = static_cast<int32_t>(builder.Size() + 1.0);
    if (Block block = NewZeroedBlock(size)) {
      std::memcpy(block.get(), builder.Bytes(),
                  static_cast<size_t>(std::min(size, builder.Capacity())));
      mScriptState = block.release();
      mScriptStateSize = size;
    }
  }
  return askUser;
}
