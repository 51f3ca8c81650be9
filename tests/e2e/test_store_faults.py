"""The program over a store that is broken, locked, unwritable, full or huge."""

import contextlib
import pathlib
import shutil
import sqlite3
import tempfile
import threading

from box import SMALL_DISK
from fixture import TarneTestCase
from store import PREFERENCES, Store, TIMER_KEYS

SAVED_AGAIN = "the defaults store is saved again"
CANNOT_BE_SAVED = "the defaults store cannot be saved now: "
GOALS = "Write report"
FIVE_MINUTES = 300.0


class StoreFault(TarneTestCase):
    def assert_one_error(self, beginning):
        """Exactly one line tells of the fault, however long it lasts."""
        self.expect_error(beginning)
        self.eventually(lambda: self.errors_of(beginning), f"a line says: {beginning}")

    def errors_of(self, text):
        return [line for line in self.program.errors if text in line]

    def assert_session_goes_on(self):
        lines = len(self.program.log)
        self.eventually(lambda: "Active=1" in "".join(self.program.log[lines:]),
                        "the session goes on")

    def await_stored_session(self):
        self.eventually(lambda: self.store.values(TIMER_KEYS).get("TimerSessionGoal") == GOALS,
                        lambda: f"the session is stored: {self.store.rows().keys()}")

    def assert_runs_out_into_the_history(self):
        self.clock.advance(FIVE_MINUTES)
        entry, = self.await_history(1)
        self.assertEqual([goal["text"] for goal in entry["goals"]], [GOALS])

    def run_session(self):
        self.start_session(GOALS, minutes=5)
        self.assert_session_goes_on()


class AStoreThatIsNoDatabase(StoreFault):
    def test_is_set_aside_and_its_copy_comes_back(self):
        copies = self.store.file.parent / "copies"
        copies.mkdir(mode=0o700)
        shutil.copy(self.store.file, copies / "defaults-2026-01-01.sqlite")
        self.store.file.write_text("A letter to a friend.\n" * 500)

        self.launch()
        self.assert_shown("Start Session")  # The user has seen onboarding: so says the copy.
        self.assert_one_error("UserPreferences restored from defaults-2026-01-01.sqlite")
        aside, = self.store.file.parent.glob("defaults.damaged-*.sqlite")
        self.assertTrue(aside.read_text().startswith("A letter"))
        self.run_session()
        self.await_stored_session()
        self.assert_runs_out_into_the_history()
        self.assertEqual(len(self.errors_of("defaults store")), 1)


class ALockedStore(StoreFault):
    def test_is_read_and_saved_as_soon_as_the_lock_is_gone(self):
        with contextlib.closing(sqlite3.connect(self.store.file)) as other:
            other.execute("BEGIN IMMEDIATE")
            self.launch()
            self.assert_shown("Start Session")
            self.run_session()
            self.assert_one_error(CANNOT_BE_SAVED)
            self.assertNotIn("TimerSessionGoal", self.store.rows())
            other.rollback()
        self.expect_error(SAVED_AGAIN)
        self.await_stored_session()
        self.assert_runs_out_into_the_history()
        self.assertEqual(len(self.errors_of(CANNOT_BE_SAVED)), 1)


class AReadOnlyStore(StoreFault):
    def start(self, **how):
        folder = self.store.file.parent
        return super().start(binds=[(folder, folder)], **how)

    def test_is_read_and_the_session_runs_all_the_same(self):
        before = self.store.file.read_bytes()
        self.expect_error("no lock against a second program: Read-only file system")
        self.launch()
        self.assert_shown("Start Session")
        self.run_session()
        self.assert_one_error(CANNOT_BE_SAVED)
        self.clock.advance(FIVE_MINUTES)
        self.eventually(lambda: self.program.logged("📱 Timer completed - session automatically"),
                        "the session runs out")
        self.assertEqual(len(self.errors_of(CANNOT_BE_SAVED)), 1)
        self.assertEqual(self.program.terminate(), 0)
        self.assertEqual(self.store.file.read_bytes(), before)


