"""Measures the classification server and the bridge and prints the figures as JSON.

    companions.py BRIDGE    the server lies where TARNE finds it, in ../lib/tarne beside the bridge

In a box without a network; the model is the tests' stand-in, met under its real name.
"""

import fcntl
import json
import os
import pathlib
import statistics
import struct
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))
import box

QUESTIONS = 2000
AT_ONCE = (1, 10, 50)
# The bridge's first question may take 5 s. Its deadline wakes the bridge though it was called off.
SETTLING_SECONDS = 6
IDLE_SECONDS = 60
F_OFD_SETLK = 37


class Session:
    """What TARNE shows of a running session: its lock, and its keys once a second."""

    def __init__(self, store):
        self._store = store
        self._ends = threading.Event()
        self._store.plant_value("SessionActive", "integer", 0)
        self._lock = open(store.file.with_name("defaults.lock"), "wb")
        fcntl.fcntl(self._lock, F_OFD_SETLK, struct.pack("hhqqi", fcntl.F_WRLCK, 0, 0, 0, 0))
        self._thread = threading.Thread(target=self._publish)

    def start(self):
        """Returns when the first values were committed."""
        self._commit()
        committed = time.monotonic()
        self._thread.start()
        return committed

    def end(self):
        self._ends.set()
        self._thread.join()
        self._store.plant_value("SessionActive", "integer", 0)

    def _publish(self):
        while not self._ends.wait(1):
            self._commit()

    def _commit(self):
        for key, kind, value in (("SessionGoals", "text", "Write the report"),
                                 ("SessionId", "text", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F"),
                                 ("TimeRemaining", "double", 1500.0),
                                 ("SessionDuration", "double", 1500.0),
                                 ("LastUpdate", "double", time.time()),
                                 ("SessionActive", "integer", 1)):
            self._store.plant_value(key, kind, value)


def status(process, name):
    lines = pathlib.Path(f"/proc/{process}/status").read_text().splitlines()
    return int(next(line for line in lines if line.startswith(name)).split()[1])


def wakes(process):
    """Of all its threads."""
    return sum(int(next(line for line in (task / "status").read_text().splitlines()
                        if line.startswith("voluntary")).split()[1])
               for task in pathlib.Path(f"/proc/{process}/task").iterdir())


def start_server(program, gemini, environment):
    """Where the model's host is the stand-in; the process of the server itself."""
    binds = [word for source, target in gemini.binds for word in ("--ro-bind", source, target)]
    server = subprocess.Popen(["bwrap", "--dev-bind", "/", "/", *binds, "--die-with-parent", program,
                               "3000"], stdout=subprocess.PIPE,
                              env=environment | {"GEMINI_API_KEY": "key"})
    if not server.stdout.readline():
        sys.exit("the server does not come up")
    children = pathlib.Path(f"/proc/{server.pid}/task/{server.pid}/children").read_text().split()
    return server, int(children[0]) if children else server.pid


def all_at_once(bridge, count):
    """Seconds from the first question of as many tabs to the last answer, from the cache."""
    begin = time.monotonic()
    for number in range(count):
        bridge.say({"v": 1, "id": 100_000 + number, "op": "classify",
                    "page": {"origin": "https://www.example.org", "path": "/watch",
                             "title": "A Film"}})
    answered = 0
    while answered < count:
        answered += "verdict" in bridge.next()
    return time.monotonic() - begin


def figures(program):
    program = pathlib.Path(program).resolve()
    os.environ["TARNE_PROGRAM"] = str(program)
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    from bridge import Bridge
    from gemini import Gemini
    from store import Store

    folder = pathlib.Path(tempfile.mkdtemp())
    (folder / "run").mkdir(mode=0o700)
    environment = {"XDG_DATA_HOME": str(folder / "share"), "XDG_RUNTIME_DIR": str(folder / "run"),
                   "HOME": str(folder), "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8"}
    gemini = Gemini(folder)
    gemini.set_scenario("judging")
    session = Session(Store(folder / "share"))
    server, server_id = start_server(program.parents[1] / "lib" / "tarne" / "tarne-server", gemini,
                                     environment)
    bridge = Bridge(environment)
    bridge.await_state("server", "ready")
    time.sleep(SETTLING_SECONDS)
    results = {"server MB": status(server_id, "VmRSS") / 1024,
               "bridge MB": status(bridge.pid, "VmRSS") / 1024}
    before = wakes(server_id) + wakes(bridge.pid)
    time.sleep(IDLE_SECONDS)
    results["idle wake-ups"] = wakes(server_id) + wakes(bridge.pid) - before

    committed = session.start()
    bridge.await_state("session", "active")
    results["session told ms"] = 1000 * (time.monotonic() - committed)
    bridge.ask("classify", title="A Film")
    times = []
    for _ in range(QUESTIONS):
        begin = time.monotonic()
        answer = bridge.ask("classify", title="A Film")
        times.append(1000 * (time.monotonic() - begin))
        if answer["source"] != "cache":
            sys.exit(f"not from the cache: {answer}")
    results |= {"cached median ms": statistics.median(times),
                "cached p99 ms": statistics.quantiles(times, n=100)[98]}
    for count in AT_ONCE:
        results[f"{count} at once ms"] = 1000 * all_at_once(bridge, count)
    results |= {"server used MB": status(server_id, "VmRSS") / 1024,
                "bridge MB": max(results["bridge MB"], status(bridge.pid, "VmRSS") / 1024),
                "model calls": len(gemini.requests), "questions": 1 + QUESTIONS + sum(AT_ONCE)}
    session.end()
    bridge.close()
    server.terminate()
    server.wait()
    gemini.close()
    return results


if __name__ == "__main__":
    box.enter(__file__, program=sys.argv[1])
    print(json.dumps(figures(sys.argv[1])))
