"""Runs one module of browser tests in the box of the end-to-end tests, once for each browser.

    browser_box.py BUILD ARTIFACTS BROWSER MODULE [unittest arguments]

BUILD is the folder of a preset, with the programs and with the extension put together for each
browser. BROWSER is "chromium" or "firefox".
"""

import os
import pathlib
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))

from box import enter  # noqa: E402


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    enter(__file__, program=str(build / "bin" / "tarne"))
    _, artifacts, browser, module, *rest = sys.argv[1:]
    os.environ["TARNE_PROGRAM"] = str(build / "bin" / "tarne")
    os.environ["TARNE_EXTENSION"] = str(build / "extension")
    os.environ["TARNE_ARTIFACTS"] = artifacts
    os.environ["TARNE_BROWSER"] = browser
    unittest.main(module=module, argv=[module] + rest, verbosity=2, catchbreak=False)


if __name__ == "__main__":
    main()
