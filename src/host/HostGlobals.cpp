#include "host/HostGlobals.h"

void* gModule = nullptr;
FilterRecord* gFilterRecord = nullptr;
ZVHost* gHost = nullptr;
ZvString gEffectName;
ZvSmartPtr<ZvMemoryStream> gScriptState;
const ZvString gFlagFileName(".\\Flg.h");
const ZvString gDoneFileName(".\\Flg2.h");
const ZvString gImageFileName(".\\Img.h");
const ZvString gAppFileName(".\\Vm.exe");
