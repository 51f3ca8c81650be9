"""The programs that TARNE is measured beside: timers among Debian's packages, and the least that a
window of Qt Quick costs."""

import pathlib
import subprocess
import time

from measurement import cpu_seconds
from program import Program
from waiting import eventually

PATIENCE = 30
SETTINGS = """\
[org/gnome/clocks/state/window]
panel-id='timer'
[org/gnome/clocks]
timers=[{'duration': <1500>, 'name': <''>}]
[org/gnome/pomodoro/preferences]
enabled-plugins=@as []
"""
# None tells assistive tools of itself, and all draw without graphics hardware.
LIGHTEST = {"GSETTINGS_BACKEND": "keyfile", "NO_AT_BRIDGE": "1", "GTK_A11Y": "none",
            "QT_QUICK_BACKEND": "software"}


class Contestant:
    """A program with a home and a session bus of its own, on the common display."""

    def __init__(self, desktop, folder, name, executable, environment):
        self.name = name
        self._desktop = desktop
        self._executable = executable
        word = name.replace(", ", "-").replace(" ", "-")
        self._folder = pathlib.Path(folder, word)
        settings = self._folder / "config" / "glib-2.0" / "settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(SETTINGS)
        own = {f"XDG_{kind}_HOME": str(self._folder / kind.lower())
               for kind in ("CONFIG", "DATA", "CACHE")}
        self._environment = desktop.environment | LIGHTEST | environment | own | {
            "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC", "HOME": str(self._folder),
            "DBUS_SESSION_BUS_ADDRESS": desktop.start_bus(f"bus-{word}")}
        self._program = None
        self._window = None

    @property
    def pid(self):
        return self._program.pid

    def start(self):
        self._program = Program(self._executable, self._folder, self._environment)
        return self._program

    def show(self, left, top):
        """Starts it and puts its window to a place of the screen."""
        before = self._windows()
        self.start()
        self._window, = eventually(lambda: self._windows() - before, f"{self.name} is up", PATIENCE)
        self._desktop.xdotool("windowmove", self._window, left, top)
        self._place = left, top

    def hide(self):
        self._desktop.xdotool("windowunmap", self._window)

    def click(self, left, top):
        """On a point of its window."""
        self._desktop.xdotool("mousemove", self._place[0] + left, self._place[1] + top, "click", 1)

    def command(self, *arguments):
        subprocess.run([self._executable, *arguments], env=self._environment, check=True,
                       timeout=PATIENCE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def start_session(self):
        """Makes it count down, where it does not do so anyway."""

    def end(self):
        self._program.kill()

    def _windows(self):
        # Each has one window with a title.
        return set(self._desktop.xdotool("search", "--onlyvisible", "--name", ".").split())


class Clocks(Contestant):
    """GTK 4; `renderer` is "cairo" or "gl"."""

    def __init__(self, desktop, folder, renderer):
        super().__init__(desktop, folder, f"gnome-clocks, {renderer}", "/usr/bin/gnome-clocks",
                         {"GSK_RENDERER": renderer})

    def start_session(self):
        start_button = 434, 228
        self.click(*start_button)


class Pomodoro(Contestant):
    """GTK 3, without the desktop shell that it is made for."""

    def __init__(self, desktop, folder):
        super().__init__(desktop, folder, "gnome-pomodoro", "/usr/bin/gnome-pomodoro", {})

    def start_session(self):
        self.command("--start")


class BareWindow(Contestant):
    """It counts down from its start on."""

    def __init__(self, desktop, folder, executable):
        super().__init__(desktop, folder, "bare window", executable, {})


def switches(process):
    """{thread: how often it has given up the processor by itself}"""
    found = {}
    for task in pathlib.Path(f"/proc/{process}/task").iterdir():
        try:
            lines = (task / "status").read_text().splitlines()
        except (FileNotFoundError, ProcessLookupError):
            continue  # The thread has ended.
        found[task.name] = int(next(line for line in lines
                                    if line.startswith("voluntary")).split()[1])
    return found


def megabytes(process):
    """{"resident MB", "private MB"}: private is what no other process shares."""
    lines = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()[1:]
    kilobytes = {words[0].rstrip(":"): int(words[1]) for words in map(str.split, lines)}
    return {"resident MB": kilobytes["Rss"] / 1024,
            "private MB": (kilobytes["Private_Clean"] + kilobytes["Private_Dirty"]) / 1024}


def rates(processes, seconds):
    """What each process costs over the coming seconds, all in the same ones:
    {name: {"CPU %", "switches/s"}}."""
    def spent():
        return {name: (cpu_seconds(pid), switches(pid)) for name, pid in processes.items()}
    before, begin = spent(), time.monotonic()
    time.sleep(seconds)
    after, lasted = spent(), time.monotonic() - begin
    costs = {}
    for name in processes:
        (cpu_before, then), (cpu, now) = before[name], after[name]
        costs[name] = {"CPU %": 100 * (cpu - cpu_before) / lasted, "switches/s": sum(
            count - then.get(thread, 0) for thread, count in now.items()) / lasted}
    return costs
