"""A marked key and marked goals through a whole run: where they may be, and that they are nowhere
else."""

import base64
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

import fixture
import gemini
import test_whole_road
from browser_fixture import EXTENSION, BrowserWords, browser_class
from canary import BusRecord, Record, Watch, in_files, marker, marks_in, seed
from fixture import PROGRAM
from gemini import Gemini
from test_server import KeyTestCase
from waiting import eventually
from web import Web

MARKERS = {"key": marker("key"), "goal": marker("goal")}
GOALS = f"Write {MARKERS['goal']}, Review it"
SERVER = "tarne-server"
NAMES = ("tarne", "notifier", "bridge")

# Where a marker may be, and where the search must find it: nobody who looks past it would say so.
IN_FILES = {
    ("key", "what the model was asked"), ("goal", "what the model was asked"),
    # The goals are published, kept for a restart, and kept in the history.
    ("goal", "the store"),
    # "Starting new session" and its neighbours: the log is the user's own terminal.
    ("goal", "the log"),
}
TOLD_TO_PROCESSES = {("key", "environment", SERVER)}
# "session" is memory, and gone with the browser.
IN_EXTENSION = {("goal", "session")}
ON_BUSES = {"session": set(), "accessibility": {"goal"}}
# The Secret Service gets the key over the session's bus and encrypted; Gemini gets key and goals by
# TCP and encrypted.
HANDED_OVER = {
    "tarne": {("key", f"start of {SERVER}"), ("goal", "the store"), ("goal", "the log"),
              ("goal", "the accessibility bus")},
    "notifier": set(),
    "bridge": {("goal", "the browser"), ("goal", "the server")},
}


