#include "platform/compositing.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <xcb/xcb.h>

namespace lanternic::Compositing {

namespace {

// The screen number of DISPLAY (":0.1" is screen 1), which names the manager's selection.
QByteArray selectionName()
{
    static const QRegularExpression screen(QStringLiteral(R"(:\d+\.(\d+)$)"));
    const QRegularExpressionMatch match = screen.match(qEnvironmentVariable("DISPLAY"));
    return "_NET_WM_CM_S" + (match.hasMatch() ? match.captured(1).toLatin1() : "0");
}

} // namespace

bool active()
{
    // A Wayland compositor is one by definition.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return true;
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return false;
    // A compositing manager owns the selection _NET_WM_CM_Sn while it runs.
    xcb_connection_t *connection = x11->connection();
    const QByteArray name = selectionName();
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

} // namespace lanternic::Compositing
