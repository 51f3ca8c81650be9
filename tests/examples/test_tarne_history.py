"""docs/examples/tarne-history, run as a user runs it."""

import contextlib
import csv
import io
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
READER = ROOT / "docs/examples/tarne-history"
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/e2e"))

from store import Store  # noqa: E402


def entry(**members):
    """An entry as TARNE stores it: 25 minutes that ended when the year 2026 began."""
    return {"id": "0F8FAD5B-D9CB-469F-A165-70867728950E", "sessionDate": 788_918_400.25,
            "goals": [], "duration": 1500, "overallAssessment": "", "patternsObserved": "",
            "suggestions": "", "motivation": "", "reflection": ""} | members


def goal(text, **status):
    return {"id": "7C9E6679-7425-40DE-944B-E07FC1F90AE7", "text": text} | status


class TheReaderOfTheHistory(unittest.TestCase):
    def setUp(self):
        self.data = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.data)
        self.store = Store(self.data)

    def run_reader(self, *arguments, **environment):
        """Its status, its output and its errors."""
        done = subprocess.run([READER, *arguments], capture_output=True, timeout=30, check=False,
                              env={"PATH": os.environ["PATH"], "XDG_DATA_HOME": str(self.data),
                                   "TZ": "UTC", "LC_ALL": "C"} | environment)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def printed(self, *arguments, **environment):
        status, output, errors = self.run_reader(*arguments, **environment)
        self.assertEqual((status, errors), (0, ""))
        return output

    def assert_says(self, sentence):
        status, output, errors = self.run_reader()
        self.assertEqual((status, output), (1, ""))
        self.assertEqual(len(errors.splitlines()), 1, errors)
        self.assertIn(sentence, errors)

    def test_prints_every_session_as_json_the_newest_first(self):
        self.store.plant("SessionHistory", [
            entry(sessionDate=1.0, id="the first"),
            entry(goals=[goal("Ärger, \"klar\" 🎯", status="partially_completed"), goal("b")],
                  reflection="one\ntwo", motivation="Go on")])
        newest, first = json.loads(self.printed("json"))
        self.assertEqual(newest, {
            "id": "0F8FAD5B-D9CB-469F-A165-70867728950E", "date": "2026-01-01T00:00:00+00:00",
            "duration": 1500.0, "goals": [
                {"text": "Ärger, \"klar\" 🎯", "status": "partially_completed"},
                {"text": "b", "status": None}],
            "reflection": "one\ntwo", "overallAssessment": "", "patternsObserved": "",
            "suggestions": "", "motivation": "Go on"})
        self.assertEqual((first["id"], first["date"]), ("the first", "2001-01-01T00:00:01+00:00"))

    def test_prints_json_unless_told(self):
        self.store.plant("SessionHistory", [entry()])
        self.assertEqual(self.printed(), self.printed("json"))

    def test_tells_moments_in_the_machines_time_zone(self):
        self.store.plant("SessionHistory", [entry(sessionDate=788_918_400 + 200 * 86_400.0)])
        session, = json.loads(self.printed(TZ="Europe/Berlin"))
        self.assertEqual(session["date"], "2026-07-20T02:00:00+02:00")

    def test_prints_a_row_of_csv_a_session(self):
        self.store.plant("SessionHistory", [
            entry(goals=[goal("a, b", status="completed"), goal("c")], duration=1530.0,
                  reflection="say \"no\"\nmore")])
        names, row = csv.reader(io.StringIO(self.printed("csv"), newline=""))
        session = dict(zip(names, row))
        self.assertEqual(session["minutes"], "25.5")
        self.assertEqual(session["goals"], "a, b (Completed)\nc (Not rated)")
        self.assertEqual(session["reflection"], "say \"no\"\nmore")

    def test_prints_no_cell_that_a_spreadsheet_would_reckon(self):
        self.store.plant("SessionHistory", [entry(reflection="=1+1", motivation="@sum")])
        names, row = csv.reader(io.StringIO(self.printed("csv"), newline=""))
        session = dict(zip(names, row))
        self.assertEqual((session["reflection"], session["motivation"]), ("'=1+1", "'@sum"))

    def test_prints_a_section_of_markdown_a_session_in_which_no_text_is_markup(self):
        self.store.plant("SessionHistory", [
            entry(goals=[goal("*star* <b>", status="not_completed")], reflection="# one\ntwo")])
        self.assertEqual(self.printed("markdown"), "\n".join([
            "# History", "", "## 2026-01-01 00:00, 25 minutes", "",
            "- \\*star\\* \\<b\\> (Not Completed)", "", "**Reflection**", "", "\\# one\\", "two",
            ""]))

    def test_reads_what_is_in_the_log_alone_and_leaves_file_and_log_as_they_are(self):
        log = self.store.file.with_name("defaults.sqlite-wal")
        self.store.plant("UserPreferences", {})
        with contextlib.closing(sqlite3.connect(self.store.file)) as writer:
            writer.execute("PRAGMA journal_mode = WAL")
            writer.execute("INSERT INTO defaults VALUES ('SessionHistory', 'data', ?, NULL)",
                           (json.dumps([entry(reflection="logged")]).encode(),))
            writer.commit()
            # As TARNE leaves them that is killed.
            left = {file: file.read_bytes() for file in (self.store.file, log)}
        for file, content in left.items():
            file.write_bytes(content)
        session, = json.loads(self.printed())
        self.assertEqual(session["reflection"], "logged")
        self.assertEqual({file: file.read_bytes() for file in left}, left)

    def test_says_that_there_is_no_store(self):
        self.assert_says("TARNE has not run here yet.")

    def test_says_that_the_history_is_empty(self):
        self.store.plant("UserPreferences", {})
        self.assert_says("is empty.")
        self.store.plant("SessionHistory", [])
        self.assert_says("is empty.")

    def test_says_that_it_is_no_store_of_tarne(self):
        self.store.file.parent.mkdir(parents=True)
        for content in (b"not a database at all, though it is long enough" * 100, b""):
            self.store.file.write_bytes(content)
            self.assert_says("defaults.sqlite")

    def test_says_that_the_history_has_another_form(self):
        for document in ({}, 5, [5], [{}], [entry(sessionDate="then")], [entry(sessionDate=1e300)],
                         [entry(goals=[goal("a", status="half")])]):
            self.store.plant("SessionHistory", document)
            self.assert_says("a form that this reader does not know")
        for value in (b"\xff\xfe", b"[", b"[" * 100_000):
            self.store.plant_value("SessionHistory", "data", value)
            self.assert_says("defaults.sqlite")

    def test_tells_its_use_when_it_is_asked_for_something_else(self):
        for arguments in (("xml",), ("json", "csv")):
            status, output, errors = self.run_reader(*arguments)
            self.assertEqual((status, output), (2, ""))
            self.assertIn("json|csv|markdown", errors)


if __name__ == "__main__":
    unittest.main()
