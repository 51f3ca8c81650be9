"""A walk through every screen of the program, which looks whether each control can be reached."""

import os
import pathlib

from fixture import LAUNCH_PATIENCE

CONTROLS = ("push button", "toggle button", "text", "password text", "radio button", "page tab")
# Where the sheet of pictures is made, the folder for what goes into it.
PICTURES = os.environ.get("TARNE_PICTURES")

STRIP = {"Menu", "Minimize window", "Close window"}


class EveryScreen:
    """From the first page to the last sheet. On each screen the wheel brings every control into the
    window, and so does the Tab key."""

    has_seen_onboarding = False
    # Pixels of the display a point of the window.
    scale = 1.0
    wishes = {}
    # What the two faces of the timer and the alerts are to be called in the folder of pictures.
    picture_number = 0

    def prepare(self):
        """Brings the display and what the user has asked the desktop for into place."""
        self.expect_error("the key is not kept")
        self.desktop.ask("xsetroot", "-solid", "#204060")
        if self.wishes:
            self.desktop.start_portal(**self.wishes)

    # -- where things are -------------------------------------------------------------------

    def frame(self):
        return self.desktop.accessibility.application(self.program.pid).children[0].extents

    def is_inside(self, extents):
        """Whether a place is wholly within the window."""
        left, top, width, height = extents
        frame_left, frame_top, frame_width, frame_height = self.frame()
        return (width > 0 and height > 0 and left >= frame_left - 1 and top >= frame_top - 1
                and left + width <= frame_left + frame_width + 1
                and top + height <= frame_top + frame_height + 1)

    def controls_inside(self):
        return {node.name for node in self._visible_nodes()
                if node.role in CONTROLS and node.has("enabled") and self.is_inside(node.extents)}

    def focused(self):
        """The role and the name of what has the keyboard, and whether it is within the window."""
        for node in self._visible_nodes():
            if node.has("focused"):
                return node.role, node.name, self.is_inside(node.extents)
        return None

    def point_at_window(self):
        width, height = map(int, self.screen.split("x"))
        # By way of the corner: a compositor counts from where it believes its pointer to be.
        self.desktop.xdotool("mousemove", 0, 0)
        self.desktop.xdotool("mousemove", width // 2, height // 2)

    # -- a look at one screen ---------------------------------------------------------------

    def look_at(self, title, *names, strip=True):
        """Expects the controls `names` on the screen called `title`, and all within reach."""
        expected = set(names) | (STRIP if strip else set())
        with self.subTest(screen=title):
            self.assert_mouse_reaches(expected)
            self.assert_keyboard_reaches(expected)
            self.take_picture(title)

    def assert_mouse_reaches(self, expected):
        reached = set()

        def all_reached():
            reached.update(self.controls_inside())
            if expected <= reached:
                return True
            self.desktop.xdotool("click", "--repeat", 2, "--delay", 20, 5)
            return False

        self.point_at_window()
        self.eventually(all_reached, lambda: f"the wheel leads to {expected - reached}")
        self.desktop.xdotool("click", "--repeat", 40, "--delay", 5, 4)

    def assert_keyboard_reaches(self, expected):
        """What has the focus at first stays where the wheel has left it, and out of sight nothing
        tells of it. What gets it is brought into the window with the frame after the key."""
        reached, now = set(), self.focused()
        for _ in range(60):
            if now and now[2]:
                reached.add(now[1])
            if expected <= reached:
                return
            # One that is alone keeps the focus.
            before = now[:2] if now and len(expected) > 1 else None
            self.desktop.xdotool("key", "Tab")
            now = self.eventually(
                lambda: (at := self.focused()) and at[2] and at[:2] != before and at,
                lambda: f"Tab leads on from {before}, within the window: {self.focused()}")
        self.fail(self._state(f"Tab leads to {expected - reached}")())

    def take_picture(self, title):
        if not PICTURES:
            return
        # What comes in takes a few frames. The orb never comes to rest.
        last = None
        for _ in range(6):
            now = self.desktop.ask_bytes("import", "-window", "root", "ppm:-")
            if now == last:
                break
            last = now
        self.picture_number += 1
        folder = pathlib.Path(PICTURES) / type(self).__name__
        folder.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot(folder / f"{self.picture_number:02}-{title}.png")

    # -- the road ---------------------------------------------------------------------------

    def test_every_control_of_every_screen_is_within_reach(self):
        self.prepare()
        self.launch()
        width, height = map(int, self.screen.split("x"))
        frame = self.frame()
        self.assertLessEqual(frame[2] * self.scale, width + 1)
        self.assertLessEqual(frame[3] * self.scale, height + 1)
        self.go_through_onboarding()
        self.go_through_a_session()
        self.go_through_the_tabs()

    def go_through_onboarding(self):
        self.look_at("welcome", "Next")
        self.press("Next")
        self.assert_shown("Back")
        self.type_into_key_field("an example of a key")
        self.look_at("setup", "Back", "Start Focusing", "Get Free API Key", "Show key",
                     "Enter your Gemini API key")
        self.press("Start Focusing")
        self.assert_shown("Setup Complete")
        self.look_at("setup-alert", "Start Using TARNE", strip=False)
        self.press("Start Using TARNE")
        self.assert_shown("Session Setup")

    def type_into_key_field(self, key):
        field = self.node("Enter your Gemini API key")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the key field has the keyboard")
        self.desktop.xdotool("type", "--delay", "5", key)
        self.eventually(lambda: self.node("Start Focusing").has("enabled"), "the key is there")

    def go_through_a_session(self):
        self.look_at("timer-setup", "Timer", "Start Session")
        self.press("Start Session")
        self.assert_shown("Select Session Duration")
        self.press("Custom Duration")
        self.type_into("5-180", "3")
        self.assert_shown("Duration must be at least 5 minutes")
        presets = [f"{minutes} min" for minutes in (15, 25, 45, 60)]
        self.look_at("duration", "Close", "Custom Duration", "5-180", "Continue", *presets,
                     strip=False)
        self.press("Continue")
        self.type_into("Session Goal", "Write the report, Review it with everybody")
        self.look_at("notes", "Close", "Session Goal", "Start session", strip=False)
        self.press("Start session")
        self.look_at("timer-running", "Timer", "Pause", "Stop")
        self.press("Pause")
        self.look_at("timer-paused", "Timer", "Resume", "Stop")
        self.press("Stop")
        self.assert_shown("How did you do with your goals?")
        for goal in range(2):
            self.rate(goal)
        self.type_into("Reflection", "It went well.")
        self.look_at("reflection", "Close", "Completed", "Partially Completed", "Not Completed",
                     "Reflection", "Complete reflection", strip=False)
        self.press("Complete reflection")
        self.node("Finish session", within=LAUNCH_PATIENCE)
        self.press("Edit")
        self.look_at("feedback", "Close", "Done", "Your Reflection", "Finish session", strip=False)
        self.press("Finish session")
        self.assert_shown("Session Setup")

    def rate(self, goal):
        options = [node for node in self._visible_nodes()
                   if node.role == "radio button" and node.name == "Completed"]
        options[goal].press()

    def go_through_the_tabs(self):
        self.open_tab("Insights")
        self.assert_shown("Focus Streak")
        self.look_at("insights", "Insights")
        self.open_tab("History")
        self.assert_shown("Session History")
        self.look_at("history", "History")
        self.open_tab("Settings")
        self.assert_shown("Server Status")
        self.look_at("settings", "Settings", "Get API Key", "Show key",
                     "Enter your Gemini API key")
        self.press("Menu")
        self.assert_shown("Check for Updates...")
        self.eventually(lambda: {"New Session", "Check for Updates...", "Quit TARNE"} <= {
            node.name for node in self._visible_nodes() if self.is_inside(node.extents)},
            "the menu's entries are within the window")
        self.take_picture("menu")
        self.node("Check for Updates...").press()
        self.assert_shown("OK")
        self.look_at("update-alert", "OK", strip=False)
        self.press("OK")
