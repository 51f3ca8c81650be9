"""The tabs that look back, over the real store."""

import os
import re
import time
import uuid

from fixture import TarneTestCase
from store import REFERENCE_DATE

HISTORY_SAMPLES = ["Complete project proposal", "Review client feedback", "Research market trends",
                   "Draft presentation outline", "Update project timeline",
                   "Code review for new feature"]
INSIGHTS_SAMPLES = ["Complete project proposal", "Research market trends", "Code review",
                    "Write documentation", "Team meeting prep", "Design mockups"]


class LookingBack(TarneTestCase):
    def setUp(self):
        super().setUp()
        # At noon, so that a session ends on the day of its beginning.
        self.clock.advance(43_200 - time.time() % 86_400)

    def stored_goals(self):
        return [goal["text"] for entry in self.store.history() for goal in entry["goals"]]

    def test_the_history_first_fills_an_empty_store_with_three_sessions(self):
        self.launch()
        self.assertEqual(self.store.history(), [])
        self.open_tab("History")
        self.assert_shown("Session History", "Today", "1/2", "Complete project proposal", "25 min",
                          "Yesterday", "2/3", "Research market trends")
        self.await_history(3)
        self.assertEqual(self.stored_goals(), HISTORY_SAMPLES)

        self.open_tab("Insights")
        self.assert_shown("Focus Streak", "Current Streak", "3")
        self.assertEqual(len(self.store.history()), 3)

    def test_the_insights_first_fill_an_empty_store_with_six_sessions(self):
        self.launch()
        self.open_tab("Insights")
        self.assert_shown("Current Streak", "0", "Longest Streak", "1", "67%", "33%", "0%", "100%")
        self.await_history(6)
        self.assertEqual(self.stored_goals(), INSIGHTS_SAMPLES)

        self.open_tab("History")
        self.assert_shown("Yesterday", "Complete project proposal", "1/1")
        self.assertIsNone(self.find("Review client feedback"))
        self.assertEqual(len(self.store.history()), 6)

        # They are entries like all others: the next run finds them and adds none.
        self.assertEqual(self.program.terminate(), 0)
        self.launch()
        self.open_tab("History")
        self.assert_shown("Yesterday", "Complete project proposal")
        self.assertEqual(len(self.store.history()), 6)

    def test_a_session_that_ends_while_the_history_is_open_is_there_at_once(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.open_tab("History")
        self.assert_shown("Today", "Complete project proposal")
        self.assertIsNone(self.find("Write report"))
        self.clock.advance(301)
        self.assert_shown("Write report", "5 min", "2 entries", "No reflection provided")
        self.assertEqual(len(self.await_history(4)), 4)

    def test_a_session_that_ends_while_the_insights_are_open_counts_at_once(self):
        self.launch()
        self.start_session("Write report", minutes=5)
        self.open_tab("Insights")
        self.assert_shown("Current Streak", "0", "1")
        self.clock.advance(301)
        # Of today's session and yesterday's sample.
        self.assert_shown("2")
        self.assert_gone("0")


class AnotherTimeZone(TarneTestCase):
    """The machine's zone is changed while the program runs, as a traveller's is."""

    def setUp(self):
        super().setUp()
        # At noon UTC, which is evening in Tokyo and the same day.
        self.clock.advance(43_200 - time.time() % 86_400)
        # The machine's own folder, seen under another name, but for the zone.
        self.etc, machine = self.folder / "etc", self.folder / "machine-etc"
        self.etc.mkdir()
        machine.mkdir()
        for name in set(os.listdir("/etc")) - {"localtime", "timezone"}:
            (self.etc / name).symlink_to(machine / name)
        self.binds = [("/etc", machine), (self.etc, "/etc")]
        self.set_zone("UTC")

    def set_zone(self, name):
        link = self.etc / "localtime.new"
        link.symlink_to(f"/usr/share/zoneinfo/{name}")
        os.replace(link, self.etc / "localtime")
        (self.etc / "timezone").write_text(f"{name}\n")

    def environment(self):
        environment = super().environment()
        del environment["TZ"]
        return environment

    def shown_hours(self):
        """The hour of each time of day on the screen, of 24."""
        hours = []
        for node in self._visible_nodes():
            if match := re.fullmatch(r"(\d?\d):\d\d(?::\d\d)?(?:\s?([AP])M)?", node.name):
                hours.append(int(match[1]) % 12 + 12 * (match[2] == "P") if match[2]
                             else int(match[1]))
        return hours

    def test_counts_from_the_next_look_on(self):
        noon = time.time() + self.clock.offset - REFERENCE_DATE
        texts = ["overallAssessment", "patternsObserved", "suggestions", "motivation", "reflection"]
        self.store.plant("SessionHistory", [
            {"id": str(uuid.uuid4()).upper(), "sessionDate": noon, "duration": 1500,
             "goals": [{"id": str(uuid.uuid4()).upper(), "text": "Write report"}]}
            | dict.fromkeys(texts, "")])
        self.launch(binds=self.binds)
        self.open_tab("History")
        self.eventually(lambda: self.shown_hours() == [12], "the session ended at noon")
        self.set_zone("Asia/Tokyo")
        self.open_tab("Settings")
        self.open_tab("History")
        self.eventually(lambda: self.shown_hours() == [21],
                        lambda: f"it ended at nine in the evening, not at {self.shown_hours()}")
