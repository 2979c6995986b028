"""A time service that sets no clock, as a template for python-dbusmock."""

BUS_NAME = "org.freedesktop.timedate1"
MAIN_OBJ = "/org/freedesktop/timedate1"
MAIN_IFACE = BUS_NAME
SYSTEM_BUS = True


def load(mock, _parameters):
    mock.AddMethod(MAIN_IFACE, "SetTime", "xbb", "", "")
