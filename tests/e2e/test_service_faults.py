"""Every service of the desktop that TARNE talks to, absent, dying, late and hung.

A cell of this table is a run of the real program: it starts, a session is held from its start to
its end in the history, the window answers meanwhile and at its end within a bounded time, and what
the service gives is there as soon as the service is.
"""

import os
import signal
import time

from gi.repository import GLib

from desktop import KEY_STORE, NOTIFICATIONS, PORTAL
from fixture import NOTIFIER, TarneTestCase
from keyboard import KeyboardUser
from store import REFERENCE_DATE

FIVE_MINUTES = 300.0
# Within which the window answers, on a machine that has other things to do.
ANSWER = 10.0
LOGIN_MANAGER = "org.freedesktop.login1"
SCHEDULED = ("Session Complete! 🎉", "Great job! Your focus session is complete.")
IMMEDIATE = ("Session Complete", "Great job! Your session is complete.")
BOTH = sorted([SCHEDULED, IMMEDIATE])
NO_KEY = "Gemini API key not configured. Please set it in Settings."
NO_NETWORK = "The server could not be found. Is this computer online?"
NO_NOTIFIER = "notifications are kept in this process and end with it"
TITLE = "Session Setup"
TITLE_HEIGHT = 34

driven = []


def tearDownModule():
    services = {service for service, _ in driven}
    print(f"proof: service-faults: {len(driven)} cells of {len(services)} services, "
          f"each a session to its end (no seed)", flush=True)


class ServiceCase(TarneTestCase):
    """The run of one cell. What is special to a service stands in its own class: what is done
    `before` the start, `during` the session and `at_run_out`, and what is asked `after` it."""

    service = None

    @property
    def fault(self):
        return self._testMethodName.removeprefix("test_that_")

    def before(self):
        pass

    def during(self):
        pass

    def at_run_out(self):
        pass

    def after(self):
        pass

    def drive(self):
        self.before()
        self.launch()
        self.hold_session()
        self.after()
        self.assertEqual(self.program.terminate(), 0)
        driven.append((self.service, self.fault))

    def hold_session(self):
        self.start_session("Write report", minutes=5)
        self.during()
        self.assert_window_answers()
        self.clock.advance(FIVE_MINUTES)
        self.node("How did you do with your goals?")
        self.at_run_out()
        self.node("Completed", role="radio button").press()
        self.press("Complete reflection")
        self.assert_shown("Session Feedback")
        self.coaching = self.node("Unable to generate feedback", role="notification").description
        self.press("Finish session")
        self.node(TITLE, within=ANSWER)
        self.await_rating()

    def assert_window_answers(self):
        for button, active in (("Pause", 0), ("Resume", 1)):
            self.press(button)
            self.await_active(active)

    def await_active(self, active):
        self.eventually(
            lambda: self.store.values(["SessionActive"]).get("SessionActive") == active,
            f"the session is {'active' if active else 'paused'}", within=ANSWER)

    def await_rating(self):
        entry, = self.await_history(1)
        self.eventually(lambda: self.store.history()[0]["goals"][0].get("status") == "completed",
                        "the rating is kept")
        self.assertEqual(entry["duration"], FIVE_MINUTES)

    def kill_owner(self, name):
        os.kill(self.desktop.process_of(name), signal.SIGKILL)
        self.eventually(lambda: not self.desktop.owns(name), f"{name} is gone")

    def hang_owner(self, name):
        """From now on the service takes calls and answers none of them."""
        self.hung = self.desktop.process_of(name)
        os.kill(self.hung, signal.SIGSTOP)

    def wake_owner(self):
        os.kill(self.hung, signal.SIGCONT)

    def await_both_notices(self):
        self.eventually(lambda: len(self.desktop.notifications()) >= 2,
                        lambda: f"both are shown: {self.desktop.notifications()}")
        self.assertEqual(sorted(self.desktop.notifications()), BOTH)


class FourFaults:
    """The columns of the table."""

    def test_that_is_absent(self):
        self.drive()

    def test_that_dies(self):
        self.drive()

    def test_that_comes_later(self):
        self.drive()

    def test_that_hangs(self):
        self.drive()


