"""The schedule and its sheet, gone through by the accessibility tree."""

import pathlib

from fixture import PROGRAM
from walk import AWalk

SCHEDULE = pathlib.Path(PROGRAM).parents[2] / "bin" / "schedule_harness"


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
