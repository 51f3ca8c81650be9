"""Draws docs/shots/notification.png: a session's notice in a notification daemon of the desktop.

    notification.py PROGRAM FOLDER

The notifier beside PROGRAM shows it, started by a bus of the picture's own.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "e2e"))
import box


def draw(program, picture):
    os.environ["TARNE_PROGRAM"] = str(pathlib.Path(program).resolve())
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    from test_notifier import NotifierTestCase, SCHEDULED

    class Picture(NotifierTestCase):
        def runTest(self):
            self.desktop.start_dunst()
            self.own_name()
            title, body = SCHEDULED
            self.add("timer-completion", title=title, body=body)
            window = self.eventually(self.desktop.notification_window, "it is shown")
            subprocess.run(["import", "-display", self.desktop.environment["DISPLAY"],
                            "-window", window, str(picture)], check=True, timeout=30)

    test = Picture()
    outcome = test.run()
    sys.exit(0 if outcome.wasSuccessful() else "\n".join(
        text for _, text in outcome.failures + outcome.errors))


if __name__ == "__main__":
    box.enter(__file__, sys.argv[1])
    draw(sys.argv[1], pathlib.Path(sys.argv[2]).resolve() / "notification.png")
