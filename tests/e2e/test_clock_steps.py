"""The real program while its wall clock is set, by a second to ten years in both directions."""

from store import REFERENCE_DATE
from test_session import SessionTestCase

GOALS = "Write report"
MINUTES = 25
LENGTH = MINUTES * 60.0
DAY = 86_400.0
TEN_YEARS = 3_652 * DAY
STEPS = (1.0, 61.0, 3_600.0, DAY, 30 * DAY, 365 * DAY, TEN_YEARS)
# The program publishes once a second, commits within another one, and a busy machine is late.
TOLERANCE_SECONDS = 4.0


class AClockThatIsSet(SessionTestCase):
    def begin(self):
        self.launch()
        self.start_session(GOALS, MINUTES)
        self.eventually(lambda: "TimerStartTime" in self.timer_keys(), "the count-down is stored")
        self.start_of_session = self.timer_keys()["TimerStartTime"]

    def await_owed(self):
        """What is left is told as the start and the wall clock say, now."""
        def is_told():
            keys = self.session_keys()
            owed = self.start_of_session + LENGTH - self.now()
            return (keys.get("SessionActive") == 1
                    and abs(keys["TimeRemaining"] - owed) < TOLERANCE_SECONDS
                    and abs(keys["LastUpdate"] - REFERENCE_DATE - self.now()) < TOLERANCE_SECONDS)
        self.eventually(is_told, lambda: f"what is left is told: {self.session_keys()}")
        self.assertEqual(self.timer_keys()["TimerStartTime"], self.start_of_session)

    def test_in_a_session_costs_nothing_once_it_is_right_again(self):
        self.begin()
        for step in STEPS:
            self.clock.advance(-step)
            self.await_owed()
            self.clock.advance(step)
            self.await_owed()
        self.assertEqual(self.store.history(), [])
        self.clock.advance(TEN_YEARS)
        self.assert_shown("How did you do with your goals?")
        entry, = self.await_history(1)
        self.assertAlmostEqual(entry["sessionDate"], self.now(), delta=30)
        self.clock.advance(-TEN_YEARS)
        self.assertEqual(self.store.history(), [entry])

    def test_in_a_pause_is_seen_after_it(self):
        self.begin()
        self.press("Pause")
        self.assert_shown("Resume")
        left = self.remaining()
        for step in STEPS:
            for direction in (-step, step):
                self.clock.advance(direction)
                self.assertEqual(self.remaining(), left)
        self.clock.advance(-DAY)
        self.press("Resume")
        self.await_owed()
        self.press("Pause")
        self.assert_shown("Resume")
        self.clock.advance(DAY + TEN_YEARS)
        self.press("Resume")
        self.assert_shown("How did you do with your goals?")
        entry, = self.await_history(1)
        self.assertAlmostEqual(entry["sessionDate"], self.now(), delta=30)

    def test_while_the_program_is_away_ends_the_session_at_its_planned_moment(self):
        self.begin()
        self.program.kill()
        self.clock.advance(-TEN_YEARS)
        self.launch()
        self.await_owed()
        self.program.kill()
        self.clock.advance(2 * TEN_YEARS)
        self.launch()
        self.assert_shown("Session Setup")
        entry, = self.await_history(1)
        self.assertAlmostEqual(entry["sessionDate"], self.start_of_session + LENGTH, places=6)

    def test_leaves_every_screen_in_every_year(self):
        self.begin()
        self.press("Stop")
        self.node("Completed", role="radio button").press()
        self.press("Complete reflection")
        self.press("Finish session")
        for step in (-TEN_YEARS, TEN_YEARS, TEN_YEARS, -TEN_YEARS):
            self.clock.advance(step)
            for tab, text in (("Insights", "Focus Streak"), ("History", "Session History"),
                              ("Timer", "Start Session")):
                self.open_tab(tab)
                self.assert_shown(text)
        self.assertEqual(len(self.store.history()), 1)
