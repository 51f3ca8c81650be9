"""The other tabs, gone through by the accessibility tree."""

import pathlib
import shutil
import time

from store import REFERENCE_DATE
from walk import KEY_FIELD, AWalk

STAND_IN_SERVER = pathlib.Path(__file__).with_name("stand_in_server.py")


class LookingBack(AWalk):
    COACHED = {"overallAssessment": "All done.", "patternsObserved": "Early.",
               "suggestions": "Rest.", "motivation": "Go on.", "reflection": "It went well."}

    def plant(self, count):
        """Sessions of an hour's distance, the newest with coaching."""
        now = self.now()
        silent = dict.fromkeys(self.COACHED, "")
        self.store.plant("SessionHistory", [
            {"id": f"00000000-0000-4000-8000-{number:012}", "sessionDate": now - 7200 * number,
             "duration": 1500, "goals": [{"id": f"00000000-0000-4000-9000-{number:012}",
                                          "text": f"Goal {number}", "status": "completed"}]}
            | (silent if number else self.COACHED) for number in range(count)])

    def now(self):
        return time.time() + self.clock.offset - REFERENCE_DATE

    def noon(self):
        self.clock.advance(72_000 - time.time() % 86_400)

    def test_at_an_empty_history_reads_figures_and_samples(self):
        self.noon()
        self.launch()
        self.open_tab("Insights")
        self.inspect("Insights", "Focus Streak", "Goal Completion Trends", "Most Productive Times",
                     "Your Focus Journey", down_to="6 sessions in the last year")
        self.open_tab("History")
        self.inspect("Session History", "Yesterday", ...)
        self.pressed_elsewhere("Overall Assessment", "Patterns Observed", "Suggestions",
                               "Motivation")

    def test_at_ones_own_sessions_opens_and_closes_what_was_said(self):
        self.noon()
        self.plant(10)
        self.launch()
        self.open_tab("History")
        self.assert_shown("Overall Assessment")
        self.inspect("Session History", "Today", down_to="Load More")
        self.scroll("Home", "Overall Assessment")
        for section, text in (("Overall Assessment", "All done."), ("Patterns Observed", "Early."),
                              ("Suggestions", "Rest."), ("Motivation", "Go on.")):
            self.assertTrue(self.node(section, role="push button").has("collapsed"))
            self.use(section, shows=text)
            self.assertTrue(self.node(section, role="push button").has("expanded"))
            self.use(section)
            self.assert_gone(text)
        self.scroll("End", "Load More")
        self.use("Load More", nothing=True)


class TheSettings(AWalk):
    HEADINGS = ("Settings", "Server Status", "Gemini AI Configuration", "About")

    def test_without_a_server_and_a_key_say_so(self):
        self.desktop.start_key_store()
        self.desktop.open_pages()
        self.launch()
        self.open_tab("Settings")
        self.node("Server binary not found in app bundle or project root", role="notification")
        self.inspect(*self.HEADINGS, disabled=["Save API Key"])
        self.assert_secret(KEY_FIELD)
        self.use("Start", nothing=True)
        self.use("Show key", shows="Hide key")
        self.use("Hide key", shows="Show key")
        self.use("Get API Key", nothing=True)
        self.eventually(self.desktop.pages, "the page is opened")
        self.type_key("a key of the test")
        self.inspect(*self.HEADINGS)
        self.use("Save API Key", shows="API Key Saved")
        self.inspect()
        self.use("OK", shows="About")

    def test_with_a_server_restart_it(self):
        self.desktop.start_key_store()
        shutil.copy(STAND_IN_SERVER, self.folder / "tarne-server")
        (self.folder / "tarne-server").chmod(0o755)
        self.launch(has_own_network=True)
        self.open_tab("Settings")
        self.node("Server Running")
        self.inspect(*self.HEADINGS, disabled=["Save API Key"])
        self.use("Restart")
        self.node("Server Running")
        self.pressed_elsewhere("Show key", "Get API Key")
