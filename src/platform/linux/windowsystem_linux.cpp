#include "platform/windowsystem.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QRegularExpression>
#include <xcb/xcb.h>

namespace lanternic::WindowSystem {

namespace {

bool isWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

// Whether some client owns the selection named for this display's screen ("_NET_WM_CM_S"
// and ":0.1" give "_NET_WM_CM_S1"): how X11 managers announce that they run.
bool screenSelectionOwned(const QByteArray &prefix)
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11)
        return false;
    static const QRegularExpression screen(QStringLiteral(R"(:\d+\.(\d+)$)"));
    const QRegularExpressionMatch match = screen.match(qEnvironmentVariable("DISPLAY"));
    const QByteArray name = prefix + (match.hasMatch() ? match.captured(1).toLatin1() : "0");
    xcb_connection_t *connection = x11->connection();
    xcb_intern_atom_reply_t *atom = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, name.size(), name.constData()), nullptr);
    if (!atom)
        return false;
    xcb_get_selection_owner_reply_t *owner = xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atom->atom), nullptr);
    const bool owned = owner && owner->owner != XCB_NONE;
    free(owner);
    free(atom);
    return owned;
}

} // namespace

bool compositing()
{
    // A Wayland compositor is one by definition.
    return isWayland() || screenSelectionOwned("_NET_WM_CM_S");
}

bool placesWindows()
{
    return !isWayland();
}

bool hasSystemTray()
{
    // Asked without QSystemTrayIcon, which remembers its first answer about the watcher for
    // the rest of the process: a tray that starts a moment after us would never be used.
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected() &&
        bus.interface()->isServiceRegistered(QStringLiteral("org.kde.StatusNotifierWatcher")))
        return true;
    return !isWayland() && screenSelectionOwned("_NET_SYSTEM_TRAY_S");
}

} // namespace lanternic::WindowSystem
