"""The way into the program, its window and a whole session, gone through by the accessibility tree;
and the rules that every screen, sheet, alert and menu on the way is held to."""

import dataclasses
import unittest

import inspection
from gemini import Gemini, Keyring
from walk import KEY_FIELD, AWalk


class TheRules(unittest.TestCase):
    """Each of them can fail: a window that is right with one thing made wrong."""

    USABLE = frozenset({"visible", "showing", "enabled", "sensitive", "focusable"})
    BUTTON = inspection.Element("push button", "Start", states=USABLE, actions=("Press",))

    def faults(self, disabled=(), **changed):
        return inspection.faults([dataclasses.replace(self.BUTTON, **changed)], disabled)

    def test_are_silent_about_a_window_that_is_right(self):
        field = dataclasses.replace(self.BUTTON, role="text", name="Goal", actions=(),
                                    interfaces=frozenset({"EditableText", "Text"}))
        self.assertEqual(inspection.faults([self.BUTTON, field]), [])

    def test_name_what_has_no_name_no_role_no_press_and_no_extent(self):
        for changed, fault in (
                ({"name": " "}, "has no name"), ({"role": "label"}, "does not say so"),
                ({"role": "unknown", "actions": ()}, "says nothing"),
                ({"actions": ("SetFocus",)}, "cannot be pressed"),
                ({"role": "text", "actions": ()}, "cannot be written in"),
                ({"role": "spin box", "actions": ("Increase",)}, "cannot be stepped"),
                ({"extents": (5, 5, 0, 9)}, "has no extent"),
                ({"states": self.USABLE - {"showing"}}, "not showing")):
            with self.subTest(fault):
                found = self.faults(**changed)
                self.assertTrue(any(fault in each for each in found), found)

    def test_name_what_is_wrongly_told_as_enabled_or_disabled(self):
        self.assertEqual(len(self.faults(states=self.USABLE - {"sensitive"})), 1)
        self.assertEqual(len(self.faults(disabled=["Start"])), 1)
        self.assertEqual(len(self.faults(disabled=["Start"], states=self.USABLE - {
            "enabled", "sensitive"})), 1, "it takes the focus")
        self.assertEqual(self.faults(disabled=["Start"], states=frozenset({
            "visible", "showing"})), [])
        self.assertEqual(len(self.faults(disabled=["Stop"])), 1, "there is none")

    def test_name_twins_but_not_those_in_groups_of_their_own(self):
        self.assertEqual(len(inspection.faults([self.BUTTON, self.BUTTON])), 1)
        groups = [inspection.Element("panel", name, states=self.USABLE) for name in "AB"]
        inside = [dataclasses.replace(self.BUTTON, around=(place,)) for place in (0, 1)]
        self.assertEqual(inspection.faults(groups + inside), [])

    def test_name_two_with_the_focus_and_a_step_of_tab_that_goes_back(self):
        focused = [dataclasses.replace(self.BUTTON, name=name, states=self.USABLE | {"focused"})
                   for name in "AB"]
        self.assertEqual(len(inspection.faults(focused)), 1)
        here, right, below = (dataclasses.replace(self.BUTTON, extents=(left, top, 10, 10))
                              for left, top in ((0, 0), (20, 2), (0, 30)))
        self.assertEqual(inspection.disorder([(here, right), (right, below)]), [])
        for step in ((right, here), (below, here), (below, right)):
            self.assertEqual(len(inspection.disorder([step])), 1)


class TheFirstMinutes(AWalk):
    has_seen_onboarding = False

    def test_lead_by_two_pages_and_an_alert_to_the_timer(self):
        self.desktop.start_key_store()
        self.desktop.open_pages()
        self.launch()
        self.inspect("TARNE")
        self.assert_shown("Page 1 of 2")
        self.use("Next", shows="Complete Setup")
        headings = ("Complete Setup", "Safari Extension Setup", "Gemini AI Configuration")
        self.inspect(*headings, disabled=["Start Focusing"])
        self.assert_shown("Page 2 of 2")
        self.assert_secret(KEY_FIELD)
        self.use("Show key", shows="Hide key")
        self.assert_secret(KEY_FIELD)
        self.use("Hide key", shows="Show key")
        self.use("Get Free API Key", nothing=True)
        self.eventually(self.desktop.pages, "the page is opened")
        self.type_key("a key of the test")
        self.inspect(*headings)
        self.use("Back", shows="Page 1 of 2")
        self.use("Next", shows="Page 2 of 2")
        self.use("Start Focusing", shows="Start Using TARNE")
        self.inspect()
        self.use("Start Using TARNE", shows="Start Session")
        self.inspect("Session Setup")
        self.use("Start Session", shows="Select Session Duration")


