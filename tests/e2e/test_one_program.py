"""One program a store, whichever bus a second one is started on."""

import contextlib
import fcntl
import os
import signal
import struct

from fixture import TarneTestCase
from test_server import ServerTestCase

F_OFD_GETLK = 36
FLOCK = struct.Struct("hhqqi4x")  # type, whence, start, length, process id

# How a program may find, or not find, the desktop's bus.
DESKTOPS = "the desktop's bus"
ANOTHER = "another bus"
NOBODYS = "an address where nobody listens"


class OneProgramTestCase(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.bus = DESKTOPS
        self.other_bus = self.desktop.start_bus("other-bus")

    def environment(self):
        environment = super().environment()
        if self.bus == ANOTHER:
            environment["DBUS_SESSION_BUS_ADDRESS"] = self.other_bus
        elif self.bus == NOBODYS:
            environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/nobody"
        return environment

    def start_on(self, bus):
        self.bus = bus
        return self.start()

    def launch_on(self, bus):
        self.bus = bus
        # Only the desktop's bus leads to the accessibility tree.
        self.has_session_bus = bus == DESKTOPS
        self.launch()
        self.eventually(lambda: self.program.logged("❌ Server binary not found"),
                        "the launch is done")

    def lock_holder_exists(self):
        """What another program learns that asks for the lock and never takes it."""
        lock = self.store.file.with_name("defaults.lock")
        with contextlib.closing(os.fdopen(os.open(lock, os.O_RDWR), "r+b")) as file:
            answer = fcntl.fcntl(file, F_OFD_GETLK, FLOCK.pack(fcntl.F_WRLCK, 0, 0, 0, 0))
        return FLOCK.unpack(answer)[0] != fcntl.F_UNLCK

    def stored_bytes(self):
        return {file.name: file.read_bytes() for file in self.store.file.parent.glob("*.sqlite*")
                if not file.name.endswith("-shm")}

    def assert_second_changes_nothing(self, bus):
        before = self.stored_bytes()
        second = self.start_on(bus)
        self.assertEqual(second.wait(), 0)
        self.assertEqual(second.log, [], "the second start did something of its own")
        self.assertEqual(self.stored_bytes(), before)
        self.assertTrue(self.program.is_running)


class ASecondStart(OneProgramTestCase):
    def test_beside_a_program_on_a_bus_ends_and_shows_the_window_from_anywhere(self):
        self.launch_on(DESKTOPS)
        for bus in (DESKTOPS, ANOTHER, NOBODYS):
            with self.subTest(bus):
                self.press("Close window")
                self.eventually(lambda: not self.window_id(), "the window is closed")
                self.assert_second_changes_nothing(bus)
                self.eventually(self.window_id, "the first one's window is up again")
                self.assert_shown("Start Session")

    def test_beside_a_program_without_a_bus_ends(self):
        self.launch_on(NOBODYS)
        for bus in (DESKTOPS, ANOTHER, NOBODYS):
            with self.subTest(bus):
                self.assert_second_changes_nothing(bus)

    def test_after_a_crash_on_any_bus_is_a_start_like_any_other(self):
        for first, second in ((DESKTOPS, ANOTHER), (ANOTHER, NOBODYS), (NOBODYS, DESKTOPS)):
            with self.subTest(first=first, second=second):
                self.launch_on(first)
                self.assertTrue(self.lock_holder_exists())
                self.program.kill()
                self.assertFalse(self.lock_holder_exists())
                self.launch_on(second)
                self.assertTrue(self.lock_holder_exists())
                self.program.kill()


class AStartDuringAQuit(ServerTestCase):
    def test_waits_for_the_end_and_then_starts(self):
        self.server.write_text("#!/bin/bash\ntrap '' TERM\necho ready\n"
                               "while true; do sleep 1; done\n")
        self.launch()
        self.eventually(lambda: self.program.logged("🖥️ Server: ready"), "the server is up")
        first = self.program
        first.send(signal.SIGTERM)
        self.eventually(lambda: first.logged("🔴 Stopping server..."), "the first one is ending")
        self.program = self.start()
        self.assertTrue(first.is_running)
        self.assertEqual(first.wait(), 0)
        self.eventually(self.window_id, "the second one's window is up", within=60)
        self.assert_shown("Start Session")
        self.assertTrue(self.program.is_running)


class WithStandardDescriptorsClosed(TarneTestCase):
    def start(self, **how):
        return super().start(executable="/bin/sh", arguments=[
            "-c", f"exec {os.environ['TARNE_PROGRAM']} {self.closed}"], **how)

    def test_the_program_runs_as_ever(self):
        for self.closed in ("<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
            with self.subTest(self.closed):
                self.launch()
                self.assert_shown("Start Session")
                self.assertEqual(self.program.terminate(), 0)
