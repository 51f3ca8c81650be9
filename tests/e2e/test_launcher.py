"""The launcher and the way in on a machine without a desktop."""

import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import types
import unittest

from gi.repository import Gio, GLib

import box
from fixture import NOTIFIER, NOTIFIER_PROGRAM, PROGRAM, TarneTestCase

LAUNCHER = box.SOURCES / "packaging" / "own-namespace"
STAND_IN = pathlib.Path(__file__).with_name("stand_in_program.py")
RUN_ON_DESKTOP = box.SOURCES / "scripts" / "run-on-desktop"


class LauncherTestCase(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.addCleanup(self.end_programs)

    def end_programs(self):
        # They are not tied to what started them.
        for program in self.program_ids():
            os.kill(program, signal.SIGKILL)

    def run_script(self, *command, environment):
        self.output = self.folder / "script.log"
        with open(self.output, "wb") as output:
            process = subprocess.Popen(list(map(str, command)), stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=output, env=environment)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def launch_by(self, *command):
        process = self.run_script(*command, environment=self.environment_of_a_user())
        self.eventually(self.window_id, lambda: f"the window is up: {self.tail()}", within=60)
        return process

    def tail(self):
        return self.output.read_text()[-2000:]

    def environment_of_a_user(self):
        environment = self.environment()
        for name in self.clock.environment:
            del environment[name]
        return environment

    def program_ids(self):
        """The ids of the processes that run the program itself."""
        return self.ids_of(PROGRAM)

    def ids_of(self, executable):
        found = []
        for process in pathlib.Path("/proc").iterdir():
            try:
                if process.name.isdigit() and os.readlink(process / "exe") == str(executable):
                    found.append(int(process.name))
            except OSError:
                continue
        return found


class TheLauncher(LauncherTestCase):
    def test_passes_signals_on_to_the_program_and_ends_with_its_status(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            launcher = self.launch_by(LAUNCHER, PROGRAM)
            launcher.send_signal(number)
            self.assertEqual(launcher.wait(30), 0)
            self.assertEqual(self.program_ids(), [])

    def test_leaves_the_program_running_when_it_is_killed_or_its_terminal_goes(self):
        launcher = self.launch_by(LAUNCHER, PROGRAM)
        launcher.send_signal(signal.SIGHUP)
        launcher.kill()
        launcher.wait(30)
        size = self.output.stat().st_size
        self.eventually(lambda: self.output.stat().st_size > size, "the program goes on")
        program, = self.program_ids()
        os.kill(program, signal.SIGTERM)
        self.eventually(lambda: not self.program_ids(), "the program has ended")

    def test_gives_the_program_a_process_namespace_of_its_own(self):
        self.launch_by(LAUNCHER, PROGRAM)
        program, = self.program_ids()
        self.assertNotEqual(os.readlink(f"/proc/{program}/ns/pid"), os.readlink("/proc/self/ns/pid"))


class APageThatIsOpened(LauncherTestCase):
    """On a desktop without a portal."""

    def setUp(self):
        super().setUp()
        self.record = self.folder / "opened"
        tools = self.folder / "tools"
        tools.mkdir()
        browser = tools / "xdg-open"
        browser.write_text(f"""#!/bin/sh
echo "$1 $$ $(readlink /proc/self/ns/pid) $(ls /proc/self/fd | wc -w)" >{self.record}.new
mv {self.record}.new {self.record}
exec sleep 1000
""")
        browser.chmod(0o755)
        self.extra_environment = {"PATH": f"{tools}:/usr/bin:/bin"}

    def test_lies_outside_the_programs_namespace_and_outlives_the_program(self):
        launcher = self.launch_by(LAUNCHER, PROGRAM)
        process, = self.program_ids()
        self.program = types.SimpleNamespace(pid=process)
        self.open_tab("Settings")
        self.press("Get API Key")
        self.eventually(self.record.exists, "a browser has been started")
        page, browser, namespace, descriptors = self.record.read_text().split()
        self.addCleanup(os.kill, int(browser), signal.SIGKILL)
        self.assertEqual(page, "https://aistudio.google.com/app/apikey")
        self.assertEqual(namespace, os.readlink("/proc/self/ns/pid"))
        # Its own three, and the one by which they are counted.
        self.assertEqual(descriptors, "4")
        launcher.terminate()
        self.assertEqual(launcher.wait(30), 0)
        self.assertEqual(self.program_ids(), [])
        os.kill(int(browser), 0)


class AMachineWithoutADesktop(LauncherTestCase):
    def setUp(self):
        super().setUp()
        self.picture = self.folder / "tarne.png"
        (self.folder / "bare").mkdir(mode=0o700)

    def bare_environment(self, **added):
        environment = self.environment_of_a_user()
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"):
            del environment[name]
        return environment | {"XDG_RUNTIME_DIR": str(self.folder / "bare")} | added

    def run_on_desktop(self, *surroundings, **added):
        script = self.run_script(*surroundings, RUN_ON_DESKTOP, PROGRAM, self.picture,
                                 environment=self.bare_environment(**added))
        self.await_told(f"The picture of its window: {self.picture}")
        return script

    def await_told(self, text):
        self.eventually(lambda: text in self.output.read_text(),
                        lambda: f"it is told: {text}: {self.tail()}", within=60)

    def environment_of_the_program(self):
        program, = self.program_ids()
        pairs = pathlib.Path(f"/proc/{program}/environ").read_bytes().rstrip(b"\0").split(b"\0")
        return dict(pair.decode().split("=", 1) for pair in pairs)

    def ask_key_store(self, *arguments, typed=None):
        """As the program would: as its user, on its bus."""
        program, = self.program_ids()
        command = ["secret-tool", *arguments, "service", "com.tarne.app", "account", "x"]
        user = os.stat(f"/proc/{program}").st_uid
        if user != os.getuid():
            command = ["setpriv", f"--reuid={user}", "--regid=nogroup", "--clear-groups", *command]
        done = subprocess.run(command, env=self.environment_of_the_program(), input=typed,
                              timeout=30, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def test_gets_a_bus_a_key_store_and_a_picture_of_the_window(self):
        script = self.run_on_desktop()
        size = subprocess.run(["identify", "-format", "%wx%h", self.picture], capture_output=True,
                              text=True, check=True).stdout
        self.assertEqual(size, "1000x700")
        self.assertIn("No session bus: starting one", self.output.read_text())
        script.terminate()
        self.assertEqual(script.wait(30), 0)
        self.assertEqual(self.program_ids(), [])

    def test_gets_a_bus_that_knows_the_notifier_until_the_end(self):
        script = self.run_on_desktop()
        address = self.environment_of_the_program()["DBUS_SESSION_BUS_ADDRESS"]
        bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        bus.set_exit_on_close(False)
        started, = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "StartServiceByName",
                                 GLib.Variant("(su)", (NOTIFIER, 0)), None,
                                 Gio.DBusCallFlags.NONE, 30_000, None).unpack()
        self.assertIn(started, (1, 2))  # It was started, or runs.
        service, = (self.folder / "bare").rglob(f"{NOTIFIER}.service")
        self.assertIn(f'Exec="{NOTIFIER_PROGRAM}"', service.read_text())
        script.terminate()
        self.assertEqual(script.wait(30), 0)
        self.assertFalse(service.exists())

    def test_leaves_nothing_of_the_notifier_behind_where_a_bus_was_running(self):
        script = self.run_on_desktop(DBUS_SESSION_BUS_ADDRESS=self.desktop.bus_address)
        self.assertEqual(len(list((self.folder / "bare").rglob(f"{NOTIFIER}.service"))), 1)
        script.terminate()
        self.assertEqual(script.wait(30), 0)
        self.assertEqual(list((self.folder / "bare").rglob("dbus-1")), [])

    def test_gets_a_keyring_of_its_own_with_a_password_that_is_told_and_keeps_it(self):
        own = self.home / "share" / "keyrings"
        own.mkdir(parents=True)
        (own / "login.keyring").write_text("the user's own")
        for run in range(2):
            script = self.run_on_desktop()
            self.assertIn('Its password is "tarne"', self.output.read_text())
            if run == 0:
                self.ask_key_store("store", "--label=TARNE", typed="a key")
            self.assertEqual(self.ask_key_store("lookup"), "a key")
            script.terminate()
            self.assertEqual(script.wait(30), 0)
        self.assertEqual([file.name for file in own.iterdir()], ["login.keyring"])
        self.assertEqual((own / "login.keyring").read_text(), "the user's own")

    def test_uses_the_sessions_key_store_and_says_that_nobody_can_unlock_it(self):
        self.desktop.start_key_store(is_open=False)
        self.run_on_desktop(DBUS_SESSION_BUS_ADDRESS=self.desktop.bus_address)
        self.assertIn("The session's key store is used.", self.output.read_text())
        self.assertEqual(list((self.home / "share").glob("*-without-display")), [])

    def test_says_which_display_does_not_answer_and_gets_another(self):
        self.run_on_desktop(DISPLAY=":77", WAYLAND_DISPLAY="wayland-77")
        self.assertIn("The X display :77 does not answer (DISPLAY).", self.output.read_text())
        self.assertIn("The Wayland display wayland-77 does not answer (WAYLAND_DISPLAY).",
                      self.output.read_text())
        self.assertNotIn("WAYLAND_DISPLAY", self.environment_of_the_program())

    def test_needs_no_other_display_where_a_wayland_display_listens(self):
        stand_in = self.folder / "stand-in"
        shutil.copy(STAND_IN, stand_in)
        stand_in.chmod(0o755)
        environment = self.bare_environment(WAYLAND_DISPLAY="wayland-1", DISPLAY=":77")
        with socket.socket(socket.AF_UNIX) as display:
            display.bind(str(self.folder / "bare" / "wayland-1"))
            display.listen()
            script = self.run_script(RUN_ON_DESKTOP, stand_in, self.picture,
                                     environment=environment)
            self.assertEqual(script.wait(60), 7)
        told = self.output.read_text()
        self.assertIn("The X display :77 does not answer (DISPLAY).", told)
        self.assertNotIn("WAYLAND_DISPLAY)", told)
        self.assertIn("gnome-keyring, which asks for a password where it needs one", told)
        facts = json.loads(next(line for line in told.splitlines() if line.startswith("{")))
        self.assertEqual(facts["environment"].get("WAYLAND_DISPLAY"), "wayland-1")
        self.assertNotIn("DISPLAY", facts["environment"])

    @unittest.skipUnless(os.getuid() == 0, "needs root, which gives way to somebody else")
    def test_where_root_gives_way_the_bus_and_the_key_store_are_the_other_users_as_well(self):
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "bwrap").symlink_to("/bin/false")
        state = self.folder / "state"
        state.mkdir()
        self.folder.chmod(0o755)
        self.run_on_desktop("/usr/bin/bwrap", "--dev-bind", "/", "/", "--bind", state, "/var/lib",
                            PATH=f"{tools}:/usr/bin:/bin")
        self.assertIn("TARNE runs as the user nobody", self.output.read_text())
        self.ask_key_store("store", "--label=TARNE", typed="a key")
        self.assertEqual(self.ask_key_store("lookup"), "a key")
        kept = state / "tarne" / ".local" / "share" / "com.tarne.app-without-display" / "keyrings"
        self.assertTrue((kept / "login.keyring").exists())
