#include "platform/compositing.h"

namespace lanternic::Compositing {

// macOS and Windows always composite their windows.
bool active()
{
    return true;
}

} // namespace lanternic::Compositing
