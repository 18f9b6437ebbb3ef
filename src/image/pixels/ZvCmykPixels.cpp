#include "foundation/CP_DebugAssert.h"
#include "image/pixels/PxCmyk.h"

namespace vm {

void ReportCmykMisuse(int16_t line) {
  CP_DebugAssert("ZvCmykPixels", line, "0");
}

}  // namespace vm
