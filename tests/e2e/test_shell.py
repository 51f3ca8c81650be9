"""Starting, closing, quitting and finding the program again."""

import pathlib
import resource
import signal

from gi.repository import GLib

from fixture import TarneTestCase


class Quitting(TarneTestCase):
    def assert_a_signal_quits_and_keeps_the_session(self, number):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.program.send(number)
        self.assertEqual(self.program.wait(), 0)
        timer = self.store.values(["TimerIsActive", "TimerSessionGoal"])
        self.assertEqual(timer, {"TimerIsActive": 1, "TimerSessionGoal": "Write report"})

    def test_by_sigterm_keeps_the_session_for_the_next_launch(self):
        self.assert_a_signal_quits_and_keeps_the_session(signal.SIGTERM)

    def test_by_sigint_keeps_the_session_for_the_next_launch(self):
        self.assert_a_signal_quits_and_keeps_the_session(signal.SIGINT)

    def test_by_a_signal_that_comes_before_the_window_ends_cleanly_too(self):
        self.program = self.start()
        self.eventually(lambda: self.program.log, "the first line is logged")
        self.assertEqual(self.program.terminate(), 0)

    def test_stops_the_server_last(self):
        self.launch()
        self.eventually(lambda: self.program.logged("❌ Server binary not found"),
                        "the server was to be started")
        self.assertEqual(self.program.terminate(), 0)
        self.assertIn("🔴 No server process to stop", self.program.log[-1])


class WithNobodyReadingItsOutput(TarneTestCase):
    def test_the_program_runs_and_ends_as_ever(self):
        self.launch(is_heard=False)
        self.start_session("Write report", minutes=5)
        self.assertEqual(self.program.terminate(), 0)
        self.assertEqual(self.store.values(["TimerIsActive"]), {"TimerIsActive": 1})


class ClosingTheWindow(TarneTestCase):
    def test_leaves_the_session_running_and_a_second_start_shows_it_again(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")

        lines = len(self.program.log)
        self.eventually(lambda: "Active=1" in "".join(self.program.log[lines:]),
                        "the session goes on without a window")

        second = self.start()
        self.assertEqual(second.wait(), 0)
        self.eventually(self.window_id, "the first one's window is up again")
        self.assertEqual(second.log, [], "the second start did something of its own")
        self.assertTrue(self.program.is_running)
        self.assert_shown("⏱️ Session", "Pause")


class ASecondStart(TarneTestCase):
    def test_before_the_first_one_is_ready_ends_and_leaves_one_program(self):
        first, second = self.start(), self.start()
        self.eventually(lambda: not (first.is_running and second.is_running), "one of them ends")
        ended, staying = (second, first) if first.is_running else (first, second)
        self.assertEqual(ended.wait(), 0)
        self.program = staying
        self.eventually(self.window_id, "the window is up")
        self.assert_shown("Start Session")
        self.assertEqual(ended.log, [])


class WithoutASessionBus(TarneTestCase):
    has_session_bus = False

    def test_the_program_starts_and_a_second_one_ends(self):
        self.launch()
        self.eventually(lambda: self.program.logged("📱 Session data cleared: Active=0"),
                        "the program runs")
        second = self.start()
        self.assertEqual(second.wait(), 0)
        self.assertEqual(second.log, [])
        self.assertTrue(self.program.is_running)
        self.assertEqual(self.program.terminate(), 0)


class TheCommandLine(TarneTestCase):
    def start(self, **how):
        return super().start(arguments=["-platform", "nowhere", "-reverse"], **how)

    def test_has_no_options(self):
        self.launch()
        self.assert_shown("Start Session")
        timer, settings = self.node("Timer").extents, self.node("Settings").extents
        self.assertLess(timer[0], settings[0], "the screen is mirrored")


class TheMemoryThatHoldsTheKey(TarneTestCase):
    def test_is_dumped_neither_into_a_file_nor_to_a_handler(self):
        self.launch()
        limits = pathlib.Path(f"/proc/{self.program.pid}/limits").read_text()
        # A handler gets its dump at every limit but 1. 0 stays where an administrator has forbidden
        # all dumps.
        _, allowed = resource.getrlimit(resource.RLIMIT_CORE)
        limit = 0 if allowed == 0 else 1
        self.assertRegex(limits, rf"Max core file size +{limit} +{limit} ")


class AScreenReader(TarneTestCase):
    """What it gets to know, beside the names and roles that every test goes by."""

    def test_knows_which_buttons_are_disabled(self):
        self.launch()
        self.choose_duration(5)
        start = self.node("Start session", role="push button")
        self.assertFalse(start.has("enabled") or start.has("sensitive") or start.has("focusable"))
        self.type_into("Session Goal", "Read")
        self.eventually(lambda: start.has("enabled") and start.has("sensitive"),
                        "the start button is told as enabled")

    def test_presses_tabs_and_menu_entries(self):
        self.launch()
        self.open_tab("Settings")
        self.assert_shown("Save API Key")
        self.press("Menu")
        self.node("Menu", role="popup menu")
        self.node("Check for Updates...", role="menu item").press()
        self.assert_shown("Updates Are Not Set Up")

    def test_learns_of_an_error_and_finds_it_at_its_field(self):
        bus = self.desktop.accessibility
        shown = bus.listen("object:state-changed:showing")
        described = bus.listen("object:property-change:accessible-description")
        self.launch()
        self.press("Start Session")
        self.press("Custom Duration")
        field = self.node("5-180", role="text")
        error = "Duration must be at least 5 minutes"
        self.assertNotEqual(field.description, error)
        self.hear_all()
        described.clear()
        self.type_into("5-180", "4")
        self.assertEqual(field.description, error)
        self.node(error, role="notification")
        self.eventually(lambda: self.has_come(shown, "showing", 1, error), "the error is announced")
        self.eventually(lambda: self.has_come(described, "accessible-description", 0, "5-180"),
                        "the field's description is announced")

    @staticmethod
    def hear_all():
        """What has come so far is collected now."""
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass

    def has_come(self, events, detail, number, name):
        self.hear_all()
        return any(event[:2] == (detail, number) and event[2].name == name for event in events)


class TheKeyboardAlone(TarneTestCase):
    def test_plans_starts_and_pauses_a_session(self):
        self.launch()
        self.activate("Start Session")
        self.assert_shown("Select Session Duration")
        self.activate("Continue")
        self.assert_shown("Start session")
        self.tab_to("Session Goal", role="text")
        self.desktop.xdotool("type", "--delay", "5", "Read a book")
        self.activate("Start session")
        self.eventually(lambda: self.node("Pause").has("focused"), "Pause has the keyboard focus")
        self.desktop.xdotool("key", "space")
        self.assert_shown("⏸️ Paused")
        self.assertTrue(self.program.logged("📱 Starting new session: Read a book"))

    def test_ctrl_n_does_nothing(self):
        self.launch()
        before = self._outline()
        self.desktop.xdotool("key", "ctrl+n")
        lines = len(self.program.log)
        self.eventually(lambda: len(self.program.log) > lines, "the program went on")
        self.assertEqual(self._outline(), before)
