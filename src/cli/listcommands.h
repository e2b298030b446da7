#pragma once

#include "cli/checkcommand.h"

namespace lanternic::cli {

// Prints the catalogue's matches, one a line or as a JSON array; 0 when something matched.
int runCatalog(const Invocation &invocation);
// Prints what each line of the sources became; 3 when no line makes a source.
int runSources(const Invocation &invocation);
// Prints each source's uptime and troubles over the last days, from the health log.
int runHistory(const Invocation &invocation);

} // namespace lanternic::cli
