"""A whole session on the real program: planned, counted down, and read from outside the program."""

import time
import uuid

from fixture import TarneTestCase
from store import REFERENCE_DATE, SESSION_KEYS, TIMER_KEYS

GOALS_AS_TYPED = "Write report, Review, "
GOALS_AS_SHOWN = "Write report, Review"
FIVE_MINUTES = 300.0


class SessionTestCase(TarneTestCase):
    def session_keys(self):
        return self.store.values(SESSION_KEYS)

    def timer_keys(self):
        return self.store.values(TIMER_KEYS)

    def await_published_session(self):
        # Two controllers write in turn, and only one of them has the session.
        self.eventually(lambda: self.session_keys().get("SessionActive") == 1,
                        lambda: f"the session is published: {self.session_keys()}")

    def published_session(self):
        found = {}

        def is_active():
            found.update(self.store.rows())
            return found.get("SessionActive", ("", 0))[1] == 1

        self.eventually(is_active, "the session is published")
        return {key: found[key] for key in SESSION_KEYS}

    def now(self):
        """The program's wall clock, in seconds since 2001."""
        return time.time() + self.clock.offset - REFERENCE_DATE

    def assert_finished_entry(self, entry, ended_at):
        self.assertEqual([goal["text"] for goal in entry["goals"]], ["Write report", "Review"])
        self.assertEqual([set(goal) for goal in entry["goals"]], [{"id", "text"}] * 2)
        self.assertEqual(entry["duration"], FIVE_MINUTES)
        self.assertAlmostEqual(entry["sessionDate"], ended_at, delta=5)
        for text in ("overallAssessment", "patternsObserved", "suggestions", "motivation",
                     "reflection"):
            self.assertEqual(entry[text], "", text)
        for identity in [entry["id"]] + [goal["id"] for goal in entry["goals"]]:
            self.assertEqual(str(uuid.UUID(identity)).upper(), identity)


class AWholeSession(SessionTestCase):
    def test_runs_from_typed_goals_through_a_pause_into_the_history(self):
        self.launch()
        self.assert_shown("Session Setup", "Configure your focus session and start stillhour",
                          "00:25:00", "Timer", "Insights", "History", "Settings")
        self.start_session(GOALS_AS_TYPED, minutes=5)
        started = self.now()
        self.await_remaining(290, 300)

        keys = self.published_session()
        self.assertEqual({key: kind for key, (kind, _) in keys.items()},
                         {"SessionActive": "integer", "SessionGoals": "text", "SessionId": "text",
                          "TimeRemaining": "double", "SessionDuration": "double",
                          "SessionProgress": "double", "LastUpdate": "double"})
        values = {key: value for key, (_, value) in keys.items()}
        self.assertEqual(values["SessionGoals"], GOALS_AS_SHOWN)
        self.assertEqual(str(uuid.UUID(values["SessionId"])).upper(), values["SessionId"])
        self.assertEqual(values["SessionDuration"], FIVE_MINUTES)
        self.assertTrue(280 < values["TimeRemaining"] <= 300, values)
        self.assertAlmostEqual(values["SessionProgress"], values["TimeRemaining"] / FIVE_MINUTES)
        self.assertAlmostEqual(values["LastUpdate"], self.now() + REFERENCE_DATE, delta=10)

        rows = self.store.rows()
        self.assertEqual({key: rows[key][0] for key in TIMER_KEYS},
                         {"TimerStartTime": "date", "TimerOriginalDuration": "double",
                          "TimerIsActive": "boolean", "TimerSessionGoal": "text"})
        timer = self.timer_keys()
        self.assertAlmostEqual(timer["TimerStartTime"], started, delta=10)
        self.assertEqual((timer["TimerOriginalDuration"], timer["TimerIsActive"],
                          timer["TimerSessionGoal"]), (FIVE_MINUTES, 1, GOALS_AS_TYPED))
        preferences = self.store.document("UserPreferences")
        self.assertEqual((preferences["defaultDuration"], preferences["lastGoal"]),
                         (FIVE_MINUTES, GOALS_AS_TYPED))

        self.press("Pause")
        self.assert_shown("⏸️ Paused", "Resume")
        paused_at = self.remaining()
        self.eventually(lambda: self.session_keys()["SessionActive"] == 0
                        and self.session_keys()["SessionGoals"] == "", "no session is published")
        self.clock.advance(60)
        self.assertEqual(self.remaining(), paused_at)
        self.assertEqual(self.timer_keys()["TimerIsActive"], 1)

        self.press("Resume")
        self.assert_gone("⏸️ Paused")
        self.await_remaining(paused_at - 90, paused_at - 60)
        self.assertEqual(self.store.history(), [])

        self.clock.advance(self.remaining() + 1)
        entry, = self.await_history(1)
        self.assert_finished_entry(entry, ended_at=self.now())
        self.assert_log_of_a_session()
        self.eventually(lambda: set(self.desktop.notifications()) ==
                        {("Session Complete", "Great job! Your session is complete."),
                         ("Session Complete! 🎉", "Great job! Your focus session is complete.")},
                        lambda: f"both notifications are shown: {self.desktop.notifications()}")

    def assert_log_of_a_session(self):
        log = self.program.log
        told = ["📱 TARNE SessionViewModel initialized - Safari extension can access via shared "
                "UserDefaults",
                f"📱 Starting new session: {GOALS_AS_TYPED}",
                f"📱 Added new session to history: {GOALS_AS_TYPED}",
                f"📱 Timer completed - session automatically saved to history: {GOALS_AS_TYPED}"]
        positions = [log.index(line) for line in told]
        self.assertEqual(positions, sorted(positions))
        self.assertEqual(log.count(told[0]), 2, "one line for each of the two controllers")
        self.assertTrue(any(line.startswith(f"📱 Session data updated: Active=1, "
                                            f"Goals={GOALS_AS_SHOWN}, TimeRemaining=")
                            for line in log))

    def test_that_is_abandoned_on_the_way_leaves_no_session(self):
        self.launch()
        self.choose_duration(5)
        self.press("Close")
        self.assert_gone("Session Goal")
        self.assert_shown("Start Session", "00:05:00")
        self.assertEqual(self.timer_keys(), {})
        self.assertFalse(self.program.logged("Starting new session"))


