"""The whole program, killed at random instants and started again."""

import os
import random
import time

from fixture import TarneTestCase
from store import TIMER_KEYS

SEED = int(os.environ.get("TARNE_SEED", 1))
KILLS = 200 if os.environ.get("TARNE_PROOF") == "long" else 10
LENGTH = 3_000.0  # Seconds of a session.


class AKill(TarneTestCase):
    """Each start finds what the kill before it has left: in its beginning, in a session that goes
    on, and in one that ran out while the program was down."""

    def setUp(self):
        super().setUp()
        self.random = random.Random(SEED)
        self.planted = []  # The goals of all sessions, in their order.
        self.harmful = 0

    def plant_session(self):
        """What a session leaves that has just begun."""
        self.planted.append(f"Write report {len(self.planted) + 1}")
        self.store.plant_countdown(self.clock.now() - self.random.uniform(1, 100), LENGTH,
                                   self.planted[-1])

    def goals_in_history(self):
        return [goal["text"] for entry in self.store.history() for goal in entry["goals"]]

    def run_for_a_while(self):
        """Starts the program and kills it; what another program has seen in the store before that."""
        self.start(has_own_network=True)
        seen = {}
        end = time.monotonic() + self.random.uniform(0, 1.5) ** 2
        while time.monotonic() < end:
            seen = self.store.rows()
        self.programs[-1].kill()
        return seen

    def harm(self, seen):
        """What the kill has taken that was seen, or broken; empty when nothing."""
        found = []
        if not self.store.is_whole():
            found.append("the store is not whole")
        if list(self.store.file.parent.glob("defaults.damaged-*")):
            found.append("a store was set aside")
        left = self.store.rows()
        if (self.store.document("UserPreferences") or {}).get("hasCompletedOnboarding") is not True:
            found.append("the preferences are gone")
        published = [rows.get("LastUpdate", (None, 0.0))[1] for rows in (seen, left)]
        if published[1] < published[0]:
            found.append(f"published: {published}")
        history = self.goals_in_history()
        found += [f"{goal} is not in the history any more"
                  for goal in self.seen_in_history if goal not in history]
        self.seen_in_history = history
        if all(key in left for key in TIMER_KEYS):
            if left["TimerSessionGoal"][1] != self.planted[-1]:
                found.append(f"another session: {left['TimerSessionGoal']}")
        elif self.planted[-1] not in history:
            found.append(f"{self.planted[-1]} is neither running nor in the history")
        return found

    def test_at_random_instants_loses_nothing_that_was_seen_in_the_store(self):
        self.seen_in_history = []
        self.plant_session()
        for kill in range(KILLS):
            harm = self.harm(self.run_for_a_while())
            self.harmful += bool(harm)
            self.assertEqual(harm, [], f"after kill {kill + 1}")
            if "TimerSessionGoal" not in self.store.rows():
                self.plant_session()
            elif self.random.random() < 0.4:
                self.clock.advance(LENGTH)  # It runs out while nobody looks.
        self.clock.advance(LENGTH)
        self.launch(has_own_network=True)
        self.eventually(lambda: self.planted[-1] in self.goals_in_history(),
                        "the last session is in the history")
        self.assertEqual(self.program.terminate(), 0)
        history = self.goals_in_history()
        lost = [goal for goal in self.planted if goal not in history]
        twice = len(history) - len(set(history))
        print(f"\nproof: tarne-kills: {KILLS} kills, {len(self.planted)} sessions, {len(lost)} lost, "
              f"{twice} in the history twice, {self.harmful} harmful kills (seed {SEED})",
              flush=True)
        self.assertEqual(lost, [])
