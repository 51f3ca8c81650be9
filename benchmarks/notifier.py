"""Measures the notifier's program from outside and prints the figures as JSON.

    notifier.py PROGRAM [SECONDS]

On a bus of its own that starts it, with its file on the disk of the build. It is idle for SECONDS (60)
while its wake-ups are counted, with 1,000 requests that lie far ahead.
"""

import json
import os
import pathlib
import re
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))
import box

REQUESTS = 1_000
DELIVERIES = 5


def figures(program, seconds):
    os.environ["TARNE_PROGRAM"] = str(program.with_name("tarne"))
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    from desktop import Desktop
    from fixture import NOTIFIER
    from waiting import eventually
    from gi.repository import Gio, GLib

    class Measurement:
        def __init__(self, folder, data):
            services = folder / "services"
            services.mkdir()
            (services / f"{NOTIFIER}.service").write_text(
                f"[D-BUS Service]\nName={NOTIFIER}\n"
                f"Exec=/usr/bin/env XDG_DATA_HOME={data} TZ=UTC {program}\n")
            self.desktop = Desktop(folder, services=services)
            self.desktop.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "RequestName",
                              GLib.Variant("(su)", ("com.tarne.app", 4)))

        def addition(self, identifier, then):
            names = ("year", "month", "day", "hour", "minute", "second")
            return GLib.Variant("(sssa{si})", (
                identifier, "Focus Session Reminder",
                f"Your scheduled focus session 'Write report {identifier}' starts in 1 hour",
                dict(zip(names, time.gmtime(then)[:6]))))

        def call(self, method, arguments=None):
            return self.desktop.call(NOTIFIER, "/com/tarne/app/Notifier", NOTIFIER, method,
                                     arguments)

        def add_pipelined(self):
            """The seconds until all of them are answered; the program runs already."""
            far = time.time() + 86_400
            loop, left = GLib.MainLoop(), [REQUESTS]

            def answered(bus, result):
                left[0] -= 1
                if not left[0]:
                    loop.quit()
                bus.call_finish(result)
            start = time.monotonic()
            for number in range(REQUESTS):
                self.desktop.bus.call(NOTIFIER, "/com/tarne/app/Notifier", NOTIFIER, "Add",
                                      self.addition(str(number), far + number), None,
                                      Gio.DBusCallFlags.NONE, 60_000, None, answered)
            loop.run()
            seconds = time.monotonic() - start
            assert len(self.call("Pending")[0]) == REQUESTS + 1
            return seconds

        def process(self):
            return self.desktop.process_of(NOTIFIER)

        def kilobytes(self, what):
            status = pathlib.Path(f"/proc/{self.process()}/status").read_text()
            return int(re.search(rf"^{what}:\s+(\d+) kB", status, re.MULTILINE)[1])

        def wake_ups(self):
            total = 0
            for thread in pathlib.Path(f"/proc/{self.process()}/task").iterdir():
                for line in (thread / "status").read_text().splitlines():
                    if line.startswith(("voluntary", "nonvoluntary")):
                        total += int(line.split()[1])
            return total

        def lateness(self):
            """How long after its moment a notification reaches the daemon, in seconds."""
            moment = int(time.time()) + 2
            self.call("Add", self.addition("due", moment))
            before = len(self.shown())
            eventually(lambda: len(self.shown()) > before, "it is shown")
            return self.shown()[-1] - moment

        def shown(self):
            return [float(line.split()[0]) for line in
                    self.desktop.notification_log.read_text().splitlines() if " Notify " in line]

    with tempfile.TemporaryDirectory() as folder, \
            tempfile.TemporaryDirectory(dir=program.parents[1]) as data:
        measurement = Measurement(pathlib.Path(folder), data)
        try:
            start = time.monotonic()
            measurement.call("Add", measurement.addition("first", time.time() + 86_400))
            results = {"start s": time.monotonic() - start,
                       "adding s": measurement.add_pipelined()}
            time.sleep(2)
            results |= {"resident MB": measurement.kilobytes("VmRSS") / 1024,
                        "anonymous MB": measurement.kilobytes("RssAnon") / 1024}
            before = measurement.wake_ups()
            time.sleep(seconds)
            results["wake-ups a minute"] = (measurement.wake_ups() - before) * 60 / seconds
            results["latest s"] = max(measurement.lateness() for _ in range(DELIVERIES))
            return results
        finally:
            measurement.desktop.close()


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    box.enter(__file__, program)
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 60.0
    print(json.dumps(figures(program, seconds)))


if __name__ == "__main__":
    main()
