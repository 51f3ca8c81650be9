"""The whole road: TARNE starts its server, its store tells the bridge, the bridge the browser."""

import json
import os
import pathlib
import time

import gemini
from browser_fixture import EXTENSION, BrowserWords, browser_class
from fixture import PROGRAM, TarneTestCase
from gemini import KEY, Gemini, Keyring
from stand_in_bridge import CHROMIUM_ID, FIREFOX_ID, HOST
from web import Web

BRIDGE = pathlib.Path(PROGRAM).with_name("tarne-bridge")
JUDGE = pathlib.Path(__file__).with_name("judging_gemini.py")
GOALS = "Write the report"


def arguments_of(process):
    try:
        return (process / "cmdline").read_text(errors="replace")
    except OSError:
        return ""  # It has ended meanwhile.


class RealBridge:
    @staticmethod
    def install(hosts):
        """Tells a browser that looks into the folder `hosts` how to start the bridge."""
        hosts.mkdir(parents=True, exist_ok=True)
        manifest = {"name": HOST, "description": "TARNE", "path": str(BRIDGE), "type": "stdio"}
        if os.environ["TARNE_BROWSER"] == "chromium":
            manifest["allowed_origins"] = [f"chrome-extension://{CHROMIUM_ID}/"]
        else:
            manifest["allowed_extensions"] = [FIREFOX_ID]
        (hosts / f"{HOST}.json").write_text(json.dumps(manifest))


class WholeRoadTest(BrowserWords, TarneTestCase):
    has_key = True

    def setUp(self):
        super().setUp()
        if self.has_key:
            keyring = Keyring(self.folder, self.desktop.environment)
            self.addCleanup(keyring.close)
        gemini.STAND_IN = JUDGE
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)
        self.gemini.set_scenario("off_task")
        self.web = Web()
        self.addCleanup(self.web.close)
        self.launch(binds=self.gemini.binds)
        self.eventually(lambda: list(self.desktop.runtime.glob("com.tarne.app/server-*.sock")),
                        "the server takes questions")
        os.environ.update(XDG_RUNTIME_DIR=str(self.desktop.runtime),
                          XDG_DATA_HOME=str(self.home / "share"))
        self.browser = browser_class()(self.folder, EXTENSION, RealBridge)
        self.addCleanup(self.browser.close)
        self.wait_for_welcome_page()

    def tearDown(self):
        super().tearDown()
        # The browser's own; what its driver wrote down; what the key store and the model were told.
        not_ours = {"profile", "chromedriver.log", "firefox.log", "keyring", "gemini"}
        for file in self.folder.rglob("*"):
            if file.is_file() and not not_ours & set(file.relative_to(self.folder).parts):
                content = file.read_bytes()
                self.assertNotIn(KEY.encode(), content, file)
                self.assertNotIn(b"game.example", content, file)
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            self.assertNotIn(KEY, arguments_of(process), process)

    def asked(self):
        """The bodies of the requests that have reached the model."""
        return [request["body"] for request in self.gemini.requests]

    def timed(self, what, act, then):
        """Prints how long it took, for the benchmarks: a test asks no busy machine for a time."""
        start = time.monotonic()
        act()
        then()
        print(f"{what}: {time.monotonic() - start:.2f} s")

    def test_whole_road(self):
        browser, web = self.browser, self.web
        game, neighbour = "http://game.example/play?id=1", "http://game.example/play?id=2"
        self.ask_background({"type": "consent", "level": "title"})
        self.visit(game)
        self.choose_duration(25)
        self.type_into("Session Goal", GOALS)

        # The press itself takes its time on the bus, so the store's own moment counts.
        self.press("Start session")
        self.wait_until_blocked(within=10)
        shown = time.time()
        ends, left = (self.store.values([key])[key] for key in ("LastUpdate", "TimeRemaining"))
        print(f"session start to block page: {shown - (ends - (25 * 60 - left)):.2f} s")
        self.assertEqual(self.text("#goals"), GOALS)
        self.assertIn("It is a game.", self.text("#reason"))
        self.assertEqual(len(self.asked()), 1)

        before = web.visits("game.example", "/play?id=1")
        browser.new_tab()
        browser.open(game)
        self.wait_until_blocked()
        self.assertEqual(web.visits("game.example", "/play?id=1"), before)

        self.gemini.set_scenario("on_task")
        browser.open(neighbour)
        self.wait_until_at(neighbour)
        self.eventually(lambda: len(self.asked()) == 2, "the neighbour is asked about on its own")
        self.assert_stays(lambda: browser.address == neighbour, "the neighbour stays")

        browser.open(game)
        self.wait_until_blocked()
        self.timed("pause to free", lambda: self.press("Pause"),
                   lambda: self.wait_until_at(game))
        self.press("Resume")
        self.wait_until_blocked()
        browser.click("#onTask")
        self.wait_until_at(game)
        self.gemini.set_scenario("off_task")
        browser.open("http://game.example/other")
        self.wait_until_blocked()
        self.assertIn("game.example/play", self.asked()[-1])
        self.assertEqual(len(self.asked()), 3)

        self.timed("kill to free", self.program.kill,
                   lambda: self.wait_until_at("http://game.example/other"))

    def test_the_end_of_a_session_frees_its_pages(self):
        self.ask_background({"type": "consent", "level": "title"})
        self.visit("http://game.example/end")
        self.start_session(GOALS, minutes=5)
        self.wait_until_blocked()
        self.clock.advance(301)
        self.eventually(lambda: self.store.values(["SessionActive"]) == {"SessionActive": 0},
                        "the store tells the end")
        self.timed("session end to free", lambda: None,
                   lambda: self.wait_until_at("http://game.example/end"))


class WithoutAKeyTest(WholeRoadTest):
    has_key = False

    def test_whole_road(self):
        self.ask_background({"type": "consent", "level": "title"})
        self.ask_background({"type": "list/add", "list": "blockList", "entries": ["game.example"]})
        self.start_session(GOALS, minutes=5)
        self.browser.open("http://game.example/")
        self.wait_until_blocked()
        before = self.web.visits("game.example")
        self.browser.open("http://game.example/again")
        self.wait_until_blocked()
        self.assertEqual(self.web.visits("game.example"), before)
        self.visit("http://other.example/")
        self.assertEqual(self.asked(), [])
        self.open_own("pages/popup.html")
        self.eventually(lambda: "no Gemini key" in self.text("#phase"), "the popup says why")

    test_the_end_of_a_session_frees_its_pages = None
