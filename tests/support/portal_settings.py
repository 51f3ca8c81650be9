"""A template of python-dbusmock: a desktop portal that has its settings when it comes up."""

BUS_NAME = "org.freedesktop.portal.Desktop"
MAIN_OBJ = "/org/freedesktop/portal/desktop"
MAIN_IFACE = "org.freedesktop.portal.Settings"
SYSTEM_BUS = False


def load(mock, parameters):
    mock.AddMethod(MAIN_IFACE, "ReadAll", "as", "a{sa{sv}}",
                   f"ret = dbus.Dictionary({{{parameters['groups']}}}, signature='sa{{sv}}')")
