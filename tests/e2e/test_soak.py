"""A month of sessions in minutes: nothing in any of the programs grows.

Ten sessions, and with TARNE_PROOF=long the 200 of a month.
"""

import os
import statistics
import unittest

from bridge import Bridge
from fixture import LAUNCH_PATIENCE, NOTIFIER
from gemini import KEY
from steadiness import ALLOWED_GROWTH_BYTES, Figures, faults, figures_of, growth
from test_companions import CompanionsTestCase

SESSIONS_OF_MONTH = 200
SESSIONS = SESSIONS_OF_MONTH if os.environ.get("TARNE_PROOF") == "long" else 10
WARM_UP = max(4, SESSIONS // 10)
DAYS = 30
SUSPENDS_A_DAY = 3
# Those of a session's own road are four: duration, goals, reflection, feedback.
SHEETS_A_SESSION = 5
MINUTES = 5
GOALS = "Write report"
# What the log gets by the clock, however long a session takes.
BY_THE_CLOCK = ("📱 Session data updated: ", "📱 Session data cleared: ",
                "✅ Server health check passed")
HOURS_BETWEEN = DAYS * 24 / SESSIONS_OF_MONTH


class AMonth(CompanionsTestCase):
    def setUp(self):
        super().setUp()
        self.gemini.set_scenario("good")
        self.desktop.ask("secret-tool", "store", "--label=TARNE", "service", "com.tarne.app",
                         "account", "GeminiAPIKey", typed=KEY)
        self.series = {"TARNE": [], "tarne-server": [], "tarne-notifier": [], "tarne-bridge": []}
        self.log_bytes = []
        self.suspends = self.sheets = self.reconnections = 0

    def test_leaves_every_program_as_small_as_it_was(self):
        self.launch()
        self.start_bridge("ready")
        browsers = [self.browser(), self.browser()]
        self.start_session(GOALS, MINUTES)
        self.bridge.await_state("session", "active")
        self.press("Stop")
        self.wrap_up()
        self.log_read = 0
        self.lines_of_session()
        for number in range(SESSIONS):
            self.suspend_between(number)
            for browser in browsers:
                browser.close()
            browsers = [self.browser(), self.browser()]
            self.reconnections += len(browsers)
            self.hold_session(number, browsers)
        for browser in browsers:
            browser.close()
        self.report()

    def browser(self):
        """The bridge of a browser that was just started."""
        bridge = Bridge(self.environment())
        self.addCleanup(bridge.close)
        bridge.await_state("session", "inactive")
        return bridge

    # -- a session --------------------------------------------------------------------------

    def hold_session(self, number, browsers):
        self.press("Start Session")
        self.press("Close")
        self.assert_gone("Select Session Duration")
        self.press("Start Session")
        self.press("Continue")
        self.press("Start session")
        self.assert_shown("Pause")
        for bridge in (self.bridge, *browsers):
            bridge.await_state("session", "active")
        self.bridge.ask("classify", title=f"Page {number}")
        self.take_figures()
        if number % 2:
            self.clock.advance(MINUTES * 60 + 1)
        else:
            self.press("Stop")
        self.wrap_up()
        self.sheets += SHEETS_A_SESSION
        self.log_bytes.append(self.lines_of_session())

    def wrap_up(self):
        self.assert_shown("How did you do with your goals?")
        self.node("Completed", role="radio button").press()
        self.press("Complete reflection")
        self.node("Finish session", within=LAUNCH_PATIENCE)
        self.press("Finish session")
        self.assert_gone("Session Feedback")
        self.node("Start Session", role="push button")
        self.bridge.await_state("session", "inactive")

    def suspend_between(self, number):
        """Some hours go by, in which the machine sleeps as often as it does in such a time."""
        until = int((number + 1) * HOURS_BETWEEN * SUSPENDS_A_DAY / 24)
        naps = max(0, until - self.suspends)
        for _ in range(naps):
            self.desktop.tell_of_sleep(True)
            self.clock.advance(HOURS_BETWEEN * 3600 / naps)
            self.desktop.tell_of_sleep(False)
        if not naps:
            self.clock.advance(HOURS_BETWEEN * 3600)
        self.suspends += naps

    # -- the figures ------------------------------------------------------------------------

    def take_figures(self):
        server, = self.children_named("tarne-server")
        notifier = self.eventually(lambda: self.desktop.process_of(NOTIFIER), "the notifier runs")
        for name, process in (("TARNE", self.program.pid), ("tarne-server", server),
                              ("tarne-notifier", notifier), ("tarne-bridge", self.bridge.pid)):
            self.series[name].append(figures_of(process))

    def children_named(self, name):
        return [process for process in processes() if name_of(process) == name]

    def lines_of_session(self):
        """How many bytes the log has got since the last time, without what it gets by the clock."""
        with open(self.program.log_file, "rb") as log:
            log.seek(self.log_read)
            new = log.read()
        whole = new[:new.rfind(b"\n") + 1]
        self.log_read += len(whole)
        return sum(len(line) for line in whole.decode().splitlines()
                   if not line.startswith(BY_THE_CLOCK))

    def report(self):
        steady = {name: series[WARM_UP:] for name, series in self.series.items()}
        grown = {name: growth([figures.memory for figures in series])
                 for name, series in steady.items()}
        # In pairs, since every other session runs out, which is told by other lines.
        log = [sum(pair) for pair in zip(self.log_bytes[WARM_UP::2], self.log_bytes[WARM_UP + 1::2])]
        told = [fault for name, series in steady.items() for fault in faults(name, series)]
        print(f"\nproof: soak-{SESSIONS}: {SESSIONS} sessions, {self.sheets:,} sheets, "
              f"{self.suspends} suspends, {self.reconnections} browsers connected again, growth "
              + ", ".join(f"{name} {bytes_ / 1024:+.0f} KiB" for name, bytes_ in grown.items())
              + f", log {statistics.median(log):.0f} characters in two sessions {growth(log):+.0f}, "
              f"{len(told)} kinds of figures grown (no seed)", flush=True)
        self.assertEqual(told, [])
        self.assertEqual(growth(log), 0, log)
        self.assertEqual(len(self.store.history()), SESSIONS + 1)


def processes():
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def name_of(process):
    try:
        return os.path.basename(os.readlink(f"/proc/{process}/exe"))
    except OSError:
        return ""


class TheJudgement(unittest.TestCase):
    """That growth is told, and noise is not."""

    STEADY = [Figures(50_000_000 + (i % 3) * 100_000, 40 + i % 2, 12) for i in range(40)]

    def grown(self, memory=0, descriptors=0, threads=0):
        return [Figures(figures.memory + int(memory * i), figures.descriptors + int(descriptors * i),
                        figures.threads + int(threads * i))
                for i, figures in enumerate(self.STEADY)]

    def test_finds_nothing_in_noise(self):
        self.assertEqual(faults("it", self.STEADY), [])

    def test_finds_a_leak_of_each_kind(self):
        for what, leak in (("KiB", {"memory": ALLOWED_GROWTH_BYTES / 20}),
                           ("descriptors", {"descriptors": 0.1}), ("threads", {"threads": 0.1})):
            fault, = faults("it", self.grown(**leak))
            self.assertIn(what, fault)
