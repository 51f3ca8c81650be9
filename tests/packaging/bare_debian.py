"""A Debian 12 of its own for a test: its root, its person, and what its screen shows."""

import contextlib
import json
import os
import pathlib
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/e2e"))

from store import Store  # noqa: E402
from waiting import eventually  # noqa: E402

PACKAGES = ROOT / "build/package"
DEBIAN = ROOT / "build/bare-debian"
DISPLAY = ":1"
PERSON = 1000
PROGRAMS = "/usr/lib/tarne/"
APT = ("env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "-y", "--no-install-recommends",
       "-o", "APT::Sandbox::User=root", "-o", "Dpkg::Use-Pty=0")


def ask(*command):
    """What a program of the desktop prints; nothing where it fails."""
    done = subprocess.run(list(map(str, command)), timeout=30, text=True, check=False,
                          capture_output=True, env=dict(os.environ, DISPLAY=DISPLAY))
    return done.stdout.strip() if done.returncode == 0 else ""


def xdotool(*arguments):
    return ask("xdotool", *arguments)


def window():
    return xdotool("search", "--onlyvisible", "--name", "^TARNE$").split("\n")[0]


def colours():
    """How many colours the window shows; an empty one has a few."""
    picture = subprocess.run(["import", "-display", DISPLAY, "-window", window() or "root", "png:-"],
                             timeout=30, check=False, capture_output=True).stdout
    told = subprocess.run(["identify", "-format", "%k", "png:-"], input=picture, timeout=30,
                          check=False, capture_output=True).stdout
    return int(told or 0)


def processes():
    return [process for process in pathlib.Path("/proc").iterdir() if process.name.isdigit()]


def programs():
    """The folders in /proc of the processes that are the program itself."""
    found = []
    for process in processes():
        with contextlib.suppress(OSError):
            if os.readlink(process / "exe").endswith(f"{PROGRAMS}bin/tarne"):
                found.append(process)
    return found


def tarnes_processes():
    """The command lines of all processes of TARNE: launcher, namespace, program, server, notifier."""
    lines = []
    for process in processes():
        with contextlib.suppress(OSError):
            line = (process / "cmdline").read_bytes().replace(b"\0", b" ").decode()
            lines += [line] * (PROGRAMS in line)
    return lines


