"""What a user's machine does to a program: crashes, dark desktops, clocks that jump."""

import random
import subprocess

from fixture import TarneTestCase
from store import TIMER_KEYS

CRASHES = 5


class ACrash(TarneTestCase):
    def test_at_any_instant_of_a_session_loses_nothing_but_the_last_second(self):
        self.launch()
        self.start_session("Write report", minutes=180)
        self.eventually(lambda: len(self.store.values(TIMER_KEYS)) == 4, "the session is stored")
        start = self.store.values(TIMER_KEYS)["TimerStartTime"]
        instants = random.Random(20261121)
        for _ in range(CRASHES):
            lines = len(self.program.log)
            instant = instants.randrange(1, 5)
            self.eventually(lambda: len(self.program.log) >= lines + instant, "the session ticks")
            self.program.kill()
            self.assertTrue(self.store.is_whole())
            timer = self.store.values(TIMER_KEYS)
            self.assertEqual((timer["TimerStartTime"], timer["TimerOriginalDuration"],
                              timer["TimerIsActive"], timer["TimerSessionGoal"]),
                             (start, 10800.0, 1, "Write report"))
            self.launch()
            self.assert_shown("⏱️ Session", "Pause")


class TheWallClock(TarneTestCase):
    def test_set_back_by_a_day_lengthens_the_session_and_ends_nothing(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.clock.advance(-86_400)
        self.await_remaining(86_400 + 200, 86_400 + 300)
        self.clock.advance(86_400)
        self.await_remaining(200, 300)
        self.assertEqual(self.store.history(), [])

    def test_set_forth_by_a_day_completes_the_session(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.clock.advance(86_400)
        entry, = self.await_history(1)
        self.assertEqual(entry["duration"], 300.0)


DARK_COLOURS = "\n".join(
    f"[Colors:{group}]\nBackgroundNormal=20,20,20\nForegroundNormal=240,240,240\n"
    for group in ("Window", "View", "Button", "Selection", "Tooltip"))


class ADarkDesktop(TarneTestCase):
    def test_does_not_change_the_screens(self):
        self.launch()
        light = self.colours_of_the_setup_face()
        self.assertEqual(self.program.terminate(), 0)

        (self.home / "config").mkdir(exist_ok=True)
        (self.home / "config" / "kdeglobals").write_text(DARK_COLOURS)
        self.extra_environment = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}
        self.launch()
        self.assertEqual(self.colours_of_the_setup_face(), light)

    def colours_of_the_setup_face(self):
        """The colours of four places of the window's ground and of the button's."""
        picture = self.folder / "face.png"
        self.assert_shown("Start Session")
        self.desktop.screenshot(picture)
        left, top, width, height = self.node("Start Session", role="push button").extents
        places = [(left + 8, top + height // 2), (left - 60, top), (left + width + 60, top + 40),
                  (left, top - 30)]
        format_ = "".join(f"%[pixel:p{{{x},{y}}}]\n" for x, y in places)
        return subprocess.run(["convert", str(picture), "-format", format_, "info:"], check=True,
                              capture_output=True, text=True, timeout=30).stdout