class TheSheets(SessionTestCase):
    SIZES = ((800, 600), (1000, 700), (900, 640))
    # Shows all of the faces: what has to be scrolled to is not on the screen.
    ROOM = (1000, 700)

    def test_space_twice_on_continue_leaves_one_sheet(self):
        self.launch()
        for size in self.SIZES:
            self.resize(*self.ROOM)
            self.press("Start Session")
            self.assert_shown("Select Session Duration")
            self.resize(*size)
            self.tab_to("Continue")
            self.desktop.xdotool("key", "--delay", 20, "space", "space")
            self.assert_shown("Start session")
            self.press("Close")
            # A sheet below would be uncovered by now.
            self.assert_shown("Session Setup")
        self.resize(*self.ROOM)
        self.start_session(GOALS_AS_TYPED, minutes=5)
        self.assert_shown("⏱️ Session")
        self.assertEqual(self.program.log.count(f"📱 Starting new session: {GOALS_AS_TYPED}"), 1)

    def test_a_double_click_presses_nothing_in_what_comes_up(self):
        self.launch()
        for number, size in enumerate(self.SIZES, start=1):
            self.resize(*self.ROOM)
            self.begin_session()
            self.press("Stop")
            self.assert_shown("How did you do with your goals?")
            self.rate_all("Completed")
            self.resize(*size)
            self.await_centred("How did you do with your goals?", size)
            self.click("Complete reflection", times=2)
            # The mouse's presses come in their order: the second click has come by now.
            self.click("Save & Share")
            self.eventually(lambda: self.program.log.count(
                "Session summary copied to clipboard") == number, "the summary is copied")
            self.assertEqual(self.timer_keys()["TimerIsActive"], 1)
            self.click("Finish session", times=2)
            self.open_tab("History")
            self.open_tab("Timer")
            self.assert_shown("Session Setup")

    def begin_session(self):
        self.press("Start Session")
        self.press("Continue")
        self.type_into("Session Goal", GOALS_AS_TYPED)
        self.press("Start session")
        self.assert_shown("Pause")

    def await_centred(self, name, size):
        def is_centred():
            left, top, *window = self.node("TARNE", role="frame").extents
            x, y, width, height = self.node(name, role="dialog").extents
            return tuple(window) == size == (2 * (x - left) + width, 2 * (y - top) + height)
        self.eventually(is_centred, f"{name} is in the middle of {size}")

    def rate_all(self, verdict):
        def options():
            return [node for node in self._visible_nodes()
                    if node.name == verdict and node.role == "radio button"]
        for option in options():
            option.press()
        self.eventually(lambda: all(option.has("checked") for option in options()),
                        "the goals are rated")

    def test_what_a_screen_reader_writes_becomes_the_goal(self):
        self.launch()
        self.choose_duration(5)
        self.tab_to("Close")
        self.node("Session Goal", role="text").write("Dictated")
        self.press("Start session")
        self.assert_shown("Pause")
        self.assertIn("📱 Starting new session: Dictated", self.program.log)


class ARestart(SessionTestCase):
    def test_after_a_crash_goes_on_with_the_session(self):
        self.launch()
        self.start_session(GOALS_AS_TYPED, minutes=5)
        first = self.published_session()["SessionId"][1]
        self.program.kill()
        self.assertTrue(self.store.is_whole())

        self.clock.advance(120)
        self.launch()
        self.assert_shown("⏱️ Session", "Pause")
        self.await_remaining(130, 180)
        restored = self.published_session()
        self.assertEqual(restored["SessionGoals"][1], GOALS_AS_SHOWN)
        self.assertNotEqual(restored["SessionId"][1], first)

        self.clock.advance(self.remaining() + 1)
        # Both controllers went on with it; their entries are one.
        entry, = self.await_history(1)
        self.eventually(lambda: self.program.logged("📱 Updated existing session in history: "),
                        "the other controller's session ran out too")
        self.assertEqual(len(self.store.history()), 1)
        self.assert_finished_entry(entry, ended_at=self.now())

    def test_after_the_end_finds_the_session_in_the_history(self):
        self.launch()
        self.start_session(GOALS_AS_TYPED, minutes=5)
        self.await_published_session()
        start = self.timer_keys()["TimerStartTime"]
        self.program.kill()

        self.clock.advance(660)
        self.launch()
        self.assert_shown("Session Setup", "Start Session")
        entry, = self.await_history(1)
        self.assert_finished_entry(entry, ended_at=start + FIVE_MINUTES)
        self.assertAlmostEqual(entry["sessionDate"], start + FIVE_MINUTES, places=6)
        self.eventually(lambda: self.timer_keys() == {}, "the timer keys are gone")
        self.assertTrue(self.program.logged(
            f"📱 Restored completed session saved to history: {GOALS_AS_TYPED}"))

    def test_while_paused_comes_back_running(self):
        self.launch()
        self.start_session(GOALS_AS_TYPED, minutes=5)
        self.press("Pause")
        self.assert_shown("⏸️ Paused")
        self.assertEqual(self.program.terminate(), 0)
        self.clock.advance(30)
        self.launch()
        self.assert_shown("Pause")
        self.await_remaining(200, 270)
