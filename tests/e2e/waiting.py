"""The one way in which the tests wait: for a condition, and never longer than told."""

import time

PATIENCE = 60.0
POLL_INTERVAL = 0.02


def eventually(condition, what, within=PATIENCE):
    """Returns the first true value of `condition`; fails when there was none `within` seconds.

    Pauses as long as the question took, or longer: to ask for a whole window's tree without a pause
    keeps the program from what is waited for.
    """
    deadline = time.monotonic() + within
    while True:
        asked = time.monotonic()
        value = condition()
        if value:
            return value
        answered = time.monotonic()
        if answered > deadline:
            described = what() if callable(what) else what
            raise AssertionError(f"not within {within:g} s: {described}")
        time.sleep(max(POLL_INTERVAL, answered - asked))
