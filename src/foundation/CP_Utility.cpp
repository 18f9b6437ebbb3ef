#include "foundation/CP_Utility.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "foundation/CP_DebugAssert.h"

namespace CP_Utility {
namespace {

constexpr char kFile[] = "CP_Utility";

}  // namespace

void CopyBytes(const void* srcPtr, void* dstPtr, int32_t inBytesToCopy) {
  CP_Check(srcPtr != nullptr, kFile, 53, "srcPtr != NULL");
  CP_Check(dstPtr != nullptr, kFile, 54, "dstPtr != NULL");
  CP_Check(inBytesToCopy >= 0, kFile, 55, "inBytesToCopy >= 0");
  if (srcPtr != nullptr && dstPtr != nullptr && inBytesToCopy > 0) {
    std::memmove(dstPtr, srcPtr, static_cast<size_t>(inBytesToCopy));
  }
}

void FillBytes(void* srcPtr, int32_t inNumBytes, uint8_t value) {
  CP_Check(srcPtr != nullptr, kFile, 79, "srcPtr != NULL");
  CP_Check(inNumBytes >= 0, kFile, 80, "inNumBytes >= 0");
  if (srcPtr != nullptr && inNumBytes > 0) {
    std::memset(srcPtr, value, static_cast<size_t>(inNumBytes));
  }
}

int32_t StringLength(const char* inString) {
  if (!CP_Check(inString != nullptr, kFile, 191, "inString != NULL"))
    return 0;
  return static_cast<int32_t>(std::strlen(inString));
}

void CopyString(const char* inString, char* inDestString, int16_t inMaxLength) {
  CP_Check(inString != nullptr, kFile, 214, "inString != NULL");
  CP_Check(inDestString != nullptr, kFile, 215, "inDestString != NULL");
  const int32_t length = std::min(StringLength(inString), inMaxLength - 1);
  // REQUIRED: the count is the field's, not the text's. Callers hand over fields of equal size and
  // expect the bytes behind the text to come along.
  CopyBytes(inString, inDestString, inMaxLength);
  if (inDestString != nullptr && length >= 0)
    inDestString[length] = '\0';
}

int32_t StringToInteger(const char* string) {
  if (string == nullptr)
    return 0;
  const long long value = std::strtoll(string, nullptr, 10);
  return static_cast<int32_t>(std::clamp<long long>(value, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

}  // namespace CP_Utility
