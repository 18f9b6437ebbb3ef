#pragma once

#include "foundation/ReportHooks.h"

namespace vm {

// The hooks that were in force when the program's `main` began.
const ReportHooks& HooksAtStart();

// From here on a report that no ReportRecorder catches fails the running test, and no box is shown.
void FailOnUnexpectedReports();

}  // namespace vm
