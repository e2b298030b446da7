#pragma once

namespace lanternic::WindowSystem {

// Whether a compositing manager blends translucent windows onto the desktop right now, so
// that a window can have rounded corners and a shadow of its own.
bool compositing();

// Whether a window may choose where it goes on the screen; Wayland leaves that to the
// compositor.
bool placesWindows();

// Whether there is a system tray to put an icon in: a StatusNotifierItem watcher on the
// session bus, or an XEmbed tray on the X display.
bool hasSystemTray();

} // namespace lanternic::WindowSystem
