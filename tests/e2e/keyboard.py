"""A user of the keyboard where no accessibility tree tells what is on the screen."""


class KeyboardUser:
    """A part of test cases: the picture tells how many sheets are up, and keys lead on."""

    # Of the window, beside every sheet.
    CORNER = "1x1+152+785"

    def brightness(self):
        return self.desktop.ask_bytes("import", "-window", "root", "-crop", self.CORNER,
                                      "-depth", "8", "gray:-")[0]

    def await_sheets(self, count):
        """Each sheet darkens what is behind it by a fifth."""
        expected = 255 * 0.8 ** count
        self.eventually(lambda: abs(self.brightness() - expected) < 6,
                        lambda: f"{count} sheets are up: {self.brightness()}, not {expected:.0f}")

    def go_on(self, tabs, key="space"):
        self.desktop.xdotool("key", "--delay", 20, *["Tab"] * tabs, key)