class TheNotificationDaemon(FourFaults, ServiceCase):
    service = "notifications"

    def before(self):
        if self.fault in ("is_absent", "comes_later"):
            self.desktop.stop_notifications()

    def during(self):
        if self.fault == "dies":
            self.desktop.stop_notifications()
        elif self.fault == "hangs":
            self.hang_owner(NOTIFICATIONS)

    def at_run_out(self):
        self.eventually(lambda: len(self.requests()) == 2, "both wait for a daemon")
        if self.fault == "comes_later":
            self.desktop.start_notifications()
            self.await_both_notices()
        elif self.fault == "hangs":
            self.wake_owner()
            self.await_both_notices()


class TheKeyStore(FourFaults, ServiceCase):
    """The network is out of reach, so a key that was found leads to another failure."""

    service = "secrets"

    def before(self):
        if self.fault in ("dies", "hangs"):
            self.open_key_store()

    def during(self):
        if self.fault == "dies":
            self.desktop.stop_key_store()
        elif self.fault == "comes_later":
            self.open_key_store()
        elif self.fault == "hangs":
            self.hang_owner(KEY_STORE)

    def after(self):
        self.assertEqual(self.coaching, NO_NETWORK if self.fault == "comes_later" else NO_KEY)

    def open_key_store(self):
        self.desktop.start_key_store()
        self.desktop.ask("secret-tool", "store", "--label=TARNE", "service", "com.tarne.app",
                         "account", "GeminiAPIKey", typed="key-of-the-test")


class TheLoginManager(FourFaults, ServiceCase):
    service = "logind"

    def before(self):
        if self.fault in ("is_absent", "comes_later"):
            self.kill_owner(LOGIN_MANAGER)

    def during(self):
        if self.fault == "dies":
            self.kill_owner(LOGIN_MANAGER)
        elif self.fault == "hangs":
            self.hang_owner(LOGIN_MANAGER)
        elif self.fault == "comes_later":
            self.desktop.start_mock_of_template("logind", LOGIN_MANAGER)
            self.desktop.tell_of_sleep(True)
            self.desktop.tell_of_sleep(False)

    def at_run_out(self):
        self.await_both_notices()


class ThePortal(FourFaults, ServiceCase):
    service = "portal"

    def before(self):
        if self.fault in ("dies", "hangs"):
            self.desktop.start_portal(text_scale=1.5)
        if self.fault == "hangs":
            self.hang_owner(PORTAL)

    def during(self):
        if self.fault == "dies":
            self.kill_owner(PORTAL)
        elif self.fault == "comes_later":
            self.desktop.start_portal(text_scale=1.5)

    def after(self):
        self.await_title_height(1.5 if self.fault in ("dies", "comes_later") else 1.0)
        if self.fault == "hangs":
            self.wake_owner()
            self.await_title_height(1.5)

    def await_title_height(self, scale):
        self.eventually(lambda: abs(self.node(TITLE).extents[3] - TITLE_HEIGHT * scale) <= 2,
                        lambda: f"texts are {scale} as large, {self.node(TITLE).extents[3]} high")


class TheNotifier(FourFaults, ServiceCase):
    service = "notifier"

    def offered_services(self):
        folder = super().offered_services()
        self.offer = folder / f"{NOTIFIER}.service"
        self.offer_to_come = folder / "to-come"
        if self.fault in ("is_absent", "comes_later"):
            self.offer.rename(self.offer_to_come)
        return folder

    def before(self):
        if self.fault != "dies":
            self.expect_error(NO_NOTIFIER)

    def during(self):
        if self.fault != "is_absent" and self.fault != "comes_later":
            self.await_scheduled()
        if self.fault == "dies":
            first = self.desktop.process_of(NOTIFIER)
            os.kill(first, signal.SIGKILL)
            self.eventually(lambda: self.desktop.process_of(NOTIFIER) not in (None, first),
                            "it is back")
        elif self.fault == "hangs":
            self.hang_owner(NOTIFIER)
        elif self.fault == "comes_later":
            self.eventually(lambda: NO_NOTIFIER in "".join(self.program.errors),
                            "the missing notifier is told of")
            self.install()
            self.await_scheduled()

    def at_run_out(self):
        if self.fault == "hangs":
            # The program has not waited for it.
            self.eventually(lambda: IMMEDIATE in self.desktop.notifications(), "one is shown")
            self.wake_owner()
            # Which may show that one again before it hears that it was taken back.
            self.eventually(lambda: set(self.desktop.notifications()) == {SCHEDULED, IMMEDIATE},
                            lambda: f"both are shown: {self.desktop.notifications()}")
        else:
            self.await_both_notices()

    def install(self):
        self.offer_to_come.rename(self.offer)
        for method, arguments in (("ReloadConfig", None),
                                  ("StartServiceByName", GLib.Variant("(su)", (NOTIFIER, 0)))):
            self.desktop.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", method, arguments)

    def await_scheduled(self):
        self.eventually(lambda: self.requests() == ["timer-completion"], "the end is scheduled")


