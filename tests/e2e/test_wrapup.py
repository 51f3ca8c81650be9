"""The end of a session on the real program: rated, reflected on, coached, and in the history."""

import json
import subprocess

from fixture import TarneTestCase
from gemini import KEY, Gemini, Keyring

GOALS = "Write report, Review"
TEXTS = ("overallAssessment", "patternsObserved", "suggestions", "motivation", "reflection")
COACHING = {"overallAssessment": "You finished what you set out to do.",
            "patternsObserved": "You start with the hardest goal.",
            "suggestions": "Leave ten minutes for a review.",
            "motivation": "Stillhour grows with each session."}
NO_COACHING = dict.fromkeys(COACHING, "")


class AWrapUp(TarneTestCase):
    def setUp(self):
        super().setUp()
        self.keyring = Keyring(self.folder, self.desktop.environment)
        self.addCleanup(self.keyring.close)
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)
        self.launch(binds=self.gemini.binds)
        self.start_session(GOALS, minutes=5)

    def tearDown(self):
        super().tearDown()
        for program in self.programs:
            for line in program.log + program.errors:
                self.assertNotIn(KEY, line)

    def run_out(self):
        self.clock.advance(self.remaining() + 1)
        self.assert_shown("How did you do with your goals?")

    def rate(self, *statuses):
        """Chooses a status for each goal, from the first on."""
        for row, status in enumerate(statuses):
            def option():
                options = [node for node in self._visible_nodes()
                           if node.name == status and node.role == "radio button"]
                return options[row] if row < len(options) else None
            self.eventually(option, f"goal {row} can be rated").press()
            self.eventually(lambda: option().has("checked"), f"goal {row} is {status}")

    def complete_reflection(self, reflection):
        self.type_into("Reflection", reflection)
        self.press("Complete reflection")
        self.assert_shown("Session Feedback", "2 of 2 tasks completed")

    def finish(self):
        self.press("Finish session")
        self.assert_gone("Session Feedback")
        self.assert_shown("Session Setup", "00:05:00")

    def assert_goals(self, entry, *statuses):
        self.assertEqual([(goal["text"], goal["status"]) for goal in entry["goals"]],
                         list(zip(GOALS.split(", "), statuses)))

    def assert_texts(self, entry, texts, reflection):
        self.assertEqual({text: entry[text] for text in TEXTS},
                         texts | {"reflection": reflection})

    def clipboard(self):
        done = subprocess.run(["xclip", "-selection", "clipboard", "-o"], text=True, timeout=30,
                              capture_output=True, env=self.desktop.environment)
        return done.stdout

    def test_goes_from_the_run_out_to_one_entry_with_all_texts(self):
        self.run_out()
        self.assert_shown("Write report", "Review", "Reflection", "Close")
        self.rate("Completed", "Completed")
        self.complete_reflection("It went well.")
        self.assert_shown(*COACHING.values())
        self.assert_shown("Overall Assessment", "Patterns Observed", "Suggestions", "Motivation")

        request, = self.gemini.requests
        self.assertEqual((request["method"], request["target"]),
                         ("POST", "/v1beta/models/gemini-1.5-flash-latest:generateContent"
                          f"?key={KEY}"))
        self.assertIn(["Content-Type", "application/json"], request["headers"])
        prompt = json.loads(request["body"])["contents"][0]["parts"][0]["text"]
        self.assertIn("\n\n- Goals: Write report, Review\n- Status: Write report — completed, "
                      "Review — completed\n- Reflection: It went well.\n\n", prompt)

        # Brought into view, as by Tab: what lies below the window is not on the screen.
        self.node("Edit", role="push button").grab_focus()
        self.press("Edit")
        self.type_into("Your Reflection", "It went very well.")
        self.press("Done")
        self.assert_shown("It went very well.")
        self.press("Save & Share")
        self.eventually(lambda: self.program.logged("Session summary copied to clipboard"),
                        "the summary is said to be copied")
        self.assertEqual(
            self.clipboard(),
            "# Stillhour Session Summary\n\n## Goals\n- ✅ Write report\n- ✅ Review\n"
            "\n## Reflection\nIt went very well.\n\n## AI Feedback\n\n"
            f"**Overall Assessment:** {COACHING['overallAssessment']}\n\n"
            f"**Patterns Observed:** {COACHING['patternsObserved']}\n\n"
            f"**Suggestions:** {COACHING['suggestions']}\n\n"
            f"**Motivation:** {COACHING['motivation']}\n\n")
        self.assert_texts(self.await_history(1)[0], NO_COACHING, "")

        self.finish()
        self.eventually(lambda: self.store.history()[0]["motivation"], "the entry has coaching")
        entry, = self.store.history()
        self.assert_goals(entry, "completed", "completed")
        self.assert_texts(entry, COACHING, "It went very well.")
        self.assertEqual(entry["duration"], 300.0)
        self.assertEqual(self.store.document("UserPreferences")["lastReflection"],
                         "It went very well.")

    def test_without_the_service_says_so_and_keeps_the_ratings(self):
        self.gemini.close()
        self.run_out()
        self.rate("Completed", "Completed")
        self.complete_reflection("It went well.")
        self.assert_shown("Unable to generate feedback")
        self.finish()
        self.eventually(lambda: "status" in self.store.history()[0]["goals"][0],
                        "the entry has the ratings")
        entry, = self.store.history()
        self.assert_goals(entry, "completed", "completed")
        self.assert_texts(entry, NO_COACHING, "")
        self.assertEqual(self.store.document("UserPreferences")["lastReflection"],
                         "It went well.")

    def test_tells_what_the_service_says(self):
        self.gemini.set_scenario("json429")
        self.run_out()
        self.rate("Completed", "Completed")
        self.complete_reflection("It went well.")
        self.assert_shown("Unable to generate feedback", "told with 429")

    def test_ends_a_session_that_was_stopped_before_its_time(self):
        self.press("Stop")
        self.assert_shown("How did you do with your goals?")
        self.rate("Completed", "Completed")
        self.complete_reflection("Done early.")
        self.assert_shown(COACHING["motivation"])
        self.assertEqual(self.store.history(), [])
        self.finish()
        entry, = self.await_history(1)
        self.assert_goals(entry, "completed", "completed")
        self.assert_texts(entry, COACHING, "Done early.")
        self.eventually(lambda: "TimerIsActive" not in self.store.rows(), "no count-down is left")

    def test_of_more_than_five_minutes_leaves_a_second_entry_without_coaching(self):
        self.run_out()
        self.rate("Completed", "Completed")
        self.clock.advance(310)
        self.complete_reflection("It took a while.")
        self.assert_shown(COACHING["motivation"])
        self.finish()
        first, second = self.await_history(2)
        self.assert_texts(first, COACHING, "It took a while.")
        self.assert_texts(second, NO_COACHING, "")
        for entry in (first, second):
            self.assert_goals(entry, "completed", "completed")
        self.assertAlmostEqual(second["sessionDate"] - first["sessionDate"], 310, delta=60)