class BareDebian:
    """A machine of one person, with a bus, a display and a window manager, and nothing else."""

    def __init__(self, test):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="root.", dir=DEBIAN))
        test.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        subprocess.run(["tar", "--directory", self.root, "--extract", "--preserve-permissions",
                        "--file", DEBIAN / "root.tar"], check=True, timeout=300)
        self._test = test
        # What the person's programs write to standard error.
        self.told = self.root / "told"
        self.run("useradd", "--create-home", "--shell", "/bin/sh", "--uid", PERSON, "person")
        self.run("install", "-d", "-m", "700", "-o", PERSON, "-g", PERSON, f"/run/user/{PERSON}")
        self.store = Store(self.root / "home/person/.local/share")

    def _command(self, *command):
        return ["bwrap", "--bind", self.root, "/", "--dev", "/dev", "--perms", "1777",
                "--tmpfs", "/tmp", "--ro-bind", "/tmp/.X11-unix", "/tmp/.X11-unix",
                "--ro-bind", PACKAGES, "/mnt",
                "--bind", DEBIAN / "archives", "/var/cache/apt/archives", "--die-with-parent",
                "--clearenv", "--setenv", "PATH", "/usr/sbin:/usr/bin:/sbin:/bin",
                # A whole one, since TARNE makes a namespace in it that has its own.
                "sh", "-c", 'mount -t proc proc /proc && exec "$@"', "sh", *map(str, command)]

    def _as_person(self, *command):
        environment = {"HOME": "/home/person", "USER": "person", "LANG": "C.UTF-8", "TZ": "UTC",
                       "PATH": "/usr/bin:/bin", "DISPLAY": DISPLAY,
                       "XDG_RUNTIME_DIR": f"/run/user/{PERSON}",
                       "DBUS_SESSION_BUS_ADDRESS": f"unix:path=/run/user/{PERSON}/bus"}
        return self._command("setpriv", "--reuid", PERSON, "--regid", PERSON, "--clear-groups",
                             "env", "-i", "-C", "/home/person",
                             *(f"{name}={value}" for name, value in environment.items()), *command)

    def run(self, *command):
        """What a command of root's prints; fails the test when it fails."""
        return self._finish(self._command(*command))

    def run_as_person(self, *command):
        return self._finish(self._as_person(*command))

    def _finish(self, command):
        done = subprocess.run(command, timeout=900, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, check=False)
        self._test.assertEqual(done.returncode, 0, f"{command}\n{done.stdout}{done.stderr}")
        return done.stdout

    def first_answer(self, host, message):
        """What a browser is answered by a program that it has started for its extension."""
        text = json.dumps(message).encode()
        with subprocess.Popen(self._as_person("timeout", "60", host, "manifest.json", "extension"),
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
            process.stdin.write(struct.pack("=I", len(text)) + text)
            process.stdin.flush()
            length, = struct.unpack("=I", process.stdout.read(4))
            return json.loads(process.stdout.read(length))

    def start_as_person(self, *command):
        with open(self.told, "ab") as told:
            process = subprocess.Popen(self._as_person(*command), stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=told)
        self._test.addCleanup(process.wait)
        self._test.addCleanup(process.kill)
        return process

    def log_in(self):
        bus = self.root / f"run/user/{PERSON}/bus"
        # It tells of each program that it starts.
        self.start_as_person("sh", "-c", 'exec "$@" 2>/dev/null', "sh", "dbus-daemon", "--session",
                             "--nofork", f"--address=unix:path=/run/user/{PERSON}/bus")
        eventually(bus.exists, "the session's bus is there")

    # -- packages ---------------------------------------------------------------------------

    def install(self, folder="."):
        debs = [deb for name in ("tarne_*.deb", "tarne-companion_*.deb")
                for deb in (PACKAGES / folder).glob(name)]
        self.run(*APT, "install", *(f"/mnt/{deb.relative_to(PACKAGES)}" for deb in debs))

    def version_of(self, package):
        return self.run("dpkg-query", "--show", "--showformat", "${Version}", package)

    def files_named_after_tarne(self):
        """Outside the person's home, what bears TARNE's name; not what apt itself remembers."""
        apt = ("var/lib/apt/", "var/cache/apt/", "var/log/")
        names = (str(path.relative_to(self.root)) for top in ("etc", "usr", "var")
                 for path in (self.root / top).rglob("*tarne*"))
        return sorted(name for name in names if not name.startswith(apt))

    # -- TARNE ------------------------------------------------------------------------------

    def desktop_entry(self, path="usr/share/applications/com.tarne.app.desktop"):
        """The keys of an installed entry, unless told the one in the desktop's menu."""
        entry, _, _ = (self.root / path).read_text().partition("[Desktop Action ")
        return dict(line.split("=", 1) for line in entry.splitlines() if "=" in line)

    def start_from_the_menu(self):
        return self.start_as_person(*shlex.split(self.desktop_entry()["Exec"]))

    def start_by_the_bus(self, name):
        self.run_as_person("dbus-send", "--session", "--print-reply", "--reply-timeout=60000",
                           "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus.StartServiceByName", f"string:{name}", "uint32:0")

    def start_and_show(self):
        launcher = self.start_from_the_menu()
        eventually(window, lambda: f"the window is up; these run: {tarnes_processes()}, and this was"
                                   f" told: {self.told.read_text()}")
        return launcher

    def quit(self, launcher):
        xdotool("windowactivate", "--sync", window())
        xdotool("key", "ctrl+q")
        self._test.assertEqual(launcher.wait(60), 0)
