"""A login manager that notes when it is to shut down, as a template for python-dbusmock."""

BUS_NAME = "org.freedesktop.login1"
MAIN_OBJ = "/org/freedesktop/login1"
MAIN_IFACE = BUS_NAME + ".Manager"
SYSTEM_BUS = True


def load(mock, parameters):
    """The parameter "journal" names the file with the notes."""
    note = f"print('shutdown', file=open({parameters['journal']!r}, 'a'))"
    mock.AddMethod(MAIN_IFACE, "PowerOff", "b", "", note)
    mock.AddMethod(MAIN_IFACE, "PowerOffWithFlags", "t", "", note)