class MarkedRun(BrowserWords, KeyTestCase):
    def setUp(self):
        self.addCleanup(setattr, fixture, "NOTIFIER_PROGRAM", fixture.NOTIFIER_PROGRAM)
        super().setUp()
        gemini.STAND_IN = test_whole_road.JUDGE
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)
        self.gemini.set_scenario("off_task")
        self.web = Web()
        self.addCleanup(self.web.close)
        address = self.desktop.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
        self.buses = {"session": BusRecord(self.desktop.bus_address, self.evidence / "session.bus"),
                      "accessibility": BusRecord(address, self.evidence / "accessibility.bus")}
        self.watch = Watch(MARKERS, self.record)
        self.addCleanup(self.watch.close)
        for bus in self.buses.values():
            self.addCleanup(bus.close)

    def offered_services(self):
        # The first that is asked for in `setUp`, so what looks on is prepared here.
        # A core file lies where its process is.
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        self.evidence = self.folder / "evidence"
        self.record = Record(self.evidence)
        self.starts = {"tarne": self.record.wrapper("tarne", PROGRAM)}
        self.starts["notifier"] = fixture.NOTIFIER_PROGRAM = self.record.wrapper(
            "notifier", fixture.NOTIFIER_PROGRAM)
        self.starts["bridge"] = test_whole_road.BRIDGE = self.record.wrapper(
            "bridge", pathlib.Path(PROGRAM).with_name("tarne-bridge"))
        return super().offered_services()

    def start(self):
        return super().start(executable=self.starts["tarne"], binds=self.gemini.binds)

    def start_browser(self):
        environment = unittest.mock.patch.dict(
            os.environ, XDG_RUNTIME_DIR=str(self.desktop.runtime),
            XDG_DATA_HOME=str(self.home / "share"))
        environment.start()
        self.addCleanup(environment.stop)
        self.browser = browser_class()(self.folder, EXTENSION, test_whole_road.RealBridge)
        self.addCleanup(self.browser.close)
        self.wait_for_welcome_page()

    # -- a hand that leaves no trace of its own -----------------------------------------------

    def type_unseen(self, text):
        self.desktop.ask("xdotool", "type", "--delay", "5", "--file", "-", typed=text)

    def save_key(self):
        self.open_tab("Settings")
        field = self.node("Enter your Gemini API key", role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the field has the keyboard focus")
        self.type_unseen(MARKERS["key"])
        self.press("Save API Key")
        self.assert_shown("API Key Saved")
        self.press("OK")
        self.open_tab("Timer")

    def begin_session(self, is_first=False):
        if is_first:
            self.choose_duration(5)
        else:
            self.press("Start Session")
            self.press("Continue")
        field = self.node("Session Goal", role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the field has the keyboard focus")
        self.desktop.xdotool("key", "ctrl+a", "Delete")
        self.type_unseen(GOALS)
        self.eventually(lambda: field.text == GOALS, "the goals are typed")
        self.press("Start session")
        self.assert_shown("Pause")

    # -- the run ----------------------------------------------------------------------------

    def test_leaves_key_and_goals_where_they_belong_and_nowhere_else(self):
        self.launch()
        self.eventually(lambda: self.program.logged("✅ Server health check passed"),
                        "the server is healthy", within=fixture.LAUNCH_PATIENCE)
        self.save_key()
        self.eventually(lambda: self.program.log.count("✅ Server health check passed") == 2,
                        "the server has come back with the key")
        self.assertEqual(self.stored_key(), MARKERS["key"])
        self.start_browser()
        self.ask_background({"type": "consent", "level": "title"})
        self.wrap_up_a_session()
        self.let_a_session_run_out()
        self.look_at_every_tab()
        stored = self.browser_storage()
        self.watch.look()
        may_leave_a_core = self.end_all_by_crashes()

        looks = [("files", self.found_in_files(), IN_FILES),
                 ("what processes were told", self.watch.found, TOLD_TO_PROCESSES),
                 ("the extension's storage", stored, IN_EXTENSION),
                 ("who may leave a core file", may_leave_a_core, set()),
                 *((f"the bus of {name}", bus.found(MARKERS), ON_BUSES[name])
                   for name, bus in self.buses.items()),
                 *((f"what {name} has handed over", self.handed_over(name), HANDED_OVER[name])
                   for name in NAMES)]
        for place, found, table in looks:
            with self.subTest(place):
                self.assertEqual(found, table)
        calls = [self.record.calls(name) for name in NAMES]
        self.assertTrue(all(calls), "each program was recorded")
        messages = sum(bus.size for bus in self.buses.values())
        strays = sum(len(found - table) for _, found, table in looks)
        print(f"\nproof: canary-{self.browser.name}: {sum(calls):,} system calls, {messages:,} bytes "
              f"on buses, {len(self.watch.processes)} processes, {self.files:,} files, {strays} hits "
              f"outside the tables (seed {seed()})", flush=True)

    def wrap_up_a_session(self):
        self.visit("http://game.example/play")
        self.begin_session(is_first=True)
        self.wait_until_blocked()
        self.gemini.set_scenario("on_task")
        self.visit("http://manual.example/page")
        self.press("Pause")
        self.press("Resume")
        self.browser.open("http://game.example/play")
        self.wait_until_blocked()
        self.browser.click("#onTask")
        self.wait_until_at("http://game.example/play")
        self.gemini.set_scenario("good")
        self.press("Stop")
        self.assert_shown("How did you do with your goals?")
        for node in [node for node in self._visible_nodes()
                     if node.name == "Completed" and node.role == "radio button"]:
            node.press()
        self.node("Reflection", role="text").write("It went well.")
        self.press("Complete reflection")
        self.node("Finish session", within=fixture.LAUNCH_PATIENCE)
        self.press("Save & Share")
        self.eventually(lambda: self.program.logged("Session summary copied to clipboard"),
                        "the summary is copied")
        self.press("Finish session")
        self.assert_shown("Start Session")

    def let_a_session_run_out(self):
        self.begin_session()
        self.clock.advance(301)
        self.assert_shown("How did you do with your goals?")
        self.eventually(self.desktop.notifications, "its end is told")

    def look_at_every_tab(self):
        """With the launch after a kill."""
        self.program.kill()
        self.launch()
        for tab, text in (("Insights", "Focus Streak"), ("History", "Session History"),
                          ("Settings", "Server Running")):
            self.open_tab(tab)
            self.node(text, within=fixture.LAUNCH_PATIENCE)
        self.open_tab("Timer")
        self.begin_session()

    def browser_storage(self):
        """The markers in what the extension keeps, by the kind of storage."""
        self.open_own("pages/options.html")
        areas = ["local", "session", "sync"]
        kept = self.browser.run_asynchronously(
            f"Promise.all({areas}.map((area) => (globalThis.browser ?? chrome).storage[area]"
            ".get(null).then(JSON.stringify)))")
        return {(mark, area) for area, text in zip(areas, kept)
                for mark in marks_in(text.encode(), MARKERS)}

    def end_all_by_crashes(self):
        """Ends each program as a fault of its own would, in folders where a core file may lie; the
        names of those who may leave one, here or with what other machines do with it."""
        names = (SERVER, "tarne-bridge", "tarne-notifier", "tarne")
        eventually(lambda: all(map(processes_of, names)), "all are running")
        programs = {process: name for name in names for process in processes_of(name)}
        may_leave = {name for process, name in programs.items() if largest_core(process) > 1}
        for process in programs:
            os.kill(process, signal.SIGSEGV)
        eventually(lambda: not any(map(is_alive, programs)), "all have ended")
        self.browser.close()
        self.watch.close()
        return may_leave

    # -- what was found ---------------------------------------------------------------------

    def place_of(self, path):
        """The words of the tables for a path."""
        path = pathlib.Path(path)
        parts = path.relative_to(self.folder).parts if path.is_relative_to(self.folder) else ()
        if parts[:1] == ("gemini",) and path.name == "requests":
            return "what the model was asked"
        if parts[:3] == ("home", "share", "com.tarne.app") and path.name.startswith("defaults"):
            return "the store"
        if len(parts) == 1 and path.name.startswith("output-"):
            return "the log"
        return str(path)

    def found_in_files(self):
        folders = [pathlib.Path("/tmp"), pathlib.Path("/dev/shm")]
        # A browser starts the bridge where its script is: a core file would lie beside the records.
        without = {*self.evidence.glob("*.trace"), *self.evidence.glob("*.bus"),
                   *(root for root in (fixture_sources(), built())
                     if root.is_relative_to("/tmp"))}
        self.files = sum(len(files) for root in folders for _, _, files in os.walk(root))
        found = set().union(*(in_files(root, MARKERS, without) for root in folders))
        return {(mark, self.place_of(path)) for mark, path in found}

    def handed_over(self, name):
        return {(mark, self.place_of_destination(name, where))
                for mark, where in self.record.found(name, MARKERS)}

    def place_of_destination(self, name, where):
        if name == "bridge" and where in ("pipe:", "unix unknown"):
            return "the browser"
        if "at-spi" in where:
            return "the accessibility bus"
        if where.startswith("unix ") and "com.tarne.app/server-" in where:
            return "the server"
        return self.place_of(where) if where.startswith("/") else where


def fixture_sources():
    return pathlib.Path(__file__).resolve().parents[2]


def built():
    return pathlib.Path(PROGRAM).parents[1]


def processes_of(program):
    found = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if pathlib.Path(os.readlink(process / "exe")).name == program:
                found.append(int(process.name))
        except OSError:
            continue
    return found


def largest_core(process):
    """How many bytes a core file of the process may have, once it has raised its limit."""
    limits = pathlib.Path(f"/proc/{process}/limits").read_text()
    largest = re.search(r"^Max core file size +\S+ +(\S+)", limits, re.MULTILINE)[1]
    return float("inf") if largest == "unlimited" else int(largest)


def is_alive(process):
    try:
        status = pathlib.Path(f"/proc/{process}/status").read_text()
    except OSError:
        return False
    return "State:\tZ" not in status


class TheSearch(unittest.TestCase):
    """That what looks for the markers finds them, wherever they are put by hand."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tarne-search-"))
        self.addCleanup(subprocess.run, ["rm", "-r", self.folder], check=True)
        self.record = Record(self.folder / "evidence")
        self.key = MARKERS["key"]

    def run_recorded(self, *command, **how):
        script = self.record.wrapper("planted", command[0])
        return subprocess.run([script, *command[1:]], cwd=self.folder, timeout=60, check=True, **how)

    def handed_over(self):
        # The record is complete when its writer has ended with the last process.
        eventually(lambda: not processes_of("strace"), "the record is complete")
        return self.record.found("planted", MARKERS)

    def test_finds_a_file_by_its_content_in_every_form_and_by_its_name(self):
        for number, content in enumerate((
                self.key.encode(), self.key.encode("utf-16-le"), self.key.encode().hex().encode(),
                base64.b64encode(b"x=" + self.key.encode() + b";"),
                base64.b64encode(b"x=1" + self.key.encode()), b"\0\xff" + self.key.encode())):
            (self.folder / f"file-{number}").write_bytes(content)
        (self.folder / f"named {self.key}").touch()
        self.assertEqual({path.name for _, path in in_files(self.folder, MARKERS)},
                         {*(f"file-{number}" for number in range(6)), f"named {self.key}"})
        self.assertEqual({mark for mark, _ in in_files(self.folder, MARKERS)}, {"key"})

    def test_finds_what_a_running_process_was_told(self):
        watch = Watch(MARKERS, self.record)
        self.addCleanup(watch.close)
        sleeper = subprocess.Popen(["sleep", "1000"], env={"PATH": "/usr/bin", "K": self.key})
        other = subprocess.Popen(["tail", "-f", "/dev/null", "--pid", str(os.getpid()),
                                  f"/nowhere/{self.key}"], stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        for process in (sleeper, other):
            self.addCleanup(process.wait)
            self.addCleanup(process.kill)
        eventually(lambda: watch.found >= {("key", "environment", "sleep"),
                                           ("key", "arguments", "tail")}, "both are found")

    def test_finds_a_file_that_is_gone_at_once(self):
        self.run_recorded("/bin/sh", "-c", 'printf %s "$K" >brief; rm brief',
                          env=dict(os.environ, K=self.key))
        self.assertEqual([path.name for path in self.folder.iterdir()], ["evidence"])
        self.assertIn(("key", str(self.folder / "brief")), self.handed_over())

    def test_finds_a_start_that_is_over_at_once_by_environment_and_by_argument(self):
        self.run_recorded("/bin/sh", "-c", 'K="$1" /bin/true; /bin/echo "$1" >/dev/null', "sh",
                          self.key)
        self.assertLessEqual({("key", "start of true"), ("key", "start of echo")},
                             self.handed_over())

    def test_finds_what_is_sent_over_tcp_and_through_a_pipe(self):
        self.run_recorded(sys.executable, "-c", f"""if True:
            import os, socket
            listener = socket.create_server(("127.0.0.1", 0))
            client = socket.create_connection(listener.getsockname())
            client.send({self.key!r}.encode())
            os.write(os.pipe()[1], {self.key!r}.encode("utf-16-le"))""")
        self.assertLessEqual({("key", "tcp"), ("key", "pipe:")}, self.handed_over())

    def test_finds_what_is_said_on_a_bus(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1",
                                f"--address=unix:path={self.folder}/bus"], stdout=subprocess.PIPE)
        self.addCleanup(bus.stdout.close)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        address = bus.stdout.readline().decode().strip()
        heard = BusRecord(address, self.folder / "heard")
        self.addCleanup(heard.close)
        self.assertEqual(heard.found(MARKERS), set())
        subprocess.run(["dbus-send", f"--bus={address}", "/", "a.b.c", f"string:x{self.key}x"],
                       check=True)
        eventually(lambda: heard.found(MARKERS) == {"key"}, "the message is found")

    def test_finds_the_core_file_of_a_process_that_may_leave_one(self):
        if pathlib.Path("/proc/sys/kernel/core_pattern").read_text().startswith(("|", "/")):
            self.skipTest("this machine hands core files to a program or a folder of its own")
        process = subprocess.Popen(["sh", "-c", "ulimit -c unlimited; exec sleep 1000"],
                                   cwd=self.folder, env={"PATH": "/usr/bin:/bin", "K": self.key})
        eventually(lambda: processes_of("sleep"), "it runs")
        process.send_signal(signal.SIGSEGV)
        process.wait()
        self.assertEqual([(mark, path.name.split(".")[0])
                          for mark, path in in_files(self.folder, MARKERS)], [("key", "core")])
