"""Runs one module of end-to-end tests in a box: own processes, own network, own /tmp.

    box.py PROGRAM ARTIFACTS MODULE [unittest arguments]

Whatever a test starts ends with the box, and two boxes never meet, so modules may run side by side.
PROGRAM is the program under test, ARTIFACTS the folder for the pictures and logs of failed tests.
"""

import os
import pathlib
import sys
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]

# The service of the tests listens where the real one does. Root may do so anyway, and anybody else
# in a network of their own, once that network says so; the right to say it goes no further.
OPEN_ALL_PORTS = ("echo 0 >/proc/sys/net/ipv4/ip_unprivileged_port_start && "
                  'exec setpriv --ambient-caps=-all --inh-caps=-all "$@"')

# A disk of its own that is soon full.
SMALL_DISK = pathlib.Path("/tmp/small-disk")
SMALL_DISK_BYTES = 2 * 1024 * 1024


def enter(script, program):
    """Runs the script again, with the same arguments, inside a box; returns inside it only.

    Of /tmp the box sees the sources and the build that the program belongs to, and no more.
    """
    if os.environ.pop("TARNE_TEST_BOX", None) == "entered":
        return
    box = ["bwrap", "--dev-bind", "/", "/", "--unshare-pid", "--proc", "/proc", "--unshare-net",
           "--tmpfs", "/dev/shm", "--perms", "1777", "--tmpfs", "/tmp", "--die-with-parent",
           "--size", str(SMALL_DISK_BYTES), "--tmpfs", str(SMALL_DISK)]
    for folder in {SOURCES, pathlib.Path(program).resolve().parents[1]}:
        if folder.is_relative_to("/tmp"):
            box += ["--bind", str(folder), str(folder)]
    if os.getuid() != 0:
        box += ["--cap-add", "CAP_NET_ADMIN", "sh", "-c", OPEN_ALL_PORTS, "sh"]
    os.execvpe("bwrap", box + [sys.executable, script] + sys.argv[1:],
               dict(os.environ, TARNE_TEST_BOX="entered", PYTHONDONTWRITEBYTECODE="1"))


def main():
    enter(__file__, program=sys.argv[1])
    program, artifacts, module, *rest = sys.argv[1:]
    os.environ["TARNE_PROGRAM"] = program
    os.environ["TARNE_ARTIFACTS"] = artifacts
    unittest.main(module=module, argv=[module] + rest, verbosity=2, catchbreak=False)


if __name__ == "__main__":
    main()
