#include "host/PlugInMain.h"

#include <memory>

#include "host/HostGlobals.h"
#include "host/ZVHostPhotoshop.h"

namespace vm {

void RunSelector(int16_t selector, FilterRecord* filterRecord, int16_t* result) {
  gFilterRecord = filterRecord;
  const auto host = std::make_unique<ZVHostPhotoshop>(gModule, filterRecord, result);
  switch (selector) {
    case filterSelectorAbout:
      host->DoAbout();
      break;
    case filterSelectorParameters:
      host->DoParameters();
      break;
    case filterSelectorPrepare:
      host->DoPrepare();
      break;
    case filterSelectorStart:
      host->DoStart();
      break;
    case filterSelectorContinue:
      host->DoContinue();
      break;
    case filterSelectorFinish:
      host->DoFinish();
      break;
    default:
      host->DoBadSelector();
  }
}

int32_t NoteModule(void* module, uint32_t reason) {
  switch (reason) {
    case kModuleDetached:
      gModule = nullptr;
      return 0;
    case kModuleAttached:
      gModule = module;
      return 1;
    default:
      return 1;
  }
}

}  // namespace vm
