"""Plays registrar and host of StatusNotifierItems on the session bus.

Commands come on standard input, words with tabs between them; the answer ends with "done".
"""

import sys
import threading

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

REGISTRAR = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


PROPERTY = f"""<interface name="{REGISTRAR}">
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/></interface></node>"""


class Registrar(dbus.service.Object):
    def __init__(self, bus):
        self.items = []
        self.host = True
        super().__init__(bus, "/StatusNotifierWatcher")
        bus.add_signal_receiver(self.owner_changed, "NameOwnerChanged", "org.freedesktop.DBus")

    def owner_changed(self, name, _, new):
        if not new:
            self.items = [item for item in self.items if item != name]

    @dbus.service.method(REGISTRAR, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        self.items.append(service if not service.startswith("/") else sender)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, _, name):
        return {"IsStatusNotifierHostRegistered": self.host, "ProtocolVersion": 0,
                "RegisteredStatusNotifierItems": dbus.Array(self.items, "s")}[name]

    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s",
                         path_keyword="path", connection_keyword="connection")
    def Introspect(self, path, connection):
        """The library leaves properties out."""
        known = super().Introspect(path, connection)
        return known.replace(f'<interface name="{REGISTRAR}">', PROPERTY.removesuffix(
            "</interface></node>"))

    @dbus.service.signal(REGISTRAR)
    def StatusNotifierHostRegistered(self):
        pass

    @dbus.service.signal(REGISTRAR)
    def StatusNotifierHostUnregistered(self):
        pass


class Commands:
    def __init__(self, bus, registrar):
        self.bus = bus
        self.registrar = registrar

    def run(self, words):
        try:
            lines = getattr(self, words[0])(*words[1:])
        except (dbus.DBusException, IndexError, StopIteration) as error:
            lines = [f"error: {error!r}".replace("\n", " ")]
        print(*lines, "done", sep="\n", flush=True)

    def item(self):
        return self.bus.get_object(self.registrar.items[-1], "/StatusNotifierItem")

    def menu_object(self):
        path = self.item().Get(ITEM, "Menu", dbus_interface=dbus.PROPERTIES_IFACE)
        return self.bus.get_object(self.registrar.items[-1], path)

    def rows(self):
        self.menu_object().AboutToShow(0, dbus_interface=MENU)
        _, layout = self.menu_object().GetLayout(0, -1, [], dbus_interface=MENU)
        return [(row[0], row[1]) for row in layout[2]]

    def icons(self):
        return [str(self.bus.get_object(item, "/StatusNotifierItem").Get(
            ITEM, "Title", dbus_interface=dbus.PROPERTIES_IFACE)) for item in self.registrar.items]

    def icon_sizes(self):
        pixmaps = self.item().Get(ITEM, "IconPixmap", dbus_interface=dbus.PROPERTIES_IFACE)
        return [str(width) for width, _, _ in pixmaps]

    def press(self, method):
        self.item().get_dbus_method(method, ITEM)(5, 5)
        return []

    def menu(self):
        """Each row that is no separator: its text, and its tick."""
        return [f"{properties['label']} {int(properties.get('toggle-state', 0))}"
                for _, properties in self.rows() if properties.get("type") != "separator"]

    def choose(self, label):
        number = next(row for row, properties in self.rows() if properties.get("label") == label)
        self.menu_object().Event(number, "clicked", "", dbus.UInt32(0), dbus_interface=MENU)
        return []

    def show_icons(self, shown):
        self.registrar.host = shown == "yes"
        if self.registrar.host:
            self.registrar.StatusNotifierHostRegistered()
        else:
            self.registrar.StatusNotifierHostUnregistered()
        return []


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    registrar = Registrar(bus)
    name = dbus.service.BusName(REGISTRAR, bus)
    commands = Commands(bus, registrar)
    loop = GLib.MainLoop()

    def read():
        for line in sys.stdin:
            GLib.idle_add(commands.run, line.rstrip("\n").split("\t"))
        GLib.idle_add(loop.quit)

    threading.Thread(target=read, daemon=True).start()
    print("ready", flush=True)
    loop.run()
    del name


if __name__ == "__main__":
    main()
