"""The accessibility tree as a screen reader gets it: asked afresh each time, nothing cached."""

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
ACCESSIBLE = "org.a11y.atspi.Accessible"
CALL_TIMEOUT_MS = 20_000
SCREEN_COORDINATES = 0

# Bits of AtspiStateType.
STATES = {"active": 1, "checked": 4, "collapsed": 5, "editable": 7, "enabled": 8, "expandable": 9,
          "expanded": 10, "focusable": 11, "focused": 12, "modal": 16, "multi line": 17,
          "pressed": 20, "selectable": 22, "selected": 23, "sensitive": 24, "showing": 25,
          "visible": 30, "checkable": 41, "read only": 43}
# What presses a control, by the names of the actions.
PRESSES = ("Press", "Toggle")


class AccessibilityBus:
    def __init__(self, address):
        self._bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self._bus.set_exit_on_close(False)

    def listen(self, event):
        """Asks every application for an event, such as "object:state-changed:showing", and collects
        those that come: the detail, the number and whom it is of. The toolkit tells no more: what
        a property has become is asked of the node."""
        heard = []

        def keep(_bus, owner, path, _interface, _signal, arguments):
            detail, number = arguments.unpack()[:2]
            heard.append((detail, number, Node(self, owner, path)))

        self._bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", None, None, None,
                                   Gio.DBusSignalFlags.NONE, keep)
        self.call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                  "RegisterEvent", GLib.Variant("(sass)", (event, [], "")))
        return heard

    def hear_everything(self):
        """Asks every application for all it can tell, and collects it: the kind of event, its
        detail, its number and whom it is of."""
        heard = []

        def keep(_bus, owner, path, interface, signal, arguments):
            detail, number = arguments.unpack()[:2]
            heard.append((f"{interface.rpartition('.')[2]}:{signal}", detail, number,
                          Node(self, owner, path)))

        self._bus.signal_subscribe(None, None, None, None, None, Gio.DBusSignalFlags.NONE,
                                   lambda *told: told[3].startswith("org.a11y.atspi.Event.")
                                   and keep(*told))
        for kind in ("object:", "window:", "focus:"):
            self.call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                      "org.a11y.atspi.Registry", "RegisterEvent",
                      GLib.Variant("(sass)", (kind, [], "")))
        return heard

    def application(self, process):
        """The root node of the application whose process id this is, None while it has none."""
        for name, path in self.call(*REGISTRY, ACCESSIBLE, "GetChildren")[0]:
            try:
                owner = self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                  "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]
            except GLib.Error:
                continue
            if owner == process:
                return Node(self, name, path)
        return None

    def call(self, name, path, interface, method, arguments=None):
        return self._bus.call_sync(name, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, CALL_TIMEOUT_MS, None).unpack()


class Node:
    """One object of the tree. A node that has vanished raises GLib.Error."""

    def __init__(self, bus, name, path):
        self._bus = bus
        self._owner = name
        self._path = path

    def __eq__(self, other):
        return (isinstance(other, Node)
                and (self._owner, self._path) == (other._owner, other._path))

    def __hash__(self):
        return hash((self._owner, self._path))

    def _call(self, interface, method, arguments=None):
        return self._bus.call(self._owner, self._path, interface, method, arguments)

    def _property(self, interface, name):
        return self._call("org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (interface, name)))[0]

    @property
    def name(self):
        return self._property(ACCESSIBLE, "Name")

    @property
    def role(self):
        return self._call(ACCESSIBLE, "GetRoleName")[0]

    @property
    def role_number(self):
        """Its AtspiRole, which is finer than the name."""
        return self._call(ACCESSIBLE, "GetRole")[0]

    @property
    def children(self):
        return [Node(self._bus, *child) for child in self._call(ACCESSIBLE, "GetChildren")[0]]

    def has(self, state):
        return state in self.states

    @property
    def states(self):
        """Those of STATES that it has."""
        low, high = self._call(ACCESSIBLE, "GetState")[0]
        return {name for name, bit in STATES.items() if (high << 32 | low) >> bit & 1}

    @property
    def interfaces(self):
        """The short names of what can be asked of it, such as "Action" or "EditableText"."""
        return {name.rpartition(".")[2] for name in self._call(ACCESSIBLE, "GetInterfaces")[0]}

    @property
    def actions(self):
        """The names of what can be done with it."""
        return [name for name, *_ in self._call("org.a11y.atspi.Action", "GetActions")[0]]

    @property
    def description(self):
        return self._property(ACCESSIBLE, "Description")

    @property
    def text(self):
        return self._call("org.a11y.atspi.Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    @property
    def extents(self):
        """Left, top, width and height on the screen."""
        return self._call("org.a11y.atspi.Component", "GetExtents",
                          GLib.Variant("(u)", (SCREEN_COORDINATES,)))[0]

    def press(self):
        wanted = next(i for i, name in enumerate(self.actions) if name in PRESSES)
        return self._call("org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (wanted,)))[0]

    def act(self, name):
        self._call("org.a11y.atspi.Action", "DoAction",
                   GLib.Variant("(i)", (self.actions.index(name),)))

    def write(self, text):
        """Replaces what a field holds, as a screen reader or a dictation does."""
        self._call("org.a11y.atspi.EditableText", "SetTextContents", GLib.Variant("(s)", (text,)))

    def grab_focus(self):
        return self._call("org.a11y.atspi.Component", "GrabFocus")[0]

    def visible_descendants(self):
        """Every node below this one that is not hidden, in reading order, hidden branches left out."""
        for child in self.children:
            try:
                if child.has("visible"):
                    yield child
                    yield from child.visible_descendants()
            except GLib.Error:
                continue

    def outline(self, depth=0):
        """The tree as indented text, for the report of a failure."""
        lines = []
        for child in self.children:
            try:
                if child.has("visible"):
                    lines.append(f"{'  ' * depth}{child.role} {child.name!r}")
                    lines += child.outline(depth + 1)
            except GLib.Error:
                continue
        return lines
