"""The main road, in one story: consent, a session, a page off task, and all that the user can say."""

import time

from browser_fixture import BrowserTestCase
from stand_in_bridge import off_task, on_task


def no_games(page):
    return off_task() if "game" in page["origin"] else on_task()


class MainRoadTest(BrowserTestCase):
    def setUp(self):
        self.wait_for_welcome_page()
        super().setUp()

    def set_up_settings(self):
        pass

    def test_main_road(self):
        browser, bridge, web = self.browser, self.bridge, self.web
        game, neighbour = "http://game.example/play?id=1", "http://game.example/play?id=2"

        with self.subTest("before consent nothing is asked"):
            bridge.start_session("Write the report")
            bridge.judge = no_games
            browser.open("http://early.example/")
            self.eventually(lambda: web.visits("early.example"), "the page has come")
            self.assert_stays(lambda: bridge.questions == [], "nothing is asked")
            bridge.end_session()

        with self.subTest("consent needs a choice and a press"):
            self.open_own("pages/welcome.html")
            self.assertEqual(browser.run("return document.querySelectorAll(':checked').length"), 0)
            browser.click("#start")
            self.eventually(lambda: self.text("#startStatus") != "", "a choice is asked for")
            browser.click("#level-title")
            browser.click("#start")
            self.eventually(lambda: "judged from now on" in self.text("#startStatus"), "it is told")

        with self.subTest("a session's start blocks the visible page"):
            browser.open(game)
            self.wait_until_at(game)
            self.eventually(lambda: browser.title == "/play?id=1", "the page is there")
            start = time.monotonic()
            bridge.start_session("Write the report")
            self.wait_until_blocked()
            print(f"session start to block page: {time.monotonic() - start:.2f} s")
            self.assertEqual(self.text("#goals"), "Write the report")
            self.assertIn("It is a game.", self.text("#reason"))
            self.assertIn("25 min", self.text("#time"))

        with self.subTest("what left is what was consented to"):
            self.assertEqual(bridge.asked_about("http://game.example"), [
                {"origin": "http://game.example", "path": "/play", "title": "/play?id=1",
                 "description": ""}])

        with self.subTest("the second visit sends no request and asks nothing"):
            before = web.visits("game.example", "/play?id=1")
            browser.new_tab()
            start = time.monotonic()
            browser.open(game)
            self.wait_until_blocked()
            print(f"known page to block page: {time.monotonic() - start:.2f} s")
            self.assertEqual(web.visits("game.example", "/play?id=1"), before)
            self.assertEqual(len(bridge.asked_about("http://game.example")), 1)

        with self.subTest("its neighbour with another query is asked about on its own"):
            bridge.judge = lambda page: on_task() if "id=2" in page["title"] else no_games(page)
            browser.open(neighbour)
            self.wait_until_asked("http://game.example", times=2)
            self.wait_until_at(neighbour)
            self.assert_stays(lambda: browser.address == neighbour, "the neighbour stays")

        with self.subTest("pause frees the page, resume blocks it again"):
            browser.open(game)
            self.wait_until_blocked()
            bridge.pause()
            self.wait_until_at(game)
            bridge.resume()
            self.wait_until_blocked()

        with self.subTest("this is on task lets it through and is told to the bridge"):
            browser.click("#onTask")
            self.wait_until_at(game)
            self.eventually(lambda: bridge.overrides, "the override is told")
            self.assertEqual(bridge.overrides[0]["page"]["title"], "/play?id=1")
            browser.open("http://game.example/other")
            self.wait_until_blocked()

        with self.subTest("allow for ten minutes opens the site in every tab, after a breath"):
            browser.click("#grant")
            start = time.monotonic()
            self.assert_stays(lambda: self.is_blocked, "it takes a breath", seconds=4)
            self.wait_until_at("http://game.example/other")
            self.assertGreater(time.monotonic() - start, 4.5)
            browser.new_tab("http://game.example/third")
            self.wait_until_at("http://game.example/third")
            self.assert_stays(lambda: not self.is_blocked, "another tab is free as well")

        with self.subTest("the session's end frees a blocked page"):
            bridge.judge = lambda page: off_task()
            browser.open("http://last.example/")
            self.wait_until_blocked()
            start = time.monotonic()
            bridge.end_session()
            self.wait_until_at("http://last.example/")
            print(f"session end to free: {time.monotonic() - start:.2f} s")
            before = len(bridge.questions)
            browser.open("http://after.example/")
            self.wait_until_at("http://after.example/")
            self.assert_stays(lambda: len(bridge.questions) == before, "nothing is asked any more")
