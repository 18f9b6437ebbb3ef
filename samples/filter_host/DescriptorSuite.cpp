#include "filter_host/DescriptorSuite.h"

#include <algorithm>

#include "filter_host/Picture.h"
#include "foundation/FourCharCode.h"

namespace filter_host {

namespace {
constexpr DescriptorKeyID kFoundMark = FourCC("null");
}

PIWriteDescriptor DescriptorSuite::OpenWrite() {
  auto writer = std::make_unique<Descriptor>();
  const auto token = reinterpret_cast<PIWriteDescriptor>(writer.get());
  mWriters.emplace(token, std::move(writer));
  return token;
}

OSErr DescriptorSuite::CloseWrite(PIWriteDescriptor token, Handle* outDescriptor) {
  const auto found = mWriters.find(token);
  if (found == mWriters.end() || outDescriptor == nullptr) {
    ++mMisuseCount;
    return kParamErr;
  }
  *outDescriptor = mHandles.New(FormatDescriptor(*found->second));
  mWriters.erase(found);
  return *outDescriptor == nullptr ? memFullErr : noErr;
}

OSErr DescriptorSuite::Put(PIWriteDescriptor token, DescriptorEntry entry) {
  const auto found = mWriters.find(token);
  if (found == mWriters.end()) {
    ++mMisuseCount;
    return kParamErr;
  }
  found->second->push_back(std::move(entry));
  return noErr;
}

OSErr DescriptorSuite::PutHandle(PIWriteDescriptor token, DescriptorEntry entry, Handle bytes) {
  if (!mHandles.Contents(bytes, &entry.bytes)) {
    ++mMisuseCount;
    return kParamErr;
  }
  return Put(token, std::move(entry));
}

PIReadDescriptor DescriptorSuite::OpenRead(Handle descriptor, const DescriptorKeyID* keys) {
  std::string text;
  if (!mHandles.Contents(descriptor, &text)) {
    ++mMisuseCount;
    return nullptr;
  }
  auto reader = std::make_unique<Reader>();
  try {
    reader->entries = ParseDescriptor(text, "descriptor");
  } catch (const Error&) {
    return nullptr;
  }
  // The interface says `const` and yet has the host mark what it found.
  reader->keys = const_cast<DescriptorKeyID*>(keys);
  const auto token = reinterpret_cast<PIReadDescriptor>(reader.get());
  mReaders.emplace(token, std::move(reader));
  return token;
}

OSErr DescriptorSuite::CloseRead(PIReadDescriptor token) {
  const Reader* reader = FindReader(token);
  if (reader == nullptr) {
    return kParamErr;
  }
  const OSErr error = reader->firstError;
  mReaders.erase(token);
  return error;
}

bool DescriptorSuite::GetKey(PIReadDescriptor token, DescriptorKeyID* key, DescriptorTypeID* type,
                             int32_t* flags) {
  Reader* reader = FindReader(token);
  if (reader == nullptr || reader->next >= reader->entries.size()) {
    return false;
  }
  const DescriptorEntry& entry = reader->entries[reader->next++];
  if (key != nullptr) {
    *key = entry.key;
  }
  if (type != nullptr) {
    *type = PublishedTypeCode(entry.type);
  }
  if (flags != nullptr) {
    *flags = 0;
  }
  for (DescriptorKeyID* wanted = reader->keys; wanted != nullptr && *wanted != 0; ++wanted) {
    if (*wanted == entry.key) {
      *wanted = kFoundMark;
    }
  }
  return true;
}

const DescriptorEntry* DescriptorSuite::Get(PIReadDescriptor token,
                                            std::initializer_list<DescriptorType> types) {
  Reader* reader = FindReader(token);
  if (reader == nullptr) {
    return nullptr;
  }
  if (reader->next > 0) {
    const DescriptorEntry& entry = reader->entries[reader->next - 1];
    if (std::find(types.begin(), types.end(), entry.type) != types.end()) {
      return &entry;
    }
  }
  if (reader->firstError == noErr) {
    reader->firstError = kParamErr;
  }
  return nullptr;
}

OSErr DescriptorSuite::GetHandle(PIReadDescriptor token,
                                 std::initializer_list<DescriptorType> types, Handle* outBytes,
                                 DescriptorTypeID* outCode) {
  const DescriptorEntry* entry = Get(token, types);
  if (entry == nullptr || outBytes == nullptr) {
    return kParamErr;
  }
  if (outCode != nullptr) {
    *outCode = entry->code;
  }
  *outBytes = mHandles.New(entry->bytes);
  return *outBytes == nullptr ? memFullErr : noErr;
}

DescriptorSuite::Reader* DescriptorSuite::FindReader(PIReadDescriptor token) {
  const auto found = mReaders.find(token);
  if (found == mReaders.end()) {
    ++mMisuseCount;
    return nullptr;
  }
  return found->second.get();
}

}  // namespace filter_host
