"""Every screen on small and on large displays under X11."""

from fixture import TarneTestCase
from screens import EveryScreen


class OnANetbook(EveryScreen, TarneTestCase):
    screen = "1024x600"


class OnALaptopAt125PercentWithTheLargestTexts(EveryScreen, TarneTestCase):
    screen = "1366x768"
    scale = 1.25
    wishes = {"text_scale": 1.5}
    extra_environment = {"QT_SCALE_FACTOR": "1.25"}


class OnAFullHDScreenAt200PercentInArabic(EveryScreen, TarneTestCase):
    screen = "1920x1080"
    scale = 2.0

    def environment(self):
        return super().environment() | {"LOCPATH": str(self.folder), "LC_ALL": "ar_EG.UTF-8"}

    def prepare(self):
        super().prepare()
        self.desktop.set_font_resolution(192)
        # The machine need not have the locale: its names and digits are the toolkit's own.
        (self.folder / "ar_EG.UTF-8").symlink_to("/usr/lib/locale/C.utf8")


class OnALargeScreenAt150PercentWithMoreContrast(EveryScreen, TarneTestCase):
    screen = "2560x1440"
    scale = 1.5
    wishes = {"animations": False, "contrast": 1}

    def prepare(self):
        super().prepare()
        self.desktop.set_font_resolution(144)
