"""Measures the real program from outside beside others, and prints the figures as JSON.

    whole_process.py PROGRAM [ROUNDS]

In a box with a display of its own, software rendering, the real clock: Debian's gnome-clocks (GTK 4,
drawn by cairo and by OpenGL) and gnome-pomodoro (GTK 3), and bare_window, which lies beside PROGRAM.
Each is started ROUNDS (5) times, in turns, after one start that does not count. Then all are there
at once, and are measured over the same seconds, ROUNDS times in each state. Every figure is a median.
"""

import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))
import box

SETTLED_SECONDS = 2
INTERVAL_SECONDS = 5
TRACED_SECONDS = 20
# Where new windows lie on a display that nobody manages: at its corner, or in its middle.
PLACES = [(100, 100), (400, 300), (1280, 800), (1280, 640)]


def medians(rounds):
    """Of figures that are {name: {what: figure}} in every round."""
    return {name: {what: statistics.median(one[name][what] for one in rounds)
                   for what in rounds[0][name]} for name in rounds[0]}


def measurement(program, rounds):
    from contestants import (BareWindow, Clocks, Pomodoro, megabytes, rates)
    from desktop import DISPLAY
    from measurement import Measurement, bytes_written, cpu_seconds
    from screen import Screen

    class SideBySide(Measurement):
        screen = "2560x1600"

        def runTest(self):
            self.display = Screen(DISPLAY)
            self.places = {Clocks(self.desktop, self.folder, "cairo"): (0, 0),
                           Clocks(self.desktop, self.folder, "gl"): (0, 800),
                           Pomodoro(self.desktop, self.folder): (2000, 0),
                           BareWindow(self.desktop, self.folder,
                                      program.with_name("bare_window")): (2000, 800)}
            self.set_accessible(False)
            self.measure_starts()
            self.show_all()
            self.measure("idle")
            self.measure_disk("idle")
            self.start_sessions()
            self.measure("visible")
            self.hide()
            for contestant in self.places:
                contestant.hide()
            time.sleep(SETTLED_SECONDS)
            self.measure("hidden")
            self.measure_disk("running")
            for contestant in self.places:
                contestant.end()

        def measure_starts(self):
            starts = {"TARNE": self.start} | {each.name: each.start for each in self.places}
            measured = [{name: self.figures_of_start(start) for name, start in starts.items()}
                        for _ in range(1 + rounds)]
            self.results["start"] = medians(measured[1:])

        def figures_of_start(self, start):
            begin = time.monotonic()
            started = start()
            drawn = self.display.await_drawing(PLACES, within=30)
            figures = {"CPU ms": 1000 * cpu_seconds(started.pid), "wall ms": 1000 * (drawn - begin)}
            time.sleep(SETTLED_SECONDS)
            figures |= {"settled CPU ms": 1000 * cpu_seconds(started.pid)} | megabytes(started.pid)
            started.kill()
            self.eventually(lambda: all(self.display.is_black(*place) for place in PLACES),
                            "the screen is black again")
            return figures

        def show_all(self):
            for contestant, place in self.places.items():
                contestant.show(*place)
            self.launch_by_name()
            time.sleep(SETTLED_SECONDS)

        def start_sessions(self):
            self.set_accessible(True)
            self.start_session("Write report, Review", minutes=180)
            self.set_accessible(False)
            for contestant in self.places:
                contestant.start_session()
            time.sleep(SETTLED_SECONDS)

        def measure(self, state):
            processes = {"TARNE": self.program.pid} | {each.name: each.pid for each in self.places}
            self.results[state] = medians([rates(processes, INTERVAL_SECONDS)
                                           for _ in range(rounds)])
            for name, process in processes.items():
                self.results[state][name] |= megabytes(process)
            if state != "idle":
                still = [name for name, cost in self.results[state].items()
                         if cost["switches/s"] < 0.5]
                self.assertEqual(still, [], "these do not count down")

        def measure_disk(self, state):
            """What the program writes; the trace costs more than the program."""
            trace = self.folder / "trace"
            tracer = subprocess.Popen(["strace", "-f", "-qq", "-e", "trace=pwrite64,fsync,fdatasync",
                                       "-o", trace, "-p", str(self.program.pid)])
            before = bytes_written(self.program.pid)
            time.sleep(TRACED_SECONDS)
            written = bytes_written(self.program.pid) - before
            tracer.send_signal(signal.SIGINT)
            tracer.wait(timeout=30)
            calls = [line.split()[1].partition("(")[0] for line in trace.read_text().splitlines()]
            a_minute = 60 / TRACED_SECONDS
            self.results[f"{state} disk"] = {
                "bytes/s": written / TRACED_SECONDS,
                "writes a minute": a_minute * calls.count("pwrite64"),
                "syncs a minute": a_minute * (calls.count("fsync") + calls.count("fdatasync"))}

    return SideBySide


def main():
    box.enter(__file__, program=sys.argv[1])
    program = pathlib.Path(sys.argv[1]).resolve()
    os.environ["TARNE_PROGRAM"] = str(program)
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    rounds = int((sys.argv[2:] or ["5"])[0])
    print(json.dumps(measurement(program, rounds).results_of_run()))


if __name__ == "__main__":
    main()
