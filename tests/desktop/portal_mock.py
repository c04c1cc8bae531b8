"""Stands in for the desktop's settings portal.

usage: portal_mock.py SCHEME CONTRAST

Takes the name org.freedesktop.portal.Desktop on the session bus. SCHEME 1 is dark, CONTRAST 1 is
more of it. Each line "SCHEME CONTRAST" on standard input changes them, and the change is signalled.
Prints "ready" when it can be called.
"""

import sys

from gi.repository import Gio, GLib

PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
SPACE = "org.freedesktop.appearance"
KEYS = ("color-scheme", "contrast")
INTERFACE = f"""<node><interface name="{SETTINGS}">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""

values = dict(zip(KEYS, map(int, sys.argv[1:])))
buses = []


def on_call(_bus, _sender, _path, _interface, _method, arguments, invocation):
    space, key = arguments.unpack()
    if space == SPACE and key in values:
        # The real one wraps its answer twice, too.
        value = GLib.Variant("v", GLib.Variant("u", values[key]))
        invocation.return_value(GLib.Variant("(v)", (value,)))
    else:
        invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "No such setting")


def on_bus(bus, _name):
    buses.append(bus)
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object(PATH, interface, on_call, None, None)


def on_line(channel, _condition):
    line = channel.readline()
    for key, value in zip(KEYS, map(int, line.split())):
        if values[key] != value:
            values[key] = value
            signal = GLib.Variant("(ssv)", (SPACE, key, GLib.Variant("u", value)))
            buses[0].emit_signal(None, PATH, SETTINGS, "SettingChanged", signal)
    return bool(line)


Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.portal.Desktop",
                 Gio.BusNameOwnerFlags.NONE, on_bus, lambda *_: print("ready", flush=True), None)
GLib.io_add_watch(sys.stdin, GLib.IO_IN, on_line)
GLib.MainLoop().run()
