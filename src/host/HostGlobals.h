// What outlives a selector call. The host object itself keeps nothing between selectors; these do
// as long as the library stays loaded. One thread, the host's, uses them.
#pragma once

#include "foundation/ZvSmartPtr.h"
#include "foundation/ZvString.h"
#include "persistence/ZvMemoryStream.h"

struct FilterRecord;
class ZVHost;

// This library's module; set when the library is attached, null before and behind.
extern void* gModule;

// The record of the latest selector. Not owned. For the About selector it is a record of another
// type.
extern FilterRecord* gFilterRecord;

// The single live host object, null between selectors.
extern ZVHost* gHost;

// Name of the last applied effect, empty at load.
extern ZvString gEffectName;

// The parameter block that the effects application returned last, null at load. Finish records it.
extern ZvSmartPtr<ZvMemoryStream> gScriptState;

// The exchange files and the effects application, all beside the plug-in.
extern const ZvString gFlagFileName;   // tells the application that a request waits
extern const ZvString gDoneFileName;   // tells the plug-in that the reply is complete
extern const ZvString gImageFileName;  // the request, then the reply
extern const ZvString gAppFileName;
