"""The other tabs and the schedule, gone through by the accessibility tree."""

import pathlib
import shutil
import time

from fixture import PROGRAM
from store import REFERENCE_DATE
from walk import KEY_FIELD, AWalk

STAND_IN_SERVER = pathlib.Path(__file__).with_name("stand_in_server.py")
SCHEDULE = pathlib.Path(PROGRAM).parents[2] / "bin" / "schedule_harness"


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


class TheSchedule(AWalk):
    """It has no way in from the program, so it is walked in the window of its harness."""

    GOAL_FIELD = "What do you want to focus on?"

    def launch(self):
        self.program = self.start(SCHEDULE)
        self.node("Today's Goals")
        self.desktop.xdotool("search", "--onlyvisible", "--class", "schedule_harness",
                             "windowfocus", "--sync")
        self._moves = self.desktop.accessibility.listen("object:state-changed:focused")

    def _stops(self, disabled):
        # The days of a month are one stop; arrows lead from day to day.
        return {node for node in super()._stops(disabled)
                if node.role != "radio button" or node.has("checked")}

    def test_plans_a_goal_and_takes_it_away(self):
        self.launch()
        self.inspect("Schedule", "Calendar", "Overview", "March 2, 2026")
        self.use("Next month", shows="April 2026")
        self.use("Previous month", shows="March 2026")
        self.use("Monday, March 9, 2026", shows="No goals scheduled")
        self.inspect("Schedule", "Calendar", "Overview", "March 9, 2026")
        self.use("Add Goal", shows="Cancel")
        self.use("Cancel", shows="No goals scheduled")
        self.use("Monday, March 2, 2026", shows="3 goals scheduled")
        self.use("New Goal", shows="Cancel")
        self.use("Close", shows="3 goals scheduled")
        self.use("New Goal", shows="Cancel")
        self.plan("Read the minutes")
        self.assert_shown("4 goals scheduled")
        for goal in ("Read the minutes", "Review the open questions"):
            self.use(f"Mark as done: {goal}", shows=f"Mark as open: {goal}")
            self.use(f"Mark as open: {goal}", shows=f"Mark as done: {goal}")
            self.use(f"Delete {goal}")
            self.assert_gone(goal)
        self.node("Close schedule", role="push button").press()
        self.assertEqual(self.program.wait(), 0)
        self._used |= {key for key in self._seen if key[1] == "radio button"
                       or "Plan the week" in key[2] or "second chapter" in key[2]
                       or key[2] == "Close schedule"}

    def plan(self, goal):
        past = ["Sunday, March 1, 2026", "Previous month"]
        self.inspect("New Goal", ..., disabled=[*past, "Schedule Goal"])
        for name, action in (("Hour", "Increase"), ("Minute", "Decrease")):
            field = self.node(name, role="spin box")
            before = field.description
            field.act(action)
            self.eventually(lambda: field.description != before, f"{name} is stepped")
        self.write(self.GOAL_FIELD, goal)
        self.inspect("New Goal", ..., disabled=past)
        # The field has a use for the keys that scroll.
        self.node("Close", role="push button").grab_focus()
        self.desktop.xdotool("key", "Home")
        self.use("Next month", shows="April 2026")
        self.use("Previous month", shows="March 2026")
        self.use("Schedule Goal", shows=goal)
