#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/ExchangeBytes.h"
#include "host/PlugInMain.h"
#include "host/TestPlugIn.h"
#include "platform/os/posix/DialogScript.h"
#include "platform/os/posix/ModuleScript.h"
#include "platform/os/posix/ProcessScript.h"
#include "support/TempDirectory.h"

namespace vm {

// A world for one filter run: the plug-in lies in a directory of its own, the effects application
// is a function, and the wait dialog runs without a display.
class ScriptedRun {
 public:
  ScriptedRun()
      : mModule(directory.Path("VM_PlugIn.8bf")),
        mProcess([this](const auto& program, const auto& where) {
          starts.push_back({program, where});
          return application ? application() : true;
        }) {}

  // Serves one selector as a host would call it.
  void Call(FakeHost& host, int16_t selector) {
    PlugInMain(selector, &host.Record(), nullptr, &host.result);
  }
  void Start(FakeHost& host) { Call(host, filterSelectorStart); }

  // Leaves these bytes as the reply and then says that it is complete.
  void Reply(const std::string& bytes) {
    directory.Write("Img.h", bytes);
    directory.Write("Flg2.h", "");
  }
  // The application that answers at once.
  void AnswerWith(const Exchange& reply) {
    application = [this, bytes = reply.Bytes()] {
      Reply(bytes);
      return true;
    };
  }

  TempDirectory directory;
  // Runs when the application is started; false is a failed start. Without one it starts and stays
  // silent.
  std::function<bool()> application;
  struct StartedProcess {
    std::string program;
    std::string directory;
  };
  std::vector<StartedProcess> starts;
  os::posix::DialogScript dialogs;

 private:
  FreshGlobals mFresh;
  os::posix::ModuleScript mModule;
  os::posix::ProcessScript mProcess;
};

}  // namespace vm
