// Writing and reading descriptors by tokens, as the host's descriptor suite does it for a filter.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <vector>

#include "filter_host/Descriptor.h"
#include "filter_host/HandleTable.h"
#include "host/FilterRecord.h"

namespace filter_host {

// A parameter that the suite can't take: an unknown token, a value of another type.
inline constexpr OSErr kParamErr = -50;
// A pinned value lay outside its limits and was moved to the nearer one.
inline constexpr OSErr kCoercedParamErr = 2;

// A descriptor's handle holds its text form. A token is the address of an open reader or writer;
// anything else is refused with kParamErr and counted.
class DescriptorSuite {
 public:
  explicit DescriptorSuite(HandleTable& handles) : mHandles(handles) {}

  PIWriteDescriptor OpenWrite();
  // Ends the writing and gives what was written as a new handle, which the caller owns.
  OSErr CloseWrite(PIWriteDescriptor token, Handle* outDescriptor);
  OSErr Put(PIWriteDescriptor token, DescriptorEntry entry);
  // Takes the bytes of `bytes`, which stays the caller's.
  OSErr PutHandle(PIWriteDescriptor token, DescriptorEntry entry, Handle bytes);

  // Null when the handle holds no descriptor. `keys` ends with 0 and may be null; a key that
  // getKeyProc meets is struck out in it by the code 'null'.
  PIReadDescriptor OpenRead(Handle descriptor, const DescriptorKeyID* keys);
  // The first error that a read met, else noErr.
  OSErr CloseRead(PIReadDescriptor token);
  bool GetKey(PIReadDescriptor token, DescriptorKeyID* key, DescriptorTypeID* type, int32_t* flags);
  // The entry that the last GetKey stood on when it has one of the types; else null, and the
  // reader keeps kParamErr as its error.
  const DescriptorEntry* Get(PIReadDescriptor token, std::initializer_list<DescriptorType> types);
  // A new handle with the bytes of such an entry, and its type code for an object.
  OSErr GetHandle(PIReadDescriptor token, std::initializer_list<DescriptorType> types,
                  Handle* outBytes, DescriptorTypeID* outCode = nullptr);

  // Readers and writers that were opened and not closed.
  std::size_t OpenCount() const { return mReaders.size() + mWriters.size(); }
  int MisuseCount() const { return mMisuseCount; }

 private:
  struct Reader {
    Descriptor entries;
    std::size_t next = 0;
    DescriptorKeyID* keys = nullptr;
    OSErr firstError = noErr;
  };
  Reader* FindReader(PIReadDescriptor token);

  HandleTable& mHandles;
  std::map<PIWriteDescriptor, std::unique_ptr<Descriptor>> mWriters;
  std::map<PIReadDescriptor, std::unique_ptr<Reader>> mReaders;
  int mMisuseCount = 0;
};

}  // namespace filter_host
