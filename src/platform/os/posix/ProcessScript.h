#pragma once

#include <functional>
#include <string>

namespace os::posix {

// While one exists, its function stands in for starting a process: it gets the program's path and
// the directory as they were given, and says whether the process "started". The youngest script is
// the one in force.
class ProcessScript {
 public:
  using Starter = std::function<bool(const std::string& programPath, const std::string& directory)>;

  explicit ProcessScript(Starter inStarter);
  ProcessScript(const ProcessScript&) = delete;
  ProcessScript& operator=(const ProcessScript&) = delete;
  ~ProcessScript();

  static const ProcessScript* Current();

  const Starter starter;

 private:
  const ProcessScript* mPrevious;
};

}  // namespace os::posix
