"""TARNE as it is installed: under a prefix, started by its launcher or by the bus."""

import base64
import hashlib
import json
import os
import pathlib
import pty
import shutil
import signal
import subprocess
import zipfile

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
        # A child of it looks like it until it has become another program.
        self.eventually(lambda: len(self.program_ids()) == 1, "there is one program")
        program, = self.program_ids()
        self.assertEqual(os.readlink(f"/proc/{program}/cwd"), "/")

    def test_has_its_notifier_started_by_the_bus_and_at_login(self):
        services = self.prefix / "share/dbus-1/services"
        address = self.desktop.start_bus("activating", services, **self.environment_of_a_user())
        bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                      "RequestName", GLib.Variant("(su)", ("com.tarne.app", 4)), None,
                      Gio.DBusCallFlags.NONE, 10_000, None)
        bus.call_sync("com.tarne.app.Notifier1", "/com/tarne/app/Notifier",
                      "com.tarne.app.Notifier1", "Add",
                      GLib.Variant("(sssa{si})", ("a", "Title", "Body", {
                          "year": 2999, "month": 1, "day": 1})), None,
                      Gio.DBusCallFlags.NONE, 60_000, None)
        notifier = self.prefix / "lib/tarne/bin/tarne-notifier"
        self.assertEqual(len(self.ids_of(notifier)), 1)
        entry = self.prefix / "etc/xdg/autostart/com.tarne.app.Notifier.desktop"
        self.assertIn(f'Exec="{notifier}"', entry.read_text())

    def test_is_listed_whole_for_who_uninstalls_it(self):
        script, listed = self.folder / "install.cmake", self.folder / "listed"
        script.write_text(f"""set(CMAKE_INSTALL_PREFIX "{self.prefix}")
            include("{PACKAGING}/cmake_install.cmake")
            file(WRITE "{listed}" "${{CMAKE_INSTALL_MANIFEST_FILES}}")""")
        subprocess.run(["cmake", "-P", script], check=True, timeout=60, capture_output=True)
        found = [str(file) for file in self.prefix.rglob("*") if file.is_file()]
        self.assertEqual(sorted(listed.read_text().split(";")), sorted(found))

    def test_below_usr_is_started_at_login_as_desktops_look_for_it(self):
        for prefix in ("/usr", "/usr/local"):
            root = self.folder / f"root{prefix.replace('/', '-')}"
            subprocess.run(["cmake", "--install", PACKAGING, "--prefix", prefix], check=True,
                           timeout=60, capture_output=True, env=os.environ | {"DESTDIR": str(root)})
            entry = root / "etc/xdg/autostart/com.tarne.app.Notifier.desktop"
            self.assertIn(f'Exec="{prefix}/lib/tarne/bin/tarne-notifier"', entry.read_text())
            services = root / prefix[1:] / "share/dbus-1/services"
            self.assertIn(f'Exec="{prefix}/bin/tarne"',
                          (services / "com.tarne.app.service").read_text())
            chromium = root / "etc/chromium/native-messaging-hosts/com.tarne.bridge.json"
            self.assertEqual(json.loads(chromium.read_text())["path"],
                             f"{prefix}/lib/tarne/bin/tarne-bridge")

    def test_tells_both_browsers_of_its_bridge_and_has_the_extension_for_them(self):
        extension = self.prefix / "share/tarne-companion"
        hosts = [json.loads((self.prefix / folder / "native-messaging-hosts/com.tarne.bridge.json")
                            .read_text()) for folder in ("etc/chromium", "lib/mozilla")]
        for host in hosts:
            self.assertTrue(os.access(host["path"], os.X_OK), host["path"])
        key = json.loads((extension / "chromium/manifest.json").read_text())["key"]
        digits = hashlib.sha256(base64.b64decode(key)).hexdigest()[:32]
        name = "".join("abcdefghijklmnop"[int(digit, 16)] for digit in digits)
        self.assertEqual(hosts[0]["allowed_origins"], [f"chrome-extension://{name}/"])
        with zipfile.ZipFile(extension / "tarne-companion.xpi") as packed:
            manifest = json.loads(packed.read("manifest.json"))
        self.assertEqual(hosts[1]["allowed_extensions"],
                         [manifest["browser_specific_settings"]["gecko"]["id"]])

    def test_typed_in_a_folder_it_does_not_start_that_folders_server(self):
        # The one that was installed would be found first.
        (self.prefix / "lib" / "tarne" / "lib" / "tarne" / "tarne-server").unlink()
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
