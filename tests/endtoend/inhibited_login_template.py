"""A login manager that somebody has asked not to shut down, as a template for python-dbusmock."""

BUS_NAME = "org.freedesktop.login1"
MAIN_OBJ = "/org/freedesktop/login1"
MAIN_IFACE = BUS_NAME + ".Manager"
SYSTEM_BUS = True


def load(mock, parameters):
    refuse = ("raise dbus.exceptions.DBusException('inhibited', "
              "name='org.freedesktop.login1.BlockedByInhibitorLock')")
    mock.AddMethod(MAIN_IFACE, "PowerOff", "b", "", refuse)
    mock.AddMethod(MAIN_IFACE, "PowerOffWithFlags", "t", "", f"if args[0] != 16: {refuse}")
