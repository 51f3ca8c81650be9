"""The window between the program and a Wayland compositor."""

from fixture import LAUNCH_PATIENCE, TarneTestCase

# The window is white, what lies behind it is not.
WHITE = b"\xff\xff\xff"


class UnderAWaylandCompositor(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.wayland_display = self.desktop.start_compositor()

    def environment(self):
        environment = super().environment() | {"WAYLAND_DISPLAY": self.wayland_display,
                                               "XDG_SESSION_TYPE": "wayland"}
        del environment["DISPLAY"]
        return environment

    def launch(self):
        self.program = self.start()
        self.node("Start Session", "Pause", within=LAUNCH_PATIENCE)
        self.eventually(self.is_on_the_screen, "the window is on the screen")

    def is_on_the_screen(self):
        picture = self.desktop.ask_bytes("import", "-window", "root", "ppm:-")
        return picture.count(WHITE) > 100_000

    def size(self):
        return self.desktop.accessibility.application(self.program.pid).children[0].extents[2:]

    def assert_size_comes_back(self, size):
        self.eventually(lambda: self.size() == size, lambda: f"{size}, not {self.size()}")

    def press_key(self, *keys):
        """Through the compositor, which takes its own keys and hands on the others."""
        self.desktop.xdotool("key", *keys)

    def test_it_is_neither_zoomed_nor_made_full_screen(self):
        self.launch()
        size = self.size()
        self.assertEqual(size, (1000, 700))
        for wish in ("super+shift+m", "super+shift+f"):
            self.press_key(wish)
            # What comes after the wish has been seen, so the wish has been seen as well.
            self.tab_to("Start Session")
            self.press_key("space")
            self.assert_shown("Select Session Duration")
            self.assert_size_comes_back(size)
            self.press("Close")
            self.assert_gone("Select Session Duration")
            self.assert_size_comes_back(size)

    def test_minimized_it_comes_back_by_a_second_start_with_what_has_come_up_meanwhile(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.press("Minimize window")
        self.eventually(lambda: not self.is_on_the_screen(), "the window is minimized")
        self.clock.advance(5 * 60)
        self.assert_shown("How did you do with your goals?")
        self.assertEqual(self.start().wait(), 0)
        self.eventually(self.is_on_the_screen, "the window is back")
        self.assert_shown("How did you do with your goals?")
