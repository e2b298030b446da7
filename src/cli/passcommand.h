#pragma once

#include "cli/checkcommand.h"

namespace lanternic::cli {

// Runs one check pass exactly as the app's launch pass, prints its outcome and returns the
// exit status. Needs a running QCoreApplication.
int runPass(const Invocation &invocation);

} // namespace lanternic::cli
