"""What a reader of the store sees of a session, reading all the time."""

import contextlib
import os
import sqlite3
import time

from fixture import TarneTestCase
from store import REFERENCE_DATE

FIVE_MINUTES = 300.0
READING_INTERVAL = 0.005
SECONDS = 90.0 if os.environ.get("TARNE_PROOF") == "long" else 15.0


class PublicationTestCase(TarneTestCase):
    def readings(self, seconds=SECONDS):
        """What "SessionActive" says, read every 5 ms."""
        active = []
        uri = f"file:{self.store.file}?mode=ro"
        with contextlib.closing(sqlite3.connect(uri, uri=True, timeout=10)) as connection:
            end = time.monotonic() + seconds
            while time.monotonic() < end:
                active += connection.execute(
                    "SELECT value FROM defaults WHERE key = 'SessionActive'").fetchone()
                time.sleep(READING_INTERVAL)
        return active

    def await_active(self, value):
        self.eventually(lambda: self.store.values(["SessionActive"]).get("SessionActive") == value,
                        f"SessionActive is {value}")
        time.sleep(1)  # Every writer's turn comes once a second.

    def restore_session(self):
        now = time.time() + self.clock.offset - REFERENCE_DATE
        self.store.plant_countdown(now - 60, FIVE_MINUTES, "Write report")
        self.launch()
        self.assert_shown("Pause")


class ARunningSession(PublicationTestCase):
    def test_is_active_in_999_of_1000_readings(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.await_active(1)
        readings = self.readings()
        print(f"proof: publication: {len(readings):,} readings in {SECONDS:.0f} s of a session, "
              f"{100 * sum(readings) / len(readings):.2f} % active")
        self.assertGreaterEqual(sum(readings) / len(readings), 0.999, self.runs(readings))

    @staticmethod
    def runs(readings):
        inactive = readings.count(0)
        return f"{inactive} of {len(readings)} readings say that no session is active"


class ARestoredSession(PublicationTestCase):
    """Both controllers have it, and only one of them is asked to pause and to end it."""

    def test_that_was_paused_is_not_seen_active(self):
        self.restore_session()
        self.await_active(1)
        self.press("Pause")
        self.await_active(0)
        self.assertEqual(set(self.readings(5)), {0})

    def test_that_was_paused_and_ended_is_never_seen_active_again(self):
        self.restore_session()
        self.press("Pause")
        self.assert_shown("Resume")
        self.press("Stop")
        self.assert_shown("How did you do with your goals?")
        self.node("Completed", role="radio button").press()
        self.press("Complete reflection")
        self.assert_shown("Session Feedback")
        self.press("Finish session")
        self.assert_shown("Session Setup")
        self.await_active(0)
        self.assertEqual(set(self.readings(8)), {0})
