#pragma once

namespace lanternic {

// Tells assistive technology what the panel and the settings are made of: the rows are a
// list of list items whose default action opens their status page, the interval segments
// are radio buttons, and the panel's dividers are separators. Installed once, before any
// window is shown; calling it again does nothing.
void installAccessibility();

} // namespace lanternic
