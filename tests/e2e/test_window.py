"""The window between the program and a real window manager, and the end of the display."""

import itertools
import re

from test_server import ServerTestCase
from fixture import TarneTestCase


class UnderAWindowManager(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.desktop.start_window_manager()

    def geometry(self):
        """Left, top, width and height of the window."""
        told = self.desktop.xdotool("getwindowgeometry", "--shell", self.window_id())
        found = dict(re.findall(r"(\w+)=(-?\d+)", told))
        return [int(found[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")]

    def states(self, window=None):
        return self.desktop.ask("xprop", "-id", window or self.window_id(), "_NET_WM_STATE")

    def knows_to_be_in_front(self):
        application = self.desktop.accessibility.application(self.program.pid)
        return application.children[0].has("active")

    def request(self, states):
        """What a key or a menu of the window manager asks for."""
        self.desktop.ask("wmctrl", "-i", "-r", f"{int(self.window_id()):#x}", "-b", states)

    def drag(self, start, by):
        """As a hand does: the window follows before the button is let go."""
        before = self.geometry()
        self.desktop.xdotool("mousemove", *start, "mousedown", 1)
        # To and fro in the middle until it does: what waits for its turn is not seen to move.
        tenths = itertools.chain(range(1, 6), itertools.cycle((4, 5)))

        def follows():
            tenth = next(tenths)
            self.desktop.xdotool("mousemove", start[0] + by[0] * tenth // 10,
                                 start[1] + by[1] * tenth // 10)
            return self.geometry() != before

        self.eventually(follows, "the window follows the pointer")
        self.desktop.xdotool("mousemove", start[0] + by[0], start[1] + by[1], "mouseup", 1)
        self.await_window_manager()

    def await_window_manager(self):
        """Once a request is met, the window manager has seen to all that came before."""
        self.request("add,above")
        self.eventually(lambda: "ABOVE" in self.states(), "the window is above")
        self.request("remove,above")
        self.eventually(lambda: "ABOVE" not in self.states(), "the window is not above")

    def assert_moved(self, before, by):
        """A move begins some points after the press, when it is known for a drag."""
        def is_moved():
            now = self.geometry()
            return now[2:] == before[2:] and all(
                0.5 <= (now[side] - before[side]) / by[side] <= 1 for side in (0, 1))
        self.eventually(is_moved, lambda: f"{before} is moved by {by}: {self.geometry()}")

    def assert_sized(self, before, by):
        """The window manager counts from where the pointer is when it is asked, some points on."""
        def is_sized():
            now = self.geometry()
            return now[:2] == before[:2] and all(
                now[2 + side] == before[2 + side] if by[side] == 0
                else 0.5 <= (now[2 + side] - before[2 + side]) / by[side] <= 1 for side in (0, 1))
        self.eventually(is_sized, lambda: f"{before} is sized by {by}: {self.geometry()}")

    def assert_geometry(self, expected):
        self.eventually(lambda: self.geometry() == expected,
                        lambda: f"the window is at {expected}, not at {self.geometry()}")

    def test_it_is_neither_zoomed_nor_made_full_screen(self):
        self.launch()
        before = self.geometry()
        self.assertEqual(before[2:], [1000, 700])
        for states in ("add,maximized_vert,maximized_horz", "add,fullscreen"):
            self.request(states)
            self.await_window_manager()
            self.eventually(lambda: not re.search("MAXIMIZED|FULLSCREEN", self.states()),
                            "the window is as it was")
            self.assert_geometry(before)

    def test_it_is_moved_by_its_title_strip_and_sized_by_its_edges(self):
        self.launch()
        left, top, width, height = before = self.geometry()
        self.drag((left + width // 2, top + 20), (-100, 80))
        self.assert_moved(before, (-100, 80))
        left, top, width, height = before = self.geometry()
        self.drag((left + width - 2, top + height // 2), (50, 0))
        self.assert_sized(before, (50, 0))
        left, top, width, height = before = self.geometry()
        self.drag((left + 300, top + height - 2), (0, -30))
        self.assert_sized(before, (0, -30))
        # Not below its least size.
        left, top, width, height = self.geometry()
        self.drag((left + width - 2, top + height - 2), (-600, -400))
        self.assert_geometry([left, top, 800, 600])

    def test_a_drag_that_is_over_before_the_program_sees_it_does_nothing(self):
        self.launch()
        left, top, width, height = before = self.geometry()
        button = self.node("Start Session", role="push button").extents
        for start in ((left + width // 2, top + 20), (left + width - 2, top + height // 2)):
            with self.program.halted():
                self.desktop.xdotool("mousemove", *start, "mousedown", 1)
                for step in range(1, 6):
                    self.desktop.xdotool("mousemove", start[0] - 20 * step, start[1] + 16 * step)
                self.desktop.xdotool("mouseup", 1)
                self.desktop.xdotool("mousemove", button[0] + button[2] // 2,
                                     button[1] + button[3] // 2, "click", 1)
            # What came later has been seen, so the drag has been seen as well.
            self.assert_shown("Select Session Duration")
            self.await_window_manager()
            self.desktop.xdotool("mousemove", 10, 10)
            self.await_window_manager()
            self.assertEqual(self.geometry(), before)
            self.press("Close")
            self.assert_gone("Select Session Duration")

    def test_it_is_moved_while_a_sheet_is_up(self):
        self.launch()
        self.press("Start Session")
        self.assert_shown("Select Session Duration")
        left, top, width, height = before = self.geometry()
        self.drag((left + width // 2, top + 20), (100, 80))
        self.assert_moved(before, (100, 80))
        self.assert_shown("Select Session Duration")

    def test_minimized_it_leaves_the_session_running_and_a_second_start_brings_it_back(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        window = self.window_id()
        self.press("Minimize window")
        self.eventually(lambda: "HIDDEN" in self.states(window), "the window is minimized")
        lines = len(self.program.log)
        self.eventually(lambda: "Active=1" in "".join(self.program.log[lines:]),
                        "the session goes on")
        self.assertEqual(self.start().wait(), 0)
        self.eventually(lambda: "HIDDEN" not in self.states(window), "the window is up again")

    def test_the_notes_lose_the_keyboard_when_the_program_comes_back_to_the_front(self):
        self.launch()
        self.press("Start Session")
        self.press("Continue")
        self.type_into("Session Goal", "Write report")
        editor = self.node("Session Goal", role="text")
        self.desktop.show_another_window()
        self.eventually(lambda: not self.knows_to_be_in_front(), "another window is in front")
        self.desktop.ask("wmctrl", "-i", "-a", f"{int(self.window_id()):#x}")
        self.eventually(self.knows_to_be_in_front, "the window is in front again")
        self.eventually(lambda: not editor.has("focused"), "the editor has lost the keyboard")
        self.desktop.xdotool("type", "--delay", "5", " unheard")
        self.assertEqual(editor.text, "Write report")


class OnASmallScreen:
    """From the first page to a paused session by the mouse, on a screen that is all there is."""

    has_seen_onboarding = False
    scale = 1.0

    def place(self, node):
        """Left, top, right and bottom of a control, in pixels of the screen."""
        left, top, width, height = (side * self.scale for side in node.extents)
        return left, top, left + width, top + height

    def is_on_the_screen(self, place):
        width, height = map(int, self.screen.split("x"))
        left, top, right, bottom = place
        return 0 <= left and 0 <= top and right <= width + 1 and bottom <= height + 1

    def click(self, name, role="push button"):
        node = self.node(name, role=role)
        self.eventually(lambda: self.is_on_the_screen(self.place(node)),
                        lambda: f"{name} is on the screen, not at {self.place(node)}")
        left, top, right, bottom = self.place(node)
        self.desktop.xdotool("mousemove", int(left + right) // 2, int(top + bottom) // 2,
                             "click", 1)

    def scroll_to(self, name):
        """By the wheel, over the middle of the window. What is out of sight is not told of."""
        width, height = map(int, self.screen.split("x"))
        self.desktop.xdotool("mousemove", width // 2, height // 2)

        def is_there():
            node = self.find(name, role="push button")
            if node and self.is_on_the_screen(self.place(node)):
                return True
            self.desktop.xdotool("click", 5)
            return False

        self.eventually(is_there, f"the wheel leads to {name}")

    def test_all_is_within_reach_from_the_first_page_to_a_paused_session(self):
        self.launch()
        frame = self.desktop.accessibility.application(self.program.pid).children[0]
        self.assertTrue(self.is_on_the_screen(self.place(frame)), frame.extents)
        self.click("Next")
        self.assert_shown("Back")
        field = self.node("Enter your Gemini API key")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the key field has the keyboard")
        self.assertTrue(self.is_on_the_screen(self.place(field)), self.place(field))
        self.desktop.xdotool("type", "--delay", "5", "key")
        self.eventually(lambda: self.node("Start Focusing").has("enabled"), "the key is there")
        self.expect_error("the key is not kept")
        self.click("Start Focusing")
        self.click("Start Using TARNE")
        self.assert_shown("Session Setup")
        self.scroll_to("Start Session")
        self.click("Start Session")
        self.click("Continue")
        self.click("Session Goal", role="text")
        self.desktop.xdotool("type", "--delay", "5", "Write")
        self.click("Start session")
        self.activate("Pause")
        self.assert_shown("Resume")
        resume = self.node("Resume", role="push button")
        self.assertTrue(resume.has("focused"))
        self.eventually(lambda: self.is_on_the_screen(self.place(resume)),
                        lambda: f"the focus is in sight, not at {self.place(resume)}")


class OnAScreenOf800By600(OnASmallScreen, TarneTestCase):
    screen = "800x600"


class OnAScreenOf900By640(OnASmallScreen, TarneTestCase):
    screen = "900x640"


class OnALaptopAt125Percent(OnASmallScreen, TarneTestCase):
    screen = "1366x768"
    scale = 1.25
    extra_environment = {"QT_SCALE_FACTOR": "1.25"}


class OnAFullHDScreenAt200Percent(OnASmallScreen, TarneTestCase):
    screen = "1920x1080"
    scale = 2.0
    extra_environment = {"QT_SCALE_FACTOR": "2"}


class TheEndOfTheDisplay(ServerTestCase):
    def test_is_a_termination_that_stops_the_server_and_loses_nothing(self):
        self.launch()
        self.await_healthy(1)
        self.start_session("Write report", minutes=5)
        self.expect_error("The X11 connection broke")
        self.desktop.stop_display()
        self.assertNotEqual(self.program.wait(), 0)
        self.assertIn("🔴", self.program.log[-1])
        self.assertEqual(self.server_processes(), [])
        timer = self.store.values(["TimerIsActive", "TimerSessionGoal"])
        self.assertEqual(timer, {"TimerIsActive": 1, "TimerSessionGoal": "Write report"})
