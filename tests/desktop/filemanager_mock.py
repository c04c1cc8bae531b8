"""Stands in for the desktop's file manager.

usage: filemanager_mock.py FILE

Takes the name org.freedesktop.FileManager1 on the session bus, and adds a line to FILE for each
call: the method, then the URIs. Prints "ready" when it can be called.
"""

import sys

from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.freedesktop.FileManager1">
<method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
</interface></node>"""


def on_call(_bus, _sender, _path, _interface, method, arguments, invocation):
    with open(sys.argv[1], "a", encoding="utf-8") as calls:
        calls.write(" ".join([method, *arguments.unpack()[0]]) + "\n")
    invocation.return_value(None)


def on_bus(bus, _name):
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object("/org/freedesktop/FileManager1", interface, on_call, None, None)


Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.FileManager1", Gio.BusNameOwnerFlags.NONE,
                 on_bus, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
