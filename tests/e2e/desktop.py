"""A desktop for one test class: display, buses, accessibility, notifications, login manager."""

import json
import os
import pathlib
import subprocess
import sys

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from accessibility import AccessibilityBus
from waiting import eventually

DISPLAY = ":1"
MOCK = (sys.executable, "-m", "dbusmock")
NOTIFICATIONS = "org.freedesktop.Notifications"
KEY_STORE = "org.freedesktop.secrets"
PASSWORD_DIALOGS = "org.gnome.keyring.SystemPrompter"
PORTAL = "org.freedesktop.portal.Desktop"
PORTAL_PATH = "/org/freedesktop/portal/desktop"
PORTAL_SETTINGS = "org.freedesktop.portal.Settings"
# Group, key and type of what users ask their desktops for.
SETTINGS = {
    "animations": ("org.gnome.desktop.interface", "enable-animations", "Boolean"),
    "text_scale": ("org.gnome.desktop.interface", "text-scaling-factor", "Double"),
    "contrast": ("org.freedesktop.appearance", "contrast", "UInt32"),
}
SUPPORT = pathlib.Path(__file__).resolve().parents[1] / "support"
PASSWORD_DIALOG = SUPPORT / "password_dialog.py"

# Nothing is started on demand but what a test offers, so no stray window lies over a control.
BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  {services}
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
"""

# A notification in the middle of nothing, for a click and for a picture.
DUNST_CONFIGURATION = """[global]
width = 420
origin = top-right
offset = 20x20
font = Inter 12
frame_width = 1
padding = 16
horizontal_padding = 18
frame_color = "#d0d0d5"
corner_radius = 10
icon_position = off
show_indicators = no
format = "<b>%s</b>\\n%b"
markup = full
mouse_left_click = do_action, close_current
[urgency_normal]
background = "#f5f5f7"
foreground = "#1c1c1e"
timeout = 0
"""

# An empty desktop of one dark colour that never turns itself off and has no keys on the screen.
COMPOSITOR_CONFIGURATION = """[core]
idle-time=0
[shell]
background-color=0xff204060
panel-position=none
locking=false
animation=none
startup-animation=none
[input-method]
path=
"""


class Desktop:
    """Everything the program meets on a desktop, private to the tests' box.

    One bus stands for both the session's and the system's; the names on it do not overlap.
    """

    def __init__(self, folder, screen="1280x900", services=None):
        """`screen` is the display's size in pixels; `services` a folder as `start_bus` takes it."""
        self.folder = pathlib.Path(folder)
        self._screen = screen
        self._services_of_bus = services
        self.runtime = self.folder / "run"
        self.runtime.mkdir(mode=0o700)
        # What a desktop's programs write about themselves is not left with who runs the tests.
        home = self.folder / "desktop"
        self._own_home = {"HOME": str(home)} | {
            f"XDG_{kind}_HOME": str(home / kind.lower()) for kind in ("DATA", "CONFIG", "CACHE")}
        self.notification_log = self.folder / "notifications.log"
        self._dialog_log = self.folder / "dialogs.log"
        self._processes = []
        self.buses = {}  # Their processes, by name.
        self._log = open(self.folder / "desktop.log", "wb")
        self._start_display()
        self._start_bus()
        self._start_services()

    @property
    def environment(self):
        return {"DISPLAY": DISPLAY, "XDG_RUNTIME_DIR": str(self.runtime),
                "DBUS_SESSION_BUS_ADDRESS": self.bus_address,
                "DBUS_SYSTEM_BUS_ADDRESS": self.bus_address}

    def close(self):
        for process in reversed(self._processes):
            process.kill()
            process.wait()
        self._log.close()

    def notifications(self):
        """The notifications shown so far, as pairs of title and body, in order."""
        shown = []
        for line in self.notification_log.read_text().splitlines():
            _, _, call = line.partition(" ")
            if call.startswith("Notify "):
                texts = [text for text in call.split('"')[1::2]]
                shown.append((texts[2], texts[3]))
        return shown

    def start_notifications(self, capabilities="body body-markup"):
        self._notifications = self._start(*MOCK, "--session", "--template", "notification_daemon",
                                          "--parameters",
                                          json.dumps({"capabilities": capabilities}),
                                          "--logfile", str(self.notification_log),
                                          **self.environment)
        eventually(lambda: self.owns(NOTIFICATIONS), "somebody shows notifications")

    def start_dunst(self):
        """A notification daemon as desktops have one, in the place of the mock."""
        self.stop_notifications()
        configuration = self.folder / "dunstrc"
        configuration.write_text(DUNST_CONFIGURATION)
        self._notifications = self._start("dunst", "-config", str(configuration),
                                          **self.environment)
        eventually(lambda: self.owns(NOTIFICATIONS), "dunst shows notifications")

    def notification_window(self):
        """The window in which dunst shows notifications; empty while it shows none."""
        return self.xdotool("search", "--onlyvisible", "--class", "Dunst").split("\n")[0]

    def start_mock_of_template(self, template, name, **parameters):
        """Starts a service of python-dbusmock that a file describes; its process."""
        mock = self._start(*MOCK, "--session", "--template", str(template),
                           "--parameters", json.dumps(parameters), **self.environment)
        eventually(lambda: self.owns(name), f"{name} is on the bus")
        return mock

    def stop_notifications(self):
        self._notifications.kill()
        self._notifications.wait()
        eventually(lambda: not self.owns(NOTIFICATIONS), "nobody shows notifications")

    def click_notification(self, number, token=""):
        """What the daemon tells of a click, and then of the notification's end."""
        for signal, signature, arguments in (
                ("ActivationToken", "us", [("u", number), ("s", token)]),
                ("ActionInvoked", "us", [("u", number), ("s", "default")]),
                ("NotificationClosed", "uu", [("u", number), ("u", 2)])):
            self.call(NOTIFICATIONS, "/org/freedesktop/Notifications", "org.freedesktop.DBus.Mock",
                      "EmitSignal", GLib.Variant("(sssav)", (
                          NOTIFICATIONS, signal, signature,
                          [GLib.Variant(kind, value) for kind, value in arguments])))

    def process_of(self, name):
        """The id of the process that has a name on the bus; None when nobody has it."""
        try:
            return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]
        except GLib.Error:
            return None

    def tell_of_sleep(self, begins):
        """What the login manager tells before the machine falls asleep and after it woke."""
        self.call("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.DBus.Mock",
                  "EmitSignal", GLib.Variant("(sssav)", (
                      "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                      [GLib.Variant("b", begins)])))

    def call(self, name, path, interface, method, arguments=None, reply=None):
        answer = self.bus.call_sync(name, path, interface, method, arguments,
                                    GLib.VariantType(reply) if reply else None,
                                    Gio.DBusCallFlags.NONE, 10_000, None)
        return answer.unpack()

    def owns(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "NameHasOwner", GLib.Variant("(s)", (name,)))[0]

    def start_key_store(self, is_open=True):
        """Starts gnome-keyring. Open, its keyring is made, or unlocked where there is one."""
        home = self.folder / "keyring"
        self._key_store = self._start("gnome-keyring-daemon", "--foreground",
                                      "--components=secrets", *["--unlock"] * is_open,
                                      stdin=subprocess.PIPE, HOME=str(home),
                                      XDG_DATA_HOME=str(home / "share"), **self.environment)
        if is_open:
            self._key_store.stdin.write(b"password")
        self._key_store.stdin.close()
        eventually(lambda: self.owns(KEY_STORE), "the key store is on the bus")

    def stop_key_store(self):
        self._key_store.kill()
        self._key_store.wait()
        eventually(lambda: not self.owns(KEY_STORE), "there is no key store")

    def show_password_dialogs(self):
        """From now on a locked keyring asks for its password, in a dialog before which nobody sits."""
        path, interface = "/org/gnome/keyring/Prompter", "org.gnome.keyring.internal.Prompter"
        self._start(*MOCK, "--session", PASSWORD_DIALOGS, path, interface,
                    "--logfile", str(self._dialog_log), **self.environment)
        eventually(lambda: self.owns(PASSWORD_DIALOGS), "somebody shows password dialogs")
        for method in ("BeginPrompting", "StopPrompting"):
            self.call(PASSWORD_DIALOGS, path, "org.freedesktop.DBus.Mock", "AddMethod",
                      GLib.Variant("(sssss)", (interface, method, "o", "", "")))

    def dialog_calls(self):
        """What the password dialogs were asked to do so far, in order."""
        calls = (line.split()[1] for line in self._dialog_log.read_text().splitlines())
        return [call for call in calls if call.endswith("Prompting")]

    def show_password_dialogs_to_somebody(self):
        """From now on a locked keyring asks for its password, which `unlock` answers."""
        self._dialog = self._start(sys.executable, PASSWORD_DIALOG, stdin=subprocess.PIPE,
                                   **self.environment)
        eventually(lambda: self.owns(PASSWORD_DIALOGS), "somebody shows password dialogs")

    def unlock(self):
        eventually(lambda: "asked" in (self.folder / "desktop.log").read_text(errors="replace"),
                   "the user is asked for the password")
        self._dialog.stdin.write(b"unlock password\n")
        self._dialog.stdin.flush()

    def open_pages(self):
        """From now on a portal opens pages, in a browser that nobody sees."""
        name, path = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
        interface = "org.freedesktop.portal.OpenURI"
        self._page_log = self.folder / "pages.log"
        self._start(*MOCK, "--session", name, path, interface, "--logfile", str(self._page_log),
                    **self.environment)
        eventually(lambda: self.owns(name), "a portal is on the bus")
        self.call(name, path, "org.freedesktop.DBus.Mock", "AddMethod",
                  GLib.Variant("(sssss)", (interface, "OpenURI", "ssa{sv}", "o", "ret = '/'")))

    def pages(self):
        """The addresses of the pages that were opened so far."""
        calls = (line.partition(" OpenURI ")[2] for line in self._page_log.read_text().splitlines())
        return [call.split('"')[3] for call in calls if call]

    def start_portal(self, **settings):
        """Starts a desktop portal with the settings that a user may have made, as `change_setting`
        names them."""
        groups = {}
        for name, value in settings.items():
            group, key, kind = SETTINGS[name]
            groups.setdefault(group, []).append(f"'{key}': dbus.{kind}({value!r})")
        entries = ", ".join(f"'{group}': dbus.Dictionary({{{', '.join(entries)}}}, signature='sv')"
                            for group, entries in groups.items())
        self.start_mock_of_template(SUPPORT / "portal_settings.py", PORTAL, groups=entries)

    def change_setting(self, name, value):
        """What the portal tells when the user changes a setting."""
        group, key, kind = SETTINGS[name]
        wrapped = GLib.Variant({"Boolean": "b", "Double": "d", "UInt32": "u"}[kind], value)
        self.call(PORTAL, PORTAL_PATH, "org.freedesktop.DBus.Mock", "EmitSignal",
                  GLib.Variant("(sssav)", (
                      PORTAL_SETTINGS, "SettingChanged", "ssv",
                      [GLib.Variant("s", group), GLib.Variant("s", key),
                       GLib.Variant("v", wrapped)])))

    def set_font_resolution(self, dots):
        """What a desktop under X11 makes of its text scale: dots an inch in place of 96."""
        self.ask("xrdb", "-nocpp", "-merge", typed=f"Xft.dpi: {dots}\n")

    def start_window_manager(self):
        self._start("openbox", "--config-file", "/etc/xdg/openbox/rc.xml", **self.environment)
        eventually(lambda: "window id" in self.ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                   "a window manager manages")

    def start_compositor(self, scale=1):
        """Starts a Wayland compositor that fills the display, each of its points `scale` pixels wide;
        returns the name of its own display."""
        name, configuration = "wayland-0", self.folder / "weston.ini"
        configuration.write_text(COMPOSITOR_CONFIGURATION)
        width, height = (int(side) // scale for side in self.xdotool("getdisplaygeometry").split())
        self._start("weston", "--backend=x11-backend.so", "--use-pixman", f"--socket={name}",
                    f"--config={configuration}", f"--width={width}", f"--height={height}",
                    f"--scale={scale}", **self.environment)
        compositor = "Weston Compositor"
        eventually(lambda: (self.runtime / name).exists()
                   and self.xdotool("search", "--onlyvisible", "--class", compositor),
                   "a compositor is up")
        # There is no window manager that would give it the keyboard.
        self.xdotool("search", "--class", compositor, "windowfocus", "--sync")
        return name

    def show_another_window(self):
        self._start("xev", **self.environment)
        eventually(lambda: self.xdotool("search", "--onlyvisible", "--name", "Event Tester"),
                   "another window is up")

    def stop_display(self):
        self._display.terminate()
        self._display.wait()

    def ask(self, *command, typed=None):
        """What another program of the desktop prints; `typed` is its standard input."""
        return subprocess.run(command, env=dict(os.environ, **self.environment), check=True,
                              timeout=30, capture_output=True, text=True, input=typed).stdout

    def ask_bytes(self, *command):
        return subprocess.run(command, env=dict(os.environ, **self.environment), check=True,
                              timeout=30, capture_output=True).stdout

    def screenshot(self, path):
        subprocess.run(["import", "-display", DISPLAY, "-window", "root", str(path)],
                       check=True, timeout=30, stdout=self._log, stderr=self._log)

    def xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], timeout=30, text=True,
                              capture_output=True, env=dict(os.environ, DISPLAY=DISPLAY))
        return done.stdout.strip() if done.returncode == 0 else ""

    def _start(self, *command, stdin=subprocess.DEVNULL, stdout=None, **environment):
        process = subprocess.Popen(command, stdin=stdin, stdout=stdout or self._log,
                                   stderr=self._log,
                                   env=os.environ | self._own_home | environment)
        self._processes.append(process)
        return process

    def _start_display(self):
        # The box has a /tmp of its own, so the number is always free. No key repeats itself when
        # a busy machine takes its time between press and release.
        self._display = self._start("Xvfb", DISPLAY, "-screen", "0", f"{self._screen}x24",
                                    "-nolisten", "tcp", "-noreset", "-r")
        eventually(lambda: self.xdotool("getdisplaygeometry"), "the display answers")

    def start_bus(self, name, services=None, **environment):
        """Starts a bus that starts programs as a folder of service files tells; its address.

        The bus tells its address when it listens. Its socket's file is there before that."""
        socket = self.runtime / name
        configuration = self.folder / f"{name}.conf"
        configuration.write_text(BUS_CONFIGURATION.format(
            socket=socket, services=f"<servicedir>{services}</servicedir>" if services else ""))
        bus = self._start("dbus-daemon", f"--config-file={configuration}", "--nofork",
                          "--print-address=1", stdout=subprocess.PIPE, **environment)
        self.buses[name] = bus
        with bus.stdout:
            address = bus.stdout.readline().decode().strip()
        if not address:
            raise AssertionError("the bus does not come up")
        return address

    def _start_bus(self):
        self.bus_address = self.start_bus("bus", self._services_of_bus)
        self.bus = Gio.DBusConnection.new_for_address_sync(
            self.bus_address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.bus.set_exit_on_close(False)

    def _start_services(self):
        self.start_notifications()
        self._start(*MOCK, "--system", "--template", "logind", **self.environment)
        self._start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately", "--a11y=1",
                    GSETTINGS_BACKEND="memory", **self.environment)
        for name in ("org.freedesktop.login1", "org.a11y.Bus"):
            eventually(lambda: self.owns(name), f"{name} is on the bus")
        address = self.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
        self.accessibility = AccessibilityBus(address)
