// A filter's library on Windows, and a call into it that survives what it throws.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "filter_host/PiplResource.h"
#include "host/FilterRecord.h"

namespace filter_host {

// The bytes of the first PIPL resource of a library, which is not run for that. Throws Error when
// the file is no library or has no such resource.
std::vector<uint8_t> ReadPiplResource(const std::string& path);

class FilterLibrary {
 public:
  // Loads the library and finds the entry point. Throws Error.
  FilterLibrary(const std::string& path, const std::string& entryPoint);
  ~FilterLibrary();
  FilterLibrary(const FilterLibrary&) = delete;
  FilterLibrary& operator=(const FilterLibrary&) = delete;

  PlugInEntryPoint Entry() const { return mEntry; }

 private:
  void* mModule;
  PlugInEntryPoint mEntry;
};

// Calls, and says what structured exception left the call, with code and address; empty for none.
// Handlers inside the filter are asked first, as always.
std::string CallGuardingStructuredExceptions(const std::function<void()>& call);

}  // namespace filter_host
