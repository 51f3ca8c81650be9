"""The launcher where something is missing or in the way, with a stand-in in the program's place.

The stand-in sweeps nothing, so that it may be started where the launcher finds no namespace.
"""

import json
import os
import pathlib
import pty
import pwd
import shutil
import signal
import subprocess
import tempfile
import unittest

import box
from waiting import eventually

LAUNCHER_FILES = ("own-namespace", "program-user")
STAND_IN = pathlib.Path(__file__).with_name("stand_in_program.py")
NOBODY = pwd.getpwnam("nobody").pw_uid
# By its path: in front of it may lie one that fails.
OUTER_BOX = ("/usr/bin/bwrap", "--dev-bind", "/", "/")

as_root = unittest.skipUnless(os.getuid() == 0, "needs root, which gives way to somebody else")


class FallbackTestCase(unittest.TestCase):
    """Launcher and stand-in lie in a folder that everybody can read."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tarne-e2e-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.folder.chmod(0o755)
        for name in LAUNCHER_FILES:
            shutil.copy(box.SOURCES / "packaging" / name, self.folder)
        self.program = self.folder / "tarne"
        shutil.copy(STAND_IN, self.program)
        self.program.chmod(0o755)
        # What the machine keeps for a user that has no home.
        self.state = self.folder / "state"
        self.state.mkdir()
        self.surroundings = ["--bind", self.state, "/var/lib"]
        self.environment = {"PATH": "/usr/bin:/bin", "HOME": "/root", "LANG": "C.UTF-8"}

    def take_namespaces_away(self):
        self.tool("bwrap", "echo 'bwrap: not here' >&2; exit 1")

    def tool(self, name, does):
        """Puts a tool in front of the machine's own."""
        tools = self.folder / "tools"
        tools.mkdir(exist_ok=True)
        (tools / name).write_text(f"#!/bin/sh\n{does}\n")
        (tools / name).chmod(0o755)
        self.environment["PATH"] = f"{tools}:/usr/bin:/bin"

    def command(self, user=None, folder=None):
        """The launcher, as whom and seen in which folder told."""
        folder = folder or self.folder
        command = [*OUTER_BOX, *self.surroundings]
        if user is not None:
            command += ["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups"]
        return list(map(str, [*command, folder / "own-namespace", folder / "tarne"]))

    def launch(self, user=None, folder=None, **how):
        return subprocess.run(self.command(user, folder), env=self.environment, timeout=60,
                              capture_output=True, text=True, stdin=subprocess.DEVNULL, **how)

    def facts(self, **how):
        """What the stand-in tells of its start."""
        self.done = self.launch(**how)
        self.assertEqual(self.done.returncode, 7, self.done.stderr)
        return json.loads(self.done.stdout)

    def start_to_stay(self):
        """The outer box and the launcher's process id, once the program is there."""
        self.environment["STAY"] = "yes"
        process = subprocess.Popen(self.command(), env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.addCleanup(process.stdout.close)
        self.assertTrue(process.stdout.readline())
        children = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children")
        return process, int(children.read_text())


class WithANamespace(FallbackTestCase):
    def test_the_program_gets_three_descriptors_and_ignores_nothing(self):
        spare, other = os.pipe()
        self.addCleanup(os.close, spare)
        self.addCleanup(os.close, other)
        facts = self.facts(pass_fds=(spare, other),
                           preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.assertEqual(sorted(facts["descriptors"]), ["0", "1", "2"])
        self.assertEqual(facts["ignored"], [])

    def test_a_full_or_read_only_folder_for_temporary_files_keeps_nobody_from_starting(self):
        self.surroundings += ["--bind", self.folder, "/mnt", "--size", "4096", "--tmpfs", "/tmp",
                              "--remount-ro", "/tmp"]
        self.facts(folder=pathlib.Path("/mnt"))
        self.assertEqual(self.done.stderr, "")

    def test_what_the_caller_has_closed_is_no_place_for_the_launchers_own_pipes(self):
        facts = self.facts(preexec_fn=lambda: os.close(2))
        self.assertEqual(facts["descriptors"]["2"], "/dev/null")

    def test_what_is_no_web_page_is_not_opened(self):
        opened = self.folder / "opened"
        self.tool("xdg-open", f'echo "$1" >>{opened}; mv {opened} {opened}-page')
        self.environment["PAGES"] = "file:///etc/passwd\n--help\n$(id)\nhttps://example.org/\n"
        self.facts()
        page = self.folder / "opened-page"
        eventually(page.exists, "a page is opened")
        self.assertEqual(page.read_text(), "https://example.org/\n")

    def test_a_page_that_nothing_opens_is_told(self):
        for opener in ("xdg-open", "sensible-browser", "x-www-browser"):
            self.tool(opener, "exit 3")
        self.environment["PAGES"] = "https://example.org/\n"
        self.facts()
        self.assertIn("the one that was asked for: https://example.org/", self.done.stderr)


class WithoutNamespaces(FallbackTestCase):
    def setUp(self):
        super().setUp()
        self.take_namespaces_away()

    def test_a_user_is_told_what_the_sweep_ends(self):
        facts = self.facts(user=NOBODY if os.getuid() == 0 else None)
        self.assertEqual(set(facts["users"]), {NOBODY if os.getuid() == 0 else os.getuid()})
        self.assertIn("every process of yours whose command line holds", self.done.stderr)

    def test_signals_reach_the_program_and_its_status_is_the_launchers(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            outer, launcher = self.start_to_stay()
            os.kill(launcher, number)
            self.assertEqual(outer.wait(30), number)

    def test_the_program_gets_three_descriptors_and_ignores_nothing(self):
        spare, other = os.pipe()
        self.addCleanup(os.close, spare)
        self.addCleanup(os.close, other)
        facts = self.facts(pass_fds=(spare, other),
                           preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.assertEqual(sorted(facts["descriptors"]), ["0", "1", "2"])
        self.assertEqual(facts["ignored"], [])


@as_root
class RootWithoutNamespaces(FallbackTestCase):
    def setUp(self):
        super().setUp()
        self.take_namespaces_away()

    def assert_gives_way_to(self, user):
        facts = self.facts()
        self.assertEqual(set(facts["users"]), {user})
        self.assertNotIn(0, facts["groups"])
        self.assertEqual(facts["capabilities"], 0)
        self.assertIn(f"TARNE runs as the user {pwd.getpwuid(user).pw_name}", self.done.stderr)
        return facts

    def test_gives_way_to_nobody_with_a_home_that_nobody_else_enters(self):
        environment = self.assert_gives_way_to(NOBODY)["environment"]
        self.assertEqual(environment["HOME"], "/var/lib/tarne")
        self.assertEqual(environment["XDG_DATA_HOME"], "/var/lib/tarne/.local/share")
        home = (self.state / "tarne").stat()
        self.assertEqual((home.st_uid, home.st_mode & 0o777), (NOBODY, 0o700))

    def test_gives_way_to_the_user_who_called_for_root(self):
        self.environment["SUDO_USER"] = "daemon"
        self.assert_gives_way_to(pwd.getpwnam("daemon").pw_uid)

    def test_never_gives_way_to_root_under_whatever_name(self):
        accounts = self.folder / "passwd"
        accounts.write_text(pathlib.Path("/etc/passwd").read_text()
                            + "toor:x:0:0:toor:/root:/bin/sh\n")
        self.surroundings += ["--ro-bind", accounts, "/etc/passwd"]
        for name in ("root", "toor", "0", "no-such-user", "", "-x"):
            with self.subTest(name):
                self.environment["SUDO_USER"] = name
                self.assert_gives_way_to(NOBODY)

    def test_writes_nothing_through_a_link_in_that_users_home(self):
        home = self.state / "tarne"
        home.mkdir()
        os.chown(home, NOBODY, NOBODY)
        planted = self.folder / "planted"
        planted.mkdir()
        (home / "tarne").symlink_to(planted)
        # Out of that user's reach.
        hidden = self.folder / "hidden"
        hidden.mkdir(mode=0o700)
        for name in (*LAUNCHER_FILES, "tarne"):
            shutil.copy(self.folder / name, hidden)
        facts = self.facts(folder=hidden)
        self.assertEqual(set(facts["users"]), {NOBODY})
        self.assertEqual(list(planted.iterdir()), [])
        self.assertEqual([file.name for file in home.iterdir()], ["tarne"])

    def test_keeps_its_terminal_to_itself(self):
        master, terminal = pty.openpty()
        self.addCleanup(os.close, master)

        def take_terminal():
            os.setsid()
            os.close(os.open(os.ttyname(terminal), os.O_RDWR))

        process = subprocess.Popen(self.command(), env=self.environment, stdin=terminal,
                                   stdout=terminal, stderr=terminal, preexec_fn=take_terminal)
        os.close(terminal)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        shown = b""
        while b"}\r\n" not in shown:
            shown += os.read(master, 65536)
        facts = json.loads(shown[shown.index(b'{"users"'):])
        self.assertEqual(facts["terminals"], [])
        self.assertFalse(facts["has_terminal"])
        self.assertEqual(process.wait(30), 7)
        self.assertIn(b"TARNE runs as the user nobody", shown)

    def test_the_program_looks_for_its_server_from_where_it_lies_not_from_a_copy(self):
        hidden = self.folder / "hidden"
        hidden.mkdir(mode=0o700)
        for name in LAUNCHER_FILES:
            shutil.copy(self.folder / name, hidden)
        shutil.copy(os.environ["TARNE_PROGRAM"], hidden / "tarne")
        self.environment |= {"QT_QPA_PLATFORM": "offscreen",
                             "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
                             "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent"}
        # It is the real program: of what runs in the tests' box it could end what is nobody's.
        process = subprocess.Popen(self.command(folder=hidden), env=self.environment, text=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.addCleanup(process.stdout.close)
        lines = iter(process.stdout.readline, "")
        search = next(line for line in lines if line.startswith("🔍 Starting search from:"))
        self.assertEqual(search, f"🔍 Starting search from: {hidden}\n")
        self.assertEqual(list((self.state / "tarne").glob("tarne*")), [])
        program, = (int(process.name) for process in pathlib.Path("/proc").iterdir()
                    if process.name.isdigit() and self.runs(process, hidden / "tarne"))
        os.kill(program, signal.SIGTERM)
        for _ in lines:
            pass
        self.assertEqual(process.wait(30), 0)

    def runs(self, process, program):
        try:
            return os.readlink(process / "exe") == str(program)
        except OSError:
            return False
