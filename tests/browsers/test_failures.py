"""Each way in which something outside fails, and what the user has then."""

import struct
import time

from browser_fixture import BrowserTestCase
from stand_in_bridge import framed, off_task, on_task


class FailuresTest(BrowserTestCase):
    def block(self, address):
        self.browser.open(address)
        self.wait_until_blocked()

    def badge(self):
        current = self.browser.tab
        self.browser.new_tab()
        self.open_own("pages/options.html")
        text = self.browser.run_asynchronously(
            "(globalThis.browser ?? chrome).action.getBadgeText({})")
        self.browser.close_tab(self.browser.tab)
        self.browser.show(current)
        return text

    def test_a_store_that_cannot_be_read_opens_everything(self):
        self.start_session(lambda page: off_task())
        self.block("http://store.example/")
        self.bridge.end_session("unavailable")
        self.wait_until_at("http://store.example/")
        self.assertEqual(self.badge(), "")

    def test_a_bridge_that_dies_opens_everything_at_once_and_is_found_again(self):
        self.start_session(lambda page: off_task())
        self.block("http://dies.example/")
        self.bridge.is_away = True
        start = time.monotonic()
        self.bridge.die()
        self.wait_until_at("http://dies.example/", within=2)
        print(f"bridge's death to free: {time.monotonic() - start:.2f} s")
        before = self.web.visits("dies.example")
        self.browser.new_tab()
        self.visit("http://dies.example/")
        self.assertEqual(self.web.visits("dies.example"), before + 1)
        self.bridge.is_away = False
        time.sleep(1.1)  # A bridge that ends at once is left alone for a second.
        self.browser.open("http://event.example/")
        self.eventually(lambda: self.bridge.is_connected, "the next event finds the bridge")
        self.wait_until_blocked()

    def test_a_bridge_that_comes_back_is_found_within_a_minute_without_any_event(self):
        self.start_session(lambda page: off_task())
        self.block("http://alone.example/")
        self.bridge.is_away = True
        self.bridge.die()
        self.wait_until_at("http://alone.example/", within=2)
        self.assert_stays(lambda: not self.bridge.is_connected, "the bridge is away", seconds=2)
        self.bridge.is_away = False
        self.eventually(lambda: self.bridge.is_connected, "the bridge is found", within=65)
        self.wait_until_blocked()

    def test_a_bridge_that_hangs_is_given_up_and_another_is_started(self):
        self.start_session(lambda page: off_task())
        self.block("http://hangs.example/")
        self.bridge.is_mute = True
        self.bridge.die()
        self.wait_until_at("http://hangs.example/", within=2)
        time.sleep(1.1)  # A bridge that ends at once is left alone for a second.
        self.visit("http://hung.example/")
        self.bridge.is_mute = False

        def found():
            self.browser.open("http://hung.example/")
            return self.bridge.is_connected
        self.eventually(found, "another bridge is started", within=20)

    def test_a_worker_that_was_ended_comes_back_with_what_it_knew(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser lets its worker be ended over the wire.")
        self.start_session(lambda page: off_task())
        self.block("http://worker.example/")
        self.browser.new_tab()
        self.open_own("pages/options.html")
        hellos = len(self.bridge.hellos)
        self.browser.end_workers()
        self.eventually(lambda: not self.bridge.is_connected or len(self.bridge.hellos) > hellos,
                        "the worker is gone")
        self.visit("http://127.0.0.1/")
        self.eventually(lambda: len(self.bridge.hellos) > hellos, "the worker is there again")
        self.block("http://worker.example/")
        self.assertEqual(len(self.bridge.asked_about("http://worker.example")), 1)

    def assert_blind(self, reason):
        """Pages pass, the block list holds, the reason is told once on a page and in the popup."""
        self.visit("http://blind.example/")
        self.eventually(lambda: self.has_strip, "it is told once where it hurts")
        self.visit("http://blind.example/second")
        self.assert_stays(lambda: not self.has_strip, "it is told once", seconds=0.7)
        self.browser.open("http://listed.example/")
        self.wait_until_blocked()
        self.assertEqual(self.badge(), "!")
        self.open_own("pages/popup.html")
        self.eventually(lambda: reason in self.text("#phase"), lambda: self.text("#phase"))

    def test_without_a_server_only_the_block_list_holds(self):
        self.settings(consent="title", block=["listed.example"])
        self.bridge.set_server("absent")
        self.start_session(lambda page: off_task())
        before = len(self.bridge.questions)
        self.assert_blind("not running")
        self.assertEqual(len(self.bridge.questions), before)

    def test_without_a_key_only_the_block_list_holds(self):
        self.settings(consent="title", block=["listed.example"])
        self.bridge.set_server("no_key")
        self.start_session(lambda page: off_task())
        before = len(self.bridge.questions)
        self.assert_blind("no Gemini key")
        self.assertEqual(len(self.bridge.questions), before)

    def test_answers_that_are_errors_blind_and_tell_why(self):
        for error, reason in (({"error": "quota", "retry_after": 60}, "quota"),
                              ({"error": "offline"}, "cannot be reached"),
                              ({"error": "model"}, "does not answer properly"),
                              ({"error": "no_server"}, "does not answer"),
                              ({"error": "no_key"}, "no Gemini key")):
            with self.subTest(error["error"]):
                self.settings(consent="title", block=["listed.example"])
                self.bridge.set_server("ready")
                self.start_session(lambda page, error=error: error,
                                   goals=f"Goals for {error['error']}")
                before = len(self.bridge.questions)
                self.assert_blind(reason)
                self.assertLessEqual(len(self.bridge.questions) - before, 1)

    def test_a_server_that_comes_back_is_asked_again(self):
        self.bridge.set_server("absent")
        self.start_session(lambda page: off_task())
        self.visit("http://back.example/")
        self.bridge.set_server("ready")
        self.wait_until_blocked()

    def test_the_quota_that_is_over_frees_what_was_known_until_it_returns(self):
        self.start_session(lambda page: off_task())
        self.block("http://quota.example/")
        known = self.browser.tab
        self.bridge.judge = lambda page: {"error": "quota", "retry_after": 3}
        self.browser.new_tab()
        self.visit("http://toomany.example/")
        self.wait_until_asked("http://toomany.example")
        self.bridge.judge = lambda page: on_task()
        self.browser.show(known)
        self.wait_until_at("http://quota.example/")
        self.wait_until_blocked()

    def test_a_page_that_the_model_refuses_opens_no_other_for_long(self):
        self.start_session(lambda page: {"error": "model"} if "refused" in page["origin"]
                           else off_task())
        self.visit("http://refused.example/")
        self.eventually(lambda: len(self.bridge.asked_about("http://refused.example")) == 2,
                        "it is asked about once more after a silence", within=25)
        self.browser.new_tab()
        self.block("http://unlike.example/")
        self.assertEqual(len(self.bridge.asked_about("http://refused.example")), 2)

    def test_odd_answers_are_unsure(self):
        for index, answer in enumerate((
                {"verdict": "block", "confidence": 1, "reason": ""},
                {"verdict": "off_task", "confidence": "1", "reason": ""},
                {"verdict": "off_task", "confidence": 7, "reason": ""},
                {"verdict": "off_task", "confidence": 1, "reason": {}}, {}, {"error": "unheard of"})):
            with self.subTest(answer):
                self.start_session(lambda page, answer=answer: answer)
                self.visit(f"http://odd{index}.example/")
                self.wait_until_asked(f"http://odd{index}.example")
                self.assert_stays(lambda: not self.is_blocked, "the page stays", seconds=0.5)

    def test_frames_of_a_stranger_change_nothing(self):
        self.start_session(lambda page: off_task())
        self.block("http://strange.example/")
        for frame in ({"v": 2, "type": "session", "state": "inactive"}, {"type": "session"}, [], 7,
                      {"v": 1, "type": "session", "state": "gone"},
                      {"v": 1, "type": "session", "state": "active"},
                      {"v": 1, "id": 123456, "verdict": "on_task", "confidence": 1, "reason": ""}):
            self.bridge.say(frame)
        self.assert_stays(lambda: self.is_blocked, "the page stays blocked")
        self.assertTrue(self.bridge.is_connected)

    def test_bytes_that_are_no_frame_cost_the_bridge_at_most(self):
        for name, data in (("no JSON", framed(b"{no json")),
                           ("too long", struct.pack("=I", 200_000_000) + b"x" * 1000)):
            with self.subTest(name):
                self.start_session(lambda page: off_task(), goals=f"Goals after {name}")
                self.eventually(lambda: self.bridge.is_connected, "the bridge is there")
                self.bridge.say_bytes(data)
                # Whether the browser hangs up is its own affair; a new bridge is found at any rate.
                self.bridge.die()
                time.sleep(1.1)  # A bridge that ends at once is left alone for a second.
                self.browser.open("http://again.example/")
                self.wait_until_blocked()

    def test_questions_that_nobody_answers_block_nothing(self):
        self.start_session(lambda page: None)
        self.visit("http://silent.example/")
        self.wait_until_asked("http://silent.example")
        self.visit("http://silent.example/other")
        self.assert_stays(lambda: not self.is_blocked, "the pages stay")

    def test_a_late_answer_of_another_session_is_dropped(self):
        self.start_session(lambda page: None)
        self.visit("http://late.example/")
        self.wait_until_asked("http://late.example")
        question = self.bridge.questions[-1]
        self.bridge.judge = lambda page: on_task()
        self.bridge.start_session("Other goals than before")
        self.bridge.say({"v": 1, "id": question["id"], **off_task()})
        self.assert_stays(lambda: not self.is_blocked, "the page stays")

    def test_a_moved_end_changes_the_time_and_nothing_else(self):
        self.start_session(lambda page: off_task(), goals="Goals that last")
        self.block("http://moved.example/")
        self.bridge.start_session("Goals that last", seconds=600,
                                  identity=self.bridge._session["id"])
        self.eventually(lambda: "10 min" in self.text("#time"), "the block page shows the new time")
        self.assertEqual(len(self.bridge.asked_about("http://moved.example")), 1)

    def test_the_badge_counts_minutes(self):
        self.bridge.start_session("Goals with minutes", seconds=23 * 60 - 10)
        self.eventually(lambda: self.badge() == "23", "the badge shows minutes")
        self.bridge.pause()
        self.eventually(lambda: self.badge() == "", "and nothing in a pause")


class NoBridgeTest(BrowserTestCase):
    has_bridge = False

    def test_without_a_bridge_everything_passes_and_the_options_say_why(self):
        self.settings(consent="title", block=["listed.example"])
        self.visit("http://listed.example/")
        self.assert_stays(lambda: not self.is_blocked, "the page stays")
        self.open_own("pages/options.html")
        self.eventually(lambda: self.shown("#offline"), "the options say why")
        self.assertIn("flatpak permission-set webextensions com.tarne.bridge", self.text("#offline"))
