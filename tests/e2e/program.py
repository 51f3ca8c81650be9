"""The real program, started as its launcher starts it: in a process namespace of its own."""

import contextlib
import json
import os
import pathlib
import signal
import subprocess
import time

from store import REFERENCE_DATE
from waiting import eventually

# The dynamic linker puts the machine's own folder of libraries in place of $LIB.
FAKETIME_LIBRARY = "/usr/$LIB/faketime/libfaketimeMT.so.1"


class WallClock:
    """The wall clock that the program sees: the real one and an offset, which tests move.

    Monotonic time, and with it every timer and time-out, keeps its pace. A program that is started
    later sees the same clock.
    """

    def __init__(self, folder):
        self._file = pathlib.Path(folder) / "wall-clock"
        self.offset = 0.0
        self.advance(0)

    def advance(self, seconds):
        self.offset += seconds
        replacement = self._file.with_suffix(".new")
        replacement.write_text(f"{self.offset:+.3f}\n")
        os.replace(replacement, self._file)

    def now(self):
        """In seconds since 2001, as the store has it."""
        return time.time() + self.offset - REFERENCE_DATE

    @property
    def environment(self):
        return {"LD_PRELOAD": FAKETIME_LIBRARY, "FAKETIME_TIMESTAMP_FILE": str(self._file),
                "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1",
                "NO_FAKE_STAT": "1"}


def closed_pipe():
    """The end for writing of a pipe whose other end is gone."""
    read_end, write_end = os.pipe()
    os.close(read_end)
    return os.fdopen(write_end, "wb")


class Program:
    """One run of the program. Its standard output and error are kept in files of the test."""

    started = 0

    def __init__(self, executable, folder, environment, binds=(), is_heard=True,
                 has_own_network=False, arguments=()):
        """`binds` are pairs of a file and the path under which the program sees it, read-only. A
        program that is not heard has a standard output that nobody reads any more. With a network
        of its own it finds every port free, also those that an earlier run has just left."""
        Program.started += 1
        folder = pathlib.Path(folder)
        self._output = folder / f"output-{Program.started}.log"
        self._errors = folder / f"errors-{Program.started}.log"
        command = ["bwrap", "--dev-bind", "/", "/", "--unshare-pid", "--proc", "/proc",
                   "--die-with-parent", "--clearenv"]
        if has_own_network:
            command.append("--unshare-net")
        for name, value in environment.items():
            command += ["--setenv", name, value]
        for source, destination in binds:
            command += ["--ro-bind", str(source), str(destination)]
        information, write_end = os.pipe()
        with open(self._output, "wb") as output, open(self._errors, "wb") as errors, \
                closed_pipe() as unheard:
            self._process = subprocess.Popen(
                command + ["--info-fd", str(write_end), str(executable), *arguments],
                stdin=subprocess.DEVNULL, stdout=output if is_heard else unheard,
                stderr=errors, pass_fds=[write_end], cwd=folder)
        os.close(write_end)
        with os.fdopen(information) as document:
            # The namespace's first process is bwrap's own; its one child is the program.
            reaper = json.load(document)["child-pid"]
        self._children = pathlib.Path(f"/proc/{reaper}/task/{reaper}/children")
        self.pid = eventually(self._first_child, "the namespace has a program in it")

    def _first_child(self):
        if not self.is_running:
            raise AssertionError(f"could not be started: {self.errors}")
        children = self._children.read_text().split()
        return int(children[0]) if children else None

    @property
    def log_file(self):
        return self._output

    @property
    def log(self):
        """The lines on standard output so far."""
        return self._output.read_text().splitlines()

    @property
    def whole_lines(self):
        """The lines on standard output without one that a kill has cut short."""
        return self._output.read_text(errors="replace").rpartition("\n")[0].splitlines()

    @property
    def errors(self):
        """The lines on standard error so far."""
        return self._errors.read_text().splitlines()

    @property
    def is_running(self):
        return self._process.poll() is None

    def logged(self, text):
        return any(text in line for line in self.log)

    def send(self, number):
        os.kill(self.pid, number)

    @contextlib.contextmanager
    def halted(self):
        """Stops the program, so that what is sent to it waits."""
        self.send(signal.SIGSTOP)
        try:
            yield
        finally:
            self.send(signal.SIGCONT)

    def wait(self, within=30):
        """Waits until the program has ended and returns its status, 128 + n for signal n."""
        return self._process.wait(timeout=within)

    def terminate(self):
        self.send(signal.SIGTERM)
        return self.wait()

    def kill(self):
        """Ends the program with SIGKILL, as a crash would: no line of it runs any more."""
        if self.is_running:
            self.send(signal.SIGKILL)
            self.wait()
