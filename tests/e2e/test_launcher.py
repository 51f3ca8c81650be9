"""The launcher and the way in on a machine without a desktop."""

import os
import pathlib
import signal
import subprocess

import box
from fixture import PROGRAM, TarneTestCase

LAUNCHER = box.SOURCES / "packaging" / "own-namespace"
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
        found = []
        for process in pathlib.Path("/proc").iterdir():
            try:
                if process.name.isdigit() and os.readlink(process / "exe") == PROGRAM:
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


class AMachineWithoutADesktop(LauncherTestCase):
    def test_gets_a_bus_a_key_store_and_a_picture_of_the_window(self):
        picture = self.folder / "tarne.png"
        environment = self.environment_of_a_user()
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"):
            del environment[name]
        environment["XDG_RUNTIME_DIR"] = str(self.folder / "bare")
        (self.folder / "bare").mkdir(mode=0o700)
        script = self.run_script(RUN_ON_DESKTOP, PROGRAM, picture, environment=environment)
        self.eventually(lambda: f"The picture of its window: {picture}" in self.output.read_text(),
                        lambda: f"the picture is told: {self.tail()}", within=60)
        size = subprocess.run(["identify", "-format", "%wx%h", picture], capture_output=True,
                              text=True, check=True).stdout
        self.assertEqual(size, "1000x700")
        self.assertIn("No session bus: starting one", self.output.read_text())
        script.terminate()
        self.assertEqual(script.wait(30), 0)
        self.assertEqual(self.program_ids(), [])
