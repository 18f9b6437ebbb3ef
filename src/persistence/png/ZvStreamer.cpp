#include "persistence/png/ZvStreamer.h"

ZvSmartPtr<ZvStreamingInfo> gDefaultStreamingInfo;

// Made on first use: registrars of other source files may come before this one's statics.
ZvStreamerList& GetStreamerList() {
  static ZvStreamerList list;
  return list;
}
