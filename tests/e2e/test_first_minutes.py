"""The first minutes of a new user on a machine where what TARNE works with is missing: it starts,
every screen works, a session runs from its start to its end, and what is missing is said where it
hurts."""

from fixture import TarneTestCase
from keyboard import KeyboardUser

NO_KEY = "Gemini API key not configured. Please set it in Settings."
NO_SERVER = "Server binary not found in app bundle or project root"
NO_KEY_STORE = ("the key is not kept: unlock the key store, or install one such as gnome-keyring, "
                "and save the key again")
NO_NETWORK = "The server could not be found. Is this computer online?"
NO_DAEMON = "notification waits for a daemon to show it"
NO_NOTIFIER = "notifications are kept in this process and end with it"
KEY_FIELD = "Enter your Gemini API key"


class NewUser(TarneTestCase):
    has_seen_onboarding = False

    def pass_onboarding(self):
        self.press("Next")
        self.node("Page 2 of 2")
        self.type_key("key-of-the-test")
        self.press("Start Focusing")
        self.press("Start Using TARNE")
        self.node("Start Session")

    def type_key(self, key):
        field = self.node(KEY_FIELD, role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the field has the keyboard focus")
        self.desktop.xdotool("type", "--delay", "5", key)

    def hold_session(self):
        """From its length to its end in the history."""
        self.start_session("Write report, Review", minutes=5)
        self.clock.advance(self.remaining() + 1)
        self.assert_shown("How did you do with your goals?")
        for option in [node for node in self._visible_nodes()
                       if node.name == "Completed" and node.role == "radio button"]:
            option.press()
        self.press("Complete reflection")
        self.assert_shown("Session Feedback")

    def finish_session(self):
        self.press("Finish session")
        self.assert_shown("Session Setup")
        entry, = self.await_history(1)
        self.eventually(lambda: [goal.get("status") for goal in self.store.history()[0]["goals"]]
                        == ["completed"] * 2, "the ratings are kept")

    def look_through_tabs(self):
        for tab, text in (("Insights", "Focus Streak"), ("History", "Write report"),
                          ("Settings", NO_SERVER)):
            self.open_tab(tab)
            self.assert_shown(text)


class OnAnEmptyBus(NewUser):
    """No key store, no portal, no daemon for notifications, no notifier, no server, no network."""

    def offered_services(self):
        return None

    def test_a_session_is_held_and_each_loss_is_told_where_it_hurts(self):
        self.desktop.stop_notifications()
        for loss in (NO_KEY_STORE, NO_NOTIFIER, NO_DAEMON):
            self.expect_error(loss)
        self.launch()
        self.pass_onboarding()
        self.eventually(lambda: NO_KEY_STORE in "".join(self.program.errors),
                        "the missing key store is told of")
        self.hold_session()
        self.node("Unable to generate feedback", role="notification")
        self.assert_shown(NO_KEY)
        self.finish_session()
        self.look_through_tabs()
        self.assertEqual(self.node(KEY_FIELD, role="text").description, "")
        self.assertEqual(self.program.terminate(), 0)


class WithAKeyAndNoNetwork(NewUser):
    """The key is kept and the service out of reach."""

    def test_the_card_says_so_and_the_session_ends_in_the_history(self):
        self.desktop.start_key_store()
        self.launch()
        self.pass_onboarding()
        self.hold_session()
        card = self.node("Unable to generate feedback", role="notification")
        self.assertEqual(card.description, NO_NETWORK)
        self.finish_session()


class WithoutABus(KeyboardUser, NewUser):
    """Nor is there an accessibility tree, so the keyboard leads and the picture is looked at."""

    has_session_bus = False
    has_seen_onboarding = True

    def test_a_session_is_held_by_the_keyboard_from_its_start_to_its_end(self):
        self.launch()
        self.await_sheets(0)
        self.go_on(0)  # Start Session
        self.await_sheets(1)
        self.go_on(2)  # 15 minutes
        self.go_on(5)  # Continue
        self.eventually(lambda: self.store.document("UserPreferences")["defaultDuration"] == 900,
                        "the length is stored")
        self.await_sheets(1)
        self.desktop.xdotool("type", "--delay", 5, "Read")
        self.go_on(1)  # Start session
        self.eventually(lambda: "📱 Starting new session: Read" in self.program.log,
                        "the session runs")
        self.await_sheets(0)
        self.clock.advance(901)
        self.await_sheets(1)
        self.go_on(2)  # Completed
        self.go_on(4)  # Complete reflection
        self.await_sheets(2)
        self.go_on(4)  # Finish session
        self.await_sheets(0)
        entry, = self.await_history(1)
        self.eventually(lambda: self.store.history()[0]["goals"][0].get("status") == "completed",
                        "the rating is kept")
        self.assertTrue(self.program.logged("There is no session bus."))
        self.assertEqual(self.program.terminate(), 0)
