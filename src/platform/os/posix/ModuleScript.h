#pragma once

#include <string>
#include <utility>

namespace os::posix {

// While one exists, every module claims to come from the file named here. The youngest script is
// the one in force.
class ModuleScript {
 public:
  // `fileName` is a path of the framework's form, with `\` between its parts.
  explicit ModuleScript(std::string fileName);
  ModuleScript(const ModuleScript&) = delete;
  ModuleScript& operator=(const ModuleScript&) = delete;
  ~ModuleScript();

  static const ModuleScript* Current();

  const std::string fileName;

 private:
  const ModuleScript* mPrevious;
};

}  // namespace os::posix
