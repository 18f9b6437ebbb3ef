#pragma once

#include <cstdint>

// Helpers for bytes and C strings. Misuse is reported in `CP_Utility` and then does nothing.
namespace CP_Utility {

// Moves `inBytesToCopy` bytes; the regions may overlap. Reports "srcPtr != NULL" at 53,
// "dstPtr != NULL" at 54, "inBytesToCopy >= 0" at 55.
void CopyBytes(const void* srcPtr, void* dstPtr, int32_t inBytesToCopy);

// Reports "srcPtr != NULL" at 79, "inNumBytes >= 0" at 80.
void FillBytes(void* srcPtr, int32_t inNumBytes, uint8_t value);

// The number of characters before the NUL; reports "inString != NULL" at 191 and yields 0 for null.
int32_t StringLength(const char* inString);

// Copies a C string into a field of `inMaxLength` bytes, cut to `inMaxLength` - 1 characters and
// terminated. Both `inString` and `inDestString` must give access to `inMaxLength` bytes, however
// short the text is: the whole field is copied. Reports "inString != NULL" at 214,
// "inDestString != NULL" at 215.
void CopyString(const char* inString, char* inDestString, int16_t inMaxLength);

// The decimal value of the text up to the first character that doesn't belong to a number; 0 for
// null, and the nearest representable value for one out of range.
int32_t StringToInteger(const char* string);

}  // namespace CP_Utility
