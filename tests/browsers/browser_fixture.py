"""The vocabulary of the browser tests: one start of a browser for each class of tests."""

import json
import os
import pathlib
import shutil
import tempfile
import time
import unittest

from stand_in_bridge import StandInBridge
from waiting import eventually
from web import Web

EXTENSION = pathlib.Path(os.environ["TARNE_EXTENSION"])
ARTIFACTS = pathlib.Path(os.environ["TARNE_ARTIFACTS"])


def browser_class():
    # Only the one that is tested needs to be there.
    if os.environ["TARNE_BROWSER"] == "firefox":
        from firefox import Firefox
        return Firefox
    from chromium import Chromium
    return Chromium


class BrowserWords:
    """What tests do with `self.browser` and expect of it."""

    def open_own(self, page):
        self.browser.open_own(page)
        self.eventually(lambda: self.browser.address == self.browser.own_address + page
                        and self.browser.run("return document.readyState") == "complete",
                        f"{page} is shown")

    def ask_background(self, message):
        return self.browser.run_asynchronously(
            "(globalThis.browser ?? chrome).runtime.sendMessage(arguments[0])", message)

    def wait_for_welcome_page(self):
        """It comes up in a tab of its own, in front of the first one, which is shown again."""
        self.open_own("pages/options.html")
        self.eventually(lambda: self.browser.own_address + "pages/welcome.html" in
                        self.browser.run_asynchronously(
                            "(globalThis.browser ?? chrome).tabs.query({})"
                            ".then((tabs) => tabs.map(({url}) => url))"), "the welcome page is there")
        self.browser.show(self.browser.tab)

    @property
    def is_blocked(self):
        return self.browser.address == self.browser.own_address + "pages/block.html"

    def wait_until_blocked(self, within=10.0):
        self.eventually(lambda: self.is_blocked and self.shown("#heading"),
                        lambda: f"the block page is shown; instead {self.browser.address}", within)

    def wait_until_at(self, address, within=10.0):
        self.eventually(lambda: self.browser.address == address,
                        lambda: f"the tab is at {address}; it is at {self.browser.address}", within)

    def shown(self, selector):
        return self.browser.run(
            "const element = document.querySelector(arguments[0]);"
            "return element !== null && element.checkVisibility()", selector)

    @property
    def is_covered(self):
        """Whether something lies over the page, which is all that it can tell of its cover."""
        return self.browser.run("""
            const found = document.elementFromPoint(innerWidth / 2, innerHeight / 2);
            return found !== null && found.parentNode === document.documentElement
              && found !== document.body && found.tagName === 'DIV';""")

    @property
    def has_strip(self):
        return self.browser.run("""
            const found = document.elementFromPoint(5, 5);
            return found !== null && found.parentNode === document.documentElement
              && found.tagName === 'DIV';""")

    def visit(self, address):
        """Goes to a page in the current tab and waits until it is there."""
        self.browser.open(address)
        self.wait_until_at(address)
        self.eventually(lambda: self.browser.run("return document.readyState") == "complete",
                        "the page is there")

    def text(self, selector):
        return self.browser.run("return document.querySelector(arguments[0]).textContent", selector)

    def assert_stays(self, condition, what, seconds=1.0):
        """That something holds all the while: the one wait for what must not happen."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            self.assertTrue(condition(), what)
            time.sleep(0.05)


class BrowserTestCase(BrowserWords, unittest.TestCase):
    """A browser with the extension, a bridge in the test's hands and a web of made-up names.

    Each test takes names and goals of its own, so that none knows what another has learnt.
    """

    has_bridge = True

    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp(prefix="tarne-browser-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        cls.web = Web()
        cls.addClassCleanup(cls.web.close)
        cls.bridge = StandInBridge(cls.folder)
        cls.addClassCleanup(cls.bridge.close)
        cls.browser = browser_class()(cls.folder, EXTENSION, cls.bridge if cls.has_bridge else None)
        cls.addClassCleanup(cls.browser.close)
        if cls.has_bridge:
            eventually(lambda: cls.bridge.is_connected, "the extension has found its bridge")

    def setUp(self):
        self.bridge.is_away = False
        self.bridge.is_mute = False
        self.bridge.judge = lambda page: {"verdict": "on_task", "confidence": 1, "reason": "",
                                          "source": "model"}
        self.bridge.end_session()
        self.bridge.set_server("ready")
        self.close_other_tabs()
        self.set_up_settings()

    def close_other_tabs(self):
        # The last test may have closed the tab that it was in.
        self.browser.switch(self.browser.tabs[-1])
        self.browser.new_tab()
        self.open_own("pages/options.html")
        self.browser.run_asynchronously("""(async () => {
            const {tabs} = globalThis.browser ?? chrome;
            const own = await tabs.getCurrent();
            const others = (await tabs.query({})).filter(({id}) => id !== own.id);
            await tabs.remove(others.map(({id}) => id)); })()""")
        self.eventually(lambda: len(self.browser.tabs) == 1, "there is one tab")
        self.browser.open("about:blank")

    def set_up_settings(self):
        """Consent to titles, and empty lists."""
        self.settings(consent="title")

    def tearDown(self):
        outcome = self._outcome.result
        if any(test is self for test, _ in outcome.failures + outcome.errors) or self._failed_now():
            ARTIFACTS.mkdir(parents=True, exist_ok=True)
            try:
                self.browser.picture(ARTIFACTS / f"{self.browser.name}-{self.id()}.png")
            except Exception as error:  # The browser itself may be what failed.
                print(f"no picture: {error}")

    def _failed_now(self):
        return any(error for _, error in getattr(self._outcome, "errors", []))

    # -- given ------------------------------------------------------------------------------------

    def settings(self, consent, allow=(), block=()):
        """Sets all that the user can choose, as the options page does."""
        current = self.browser.tab
        self.browser.new_tab()
        self.open_own("pages/options.html")
        state = self.ask_background({"type": "state"})
        for name, wanted in (("allowList", list(allow)), ("blockList", list(block))):
            self.ask_background({"type": "list/remove", "list": name,
                                 "entries": state["settings"][name]})
            self.ask_background({"type": "list/add", "list": name, "entries": wanted})
        self.ask_background({"type": "consent", "level": consent})
        self.browser.close_tab(self.browser.tab)
        self.browser.show(current)

    def start_session(self, judge=None, goals=None):
        if judge is not None:
            self.bridge.judge = judge
        self.bridge.start_session(goals or f"Goals of {self.id()}")

    # -- then -------------------------------------------------------------------------------------

    def eventually(self, condition, what, within=10.0):
        return eventually(condition, what, within)

    def tab_state(self, address):
        """What the browser knows about the tab at this address, seen from a page of the extension."""
        self.open_own("pages/options.html")
        return self.browser.run_asynchronously(
            "(globalThis.browser ?? chrome).tabs.query({})"
            ".then((tabs) => tabs.find(({url}) => url === arguments[0]))"
            .replace("arguments[0]", json.dumps(address)))

    def wait_until_asked(self, origin, times=1):
        self.eventually(lambda: len(self.bridge.asked_about(origin)) >= times,
                        f"{origin} is asked about")
