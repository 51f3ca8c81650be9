"""A key store that is locked while nobody is there to unlock it, or somebody who takes their time."""

import time

from test_server import ServerTestCase

NO_KEY = "Gemini API key not configured. Please set it in Settings."


class ALockedKeyStore(ServerTestCase):
    def setUp(self):
        super().setUp()
        self.desktop.ask("secret-tool", "store", "--label=TARNE", "service", "com.tarne.app",
                         "account", "GeminiAPIKey", typed="locked key")
        self.desktop.stop_key_store()
        self.desktop.start_key_store(is_open=False)
        self.desktop.show_password_dialogs()

    def test_costs_the_start_seconds_and_a_session_its_coaching_until_it_is_unlocked(self):
        self.program = self.start()
        self.eventually(self.window_id, "the window is up")
        self.eventually(self.desktop.dialog_calls, "the user is asked for the password")
        self.eventually(lambda: self.program.logged("🟢 Server started"),
                        "the start has waited long enough", within=20)
        self.await_healthy(1)
        self.assertIsNone(self.runs()[0]["GEMINI_API_KEY"])

        self.focus_window()
        self.start_session("Write report", minutes=5)
        self.press("Stop")
        self.node("Completed", role="radio button").press()
        self.type_into("Reflection", "It went well.")
        self.press("Complete reflection")
        self.assert_shown("Session Feedback", NO_KEY)
        self.press("Finish session")
        entry, = self.await_history(1)
        self.assertEqual([goal["status"] for goal in entry["goals"]], ["completed"])
        self.assertEqual(self.desktop.dialog_calls(), ["BeginPrompting"], "one dialog, left up")

        self.desktop.stop_key_store()
        self.desktop.start_key_store()
        self.open_tab("Settings")
        self.press("Restart")
        self.await_healthy(2)
        self.assertEqual(self.runs()[1]["GEMINI_API_KEY"], "locked key")


class AKeySavedIntoALockedKeyStore(ServerTestCase):
    def setUp(self):
        super().setUp()
        # Which makes the keyring.
        self.desktop.ask("secret-tool", "store", "--label=other", "service", "com.tarne.app",
                         "account", "other", typed="of another program")
        self.desktop.stop_key_store()
        self.desktop.start_key_store(is_open=False)
        self.desktop.show_password_dialogs_to_somebody()

    def test_is_stored_when_the_user_unlocks_after_eight_seconds_and_serves_the_next_start(self):
        self.launch()
        self.await_healthy(1)
        self.open_tab("Settings")
        self.type_key("late key")
        eight_seconds_from_now = time.monotonic() + 8
        self.press("Save API Key")
        self.press("OK")
        self.await_healthy(2)
        self.assertIsNone(self.runs()[1]["GEMINI_API_KEY"])
        self.eventually(lambda: time.monotonic() > eight_seconds_from_now, "eight seconds are over")
        self.desktop.unlock()
        self.eventually(lambda: "secret = late key" in self.desktop.ask(
            "secret-tool", "search", "service", "com.tarne.app", "account", "GeminiAPIKey"),
                        "the key is stored")
        self.assertEqual(len(self.runs()), 2, "and nothing is restarted for it")

        self.press("Restart")
        self.await_healthy(3)
        self.assertEqual(self.runs()[2]["GEMINI_API_KEY"], "late key")
