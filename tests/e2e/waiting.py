"""The one way in which the tests wait: for a condition, and never longer than told."""

import time

PATIENCE = 60.0
POLL_INTERVAL = 0.02


def eventually(condition, what, within=PATIENCE):
    """Returns the first true value of `condition`; fails when there was none `within` seconds."""
    deadline = time.monotonic() + within
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            described = what() if callable(what) else what
            raise AssertionError(f"not within {within:g} s: {described}")
        time.sleep(POLL_INTERVAL)
