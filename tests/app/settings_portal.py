"""A desktop's settings on the session bus, as far as an application's looks go. Each line of the input sets one:
group, key, and the value in GVariant's text form. Each is answered by an empty line."""

import sys

from gi.repository import Gio, GLib

interface = Gio.DBusNodeInfo.new_for_xml("""<node><interface name="org.freedesktop.portal.Settings">
<method name="ReadAll"><arg direction="in" type="as"/><arg direction="out" type="a{sa{sv}}"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>""").interfaces[0]
path = "/org/freedesktop/portal/desktop"
settings = {}
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
loop = GLib.MainLoop()


def answer(_bus, _sender, _path, _interface, _method, _arguments, invocation):
    invocation.return_value(GLib.Variant("(a{sa{sv}})", (settings,)))


def change(channel, _condition):
    line = channel.readline()
    if not line:
        loop.quit()
        return False
    group, key, text = line.split(maxsplit=2)
    value = GLib.Variant.parse(None, text, None, None)
    settings.setdefault(group, {})[key] = value
    bus.emit_signal(None, path, interface.name, "SettingChanged", GLib.Variant("(ssv)", (group, key, value)))
    print(flush=True)
    return True


bus.register_object(path, interface, answer)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", 0, lambda *_: print(flush=True))
GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, change)
loop.run()
