"""What the user has asked the whole desktop for, as a portal tells of it."""

import time

from fixture import TarneTestCase

TITLE = "Session Setup"
# A line of the title in points.
HEIGHT = 34


class WishesOfTheDesktop(TarneTestCase):
    def height(self, name=TITLE):
        return self.node(name).extents[3]

    def picture(self):
        return self.desktop.ask_bytes("import", "-window", self.window_id(), "ppm:-")

    def assert_stands_still(self):
        """The orb takes four seconds to swell and shrink, so a second shows whether it does."""
        before = self.picture()
        time.sleep(1)  # That nothing happens cannot be waited for.
        self.assertTrue(self.picture() == before, "something has moved")

    def assert_moves(self):
        before = self.picture()
        self.eventually(lambda: self.picture() != before, "something moves")

    def await_height(self, expected):
        self.eventually(lambda: abs(self.height() - expected) <= 2,
                        lambda: f"{TITLE} is {expected} high, not {self.height()}")

    def test_are_met_from_the_launch_and_followed_while_it_runs(self):
        self.desktop.start_portal(animations=False, text_scale=1.5)
        self.launch()
        self.await_height(HEIGHT * 1.5)
        self.assert_stands_still()
        self.desktop.change_setting("text_scale", 1.0)
        self.await_height(HEIGHT)
        self.desktop.change_setting("animations", True)
        self.assert_moves()

    def test_without_a_portal_are_none(self):
        self.launch()
        self.await_height(HEIGHT)
        self.assert_moves()

    def test_for_larger_texts_are_met_once_where_the_display_draws_all_of_it_larger(self):
        self.desktop.set_font_resolution(144)
        self.desktop.start_portal(animations=False, text_scale=1.5)
        self.launch()
        # The tree counts in points, each of which has one and a half pixels here.
        width = self.desktop.accessibility.application(self.program.pid).children[0].extents[2]
        told = self.desktop.xdotool("getwindowgeometry", "--shell", self.window_id())
        pixels = int(told.split("WIDTH=")[1].split()[0])
        self.assertAlmostEqual(pixels / width, 1.5, places=2)
        before = self.picture()
        self.desktop.change_setting("contrast", 1)
        self.eventually(lambda: self.picture() != before, "the portal was heard")
        self.await_height(HEIGHT)
