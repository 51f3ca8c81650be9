"""The program over a store whose calls of the system fail now and then through a whole session."""

from fixture import PROGRAM, TarneTestCase

GOALS = "Write report"
FIVE_MINUTES = 300.0
STRACE = "/usr/bin/strace"
# What the store says of it; nothing else may be said.
TOLD = ("the defaults store cannot be saved now: ", "the defaults store is saved again",
        "no copy of the defaults store was made today: ")

failed_calls = []  # How many, a session.


def tearDownModule():
    print(f"proof: unreliable-disk: {len(failed_calls)} sessions with {sum(failed_calls)} failed "
          "calls, each whole afterwards (no seed)", flush=True)


class AStoreWhoseCallsFailNowAndThen(TarneTestCase):
    """Each test names a call, how it fails, and when, as strace counts the calls of a thread: from
    one on and again after a number that no attempt to save needs, so that some attempt succeeds."""

    def store_files(self):
        folder = self.store.file.parent
        databases = [self.store.file, folder / "copies" / "unfinished.sqlite"]
        return [folder, folder / "copies"] + [
            f"{database}{suffix}" for database in databases
            for suffix in ("", "-wal", "-shm", "-journal")]

    def start_with_faults(self, call, error, when):
        self.trace = self.folder / "trace"
        words = ["-D", "-f", "-qq", "--seccomp-bpf", "-o", self.trace, "-e", f"trace={call}",
                 "-e", f"inject={call}:error={error}:when={when}"]
        for file in self.store_files():
            words += ["-P", file]
        self.launch(executable=STRACE, arguments=[*map(str, words), PROGRAM])

    def hold_session(self, call, error, when):
        for line in TOLD:
            self.expect_error(line)
        self.start_with_faults(call, error, when)
        self.start_session(GOALS, minutes=5)
        for button, active in (("Pause", 0), ("Resume", 1)):
            self.press(button)
            self.eventually(
                lambda: self.store.values(["SessionActive"]).get("SessionActive") == active,
                f"the session is {'active' if active else 'paused'} for readers, too")
        self.clock.advance(FIVE_MINUTES)
        entry, = self.await_history(1)
        self.assertEqual([goal["text"] for goal in entry["goals"]], [GOALS])
        self.assertEqual(self.program.terminate(), 0)
        self.assertGreater(self.faults_met(), 0)

    def faults_met(self):
        return self.trace.read_text().count("(INJECTED)")

    def assert_nothing_is_lost(self):
        self.assertTrue(self.store.is_whole())
        self.launch()
        self.open_tab("History")
        self.assert_shown(GOALS)
        self.assertEqual(self.program.errors, [])
        self.assertEqual(self.program.terminate(), 0)
        failed_calls.append(self.faults_met())

    def test_at_writing(self):
        self.hold_session("pwrite64", "ENOSPC", "5+40")
        self.assert_nothing_is_lost()

    def test_at_bringing_a_file_to_the_disk(self):
        self.hold_session("fdatasync", "EIO", "2+11")
        self.assert_nothing_is_lost()

    def test_at_bringing_a_folder_to_the_disk(self):
        self.hold_session("fsync", "EIO", "1+5")
        self.assert_nothing_is_lost()

    def test_at_opening(self):
        self.hold_session("openat", "EMFILE", "2+7")
        self.assert_nothing_is_lost()

    def test_at_cutting_a_file(self):
        self.hold_session("ftruncate", "EIO", "1+5")
        self.assert_nothing_is_lost()

    def test_at_giving_a_file_its_name(self):
        self.hold_session("rename", "EIO", "1+")
        self.assert_nothing_is_lost()
