#pragma once

#include <cstdint>

// What the framework throws. An exception carries the place of the throw and either a text or an
// error code, and can show itself to the user.
class CP_BaseException {
 public:
  // Keeps the first 254 characters of `text`; a null `text` counts as empty. `file` is not copied
  // and must outlive the exception.
  CP_BaseException(const char* text, const char* file, int32_t line);
  // Leaves the text empty.
  CP_BaseException(int32_t error, const char* file, int32_t line);
  CP_BaseException(const CP_BaseException&) = default;
  CP_BaseException& operator=(const CP_BaseException&) = default;

  virtual ~CP_BaseException();
  virtual const char* GetText() const;
  // The platform's or the framework's error code; 0 when there is none.
  virtual int32_t GetPlatformError() const;
  // Sends a line to the debugger, shows a modal box (Cancel breaks into the debugger) and updates
  // the menus.
  virtual void Report() const;

 private:
  char fText[256];
  const char* fFile;
  int32_t fLine;
  int32_t fPlatformError;
};

class CP_RuntimeException : public CP_BaseException {
 public:
  using CP_BaseException::CP_BaseException;
  CP_RuntimeException(const CP_RuntimeException&) = default;
  CP_RuntimeException& operator=(const CP_RuntimeException&) = default;
  ~CP_RuntimeException() override;
};

// A required pointer was null.
class CP_MemoryException : public CP_RuntimeException {
 public:
  using CP_RuntimeException::CP_RuntimeException;
  CP_MemoryException(const CP_MemoryException&) = default;
  CP_MemoryException& operator=(const CP_MemoryException&) = default;
  ~CP_MemoryException() override;
};

// A platform call or a file operation failed; the code is in `GetPlatformError` and nowhere in the
// report.
class CP_PlfrmErrorException : public CP_RuntimeException {
 public:
  using CP_RuntimeException::CP_RuntimeException;
  CP_PlfrmErrorException(const CP_PlfrmErrorException&) = default;
  CP_PlfrmErrorException& operator=(const CP_PlfrmErrorException&) = default;
  ~CP_PlfrmErrorException() override;
  void Report() const override;
};

// Throws CP_MemoryException with the text "NULL Pointer" if `pointer` is null.
void CP_ThrowIfNull(const void* pointer, const char* file, int32_t line);

// Throws CP_PlfrmErrorException with the code `error` unless it is 0.
void CP_ThrowIfError(int32_t error, const char* file, int32_t line);
