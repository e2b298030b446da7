#pragma once

#include "cli/checkcommand.h"

#include <QByteArray>

namespace lanternic {
class LanternicStore;
}

namespace lanternic::cli {

// The outcome of a pass in the form the command line asked for, ending in a line feed.
QByteArray report(const LanternicStore &store, const Invocation &invocation);

} // namespace lanternic::cli
