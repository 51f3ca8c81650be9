"""The program as it is seen and controlled from outside its window."""

import configparser
import os
import subprocess
import threading

from gi.repository import GLib

import box
from fixture import TarneTestCase
from test_notifier import IMMEDIATE, NotifierTestCase

NAME = "com.tarne.app"
OBJECT = "/com/tarne/app"
SESSION = "com.tarne.app.Session1"
APPLICATION = "org.freedesktop.Application"
PROPERTIES = "org.freedesktop.DBus.Properties"
WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
ITEM_PATH = "/StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
ENTRY = box.SOURCES / "packaging" / "com.tarne.app.desktop"
EXAMPLE = box.SOURCES / "docs" / "examples" / "tarne-status"
SECRET = "Write my secret report"


class ControlTestCase(TarneTestCase):
    def call(self, method, arguments=None, interface=SESSION, path=OBJECT):
        return self.desktop.call(NAME, path, interface, method, arguments)

    def session(self):
        """All properties of the session on the bus."""
        return self.call("GetAll", GLib.Variant("(s)", (SESSION,)), PROPERTIES)[0]

    def await_state(self, state):
        self.eventually(lambda: self.session()["State"] == state, f"the session is {state}")

    def act(self, action):
        self.call("ActivateAction", GLib.Variant("(sava{sv})", (action, [], {})), APPLICATION)

    def assert_refused(self, method, sentence):
        with self.assertRaises(GLib.Error) as caught:
            self.call(method)
        self.assertIn(f"{SESSION}.Error.WrongState: {sentence}", caught.exception.message)


class TheSessionOnTheBus(ControlTestCase):
    def test_is_seen_paused_and_resumed_from_its_start_to_its_end(self):
        self.launch()
        self.assertEqual(self.session(),
                         {"State": "setup", "SecondsLeft": 0, "Duration": 0, "EndsAt": 0})
        self.assert_refused("Pause", "No session is running.")
        self.start_session(SECRET, minutes=5)
        session = self.session()
        self.assertEqual((session["State"], session["Duration"]), ("running", 300))
        self.assertLessEqual(session["SecondsLeft"], 300)
        self.assert_refused("Resume", "No session is paused.")

        self.call("Pause")
        self.assert_shown("Resume", "⏸️ Paused")
        self.assertEqual(self.session()["State"], "paused")
        self.call("Resume")
        self.assert_shown("Pause")
        self.assertEqual(self.session()["EndsAt"], session["EndsAt"])

        self.clock.advance(300)
        self.await_state("runOut")
        self.assert_refused("Resume", "No session is paused.")
        self.assertEqual(self.session(), session | {"State": "runOut", "SecondsLeft": 0})

    def test_tells_of_each_change_once_and_never_of_what_the_user_wrote(self):
        self.launch()
        heard = []
        subscription = self.desktop.bus.signal_subscribe(
            None, PROPERTIES, "PropertiesChanged", OBJECT, None, 0,
            lambda *call: heard.append(call[5].unpack()))
        self.addCleanup(self.desktop.bus.signal_unsubscribe, subscription)
        context = GLib.MainContext.default()

        def hears(count):
            while context.iteration(False):
                pass
            return len(heard) >= count

        self.start_session(SECRET, minutes=5)
        self.eventually(lambda: hears(1), "the start is told")
        self.call("Pause")
        self.eventually(lambda: hears(2), "the pause is told")
        self.call("Resume")
        self.eventually(lambda: hears(3), "the resumption is told")
        end = self.session()["EndsAt"]
        self.assertEqual(heard, [
            (SESSION, {"State": "running", "Duration": 300, "EndsAt": end}, ["SecondsLeft"]),
            (SESSION, {"State": "paused"}, ["SecondsLeft"]),
            (SESSION, {"State": "running"}, ["SecondsLeft"])])
        self.assertNotIn("secret", str(self.session()))

    def test_brings_a_closed_window_back(self):
        self.launch()
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.call("Show", GLib.Variant("(a{sv})", ({},)))
        self.eventually(self.window_id, "the window is back")


class BeforeOnboardingIsDone(ControlTestCase):
    has_seen_onboarding = False

    def test_there_is_no_session_to_control(self):
        self.launch()
        self.assertEqual(self.session()["State"], "none")
        self.assert_refused("Pause", "No session is running.")


