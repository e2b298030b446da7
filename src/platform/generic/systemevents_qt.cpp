// Reachability only: without a sleep signal of ours, the poll loop's timer catches up after
// sleep by itself.

#include "platform/reachability.h"

namespace lanternic {

std::unique_ptr<SystemEvents> SystemEvents::forThisComputer()
{
    return std::make_unique<ReachabilityEvents>();
}

} // namespace lanternic
