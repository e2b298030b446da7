#include "platform/windowsystem.h"

#include <QSystemTrayIcon>

namespace lanternic::WindowSystem {

// macOS and Windows always composite their windows.
bool compositing()
{
    return true;
}

bool placesWindows()
{
    return true;
}

bool hasSystemTray()
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace lanternic::WindowSystem
