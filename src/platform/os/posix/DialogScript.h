#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/os/Handles.h"

namespace os::posix {

// While one exists, dialogs run without a display and without waiting: time passes from one timer
// message to the next. The youngest script is the one in force.
//
// A dialog gets the messages that the system sends at its begin (font, init, paint), then those of
// `messages`, then timer messages; in the end it is cancelled as by the button, so no script hangs.
// Without a script a dialog waits for its timer and has no button.
class DialogScript {
 public:
  struct Message {
    uint32_t number;
    uintptr_t first = 0;
    intptr_t second = 0;

    bool operator==(const Message&) const = default;
  };

  // A dialog that was run, and how it went.
  struct Dialog {
    struct Delivered {
      Message message;
      intptr_t answer;
    };
    struct Timer {
      uintptr_t id;
      uint32_t milliseconds;
    };

    void* module;
    std::string templateName;
    WindowHandle owner;
    intptr_t parameter;
    std::vector<Delivered> delivered;
    std::vector<Timer> timers;
    std::optional<intptr_t> result;
  };

  DialogScript();
  DialogScript(const DialogScript&) = delete;
  DialogScript& operator=(const DialogScript&) = delete;
  ~DialogScript();

  static DialogScript* Current();

  // Whether dialogs can be made at all.
  bool canMakeDialogs = true;
  // Delivered behind the first messages, each to the dialog that runs then.
  std::deque<Message> messages;
  // Timer messages that a dialog gets before it is cancelled.
  int32_t timersBeforeCancel = 20;
  // Called before each message of a dialog; this is where a test lets the world go on.
  std::function<void(const Message&)> beforeMessage;

  std::vector<Dialog> dialogs;

 private:
  DialogScript* mPrevious;
};

}  // namespace os::posix
