"""Runs one module of end-to-end tests in a box: own processes, own network, own shared memory.

    box.py PROGRAM ARTIFACTS MODULE [unittest arguments]

Whatever a test starts ends with the box, and two boxes never meet, so modules may run side by side.
PROGRAM is the program under test, ARTIFACTS the folder for the pictures and logs of failed tests.
"""

import os
import pathlib
import sys
import unittest

X_SOCKETS = pathlib.Path("/tmp/.X11-unix")


def enter(script):
    """Runs the script again, with the same arguments, inside a box; returns inside it only."""
    if os.environ.pop("TARNE_TEST_BOX", None) == "entered":
        return
    X_SOCKETS.mkdir(mode=0o1777, exist_ok=True)
    box = ["bwrap", "--dev-bind", "/", "/", "--unshare-pid", "--proc", "/proc", "--unshare-net",
           "--tmpfs", "/dev/shm", "--tmpfs", str(X_SOCKETS), "--die-with-parent"]
    os.execvpe("bwrap", box + [sys.executable, script] + sys.argv[1:],
               dict(os.environ, TARNE_TEST_BOX="entered", PYTHONDONTWRITEBYTECODE="1"))


def main():
    enter(__file__)
    program, artifacts, module, *rest = sys.argv[1:]
    os.environ["TARNE_PROGRAM"] = program
    os.environ["TARNE_ARTIFACTS"] = artifacts
    unittest.main(module=module, argv=[module] + rest, verbosity=2, catchbreak=False)


if __name__ == "__main__":
    main()
