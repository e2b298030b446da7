#!/usr/bin/python3
"""A minimal StatusNotifierItem watcher and host on the session bus, for the end-to-end test.

It owns org.kde.StatusNotifierWatcher, says a host is registered, and prints one JSON line
per event on stdout: the item's registration, then its properties whenever the test asks
(a line "read" on stdin), or the reply to "activate X Y" on stdin.
"""
import json
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"


def emit(**event):
    print(json.dumps(event), flush=True)


class Watcher(dbus.service.Object):
    def __init__(self, bus):
        self.bus = bus
        self.items = []
        super().__init__(dbus.service.BusName(WATCHER, bus), "/StatusNotifierWatcher")

    @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        # An item names its bus name, or only its object path on the caller's connection.
        name, path = (sender, service) if service.startswith("/") else (service, "/StatusNotifierItem")
        self.items.append((name, path))
        self.StatusNotifierItemRegistered(name + path)
        emit(event="registered", service=name, path=path)

    @dbus.service.signal(WATCHER, signature="s")
    def StatusNotifierItemRegistered(self, item):
        pass

    # Qt reads the properties through an interface built from introspection, so they have to
    # be declared there too.
    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s")
    def Introspect(self):
        return f"""<node><interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.GetAll(interface)[name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {
            "RegisteredStatusNotifierItems": dbus.Array(
                [n + p for n, p in self.items], signature="s"),
            "IsStatusNotifierHostRegistered": dbus.Boolean(True),
            "ProtocolVersion": dbus.Int32(0),
        }


def pixmaps(value):
    """The largest pixmap as width, height and its colour counts by health."""
    if not value:
        return None
    width, height, data = max(value, key=lambda p: p[0] * p[1])
    data = bytes(data)
    counts = {"green": 0, "amber": 0, "red": 0, "other": 0}
    for i in range(0, len(data), 4):
        a, r, g, b = data[i], data[i + 1], data[i + 2], data[i + 3]
        if a < 128:
            continue
        if g > 140 and r < 100:
            counts["green"] += 1
        elif r > 200 and 100 < g < 180 and b < 60:
            counts["amber"] += 1
        elif r > 190 and g < 90:
            counts["red"] += 1
        else:
            counts["other"] += 1
    return {"width": int(width), "height": int(height), "colours": counts}


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    watcher = Watcher(bus)
    emit(event="ready")

    def item():
        name, path = watcher.items[-1]
        return bus.get_object(name, path)

    def command(source, _condition):
        line = source.readline()
        if not line:
            GLib.MainLoop().quit()
            sys.exit(0)
        words = line.split()
        try:
            if words[0] == "read":
                props = item().GetAll(ITEM, dbus_interface=dbus.PROPERTIES_IFACE)
                tip = props.get("ToolTip")
                emit(event="properties", title=str(props.get("Title", "")),
                     status=str(props.get("Status", "")),
                     tooltip=[str(tip[2]), str(tip[3])] if tip else None,
                     icon=pixmaps(props.get("IconPixmap")))
            elif words[0] in ("activate", "secondary"):
                method = "Activate" if words[0] == "activate" else "SecondaryActivate"
                item().get_dbus_method(method, dbus_interface=ITEM)(
                    dbus.Int32(int(words[1])), dbus.Int32(int(words[2])))
                emit(event="activated")
        except dbus.DBusException as error:
            emit(event="error", message=str(error))
        return True

    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, command)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
