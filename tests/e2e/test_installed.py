"""TARNE as it is installed: under a prefix, started by its launcher or by the bus."""

import os
import pathlib
import pty
import shutil
import signal
import subprocess

from gi.repository import Gio, GLib

from fixture import PROGRAM
from test_launcher import LauncherTestCase

PACKAGING = pathlib.Path(PROGRAM).parents[1] / "packaging"
STAND_IN_SERVER = pathlib.Path(__file__).with_name("stand_in_server.py")


class AnInstalledTARNE(LauncherTestCase):
    def setUp(self):
        super().setUp()
        self.prefix = self.folder / "a prefix"
        # By the part of the build that installs: the whole of it also keeps a list, in the build.
        subprocess.run(["cmake", "--install", PACKAGING, "--prefix", self.prefix], check=True,
                       timeout=60, capture_output=True)
        self.installed = self.prefix / "lib" / "tarne" / "bin" / "tarne"

    def program_ids(self):
        return self.ids_of(self.installed)

    def test_is_started_by_the_bus_that_is_asked_for_it(self):
        environment = self.environment_of_a_user()
        address = self.desktop.start_bus("activating", self.prefix / "share/dbus-1/services",
                                         **environment)
        bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        bus.call_sync("com.tarne.app", "/com/tarne/app", "org.freedesktop.Application", "Activate",
                      GLib.Variant("(a{sv})", ({},)), None, Gio.DBusCallFlags.NONE, 60_000, None)
        self.eventually(self.window_id, "the window is up")
        program, = self.program_ids()
        self.assertEqual(os.readlink(f"/proc/{program}/cwd"), "/")

    def test_typed_in_a_folder_it_does_not_start_that_folders_server(self):
        planted = self.folder / "untrusted"
        planted.mkdir()
        shutil.copy(STAND_IN_SERVER, planted / "tarne-server")
        (planted / "tarne-server").chmod(0o755)
        # On a terminal, where the launcher shows the log.
        master, terminal = pty.openpty()
        self.addCleanup(os.close, master)
        launcher = subprocess.Popen([self.prefix / "bin" / "tarne"], cwd=planted, stdout=terminal,
                                    stderr=terminal, stdin=subprocess.DEVNULL,
                                    env=self.environment_of_a_user())
        os.close(terminal)
        self.addCleanup(launcher.wait)
        self.addCleanup(launcher.kill)
        log = b""
        while b"Checked project root" not in log and b"Server started" not in log:
            log += os.read(master, 65536)
        self.assertIn("Also checking working directory: //tarne-server", log.decode())
        launcher.send_signal(signal.SIGTERM)
        self.assertEqual(launcher.wait(30), 0)
        self.assertEqual(os.listdir(planted), ["tarne-server"])
