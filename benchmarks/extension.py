"""Measures the extension in a real browser, with a bridge that answers at once, and prints the
figures as JSON.

    extension.py PROGRAM    the extension lies in ../extension beside the program's folder

In a box without a network, in Chromium and then in Firefox.
"""

import json
import os
import pathlib
import shutil
import statistics
import sys
import tempfile
import time

TESTS = pathlib.Path(__file__).resolve().parents[1] / "tests"
sys.path += [str(TESTS / "e2e"), str(TESTS / "browsers")]
import box

KNOWN_VISITS = 20
SESSIONS = 5
PATIENCE = 20.0
PAGE = "http://game.example/play?id=1"
DRAWN = "performance.getEntriesByName('first-contentful-paint')"


class Tab:
    """The browser's tab, and when its pages could be seen."""

    def __init__(self, browser):
        from waiting import eventually
        self._browser = browser
        self._eventually = eventually
        self.block_page = browser.own_address + "pages/block.html"

    def consent(self):
        own = self._browser.own_address + "pages/"
        self._browser.open_own("pages/options.html")
        self.wait_until_at(own + "options.html")
        self._browser.run_asynchronously("(globalThis.browser ?? chrome).runtime.sendMessage("
                                         "{type: 'consent', level: 'title'})")
        # It comes up in a tab of its own, in front of this one.
        self._eventually(lambda: own + "welcome.html" in self._browser.run_asynchronously(
            "(globalThis.browser ?? chrome).tabs.query({}).then((tabs) => tabs.map(({url}) => url))"),
            "the welcome page is there", PATIENCE)
        self._browser.show(self._browser.tab)

    def go(self, address):
        self._browser.open(address)
        self.wait_until_at(address)

    def seconds_to(self, address, act):
        """From `act` until the page at this address is drawn."""
        begin = time.time()
        act()
        self.wait_until_at(address)
        self._eventually(lambda: self._browser.run(f"return {DRAWN}.length"), "it is drawn",
                         PATIENCE)
        return self._browser.run(
            f"return (performance.timeOrigin + {DRAWN}[0].startTime) / 1000") - begin

    def wait_until_at(self, address):
        self._eventually(lambda: self._browser.address == address, f"the tab is at {address}",
                         PATIENCE)


def measured(browser, bridge, web):
    from stand_in_bridge import off_task
    bridge.judge = lambda page: off_task()
    tab = Tab(browser)
    tab.consent()
    starts, ends = [], []
    for number in range(SESSIONS):
        tab.go(PAGE)
        starts.append(tab.seconds_to(tab.block_page, lambda: bridge.start_session(f"Goals {number}")))
        ends.append(tab.seconds_to(PAGE, bridge.end_session))
    bridge.start_session("Write the report")
    tab.wait_until_at(tab.block_page)
    before = web.visits("game.example")
    known = []
    for _ in range(KNOWN_VISITS):
        tab.go("about:blank")
        known.append(tab.seconds_to(tab.block_page, lambda: browser.open(PAGE)))
    return {"known page s": statistics.median(known), "slowest known page s": max(known),
            "start s": max(starts), "end s": max(ends),
            "requests of known pages": web.visits("game.example") - before}


def figures(name, extension):
    from browser_fixture import browser_class
    from stand_in_bridge import StandInBridge
    from waiting import eventually
    from web import Web

    os.environ["TARNE_BROWSER"] = name
    folder = pathlib.Path(tempfile.mkdtemp())
    web = Web()
    bridge = StandInBridge(folder)
    browser = browser_class()(folder, extension, bridge)
    try:
        eventually(lambda: bridge.is_connected, "the extension has found its bridge", PATIENCE)
        return measured(browser, bridge, web)
    finally:
        browser.close()
        bridge.close()
        web.close()
        shutil.rmtree(folder, ignore_errors=True)


def main():
    box.enter(__file__, program=sys.argv[1])
    extension = pathlib.Path(sys.argv[1]).resolve().parents[1] / "extension"
    os.environ["TARNE_EXTENSION"] = str(extension)
    os.environ["TARNE_ARTIFACTS"] = tempfile.gettempdir()
    print(json.dumps({f"{name} {what}": figure for name in ("chromium", "firefox")
                      for what, figure in figures(name, extension).items()}))


if __name__ == "__main__":
    main()
