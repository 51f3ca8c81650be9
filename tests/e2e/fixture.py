"""The vocabulary of the end-to-end tests."""

import contextlib
import os
import pathlib
import re
import shutil
import sqlite3
import tempfile
import unittest

from gi.repository import GLib

from desktop import Desktop
from program import Program, WallClock
from store import PREFERENCES, Store
from waiting import PATIENCE, eventually

PROGRAM = os.environ["TARNE_PROGRAM"]
ARTIFACTS = pathlib.Path(os.environ["TARNE_ARTIFACTS"])
LAUNCH_PATIENCE = 60.0
NOTIFIER = "com.tarne.app.Notifier1"
NOTIFIER_PROGRAM = pathlib.Path(PROGRAM).with_name("tarne-notifier")


# What the lines of the log begin with: nothing else belongs on standard output.
LOG_LINES = ("📱 ", "🔍 ", "🟢 ", "🟡 ", "🔴 ", "🔪 ", "🧹 ", "⚠️ ", "❌ ", "✅ ", "🖥️ Server: ",
             "   Checked ", "Notification permission error: ", "Failed to schedule notification: ",
             "Session summary copied to clipboard")


class TarneTestCase(unittest.TestCase):
    """A home without a past, a wall clock to move, and a program driven by accessible names.

    Every line that the program writes to standard error fails the test, unless the test takes
    it out with `expect_error`; so does one on standard output that is not the log's.
    """

    has_session_bus = True
    has_seen_onboarding = True
    # Its timer waits on the real one in any case.
    notifier_sees_wall_clock = True
    screen = "1280x900"
    extra_environment = {}

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tarne-e2e-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.home = self.folder / "home"
        self.home.mkdir()
        self.clock = WallClock(self.folder)
        self.desktop = Desktop(self.folder, self.screen, self.offered_services())
        self.addCleanup(self.desktop.close)
        self.store = Store(self.home / "share")
        if self.has_seen_onboarding:
            self.store.plant("UserPreferences", PREFERENCES)
        self.program = None
        self.programs = []
        # A busy machine may take longer to start the notifier than the program waits for it, and to
        # hand a key to assistive tools than Qt does.
        self.expected_errors = ["the notifier does not answer (no answer)",
                                "QSpiApplication::keyEventError"]
        self.addCleanup(self._end_programs)

    def tearDown(self):
        errors = [line for program in self.programs for line in program.errors
                  if not any(text in line for text in self.expected_errors)]
        strays = [line for program in self.programs for line in program.whole_lines
                  if not line.startswith(LOG_LINES)]
        if errors or strays or self._has_failed():
            self._keep_artifacts()
        if errors:
            self.fail("\n".join(["lines on standard error:", *errors]))
        if strays:
            self.fail("\n".join(["lines on standard output that are not the log's:", *strays]))

    # -- the notifier -----------------------------------------------------------------------

    def offered_services(self):
        """A folder of what the bus starts on demand: the notifier, in the user's home."""
        folder = self.folder / "services"
        folder.mkdir()
        variables = {"HOME": self.home, "XDG_DATA_HOME": self.home / "share", "TZ": "UTC"}
        if self.notifier_sees_wall_clock:
            variables |= self.clock.environment
        words = " ".join(f"'{name}={value}'" for name, value in variables.items())
        (folder / f"{NOTIFIER}.service").write_text(
            f"[D-BUS Service]\nName={NOTIFIER}\nExec=/usr/bin/env {words} '{NOTIFIER_PROGRAM}'\n")
        return folder

    def requests(self):
        """The identifiers of the requests in the notifier's file."""
        file = self.home / "share" / "com.tarne.app" / "notifier" / "requests.sqlite"
        if not file.exists():
            return []
        try:
            with contextlib.closing(sqlite3.connect(f"file:{file}?mode=ro", uri=True)) as opened:
                return [key for key, in opened.execute("SELECT key FROM defaults")]
        except sqlite3.OperationalError:
            return []  # It is being made.

    # -- the program ------------------------------------------------------------------------

    def environment(self):
        environment = {"PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC",
                       "HOME": str(self.home), "XDG_DATA_HOME": str(self.home / "share"),
                       "XDG_CONFIG_HOME": str(self.home / "config"),
                       "XDG_CACHE_HOME": str(self.home / "cache")}
        environment |= self.desktop.environment | self.clock.environment | self.extra_environment
        if not self.has_session_bus:
            # Without an address a bus would be looked for, and one started.
            nobody = f"unix:path={self.folder}/no-bus"
            environment |= {"DBUS_SESSION_BUS_ADDRESS": nobody, "DBUS_SYSTEM_BUS_ADDRESS": nobody}
        return environment

    def start(self, executable=PROGRAM, **how):
        """Starts the program and does not wait for anything; `how` is as Program takes it."""
        program = Program(executable, self.folder, self.environment(), **how)
        self.programs.append(program)
        return program

    def launch(self, **how):
        """Starts the program and waits until its window is up and has the keyboard."""
        self.program = self.start(**how)
        self.eventually(lambda: not self.program.is_running or self.window_id(),
                        "the window is up", LAUNCH_PATIENCE)
        self.assertTrue(self.program.is_running, self._state("ended at its start"))
        self.focus_window()
        if self.has_session_bus:
            self.node("Start Session", "Pause", "Resume", "Next", within=LAUNCH_PATIENCE)

    def window_id(self):
        return self.desktop.xdotool("search", "--onlyvisible", "--name", "TARNE").split("\n")[0]

    def focus_window(self):
        # There is no window manager that would give it the focus.
        self.desktop.xdotool("windowfocus", "--sync", self.window_id())

    def expect_error(self, text):
        self.expected_errors.append(text)

    def eventually(self, condition, what, within=PATIENCE):
        def look():
            try:
                return condition()
            except GLib.Error:
                return None  # What was looked at vanished under the look.
        return eventually(look, self._state(what), within)

    # -- the screen -------------------------------------------------------------------------

    def find(self, *names, role=None):
        """The first visible node with one of the names; None when there is none now."""
        for node in self._visible_nodes():
            if node.name in names and (role is None or node.role == role):
                return node
        return None

    def _visible_nodes(self):
        application = self.desktop.accessibility.application(self.program.pid)
        try:
            yield from application.visible_descendants() if application else ()
        except GLib.Error:
            pass  # The tree changed under the walk; who waits for something looks again.

    def node(self, *names, role=None, within=PATIENCE):
        return self.eventually(lambda: self.find(*names, role=role),
                               f"{' or '.join(names)} is on the screen", within)

    def press(self, name):
        """Presses a control through the accessibility tree."""
        self.node(name, role="push button").press()

    def click(self, name, times=1):
        """Presses a control with the mouse; twice makes a double click."""
        left, top, width, height = self.node(name, role="push button").extents
        self.desktop.xdotool("mousemove", left + width // 2, top + height // 2,
                             "click", "--repeat", times, "--delay", 60, 1)

    def resize(self, width, height):
        self.desktop.xdotool("windowsize", self.window_id(), width, height)
        self.eventually(lambda: f"WIDTH={width}\nHEIGHT={height}" in self.desktop.xdotool(
            "getwindowgeometry", "--shell", self.window_id()), "the window has its size")

    def open_tab(self, name):
        tab = self.node(name, role="page tab")
        tab.press()
        self.eventually(lambda: tab.has("selected"), f"the tab {name} is selected")

    def type_into(self, name, text):
        """Puts the keyboard focus into a field and replaces its text by typing."""
        field = self.node(name, role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), f"{name} has the keyboard focus")
        self.desktop.xdotool("key", "ctrl+a", "Delete")
        self.desktop.xdotool("type", "--delay", "5", text)
        self.eventually(lambda: field.text == text,
                        lambda: f"{name} holds {text!r}, not {field.text!r}")

    def tab_to(self, name, role="push button"):
        """Moves the keyboard focus by Tab until the control has it."""
        for _ in range(40):
            if self.node(name, role=role).has("focused"):
                return
            self.desktop.xdotool("key", "Tab")
        self.fail(self._state(f"Tab does not lead to {name}")())

    def activate(self, name):
        """Presses a control by the keyboard alone."""
        self.tab_to(name)
        self.desktop.xdotool("key", "space")

    # -- a session --------------------------------------------------------------------------

    def start_session(self, goals, minutes):
        """Goes the user's way from the setup face to a running session of a custom length."""
        self.choose_duration(minutes)
        self.type_into("Session Goal", goals)
        self.press("Start session")
        self.assert_shown("Pause")

    def choose_duration(self, minutes):
        self.press("Start Session")
        self.assert_shown("Select Session Duration")
        self.press("Custom Duration")
        self.type_into("5-180", str(minutes))
        self.press("Set")
        hours, rest = divmod(minutes, 60)
        self.assert_shown(f"{hours} hours {rest} minutes" if hours else f"{minutes} minutes")
        self.press("Continue")
        self.assert_shown("Start session")

    def remaining(self):
        """The count-down on the screen, in seconds; None where there is none."""
        for node in self._visible_nodes():
            if match := re.fullmatch(r"(\d\d):(\d\d):(\d\d)", node.name):
                hours, minutes, seconds = map(int, match.groups())
                return (hours * 60 + minutes) * 60 + seconds
        return None

    def await_remaining(self, least, most):
        self.eventually(lambda: least <= (self.remaining() or -1) <= most,
                        f"{least} to {most} seconds are left on the screen")

    def await_history(self, count):
        self.eventually(lambda: len(self.store.history()) == count,
                        lambda: f"{count} entries in the history, not {self.store.history()}")
        return self.store.history()

    def assert_shown(self, *names):
        for name in names:
            self.node(name)

    def assert_gone(self, name):
        self.eventually(lambda: self.find(name) is None, f"{name} is gone")

    # -- what a failure leaves --------------------------------------------------------------

    def _state(self, what):
        """Describes what was expected together with what there was instead."""
        def describe():
            parts = [what() if callable(what) else what]
            for program in self.programs:
                parts += [f"-- running: {program.is_running}, output of {program.pid}:",
                          *program.log[-15:], "-- errors:", *program.errors[-15:]]
            parts += ["-- the screen:", *self._outline()]
            return "\n".join(parts)
        return describe

    def _outline(self):
        if self.program is None:
            return []
        try:
            application = self.desktop.accessibility.application(self.program.pid)
            return application.outline() if application else ["no accessible application"]
        except GLib.Error as error:
            return [f"unreadable: {error.message}"]

    def _has_failed(self):
        result = self._outcome.result
        return any(test is self for test, _ in result.failures + result.errors)

    def _keep_artifacts(self):
        kept = ARTIFACTS / self.id()
        kept.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot(kept / "screen.png")
        for log in self.folder.glob("*.log"):
            shutil.copy(log, kept)
        print(f"picture and logs: {kept}")

    def _end_programs(self):
        for program in self.programs:
            program.kill()
