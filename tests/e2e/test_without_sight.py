"""A whole session by the accessibility tree alone, and what a screen reader is told on the way.

What it is told, step by step, is in session_without_sight.txt. A failed comparison leaves what was
told this time beside the picture and the logs; that file replaces the golden one where the change
is meant.
"""

import difflib
import pathlib
import re

from gi.repository import GLib

from fixture import ARTIFACTS, TarneTestCase
from gemini import Gemini, Keyring

GOLDEN = pathlib.Path(__file__).with_name("session_without_sight.txt")
ANNOUNCED = ("notification", "alert message")
WORDS = {"checked": ("unchecked", "checked"), "enabled": ("disabled", "enabled")}


class WhatIsTold:
    """What the program tells of its window from one step to the next, as lines.

    A reader follows the focus, speaks what is announced and what it has read before when that
    changes, so these make a line. What hangs on timing or on the machine makes none: the time left,
    which a slow step sees change more than once; where things lie; what is under a sheet, which is
    disabled and enabled with it; and the names of what a step has brought, since the reader reads
    them there.
    """

    def __init__(self, accessibility, frame):
        self._frame = frame
        self._heard = accessibility.hear_everything()
        self._known = set(frame.visible_descendants())

    def of_this_step(self):
        """The lines since the last call. What was told before an answer has come before it."""
        shown = set(self._frame.visible_descendants())
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass
        lines = []
        for event in self._heard:
            try:
                line = self._line(*event, shown)
            except GLib.Error:
                continue  # It is gone: a reader that asks now hears nothing either.
            if line:
                lines.append(line)
        self._heard.clear()
        self._known = shown
        return lines

    def _line(self, kind, detail, number, node, shown):
        if kind == "Object:StateChanged" and detail == "focused" and number == 1:
            return f"focus on {self._named(node)}"
        if kind == "Object:StateChanged" and detail == "showing" and number == 1:
            return f"announced: {self._named(node)}" if node.role in ANNOUNCED else None
        if node not in self._known & shown or self._is_clock(node):
            return None
        if kind == "Object:StateChanged" and detail in WORDS:
            return f"{WORDS[detail][number]}: {self._named(node)}"
        if kind == "Object:PropertyChange":
            return f"{detail.removeprefix('accessible-')} changed: {self._named(node)}"
        if kind == "Object:TextChanged" and node.has("editable"):
            return f"text changed: {self._named(node)}"
        return None

    @staticmethod
    def _named(node):
        described = f", {node.description!r}" if node.description else ""
        return f"{node.role} {node.name!r}{described}"

    @staticmethod
    def _is_clock(node):
        return bool(re.fullmatch(r"\d\d:\d\d:\d\d", node.name))


class ASessionWithoutSight(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folder, self.desktop.environment)
        self.addCleanup(self.keyring.close)
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)
        self.story = []

    def test_is_led_and_told_by_the_tree_alone(self):
        self.launch(binds=self.gemini.binds)
        frame = self.desktop.accessibility.application(self.program.pid).children[0]
        self.told = WhatIsTold(self.desktop.accessibility, frame)
        self.press_and_await("Start Session", "Continue")
        self.press_and_await("Custom Duration", "5-180")
        self.write_and_await("5-180", "4", "Duration must be at least 5 minutes")
        self.write_and_await("5-180", "5")
        self.press_and_await("Set", "5 minutes")
        self.press_and_await("Continue", "Start session")
        self.write_and_await("Session Goal", "Write report, Review")
        self.press_and_await("Start session", "Pause")
        self.press_and_await("Pause", "Resume")
        self.press_and_await("Resume", "Pause")
        self.clock.advance(self.remaining() + 1)
        self.step("the time runs out", lambda: self.find("Complete reflection"))
        self.rate("Completed", 0)
        self.rate("Not Completed", 1)
        self.write_and_await("Reflection", "It went well.")
        self.press_and_await("Complete reflection", "Your feedback is ready.")
        self.assert_shown("1 of 2 tasks completed", "Stillhour grows with each session.")
        self.press_and_await("Finish session", "Start Session")
        self.assert_as_told()
        entry, = self.await_history(1)
        self.assertEqual([goal["status"] for goal in entry["goals"]],
                         ["completed", "not_completed"])

    def step(self, what, until):
        self.eventually(until, what)
        self.story += [f"> {what}", *(f"    {line}" for line in self.told.of_this_step())]

    def press_and_await(self, name, shown):
        self.press(name)
        self.step(f"press {name!r}", lambda: self.find(shown))

    def write_and_await(self, field, text, shown=None):
        node = self.node(field, role="text")
        node.write(text)
        self.step(f"write {text!r} into {field!r}",
                  lambda: node.text == text and (not shown or self.find(shown)))

    def rate(self, verdict, goal):
        def option():
            options = [node for node in self._visible_nodes()
                       if node.name == verdict and node.role == "radio button"]
            return options[goal] if len(options) > goal else None
        self.eventually(option, f"goal {goal} can be rated").press()
        self.step(f"rate goal {goal + 1} as {verdict!r}", lambda: option().has("checked"))

    def assert_as_told(self):
        golden = GOLDEN.read_text().splitlines() if GOLDEN.exists() else []
        if self.story != golden:
            kept = ARTIFACTS / self.id()
            kept.mkdir(parents=True, exist_ok=True)
            (kept / GOLDEN.name).write_text("".join(f"{line}\n" for line in self.story))
            self.fail("\n".join(difflib.unified_diff(golden, self.story, "golden", "told",
                                                     lineterm="")))
