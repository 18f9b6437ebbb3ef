#include "platform/CP_File.h"

#include "foundation/CP_DebugAssert.h"
#include "foundation/CP_Exceptions.h"

namespace {

constexpr char kFile[] = "CP_File";

// Stands for every failure of the platform but those of the position calls.
constexpr int32_t kIoError = -36;

void ThrowUnless(bool done, int32_t line) {
  if (!done)
    CP_ThrowIfError(kIoError, kFile, line);
}

// What `GetPosition` and `SetPosition` throw: the platform's reason, none if -1 is the true
// position.
void ThrowIfBadPosition(uint32_t position, int32_t line) {
  if (position == os::kBadPosition)
    CP_ThrowIfError(os::LastError(), kFile, line);
}

ZvString FullPathOf(const CP_FileSpec& spec) {
  ZvString path;
  spec.GetFullPath(path);
  return path;
}

}  // namespace

CP_File::CP_File(const CP_FileSpec& spec) : fFileSpec(spec) {}

void CP_File::CreateAs(const CP_FileSpec& spec, uint32_t access, uint32_t creator, uint32_t type,
                       bool replace) {
  fFileSpec = spec;
  Create(access, creator, type, replace);
}

void CP_File::Create(uint32_t access, uint32_t, uint32_t, bool replace) {
  const os::FileHandle file =
      os::OpenFile(FullPathOf(fFileSpec).c_str(), access, os::kShareWrite,
                   replace ? os::Creation::kAlways : os::Creation::kNewOnly);
  ThrowUnless(file != os::kNoFile, 145);
  fFileRef = file;
  Close();
}

void CP_File::Delete() {
  os::RemoveFile(FullPathOf(fFileSpec).c_str());
}

void CP_File::Open(uint32_t access) {
  const os::FileHandle file = os::OpenFile(FullPathOf(fFileSpec).c_str(), access, os::kShareRead,
                                           os::Creation::kExistingOnly);
  ThrowUnless(file != os::kNoFile, 238);
  fFileRef = file;
}

void CP_File::Close() {
  CP_Check(IsOpen(), kFile, 256, "IsOpen()");
  const bool result = os::CloseFile(fFileRef);
  CP_Check(result, kFile, 268, "result == true");
  fFileRef = kCP_BAD_FILE_REF_NUM;
}

uint32_t CP_File::SetPosition(int16_t inMode, int32_t inOffset) {
  CP_Check(fFileRef != kCP_BAD_FILE_REF_NUM, kFile, 288, "fFileRef != kCP_BAD_FILE_REF_NUM");
  CP_Check(IsOpen(), kFile, 289, "IsOpen()");
  CP_Check(inMode == CP_FILE_SEEK__FROM_BEGIN || inMode == CP_FILE_SEEK__FROM_END ||
               inMode == CP_FILE_SEEK__FROM_CURRENT,
           kFile, 290,
           "(inMode == CP_FILE_SEEK__FROM_BEGIN) || (inMode == CP_FILE_SEEK__FROM_END) || "
           "(inMode == CP_FILE_SEEK__FROM_CURRENT)");
  const uint32_t position = os::SeekFile(fFileRef, inOffset, inMode);
  ThrowIfBadPosition(position, 301);
  return position;
}

uint32_t CP_File::GetPosition() {
  CP_Check(fFileRef != kCP_BAD_FILE_REF_NUM, kFile, 316, "fFileRef != kCP_BAD_FILE_REF_NUM");
  CP_Check(IsOpen(), kFile, 317, "IsOpen()");
  const uint32_t position = os::SeekFile(fFileRef, 0, CP_FILE_SEEK__FROM_CURRENT);
  ThrowIfBadPosition(position, 327);
  return position;
}

void CP_File::Read(void* inBuffer, uint32_t* inBytes) {
  CP_Check(inBuffer != nullptr, kFile, 346, "inBuffer != NULL");
  CP_Check(inBytes != nullptr, kFile, 347, "inBytes != NULL");
  CP_Check(IsOpen(), kFile, 348, "IsOpen()");
  ThrowUnless(inBytes != nullptr && os::ReadFile(fFileRef, inBuffer, *inBytes, *inBytes), 373);
}

void CP_File::Write(const void* inBuffer, const uint32_t* inBytes) {
  CP_Check(inBuffer != nullptr, kFile, 386, "inBuffer != NULL");
  CP_Check(inBytes != nullptr, kFile, 387, "inBytes != NULL");
  CP_Check(IsOpen(), kFile, 388, "IsOpen()");
  ThrowUnless(inBytes != nullptr && os::WriteFile(fFileRef, inBuffer, *inBytes), 405);
}

void CP_File::WriteTruncate(const void* inBuffer, const uint32_t* inBytes) {
  CP_Check(inBuffer != nullptr, kFile, 419, "inBuffer != NULL");
  CP_Check(inBytes != nullptr, kFile, 420, "inBytes != NULL");
  CP_Check(IsOpen(), kFile, 421, "IsOpen()");
  ThrowUnless(inBytes != nullptr && os::WriteFile(fFileRef, inBuffer, *inBytes), 441);
  ThrowUnless(os::EndFileHere(fFileRef), 446);
}

uint32_t CP_File::GetLength() {
  CP_Check(IsOpen(), kFile, 463, "IsOpen()");
  CP_Check(os::IsDiskFile(fFileRef), kFile, 473, "::GetFileType(fFileRef) == FILE_TYPE_DISK");
  const uint32_t length = os::FileSize(fFileRef);
  ThrowUnless(length != os::kBadSize, 478);
  return length;
}
