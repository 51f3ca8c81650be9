"""Every screen on small and on large displays of a Wayland compositor."""

from fixture import LAUNCH_PATIENCE, TarneTestCase
from screens import EveryScreen

# The window is white, what lies behind it is not.
WHITE = b"\xff\xff\xff"


class UnderACompositor(EveryScreen):
    def prepare(self):
        super().prepare()
        self.wayland_display = self.desktop.start_compositor(int(self.scale))

    def environment(self):
        environment = super().environment() | {"WAYLAND_DISPLAY": self.wayland_display,
                                               "XDG_SESSION_TYPE": "wayland"}
        del environment["DISPLAY"]
        return environment

    def launch(self):
        self.program = self.start()
        self.node("Next", within=LAUNCH_PATIENCE)
        self.eventually(self.is_on_the_screen, "the window is on the screen")

    def is_on_the_screen(self):
        picture = self.desktop.ask_bytes("import", "-window", "root", "ppm:-")
        return picture.count(WHITE) > 100_000


class OnAPlainScreenOfACompositor(UnderACompositor, TarneTestCase):
    screen = "1280x800"


class OnAScreenOfACompositorAt200Percent(UnderACompositor, TarneTestCase):
    screen = "1920x1080"
    scale = 2.0
