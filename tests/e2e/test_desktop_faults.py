"""A desktop whose services are missing, die, or let the machine sleep."""

import signal
import time

from fixture import TarneTestCase
from store import REFERENCE_DATE

FIVE_MINUTES = 300.0
IMMEDIATE = ("Session Complete", "Great job! Your session is complete.")
SCHEDULED = ("Session Complete! 🎉", "Great job! Your focus session is complete.")


class DesktopFault(TarneTestCase):
    def await_run_out(self):
        self.eventually(lambda: self.program.logged("📱 Timer completed - session automatically"),
                        "the session runs out")

    def await_scheduled(self):
        """Until the notifier has taken the notice of the end: one that is asked for behind its own
        moment, which the clock of these tests reaches at a leap, never comes."""
        self.eventually(lambda: len(self.requests()) == 1, "the end is scheduled")

    def await_both_notifications(self):
        self.eventually(lambda: {IMMEDIATE, SCHEDULED} <= set(self.desktop.notifications()),
                        lambda: f"both are shown: {self.desktop.notifications()}")
        self.assertEqual(len(self.desktop.notifications()), 2)

    def now(self):
        """The program's wall clock, in seconds since 2001."""
        return time.time() + self.clock.offset - REFERENCE_DATE


class NotificationsThatNobodyShows(DesktopFault):
    def test_from_the_start_cost_the_session_nothing_and_wait_for_a_daemon(self):
        self.desktop.stop_notifications()
        self.launch()
        self.start_session("Write report", minutes=5)
        self.await_scheduled()
        self.clock.advance(FIVE_MINUTES)
        self.await_run_out()
        self.eventually(lambda: len(self.requests()) == 2, "both wait for a daemon")
        self.desktop.start_notifications()
        self.await_both_notifications()

    def test_since_the_daemon_has_died_wait_for_its_successor(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.await_scheduled()
        self.desktop.stop_notifications()
        self.clock.advance(FIVE_MINUTES)
        self.await_run_out()
        self.eventually(lambda: len(self.requests()) == 2, "both wait for a daemon")
        self.desktop.start_notifications()
        self.await_both_notifications()


class ASleepingMachine(DesktopFault):
    def test_that_wakes_behind_the_end_completes_the_session_once_and_at_the_waking(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.await_scheduled()
        self.desktop.tell_of_sleep(True)
        self.program.send(signal.SIGSTOP)
        self.clock.advance(3600)
        self.program.send(signal.SIGCONT)
        self.desktop.tell_of_sleep(False)
        self.await_run_out()
        entry, = self.await_history(1)
        self.assertAlmostEqual(entry["sessionDate"], self.now(), delta=20)
        self.await_both_notifications()
        lines = len(self.program.log)
        self.eventually(lambda: len(self.program.log) > lines + 2, "two more seconds pass")
        self.assertEqual(sum("📱 Timer completed" in line for line in self.program.log), 1)


class WithoutAnyBus(DesktopFault):
    has_session_bus = False

    def test_a_session_goes_on_and_runs_out(self):
        self.store.plant_countdown(self.now() - 60, FIVE_MINUTES, "Write report, Review")
        self.launch()
        self.eventually(lambda: any("Active=1, Goals=Write report, Review, " in line
                                    for line in self.program.log), "the session goes on")
        # Once for each of the two controllers.
        told = "Notification permission error: There is no session bus."
        self.eventually(lambda: self.program.log.count(told) == 2, "the missing bus is told of")
        self.clock.advance(FIVE_MINUTES)
        self.await_run_out()
        entry, = self.await_history(1)
        self.assertEqual([goal["text"] for goal in entry["goals"]], ["Write report", "Review"])
        self.assertEqual(self.program.terminate(), 0)
