"""Measures the real program from outside and prints the figures as JSON.

    whole_process.py PROGRAM [SECONDS]

In a box with a display of its own, software rendering, the real clock. CPU and disk figures are
means over SECONDS (30); those of the server's supervision have intervals of their own, since they
hang on its health checks. The accessibility bridge is on only while the session is being started.
"""

import json
import os
import pathlib
import shutil
import statistics
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))
import box

STAND_IN_SERVER = pathlib.Path(box.__file__).with_name("stand_in_server.py")
HEALTH_CHECK_INTERVAL = 30
STARTS = 7
PLACES = [(640, 450), (300, 300), (980, 600), (640, 200)]


def figures(program, seconds):
    os.environ["TARNE_PROGRAM"] = program
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    from desktop import DISPLAY
    from fixture import TarneTestCase
    from gi.repository import GLib
    from screen import Screen
    from store import PREFERENCES, Store

    class Measurement(TarneTestCase):
        notifier_sees_wall_clock = False

        def setUp(self):
            super().setUp()
            self.move_home()

        def move_home(self):
            """To a new one on the disk, while the log is not: the box's own /tmp is memory."""
            home = tempfile.TemporaryDirectory(dir=pathlib.Path(program).resolve().parents[1])
            self.addCleanup(home.cleanup)
            self.home = pathlib.Path(home.name)
            Store(self.home / "share").plant("UserPreferences", PREFERENCES)

        def environment(self):
            environment = super().environment()
            for name in self.clock.environment:
                del environment[name]
            return environment

        def runTest(self):
            screen = Screen(DISPLAY)
            self.set_accessible(False)
            self.results = {"first frame s": statistics.median(
                self.first_frame(screen) for _ in range(STARTS))}
            self.set_accessible(True)
            self.launch()
            self.set_accessible(False)
            time.sleep(5)
            self.results["resident MB"] = self.resident_kilobytes() / 1024
            self.results["idle bytes/s"] = self.rates(seconds)[1]
            self.set_accessible(True)
            self.start_session("Write report, Review", minutes=180)
            self.set_accessible(False)
            time.sleep(5)
            cpu, disk = self.rates(seconds)
            self.results |= {"visible CPU %": cpu, "running bytes/s": disk}
            self.hide()
            self.results["hidden CPU %"] = self.rates(seconds)[0]
            self.program.kill()
            self.measure_supervision()

        def measure_supervision(self):
            """What a server costs beside the idle program, whose window is hidden."""
            self.move_home()
            interval = HEALTH_CHECK_INTERVAL - 5
            self.launch_hidden()
            self.results["alone CPU %"] = self.rates(interval)[0]
            self.program.kill()
            server = self.folder / "tarne-server"
            shutil.copy(STAND_IN_SERVER, server)
            server.chmod(0o755)
            self.launch_hidden(has_own_network=True)
            self.await_health_check()
            self.results["supervising CPU %"] = self.rates(interval)[0]
            self.await_health_check()
            time.sleep(HEALTH_CHECK_INTERVAL / 2)
            self.results["checking CPU %"] = self.rates(2 * HEALTH_CHECK_INTERVAL)[0]

        def launch_hidden(self, **how):
            self.set_accessible(True)
            self.launch(**how)
            self.hide()

        def hide(self):
            self.desktop.xdotool("search", "--name", "^TARNE$", "windowunmap")
            self.set_accessible(True)
            self.set_accessible(False)
            time.sleep(2)

        def await_health_check(self):
            """Waits until the next one has passed."""
            def passed():
                return self.program.log.count("✅ Server health check passed")
            before = passed()
            self.eventually(lambda: passed() > before, "the server's health is checked",
                            HEALTH_CHECK_INTERVAL + 10)

        def first_frame(self, screen):
            begin = time.monotonic()
            started = self.start()
            end = screen.await_drawing(PLACES, within=30)
            started.kill()
            self.eventually(lambda: all(screen.is_black(*place) for place in PLACES),
                            "the screen is black again")
            return end - begin

        def set_accessible(self, on):
            self.desktop.call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                              "Set", GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled",
                                                            GLib.Variant("b", on))))

        def resident_kilobytes(self):
            status = pathlib.Path(f"/proc/{self.program.pid}/status").read_text()
            return int(next(line for line in status.splitlines() if "VmRSS" in line).split()[1])

        def rates(self, seconds):
            """Per cent of a core, and bytes a second to the disk, over the coming seconds."""
            before = self.spent()
            time.sleep(seconds)
            cpu, disk = (after - then for after, then in zip(self.spent(), before))
            return 100 * cpu / seconds, disk / seconds

        def spent(self):
            # The clock of a process by its id: of all threads, those that have ended included.
            cpu = time.clock_gettime((~self.program.pid << 3) | 2)
            io = pathlib.Path(f"/proc/{self.program.pid}/io").read_text().splitlines()
            return cpu, int(next(line for line in io if line.startswith("write_bytes")).split()[1])

    measurement = Measurement()
    outcome = measurement.run()
    if not outcome.wasSuccessful():
        sys.exit("\n".join(text for _, text in outcome.failures + outcome.errors))
    return measurement.results


if __name__ == "__main__":
    box.enter(__file__, program=sys.argv[1])
    print(json.dumps(figures(sys.argv[1], float((sys.argv[2:] or ["30"])[0]))))
