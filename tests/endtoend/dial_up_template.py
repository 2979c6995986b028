"""A network manager with dial-up links, as a template for python-dbusmock."""

import dbus

BUS_NAME = "org.freedesktop.NetworkManager"
MAIN_OBJ = "/org/freedesktop/NetworkManager"
MAIN_IFACE = BUS_NAME
SYSTEM_BUS = True


def load(mock, parameters):
    """The parameter "links" lists the active connections as pairs of name and type, behind which
    what a link by Bluetooth is for can stand: "bluetooth/dun". Where there is
    a "journal", a line in it tells of each that is dropped."""
    paths = []
    for number, (name, kind) in enumerate(parameters["links"]):
        path = f"{MAIN_OBJ}/ActiveConnection/{number}"
        kind, _, purpose = kind.partition("/")
        stored = f"{MAIN_OBJ}/Settings/{number}"
        settings = f"ret = {{'bluetooth': {{'type': '{purpose}'}}}}"
        mock.AddObject(stored, f"{MAIN_IFACE}.Settings.Connection", {},
                       [("GetSettings", "", "a{sa{sv}}", settings)])
        mock.AddObject(path, f"{MAIN_IFACE}.Connection.Active", {
            "Id": name, "Type": kind, "Connection": dbus.ObjectPath(stored)}, [])
        paths.append(path)
    active = dbus.Array([dbus.ObjectPath(path) for path in paths], signature="o")
    mock.AddProperty(MAIN_IFACE, "ActiveConnections", active)
    journal = parameters.get("journal")
    note = f"print('hang-up of', args[0], file=open({journal!r}, 'a'))" if journal else ""
    mock.AddMethod(MAIN_IFACE, "DeactivateConnection", "o", "", note)
