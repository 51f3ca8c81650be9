"""A template of python-dbusmock: the watcher of a desktop that has items in its panel."""

BUS_NAME = "org.kde.StatusNotifierWatcher"
MAIN_OBJ = "/StatusNotifierWatcher"
MAIN_IFACE = BUS_NAME
SYSTEM_BUS = False


def load(mock, _parameters):
    mock.AddMethod(MAIN_IFACE, "RegisterStatusNotifierItem", "s", "", "")
