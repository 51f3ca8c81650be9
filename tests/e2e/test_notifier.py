"""Notifications that come from the notifier, whatever becomes of the program."""

import calendar
import contextlib
import json
import os
import shlex
import signal
import sqlite3
import time
import types

from gi.repository import GLib

import box
from fixture import NOTIFIER, PROGRAM
from store import REFERENCE_DATE
from test_launcher import LauncherTestCase

FIVE_MINUTES = 300.0
# What is left of a session of five minutes by the real clock: time to press a few buttons.
LEFT = 20.0
SCHEDULED = ("Session Complete! 🎉", "Great job! Your focus session is complete.")
IMMEDIATE = ("Session Complete", "Great job! Your session is complete.")


class NotifierTestCase(LauncherTestCase):
    """The program's clock runs behind the real one, by which the notifier waits."""

    notifier_sees_wall_clock = False

    def setUp(self):
        super().setUp()
        self.expected_errors = []
        self.clock.advance(LEFT - FIVE_MINUTES)
        self.desktop.stop_notifications()
        self.desktop.start_notifications("body actions")

    def offered_services(self):
        """The notifier, and the program as its launcher starts it."""
        folder = super().offered_services()
        self.start_script = self.folder / "start-tarne"
        (folder / "com.tarne.app.service").write_text(
            f"[D-BUS Service]\nName=com.tarne.app\nExec={self.start_script}\n")
        return folder

    def write_start_script(self):
        variables = shlex.join(f"{name}={value}" for name, value in self.environment().items())
        launcher = box.SOURCES / "packaging" / "own-namespace"
        self.start_script.write_text(
            f"#!/bin/sh\nexec env {variables} {launcher} {PROGRAM} >>{self.folder}/started.log\n")
        self.start_script.chmod(0o755)

    def notifier(self):
        return self.desktop.process_of(NOTIFIER)

    def scheduled_moment(self):
        """When the notice of the session's end is due, in seconds since 1970."""
        file = self.home / "share" / "com.tarne.app" / "notifier" / "requests.sqlite"
        with contextlib.closing(sqlite3.connect(f"file:{file}?mode=ro", uri=True)) as connection:
            text, = connection.execute(
                "SELECT value FROM defaults WHERE key = 'timer-completion'").fetchone()
        c = json.loads(text)["components"]
        return calendar.timegm((c["year"], c["month"], c["day"], c["hour"], c["minute"],
                                c["second"]))

    def shown_at(self):
        """When each notification was shown, in seconds since 1970."""
        return [float(line.split()[0]) for line in self.desktop.notification_log.read_text()
                .splitlines() if " Notify " in line]

    def own_name(self):
        self.bus_call("RequestName", GLib.Variant("(su)", ("com.tarne.app", 4)))

    def disown_name(self):
        self.bus_call("ReleaseName", GLib.Variant("(s)", ("com.tarne.app",)))

    def bus_call(self, method, arguments):
        self.desktop.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                          method, arguments)

    def add(self, identifier, days=None, title="Title", body="Body"):
        """Adds a request, as TARNE does; one without days is shown at once."""
        components = {}
        if days is not None:
            then = time.gmtime(time.time() + days * 86_400)
            components = {"year": then.tm_year, "month": then.tm_mon, "day": then.tm_mday}
        self.desktop.call(NOTIFIER, "/com/tarne/app/Notifier", NOTIFIER, "Add",
                          GLib.Variant("(sssa{si})", (identifier, title, body, components)))

    def start_short_session(self):
        self.launch()
        self.start_session("Write report, Review", minutes=5)
        self.eventually(lambda: self.requests() == ["timer-completion"], "the end is scheduled")


