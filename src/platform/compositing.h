#pragma once

namespace lanternic::Compositing {

// Whether a compositing manager blends translucent windows onto the desktop right now, so
// that a window can have rounded corners and a shadow of its own.
bool active();

} // namespace lanternic::Compositing
