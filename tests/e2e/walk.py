"""The words for going through the program as somebody does who has the accessibility tree and Tab,
and no picture."""

import re

from gi.repository import GLib

import inspection
from fixture import TarneTestCase

KEY_FIELD = "Enter your Gemini API key"
FRAME = {"Menu", "Minimize window", "Close window", "Timer", "Insights", "History", "Settings"}


class AWalk(TarneTestCase):
    """The words for a walk: to inspect what is shown, and to use what was found there.

    At the end of a test every control that could be pressed on an inspected screen has been, but
    for those of the window's frame, which have a test of their own.
    """

    def setUp(self):
        super().setUp()
        self._seen, self._used = {}, set()
        self._moves = []

    def launch(self, **how):
        super().launch(**how)
        self._moves = self.desktop.accessibility.listen("object:state-changed:focused")

    def tearDown(self):
        unused = [text for key, text in self._seen.items() if key not in self._used]
        super().tearDown()
        if not self._has_failed():
            self.assertEqual(unused, [], "was inspected and never pressed")

    # -- what is shown ----------------------------------------------------------------------

    def frame(self):
        application = self.desktop.accessibility.application(self.program.pid)
        return application.children[0]

    def settled(self):
        """What is shown, once nothing moves any more."""
        last = []

        def is_still():
            before = last[:]
            last[:] = inspection.read(self.frame())
            return before and [self._without_clock(each) for each in before] == [
                self._without_clock(each) for each in last]

        self.eventually(is_still, "nothing moves")
        return last

    @staticmethod
    def _without_clock(element):
        return (element.role, re.sub(r"^\d\d:\d\d:\d\d$", "time", element.name), element.extents,
                element.states, element.description)

    def inspect(self, *headings, disabled=(), down_to=None):
        """Holds what is shown to all the rules: `headings` are all that there are at first, an
        ellipsis stands for the rest of them; `disabled` are the controls that cannot be used now,
        `down_to` is the text at the end of a page that is longer than the window."""
        elements = self.settled()
        found = [element.name for element in elements if element.role == "heading"]
        if headings[-1:] == (...,):
            headings = headings[:-1]
            del found[len(headings):]
        self.assertEqual(found, list(headings))
        self._hold_to_rules(elements, disabled)
        for name in disabled:
            self._press_in_vain(name)
        self._follow_tab(disabled)
        if down_to:
            self.scroll("End", down_to)
            self._hold_to_rules(self.settled(), disabled)
            self._follow_tab(disabled)
            self.scroll("Home", headings[0])
            self._follow_tab(disabled)

    def scroll(self, key, name):
        """To the end of the page or to its beginning, where there is what has this name."""
        page = next(element for element in inspection.read(self.frame())
                    if element.role in ("panel", "dialog") and "Component" in element.interfaces
                    and (element.role == "dialog" or "focusable" in element.states))
        page.node.grab_focus()
        self.desktop.xdotool("key", key)
        self.node(name)

    def _hold_to_rules(self, elements, disabled):
        in_sight = [name for name in disabled if any(each.name == name for each in elements)]
        self.assertEqual(inspection.faults(elements, in_sight), [], self._state("faults")())
        for element in elements:
            if element.can_be_pressed and element.name not in (*disabled, *FRAME):
                self._seen[self._key(elements, element)] = str(element)

    @staticmethod
    def _key(elements, element):
        places = [elements[place].name for place in element.around if elements[place].name]
        return (places[0] if places else "", element.role, element.name)

    def _press_in_vain(self, name):
        before = [self._without_clock(element) for element in self.settled()]
        for element in inspection.read(self.frame()):
            if element.name == name and element.can_be_pressed:
                element.node.press()
        self.assertEqual([self._without_clock(element) for element in self.settled()], before,
                         f"{name} is disabled and does something")

    def _follow_tab(self, disabled):
        """Goes once around by Tab: all that can be used is reached, each within the window, in the
        order in which it is read. A long list keeps no more than what is in sight and near it, so
        what has gone meanwhile has been reached, and stands in no order any more."""
        window = self.frame().extents
        stops, backward = [], []
        expected = self._stops(disabled)
        while len(stops) < 60:
            reached = self._tab(len(expected))
            if reached in stops:
                break
            there = inspection.of(reached)
            self.assertTrue(
                there.lies_within(window) if there.is_control else there.overlaps(window),
                f"{there} has the focus and lies at {there.extents}, outside of {window}")
            if stops and self._goes_back(stops[-1], there):
                backward.append(f"from {stops[-1].name} to {there}")
            stops.append(reached)
            expected |= self._stops(disabled)
        in_tree = {node: place for place, node in enumerate(inspection.every(self.frame()))}
        self.assertEqual({str(inspection.of(node)) for node in expected - set(stops)
                          if node in in_tree}, set(), "Tab does not lead to")
        self.assertLessEqual(len(backward), 1, "Tab goes back more than once in a round")
        places = [in_tree[node] for node in stops if node in in_tree]
        first = places.index(min(places))
        self.assertEqual(places[first:] + places[:first], sorted(places),
                         self._state("Tab goes another way than a reader does")())

    @staticmethod
    def _goes_back(left, there):
        try:
            return inspection.disorder([(inspection.of(left), there)])
        except GLib.Error:
            return False

    def _stops(self, disabled):
        """What Tab has to lead to of all that is in sight now."""
        return {element.node for element in inspection.read(self.frame())
                if element.is_control and element.name not in disabled
                and element.role != "menu item"
                and not (element.role == "page tab" and "selected" not in element.states)}

    def _tab(self, stops):
        """The node that has the focus after one more Tab, which leads nowhere from the only one of
        the `stops`."""
        before = self._focused()
        if stops == 1 and before and inspection.of(before).is_control:
            return before
        self._moves.clear()
        self.desktop.xdotool("key", "Tab")

        def arrived():
            context = GLib.MainContext.default()
            while context.iteration(False):
                pass
            # The news of the last move may come late.
            there = [node for detail, number, node in self._moves
                     if (detail, number) == ("focused", 1) and node != before]
            return there and there[-1].has("focused") and there[-1]

        return self.eventually(arrived, "Tab leads on")

    def _focused(self):
        return next((element.node for element in inspection.read(self.frame())
                     if "focused" in element.states), None)

    # -- what is done -----------------------------------------------------------------------

    def use(self, name, shows=None, nothing=False, number=0):
        """Presses a control, by its name, through the tree; then something is shown, or changes,
        or nothing at all does."""
        def there():
            elements = self.settled()
            found = [each for each in elements if each.name == name and each.can_be_pressed
                     and each.is_enabled]
            return (elements, found[number]) if len(found) > number else None
        elements, element = self.eventually(there, f"{name} can be pressed")
        self._used.add(self._key(elements, element))
        before = [self._without_clock(each) for each in elements]
        element.node.press()
        if shows:
            self.node(shows)
        elif nothing:
            self.assertEqual([self._without_clock(each) for each in self.settled()], before)
        else:
            self.eventually(lambda: [self._without_clock(each) for each
                                     in inspection.read(self.frame())] != before,
                            f"{name} does something")

    def pressed_elsewhere(self, *names):
        """Controls of the inspected screens that another test uses."""
        self._used |= {key for key in self._seen if key[2] in names}

    def write(self, name, text):
        self.node(name, role="text").write(text)

    def type_key(self, key):
        field = self.node(KEY_FIELD, role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the field has the keyboard focus")
        self.desktop.xdotool("key", "ctrl+a", "Delete")
        self.desktop.xdotool("type", "--delay", "5", key)

    def assert_secret(self, name):
        self.assertEqual(inspection.of(self.node(name, role="text")).role, "password text")