class TheSystemBus(FourFaults, ServiceCase):
    """Where it comes later the program does without it: it looks for it once."""

    service = "system bus"

    def setUp(self):
        super().setUp()
        self.extra_environment = {
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.desktop.runtime}/system"}

    def before(self):
        if self.fault in ("dies", "hangs"):
            self.desktop.start_bus("system")

    def during(self):
        if self.fault == "dies":
            self.desktop.buses["system"].kill()
        elif self.fault == "hangs":
            self.desktop.buses["system"].send_signal(signal.SIGSTOP)
        elif self.fault == "comes_later":
            self.desktop.start_bus("system")

    def at_run_out(self):
        self.await_both_notices()


class ASystemBusThatHangsFromTheStart(ServiceCase):
    """A connection to it would never be made and never fail."""

    service, fault = "system bus", "hangs from the start"

    def setUp(self):
        super().setUp()
        self.extra_environment = {"DBUS_SYSTEM_BUS_ADDRESS": self.desktop.start_bus("system")}
        self.expect_error("the system bus does not answer: this run does without it")

    def test_costs_the_start_seconds_and_a_session_nothing(self):
        self.desktop.buses["system"].send_signal(signal.SIGSTOP)
        self.drive()
        self.assertEqual(len(self.program.errors), 1)


class SessionBusCase(KeyboardUser, ServiceCase):
    """Without it there is no accessibility tree, so the keyboard leads through the session."""

    service = "session bus"

    @property
    def has_session_bus(self):
        return self.fault in ("dies", "hangs")

    def before(self):
        self.store.plant_countdown(self.now() - 10, FIVE_MINUTES, "Write report")

    def environment(self):
        late = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.desktop.runtime}/late"}
        return super().environment() | (late if self.fault == "comes_later" else {})

    def now(self):
        return time.time() + self.clock.offset - REFERENCE_DATE

    def hold_session(self):
        bus = self.desktop.buses["bus"]
        self.await_active(1)
        if self.has_session_bus:
            self.tab_to("Pause")
            bus.send_signal(signal.SIGKILL if self.fault == "dies" else signal.SIGSTOP)
        elif self.fault == "comes_later":
            self.desktop.start_bus("late")
        for active in (0, 1):
            self.desktop.xdotool("key", "space")
            self.await_active(active)
        self.clock.advance(FIVE_MINUTES)
        self.await_sheets(1)
        self.go_on(2)  # Completed
        self.go_on(4)  # Complete reflection
        self.await_sheets(2)
        self.go_on(4)  # Finish session
        self.await_sheets(0)
        self.await_rating()
        if self.fault == "hangs":
            bus.send_signal(signal.SIGCONT)
            self.node(TITLE)
            self.eventually(lambda: IMMEDIATE in self.desktop.notifications(), "it is shown")


class TheSessionBus(FourFaults, SessionBusCase):
    """Where it comes later the program does without it: it looks for it once."""


class ASessionBusThatHangsFromTheStart(SessionBusCase):
    fault = "hangs from the start"

    def setUp(self):
        super().setUp()
        self.address = self.desktop.start_bus("hung")
        self.expect_error("the session bus does not answer: this run does without it")

    def environment(self):
        return super().environment() | {"DBUS_SESSION_BUS_ADDRESS": self.address}

    def test_costs_the_start_seconds_and_a_session_nothing(self):
        self.desktop.buses["hung"].send_signal(signal.SIGSTOP)
        self.drive()
        self.assertEqual(len(self.program.errors), 1)
