"""The packages on a Debian 12 that has nothing else: installed, started, upgraded, removed.

Works with what prepare-bare-debian made. Ends with 77, which means skipped, for who is not root. It
runs in a box: own processes, no network, own /tmp.
"""

import json
import os
import subprocess
import sys
import unittest

from bare_debian import (APT, DISPLAY, PACKAGES, PERSON, BareDebian, ask, colours, programs,
                         tarnes_processes, window, xdotool)

import box
from store import PREFERENCES
from waiting import eventually


class PackagesTestCase(unittest.TestCase):
    def setUp(self):
        self.start("Xvfb", DISPLAY, "-screen", "0", "1280x900x24", "-nolisten", "tcp", "-noreset")
        eventually(lambda: xdotool("getdisplaygeometry"), "the display answers")
        self.start("openbox", "--config-file", "/etc/xdg/openbox/rc.xml")
        eventually(lambda: "window id" in ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                   "a window manager manages")
        self.debian = BareDebian(self)

    def start(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   env={"PATH": os.environ["PATH"], "HOME": "/tmp",
                                        "DISPLAY": DISPLAY})
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)


class AFreshInstallation(PackagesTestCase):
    def setUp(self):
        super().setUp()
        self.debian.install()
        self.debian.log_in()

    def test_starts_from_the_menu_raises_at_a_second_start_and_leaves_no_process_when_it_quits(self):
        first = self.debian.start_and_show()
        eventually(lambda: colours() > 8, "the window is drawn")
        self.assertEqual(self.debian.told.read_text(), "")
        named = ask("xprop", "-id", window(), "WM_CLASS")
        self.assertTrue(named.endswith(f'"{self.debian.desktop_entry()["StartupWMClass"]}"'), named)

        xdotool("windowminimize", window())
        eventually(lambda: not window(), "the window is minimized")
        self.assertEqual(self.debian.start_from_the_menu().wait(60), 0)
        eventually(lambda: window() and window() == xdotool("getactivewindow"),
                   "the second start brings the first one's window to the front")
        self.assertEqual(len(programs()), 1, tarnes_processes())
        self.assertIsNone(first.poll())

        self.debian.quit(first)
        eventually(lambda: not tarnes_processes(),
                   lambda: f"nothing of TARNE runs: {tarnes_processes()}")

    def test_is_started_by_the_bus_in_a_process_namespace_of_its_own(self):
        self.debian.start_by_the_bus("com.tarne.app")
        eventually(window, "the window is up")
        program, = programs()
        self.assertNotEqual(os.readlink(program / "ns/pid"), os.readlink("/proc/self/ns/pid"))

    def test_has_its_notifier_started_by_the_bus(self):
        self.debian.start_by_the_bus("com.tarne.app.Notifier1")

    def test_tells_the_browsers_of_a_bridge_that_answers(self):
        for folder in ("etc/chromium", "usr/lib/mozilla"):
            manifest = self.debian.root / folder / "native-messaging-hosts/com.tarne.bridge.json"
            bridge = json.loads(manifest.read_text())["path"]
            answer = self.debian.first_answer(
                bridge, {"v": 1, "type": "hello", "browser": "test", "version": "1"})
            # TARNE has not run yet.
            self.assertEqual((answer["type"], answer["state"]), ("session", "unavailable"))
        extension = self.debian.root / "usr/share/tarne-companion"
        self.assertTrue((extension / "chromium/manifest.json").is_file())
        self.assertTrue((extension / "tarne-companion.xpi").is_file())

    def test_is_told_in_a_manual_page_and_a_page_for_users(self):
        for page in ("man/man1/tarne.1.gz", "doc/tarne/users.md",
                     "doc/tarne-companion/README.Debian"):
            self.assertTrue((self.debian.root / "usr/share" / page).is_file(), page)


class AnOlderInstallation(PackagesTestCase):
    def setUp(self):
        super().setUp()
        self.debian.install("older")
        self.debian.log_in()
        self.debian.store.plant("UserPreferences", PREFERENCES)
        self.debian.store.plant("SessionHistory", [{
            "id": "0F8FAD5B-D9CB-469F-A165-70867728950E", "sessionDate": 788_918_400.0, "goals": [],
            "duration": 1500, "overallAssessment": "", "patternsObserved": "", "suggestions": "",
            "motivation": "", "reflection": "mine"}])
        self.debian.run("chown", "-R", f"{PERSON}:{PERSON}", "/home/person")

    def run_tarne_once(self):
        launcher = self.debian.start_and_show()
        eventually(lambda: colours() > 8, "the window is drawn")
        self.debian.quit(launcher)
        eventually(lambda: not tarnes_processes(), "nothing of TARNE runs")

    def assert_history_is_there(self):
        self.assertEqual([entry["reflection"] for entry in self.debian.store.history()], ["mine"])

    def test_is_upgraded_removed_and_purged_and_the_persons_data_stay(self):
        older = self.debian.version_of("tarne")
        self.run_tarne_once()
        self.debian.install()
        for package in ("tarne", "tarne-companion"):
            self.debian.run("dpkg", "--compare-versions", self.debian.version_of(package), "gt", older)
        self.run_tarne_once()
        self.assert_history_is_there()

        self.debian.run(*APT, "remove", "tarne", "tarne-companion")
        left = [name for name in self.debian.files_named_after_tarne()
                if not name.startswith("var/lib/dpkg/")]
        autostart = "etc/xdg/autostart/com.tarne.app.Notifier.desktop"
        self.assertEqual(left, ["etc/chromium/native-messaging-hosts/com.tarne.bridge.json",
                                autostart])
        # So what stays of the system's settings starts nothing at login.
        tried = self.debian.desktop_entry(autostart).get("TryExec", "/")
        self.assertFalse((self.debian.root / tried[1:]).exists())

        self.debian.run(*APT, "purge", "tarne", "tarne-companion")
        self.assertEqual(self.debian.files_named_after_tarne(), [])
        self.assert_history_is_there()


def main():
    if os.getuid() != 0:
        print("Only root can install packages in a Debian of its own.")
        sys.exit(77)
    box.enter(__file__, program=PACKAGES)
    os.makedirs("/tmp/.X11-unix", mode=0o1777, exist_ok=True)
    unittest.main(verbosity=2, catchbreak=False)


if __name__ == "__main__":
    main()
