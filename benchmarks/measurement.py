"""The vocabulary of the measurements of the real program from outside."""

import os
import pathlib
import sys
import tempfile
import time

from gi.repository import GLib

from fixture import TarneTestCase
from store import PREFERENCES, Store

BUILD = pathlib.Path(os.environ["TARNE_PROGRAM"]).resolve().parents[1]


def cpu_seconds(process):
    # The clock of a process by its id: of all threads, those that have ended included.
    return time.clock_gettime((~process << 3) | 2)


def bytes_written(process):
    """To the disk."""
    lines = pathlib.Path(f"/proc/{process}/io").read_text().splitlines()
    return int(next(line for line in lines if line.startswith("write_bytes")).split()[1])


class Measurement(TarneTestCase):
    """The program under the real clock, with a home of its own on the disk; the box's own /tmp,
    where its log goes, is memory. The accessibility bridge is on only where it is asked for."""

    notifier_sees_wall_clock = False

    def setUp(self):
        super().setUp()
        self.move_home()

    def move_home(self):
        """To a new one, without a past."""
        home = tempfile.TemporaryDirectory(dir=BUILD)
        self.addCleanup(home.cleanup)
        self.home = pathlib.Path(home.name)
        Store(self.home / "share").plant("UserPreferences", PREFERENCES)

    def environment(self):
        environment = super().environment()
        for name in self.clock.environment:
            del environment[name]
        return environment

    def launch_by_name(self, **how):
        self.set_accessible(True)
        self.launch(**how)
        self.set_accessible(False)

    def hide(self):
        self.desktop.xdotool("search", "--name", "^TARNE$", "windowunmap")
        # The bridge lets go of what it knew of the window.
        self.set_accessible(True)
        self.set_accessible(False)

    def set_accessible(self, on):
        self.desktop.call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                          GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled",
                                                 GLib.Variant("b", on))))

    @classmethod
    def results_of_run(cls):
        """What `runTest` has put into `results`; ends the program where it failed."""
        measurement = cls()
        measurement.results = {}
        outcome = measurement.run()
        if not outcome.wasSuccessful():
            sys.exit("\n".join(text for _, text in outcome.failures + outcome.errors))
        return measurement.results
