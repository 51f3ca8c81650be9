"""Marked texts, and the search for them in all that programs leave, say and are told.

Three ways to look, since none sees everything: the files that are there, `/proc` while the programs
run, and a record of every byte that they hand to the kernel, files that vanish at once included.
"""

import base64
import functools
import os
import pathlib
import random
import re
import stat
import string
import subprocess
import threading
import urllib.parse

from waiting import eventually

# What carries bytes out of a process, and what starts another one with arguments and environment.
CALLS = "execve,execveat,write,writev,pwrite64,pwritev,pwritev2,sendto,sendmsg,sendmmsg"
LONGEST_STRING = 65536
# A process that lives for less than this is seen by the record of its program alone.
LOOK_INTERVAL_SECONDS = 0.1


def seed():
    return int(os.environ.get("TARNE_SEED", "1"))


def marker(name):
    """A word of letters that nothing else says, the same for the same seed."""
    letters = random.Random(f"{seed()} {name}").choices(string.ascii_letters, k=20)
    return f"Canary{name.capitalize()}{''.join(letters)}"


@functools.cache
def forms(text):
    """How a text may be written down: as it is, in two bytes a letter, in base64, in hexadecimal
    digits, backwards. A `%` form is the same, since a marker has letters alone."""
    plain = text.encode()
    wide = text.encode("utf-16-le")
    found = {plain, wide, plain[::-1], plain.hex().encode(), plain.hex().upper().encode(),
             # As the record of calls prints two bytes a letter.
             wide.replace(b"\0", b"\\0")}
    for shift in range(3):
        whole = base64.b64encode(b"-" * shift + plain)
        # The first and the last group depend on what is beside the text.
        found.add(whole[4:len(whole) // 4 * 4 - 4])
    assert urllib.parse.quote(text) == text
    return tuple(found)


def marks_in(content, markers):
    """The names of the markers, a map from name to text, that are in these bytes."""
    return {name for name, text in markers.items() if any(form in content for form in forms(text))}


def in_files(root, markers, without=()):
    """Each file below a folder that holds a marker, by its name or in its content: (name of the
    marker, path). Folders and files in `without` are passed over."""
    found = set()
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if pathlib.Path(folder, name) not in without]
        for name in files:
            path = pathlib.Path(folder, name)
            if path in without:
                continue
            try:
                regular = stat.S_ISREG(path.lstat().st_mode)
                content = path.read_bytes() if regular else b""
            except OSError:
                continue  # It has gone meanwhile.
            found |= {(mark, path) for mark in marks_in(content + b"\n" + os.fsencode(path), markers)}
    return found


class Record:
    """Every byte that some programs hand to the kernel, by strace. A program that is started by
    `wrapper` is written down with all that it starts, and may leave a core file if it likes to."""

    def __init__(self, folder):
        self._folder = folder
        folder.mkdir()
        # Unix sockets have numbers; whose they are the kernel tells while they are open.
        self.socket_paths = {}

    def wrapper(self, name, program):
        """A script that starts the program as itself: with the same process id and arguments."""
        script = self._folder / f"start-{name}"
        script.write_text(
            "#!/bin/sh\nulimit -S -c unlimited\n"
            f"exec strace -D -f --seccomp-bpf -qqq -yy -v -s {LONGEST_STRING} -e trace={CALLS} "
            f"-e signal=none -o '{self._folder}/{name}.'$$.trace '{program}' \"$@\"\n")
        script.chmod(0o755)
        return script

    def note_sockets(self):
        for line in pathlib.Path("/proc/net/unix").read_text().splitlines()[1:]:
            words = line.split(maxsplit=7)
            if len(words) == 8:
                self.socket_paths[words[6]] = words[7]

    def lines(self, name):
        for trace in sorted(self._folder.glob(f"{name}.*.trace")):
            yield from trace.read_bytes().splitlines()

    def calls(self, name):
        return sum(1 for _ in self.lines(name))

    def found(self, name, markers):
        """Where a program and what it started has put markers: (name of the marker, destination).
        A destination is a path, "tcp", "unix PATH" or the program that was started."""
        return {(mark, self._destination(line)) for line in self.lines(name)
                for mark in marks_in(line, markers)}

    def _destination(self, line):
        if started := re.search(rb'\bexecve(?:at)?\((?:[^"]*, )?"([^"]*)"', line):
            return f"start of {pathlib.Path(os.fsdecode(started[1])).name}"
        written = re.search(rb"\b\w+\(\d+<(.*?)>(?:\(deleted\)|\(char[^)]*\))?, ", line)
        if not written:
            return f"unknown: {os.fsdecode(line[:120])}"
        target = os.fsdecode(written[1])
        if target.startswith("TCP"):
            return "tcp"
        if target.startswith("UNIX"):
            numbers = re.findall(r"\d+", target)
            known = [self.socket_paths[number] for number in numbers if number in self.socket_paths]
            return f"unix {known[0] if known else 'unknown'}"
        return re.sub(r"\[?\d+\]?$", "", target) if target.startswith("pipe") else target


class Watch:
    """Looks again and again at what processes were told: arguments and environment, as everybody
    or the same user can read them."""

    def __init__(self, markers, record):
        self._markers = markers
        self._record = record
        self._ends = threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)
        self.processes = set()
        # (name of the marker, "arguments" or "environment", name of the program).
        self.found = set()
        self._thread.start()

    def _run(self):
        while not self._ends.is_set():
            self.look()
            self._ends.wait(LOOK_INTERVAL_SECONDS)

    def look(self):
        self._record.note_sockets()
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                told = [("arguments", (process / "cmdline").read_bytes()),
                        ("environment", (process / "environ").read_bytes())]
                program = pathlib.Path(os.readlink(process / "exe")).name
            except OSError:
                continue  # It has ended, or it is the kernel's.
            self.processes.add(process.name)
            self.found |= {(mark, kind, program) for kind, content in told
                           for mark in marks_in(content, self._markers)}

    def close(self):
        self._ends.set()
        self._thread.join()


class BusRecord:
    """Every message on a bus."""

    def __init__(self, address, file):
        self._file = file
        with open(file, "wb") as output:
            self._process = subprocess.Popen(["dbus-monitor", "--address", address, "--binary"],
                                             stdin=subprocess.DEVNULL, stdout=output)
        # The first thing that it hears is its own name being taken away.
        eventually(lambda: file.stat().st_size > 0, "the bus is listened to")

    def found(self, markers):
        return marks_in(self._file.read_bytes(), markers)

    @property
    def size(self):
        return self._file.stat().st_size

    def close(self):
        self._process.terminate()
        self._process.wait()
