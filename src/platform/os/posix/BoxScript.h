#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace os::posix {

// While one exists, boxes and debugger lines are recorded and not shown, and a break into the
// debugger is counted and not made. The youngest script is the one in force.
class BoxScript {
 public:
  struct Box {
    std::string text;
    std::string title;
    uint32_t style;
  };

  BoxScript();
  BoxScript(const BoxScript&) = delete;
  BoxScript& operator=(const BoxScript&) = delete;
  ~BoxScript();

  static BoxScript* Current();

  // Answers for the boxes to come; when none is left, a box is answered with OK (1).
  std::deque<int32_t> answers;
  std::vector<Box> boxes;
  std::vector<std::string> debuggerLines;
  int32_t breaks = 0;

 private:
  BoxScript* mPrevious;
};

}  // namespace os::posix