class AnActionOfTheApplication(ControlTestCase):
    def test_pauses_resumes_shows_and_quits(self):
        self.launch()
        self.act("pause")  # There is nothing to pause.
        self.start_session(SECRET, minutes=5)
        self.act("pause")
        self.assert_shown("Resume")
        self.act("resume")
        self.assert_shown("Pause")
        for action in ("show", "unheard-of"):
            self.press("Close window")
            self.eventually(lambda: not self.window_id(), "the window is closed")
            self.act(action)
            self.eventually(self.window_id, "the window is back")
        self.act("quit")
        self.assertEqual(self.program.wait(), 0)
        self.assertEqual(self.store.values(["TimerIsActive"]), {"TimerIsActive": 1})

    def test_is_offered_by_the_entry_in_the_desktops_menu(self):
        subprocess.run(["desktop-file-validate", ENTRY], check=True, timeout=30)
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(ENTRY)
        self.launch()
        words = entry["Desktop Action quit"]["Exec"].split()
        self.desktop.ask(*words)
        self.assertEqual(self.program.wait(), 0)


class WindowTestCase(ControlTestCase):
    def property(self, name):
        return self.desktop.ask("xprop", "-id", self.window_id(), name)


class TheWindow(WindowTestCase):
    def test_has_the_class_by_which_docks_find_its_entry(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read(ENTRY)
        self.launch()
        self.assertIn(f'"{entry["Desktop Entry"]["StartupWMClass"]}"', self.property("WM_CLASS"))

    def test_names_the_process_that_it_has_outside_its_namespace(self):
        self.launch()
        told = f"_NET_WM_PID(CARDINAL) = {self.program.pid}"
        self.eventually(lambda: told in self.property("_NET_WM_PID"), "the process is named")
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.act("show")
        self.eventually(self.window_id, "the window is back")
        self.assertIn(told, self.property("_NET_WM_PID"))


class TheWindowWithoutABus(WindowTestCase):
    has_session_bus = False

    def test_names_no_process(self):
        self.launch()
        self.assertIn("not found", self.property("_NET_WM_PID"))


class PanelTestCase(ControlTestCase):
    def start_watcher(self):
        self.watcher = self.desktop.start_mock_of_template(
            box.SOURCES / "tests" / "support" / "status_notifier_watcher.py", WATCHER)

    def stop_watcher(self):
        self.watcher.kill()
        self.watcher.wait()

    def item(self, name):
        try:
            return self.call("Get", GLib.Variant("(ss)", (ITEM, name)), PROPERTIES, ITEM_PATH)[0]
        except GLib.Error:
            return None

    def entries(self):
        """The menu as labels with their numbers."""
        _, (_, _, children) = self.call("GetLayout", GLib.Variant("(iias)", (0, -1, [])), MENU,
                                        f"{ITEM_PATH}/Menu")
        return {properties["label"]: number for number, properties, _ in children}

    def choose(self, label):
        self.call("Event", GLib.Variant("(isvu)", (self.entries()[label], "clicked",
                                                   GLib.Variant("s", ""), 0)),
                  MENU, f"{ITEM_PATH}/Menu")

    def await_item(self):
        self.eventually(lambda: self.item("Title"), "the item is there")


class TheItemInThePanel(PanelTestCase):
    def test_comes_and_goes_with_the_desktops_watcher(self):
        self.launch()
        self.assertIsNone(self.item("Title"))
        for _ in range(2):
            self.start_watcher()
            self.await_item()
            self.stop_watcher()
            self.eventually(lambda: self.item("Title") is None, "the item is gone")

    def test_leads_through_a_session(self):
        self.start_watcher()
        self.launch()
        self.await_item()
        self.assertEqual(self.item("Title"), "TARNE")
        self.assertEqual(list(self.entries()), ["Show TARNE", "Quit TARNE"])
        self.start_session(SECRET, minutes=5)
        self.eventually(lambda: self.item("Title").startswith("TARNE: 00:04:5"), "it counts")
        self.assertEqual(self.item("ToolTip")[2], "TARNE")
        self.assertIn("00:04:", self.item("ToolTip")[3])
        self.assertEqual(list(self.entries()), ["Show TARNE", "Pause", "Stop", "Quit TARNE"])
        self.choose("Pause")
        self.assert_shown("Resume")
        self.choose("Resume")
        self.assert_shown("Pause")

        self.open_tab("History")
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.choose("Stop")
        self.eventually(self.window_id, "the window is back")
        self.assert_shown("How did you do with your goals?")
        self.assertEqual(self.session()["State"], "running")
        self.choose("Quit TARNE")
        self.assertEqual(self.program.wait(), 0)

    def test_shows_the_window_by_a_click(self):
        self.start_watcher()
        self.launch()
        self.await_item()
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.call("Activate", GLib.Variant("(ii)", (0, 0)), ITEM, ITEM_PATH)
        self.eventually(self.window_id, "the window is back")

    def test_has_the_time_left_as_its_title_while_the_session_runs(self):
        self.start_watcher()
        self.launch()
        self.await_item()
        self.start_session(SECRET, minutes=5)
        titles = {self.item("Title")}

        def counts():
            titles.add(self.item("Title"))
            return len(titles) > 2

        self.eventually(counts, "it counts")
        self.choose("Pause")
        self.eventually(lambda: self.item("Title").startswith("TARNE: paused"), "it is paused")


class TheItemBeforeOnboardingIsDone(PanelTestCase):
    has_seen_onboarding = False

    def test_shows_and_quits_only(self):
        self.start_watcher()
        self.launch()
        self.await_item()
        self.assertEqual(list(self.entries()), ["Show TARNE", "Quit TARNE"])
        self.choose("Quit TARNE")
        self.assertEqual(self.program.wait(), 0)


class QuietDuringASession(PanelTestCase):
    QUIET = "Do not disturb during sessions"

    def setUp(self):
        super().setUp()
        self.desktop.stop_notifications()
        self.desktop.start_notifications("body inhibitions")
        for method, takes, gives, code in (("Inhibit", "ssa{sv}", "u", "ret = 7"),
                                           ("UnInhibit", "u", "", "")):
            self.desktop.call("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                              "org.freedesktop.DBus.Mock", "AddMethod",
                              GLib.Variant("(sssss)", ("org.freedesktop.Notifications", method,
                                                       takes, gives, code)))
        self.start_watcher()

    def asked(self):
        calls = [line.split()[1] for line in self.desktop.notification_log.read_text().splitlines()]
        return [call for call in calls if call.endswith("nhibit")]

    def await_asked(self, *calls):
        self.eventually(lambda: self.asked() == list(calls),
                        lambda: f"{calls} were asked for, not {self.asked()}")

    def launch_with_item(self):
        self.launch()
        self.eventually(lambda: self.item("Title") and self.QUIET in self.entries(),
                        "the choice is there")

    def test_is_chosen_once_and_kept_by_the_desktop_while_the_time_runs(self):
        self.launch_with_item()
        self.choose(self.QUIET)
        self.start_session(SECRET, minutes=5)
        self.await_asked("Inhibit")
        self.call("Pause")
        self.await_asked("Inhibit", "UnInhibit")
        self.assertEqual(self.program.terminate(), 0)
        self.launch_with_item()
        self.await_asked("Inhibit", "UnInhibit", "Inhibit")
        self.act("quit")
        self.assertEqual(self.program.wait(), 0)
        self.await_asked("Inhibit", "UnInhibit", "Inhibit", "UnInhibit")


class TheExampleForAStatusBar(ControlTestCase):
    def follow(self):
        # Its clock is the program's, which this test moves.
        environment = os.environ | self.desktop.environment | self.clock.environment
        script = subprocess.Popen([EXAMPLE], stdout=subprocess.PIPE, text=True, env=environment)
        self.addCleanup(script.stdout.close)
        self.addCleanup(script.wait)
        self.addCleanup(script.terminate)
        lines = []
        threading.Thread(target=lambda: lines.extend(iter(script.stdout.readline, "")),
                         daemon=True).start()
        return lines

    def test_follows_a_session_and_starts_nothing(self):
        lines = self.follow()
        self.eventually(lambda: lines == ["\n"], lambda: f"nothing is shown, not {lines}")
        self.assertIsNone(self.desktop.process_of(NAME))
        self.launch()
        self.start_session(SECRET, minutes=5)
        self.eventually(lambda: lines[-1].startswith("▶ 04:5"), lambda: f"it counts: {lines}")
        counted = len(lines)
        self.eventually(lambda: len(lines) > counted, "it goes on counting")
        self.call("Pause")
        self.eventually(lambda: lines[-1].startswith("⏸ 04:"), lambda: f"it is paused: {lines}")
        self.call("Resume")
        self.eventually(lambda: lines[-1].startswith("▶ 04:"), lambda: f"it counts: {lines}")
        self.clock.advance(300)
        self.eventually(lambda: lines[-1] == "■ 00:00\n", lambda: f"it is over: {lines}")
        self.program.terminate()
        self.eventually(lambda: lines[-1] == "\n", lambda: f"nothing is shown: {lines}")


class AClickOnTheNoticeOfARunOut(NotifierTestCase):
    def test_shows_the_window_with_the_reflection(self):
        self.start_short_session()
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.clock.advance(300)
        self.eventually(lambda: IMMEDIATE in self.desktop.notifications(), "the notice comes")
        self.desktop.click_notification(self.desktop.notifications().index(IMMEDIATE) + 1, "token")
        self.eventually(self.window_id, "the window is back")
        self.assert_shown("How did you do with your goals?")

    def test_shows_the_window_alone_once_the_session_is_wrapped_up(self):
        self.start_short_session()
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.program.kill()
        self.clock.advance(300)
        self.launch()
        self.await_history(1)
        self.eventually(self.desktop.notifications, "the notice comes")
        self.press("Close window")
        self.eventually(lambda: not self.window_id(), "the window is closed")
        self.desktop.click_notification(1, "token")
        self.eventually(self.window_id, "the window is back")
        self.assert_shown("Start Session", "Session Setup")
        self.assertIsNone(self.find("How did you do with your goals?"))