class TheWindow(AWalk):
    def test_has_a_menu_four_tabs_and_two_buttons(self):
        self.launch()
        for tab, heading in (("Insights", "Focus Streak"), ("History", "Session History"),
                             ("Settings", "About"), ("Timer", "Session Setup")):
            self.use(tab, shows=heading)
            self.assertTrue(self.node(tab, role="page tab").has("selected"))
        self.use("Start Session", shows="Select Session Duration")
        self.use("Close")
        self.use("Menu", shows="Quit TARNE")
        self.assertEqual(inspection.faults(self.settled()), [])
        self.use("New Session")
        self.assert_gone("Quit TARNE")
        self.use("Menu", shows="Quit TARNE")
        self.use("Check for Updates...", shows="Updates Are Not Set Up")
        self.inspect()
        self.use("OK", shows="Start Session")
        self.use("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.assertEqual(self.start().wait(), 0)
        self.eventually(self.window_id, "the window is up again")
        self.use("Menu", shows="Quit TARNE")
        self.node("Quit TARNE", role="menu item").press()
        self.assertEqual(self.program.wait(), 0)


class ASession(AWalk):
    FEEDBACK = ("Session Feedback", "Overall Assessment", "Patterns Observed", "Suggestions",
                "Motivation", "Your Reflection")

    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folder, self.desktop.environment)
        self.addCleanup(self.keyring.close)
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)

    def test_is_planned_held_and_closed_by_what_the_tree_offers(self):
        self.launch(binds=self.gemini.binds)
        self.inspect("Session Setup")
        self.use("Start Session", shows="Select Session Duration")
        self.choose_the_length()
        self.use("Continue", shows="Start session")
        self.inspect("Session Goal", disabled=["Start session"])
        self.use("Close", shows="Session Setup")
        self.use("Start Session", shows="Select Session Duration")
        self.use("Continue", shows="Start session")
        self.write("Session Goal", "Write report, Review")
        self.inspect("Session Goal")
        self.use("Start session", shows="⏱️ Session")
        self.inspect("⏱️ Session")
        self.use("Pause", shows="Resume")
        self.inspect("⏱️ Session")
        self.use("Resume", shows="Pause")
        self.use("Stop", shows="Reflection")
        self.reflect()
        self.read_the_feedback()
        self.use("Finish session", shows="Session Setup")
        self.inspect("Session Setup")

    def choose_the_length(self):
        self.inspect("Select Session Duration")
        self.use("Close", shows="Session Setup")
        self.use("Start Session", shows="Select Session Duration")
        for minutes in (15, 45, 60, 25):
            self.use(f"{minutes} min")
            self.assertTrue(self.node(f"{minutes} min").has("selected"))
        self.use("Custom Duration", shows="5-180")
        self.inspect("Select Session Duration")
        self.write("5-180", "4")
        self.assert_shown("Duration must be at least 5 minutes")
        self.inspect("Select Session Duration", disabled=["Set"])
        self.write("5-180", "5")
        self.use("Set", shows="5 minutes")

    def reflect(self):
        title = "How did you do with your goals?"
        self.inspect(title, disabled=["Complete reflection"])
        self.use("Close", shows="Stop")
        self.use("Stop", shows=title)
        for number in (0, 1):
            for verdict in ("Not Completed", "Partially Completed", "Completed"):
                self.use(verdict, number=number)
        self.write("Reflection", "It went well.")
        self.inspect(title)
        self.use("Complete reflection", shows="Session Feedback")

    def read_the_feedback(self):
        self.assert_shown("Motivation")
        self.inspect(*self.FEEDBACK, down_to="It went well.")
        self.use("Close", shows="Complete reflection")
        self.use("Complete reflection", shows="Motivation")
        self.node("Edit", role="push button").grab_focus()
        self.use("Edit", shows="Done")
        self.inspect(*self.FEEDBACK)
        self.use("Done", shows="Edit")
        self.use("Save & Share", nothing=True)
        self.eventually(lambda: self.program.logged("Session summary copied"), "it is copied")

    def test_without_coaching_says_why(self):
        self.gemini.set_scenario("json429")
        self.launch(binds=self.gemini.binds)
        self.start_session("Read", minutes=5)
        self.press("Stop")
        self.node("Completed", role="radio button").press()
        self.press("Complete reflection")
        self.node("Unable to generate feedback", role="notification")
        self.inspect("Session Feedback", "Your Reflection")
        self.assertEqual(self.node("Unable to generate feedback").description, "told with 429")
        self.pressed_elsewhere("Close", "Edit", "Save & Share", "Finish session")