class AFullDisk(StoreFault):
    def setUp(self):
        super().setUp()
        self.extra_environment = {"XDG_DATA_HOME": str(SMALL_DISK)}
        self.store = Store(SMALL_DISK)
        self.store.plant("UserPreferences", PREFERENCES)

    @contextlib.contextmanager
    def filled(self):
        """The disk is full meanwhile, also where the store gives some room back."""
        filler = self.store.file.parent / "filler"
        is_over = threading.Event()

        def fill():
            with open(filler, "wb", buffering=0) as file:
                while not is_over.wait(0.001):
                    with contextlib.suppress(OSError):
                        while file.write(bytes(4096)):
                            pass

        filling = threading.Thread(target=fill)
        filling.start()
        try:
            yield
        finally:
            is_over.set()
            filling.join()
            filler.unlink()

    def copy_of_store(self):
        """A reader makes a file too, for which a full disk has no room."""
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        copy = Store(folder)
        copy.file.parent.mkdir(exist_ok=True)
        for name in ("defaults.sqlite", "defaults.sqlite-wal"):
            with contextlib.suppress(FileNotFoundError):
                shutil.copy(self.store.file.parent / name, copy.file.parent)
        return copy

    def test_costs_the_writes_until_there_is_room_again(self):
        self.launch()
        self.run_session()
        self.await_stored_session()
        with self.filled():
            self.assert_one_error(CANNOT_BE_SAVED)
            self.clock.advance(FIVE_MINUTES)
            self.eventually(
                lambda: self.program.logged("📱 Timer completed - session automatically"),
                "the session runs out")
            self.assertEqual(self.copy_of_store().history(), [])
        self.expect_error(SAVED_AGAIN)
        entry, = self.await_history(1)
        self.assertEqual([goal["text"] for goal in entry["goals"]], [GOALS])
        self.assertEqual(len(self.errors_of(CANNOT_BE_SAVED)), 1)


class HugeValues(StoreFault):
    def test_of_50_megabytes_are_read_kept_and_added_to(self):
        text = "0123456789" * 5_000_000
        entry = {"id": "6F9619FF-8B86-D011-B42D-00CF4FC964FF", "sessionDate": 700_000_000.5,
                 "goals": [], "duration": 60.0, "overallAssessment": text, "patternsObserved": "",
                 "suggestions": "", "motivation": "", "reflection": ""}
        self.store.plant("SessionHistory", [entry])
        self.store.plant("UserPreferences", PREFERENCES | {"lastReflection": text})
        planted = self.store.size_of("SessionHistory")
        self.launch()
        self.assert_shown("Start Session")
        self.run_session()
        self.clock.advance(FIVE_MINUTES)
        self.eventually(lambda: self.program.logged("📱 Added new session to history: "),
                        "the session runs out")
        self.eventually(lambda: self.store.size_of("SessionHistory") != planted,
                        "the history is saved")
        first, second = self.store.history()
        self.assertEqual(first, entry)
        self.assertEqual([goal["text"] for goal in second["goals"]], [GOALS])
        preferences = self.store.document("UserPreferences")
        self.assertEqual((preferences["lastReflection"], preferences["lastGoal"]), (text, GOALS))

    def test_of_a_megabyte_lead_a_goal_line_from_the_sheet_into_the_history(self):
        line = "Write report, " * 70_000
        self.store.plant("UserPreferences", PREFERENCES | {"lastGoal": line})
        self.launch()
        self.choose_duration(5)
        self.press("Start session")
        self.assert_session_goes_on()
        self.eventually(lambda: self.store.values(TIMER_KEYS).get("TimerSessionGoal") == line,
                        "the session is stored")
        self.program.kill()
        self.launch()
        self.assert_session_goes_on()
        self.clock.advance(FIVE_MINUTES)
        entry, = self.await_history(1)
        self.assertEqual([goal["text"] for goal in entry["goals"]], [GOALS] * 70_000)
