"""A network manager with dial-up links, as a template for python-dbusmock."""

import dbus

BUS_NAME = "org.freedesktop.NetworkManager"
MAIN_OBJ = "/org/freedesktop/NetworkManager"
MAIN_IFACE = BUS_NAME
SYSTEM_BUS = True


def load(mock, parameters):
    """The parameter "links" lists the active connections as pairs of name and type."""
    paths = []
    for number, (name, kind) in enumerate(parameters["links"]):
        path = f"{MAIN_OBJ}/ActiveConnection/{number}"
        mock.AddObject(path, f"{MAIN_IFACE}.Connection.Active", {"Id": name, "Type": kind}, [])
        paths.append(path)
    active = dbus.Array([dbus.ObjectPath(path) for path in paths], signature="o")
    mock.AddProperty(MAIN_IFACE, "ActiveConnections", active)
    mock.AddMethod(MAIN_IFACE, "DeactivateConnection", "o", "", "")