class TheNoticeOfASessionsEnd(NotifierTestCase):
    def test_comes_with_the_program_killed_and_its_click_brings_the_program_up(self):
        self.write_start_script()
        self.start_short_session()
        moment = self.scheduled_moment()
        self.program.kill()
        self.assertEqual(self.desktop.notifications(), [])
        self.eventually(lambda: self.desktop.notifications() == [SCHEDULED], "the notice comes")
        self.assertEqual(self.program_ids(), [])
        self.assertGreaterEqual(self.shown_at()[0], moment)
        self.assertLess(self.shown_at()[0], moment + 10)

        # The session ends a fraction of a second after the moment, which is a whole one.
        self.eventually(lambda: time.time() > moment + 1, "the session's end has passed")
        self.clock.advance(FIVE_MINUTES - LEFT)
        self.desktop.click_notification(1, "a token")
        self.eventually(self.window_id, "the window is up", within=60)
        program, = self.program_ids()
        self.program = types.SimpleNamespace(pid=program)
        self.assert_shown("Start Session", "Session Setup")
        entry, = self.await_history(1)
        self.assertAlmostEqual(entry["sessionDate"], moment - REFERENCE_DATE, delta=2)
        self.eventually(lambda: self.notifier() is None, "the notifier has ended")
        self.assertEqual(self.desktop.notifications(), [SCHEDULED])

    def test_comes_with_the_notifier_killed_in_the_session(self):
        self.start_short_session()
        first = self.notifier()
        self.assertIn("tarne-notifier", os.readlink(f"/proc/{first}/exe"))
        os.kill(first, signal.SIGKILL)
        self.eventually(lambda: self.notifier() not in (None, first), "it is back")
        self.eventually(lambda: SCHEDULED in self.desktop.notifications(), "the notice comes")
        self.assertEqual(self.desktop.notifications().count(SCHEDULED), 1)

    def test_is_shown_once_where_the_program_runs_to_the_end(self):
        self.start_short_session()
        self.clock.advance(FIVE_MINUTES - LEFT)
        self.eventually(lambda: {SCHEDULED, IMMEDIATE} <= set(self.desktop.notifications()),
                        "both notices come")
        time_of_both = max(self.shown_at())
        self.eventually(lambda: time.time() > time_of_both + 3, "some time passes")
        self.assertEqual(sorted(self.desktop.notifications()), sorted([SCHEDULED, IMMEDIATE]))


class TheNotifier(NotifierTestCase):
    def test_runs_outside_the_programs_namespace(self):
        self.start_short_session()
        self.assertEqual(os.readlink(f"/proc/{self.notifier()}/ns/pid"),
                         os.readlink("/proc/self/ns/pid"))
        self.assertNotEqual(os.readlink(f"/proc/{self.program.pid}/ns/pid"),
                            os.readlink("/proc/self/ns/pid"))

    def test_has_nothing_in_its_command_line_that_the_start_sweep_ends(self):
        self.start_short_session()
        with open(f"/proc/{self.notifier()}/cmdline", encoding="utf-8") as line:
            words = line.read()
        self.assertNotIn("tarne-server", words)
        self.assertNotIn("node", words.replace(str(box.SOURCES), ""))

    def test_forgets_everything_that_was_pending_when_a_session_starts(self):
        self.own_name()
        self.add("7B9A4B5E-8C1D-4E3F-9A2B-0C1D2E3F4A5B", days=2)
        self.disown_name()
        self.assertEqual(self.requests(), ["7B9A4B5E-8C1D-4E3F-9A2B-0C1D2E3F4A5B"])
        self.start_short_session()


class ADesktopsOwnDaemon(NotifierTestCase):
    def test_shows_a_notice_as_plain_text_and_a_click_on_it_brings_the_program_up(self):
        self.write_start_script()
        self.desktop.start_dunst()
        self.own_name()
        self.add("a", body="<b>Bold?</b> & 'quoted'")
        self.disown_name()
        window = self.eventually(self.desktop.notification_window, "the notification is shown")
        self.desktop.xdotool("mousemove", "--window", window, 100, 20, "click", 1)
        self.eventually(self.window_id, "the window is up", within=60)
        self.eventually(lambda: not self.desktop.notification_window(), "the notification is gone")
        self.eventually(lambda: self.notifier() is None, "the notifier has ended")
