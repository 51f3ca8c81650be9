#!/usr/bin/python3
"""Stands where the program would, and tells as one JSON document how it was started.

Ends with status 7; with anything in the variable STAY only when it gets SIGTERM or SIGINT. Asks the
launcher for what is in the variable PAGES.
"""

import json
import os
import signal
import sys

UNIGNORED_BY_PYTHON = {signal.SIGPIPE, signal.SIGXFSZ}


def status_field(name):
    with open("/proc/self/status") as status:
        return next(line.split()[1:] for line in status if line.startswith(f"{name}:"))


def ignored_signals():
    mask = int(status_field("SigIgn")[0], 16)
    return [signal.Signals(number).name for number in range(1, 32)
            if mask >> number - 1 & 1 and number not in UNIGNORED_BY_PYTHON]


def descriptors():
    found = {}
    for name in os.listdir("/proc/self/fd"):
        try:
            found[name] = os.readlink(f"/proc/self/fd/{name}")
        except OSError:
            continue  # The one that has read the folder.
    return found


def has_terminal():
    try:
        os.close(os.open("/dev/tty", os.O_RDWR))
        return True
    except OSError:
        return False


for number in (signal.SIGTERM, signal.SIGINT):
    signal.signal(number, lambda number, _: sys.exit(number))
print(json.dumps({
    "users": [int(user) for user in status_field("Uid")],
    "groups": sorted({os.getgid(), os.getegid(), *os.getgroups()}),
    "capabilities": int(status_field("CapEff")[0], 16),
    "ignored": ignored_signals(),
    "descriptors": descriptors(),
    "terminals": [fd for fd in range(3) if os.isatty(fd)],
    "has_terminal": has_terminal(),
    "environment": dict(os.environ),
    "folder": os.getcwd()}), flush=True)
if "PAGES" in os.environ:
    os.write(0, os.environ["PAGES"].encode())
if "STAY" in os.environ:
    signal.pause()
sys.exit(7)
