#include "host/PlugInMain.h"

void PlugInMain(int16_t selector, FilterRecord* filterRecord, intptr_t* /*data*/, int16_t* result) {
  vm::RunSelector(selector, filterRecord, result);
}
