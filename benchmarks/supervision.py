"""Measures what the classification server costs beside the program, whose window is hidden, and
prints the figures as JSON.

    supervision.py PROGRAM

The server is the one beside PROGRAM. The intervals hang on TARNE's health checks, one every 30 s.
"""

import json
import os
import pathlib
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))
import box

CHECK_INTERVAL = 30
# Between two checks.
QUIET_SECONDS = 20
SETTLED_SECONDS = 2


def measurement():
    from measurement import BUILD, Measurement, cpu_seconds

    class Supervision(Measurement):
        def runTest(self):
            nothing = self.folder / "nothing"
            nothing.mkdir()
            self.launch_by_name(binds=[(nothing, BUILD / "lib" / "tarne")])
            self.hide()
            time.sleep(SETTLED_SECONDS)
            self.results["alone CPU %"] = self.cpu_share(QUIET_SECONDS)
            self.assertEqual(self.checks(), 0)
            self.program.kill()
            self.move_home()
            self.launch_by_name(has_own_network=True)
            self.hide()
            self.await_health_check()
            time.sleep(SETTLED_SECONDS)
            self.results["supervising CPU %"] = self.cpu_share(QUIET_SECONDS)
            # What is left of the interval, the check in its middle.
            before = self.checks()
            self.results["checking CPU %"] = self.cpu_share(
                2 * (CHECK_INTERVAL - QUIET_SECONDS - SETTLED_SECONDS))
            self.results["checks"] = self.checks() - before
            self.assertEqual(self.results["checks"], 1)
            self.results["checking s"] = 2 * (CHECK_INTERVAL - QUIET_SECONDS - SETTLED_SECONDS)

        def checks(self):
            return self.program.log.count("✅ Server health check passed")

        def await_health_check(self):
            """Waits until the next one has passed."""
            before = self.checks()
            self.eventually(lambda: self.checks() > before, "the server's health is checked",
                            CHECK_INTERVAL + 10)

        def cpu_share(self, seconds):
            """Per cent of a core over the coming seconds."""
            before = cpu_seconds(self.program.pid)
            time.sleep(seconds)
            return 100 * (cpu_seconds(self.program.pid) - before) / seconds

    return Supervision


def main():
    box.enter(__file__, program=sys.argv[1])
    os.environ["TARNE_PROGRAM"] = str(pathlib.Path(sys.argv[1]).resolve())
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    print(json.dumps(measurement().results_of_run()))


if __name__ == "__main__":
    main()
