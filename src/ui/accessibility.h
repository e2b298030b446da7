#pragma once

class QWidget;

namespace lanternic {

// Tells assistive technology what the panel and the settings are made of: the rows are a
// list of list items whose default action opens their status page, the interval segments
// are radio buttons, the panel's dividers are separators, and decorative images are left out.
// Installed once, before any window is shown; calling it again does nothing.
void installAccessibility();

// Marks a widget as decoration, with no accessible presence of its own.
void markDecorative(QWidget *widget);

} // namespace lanternic
