"""What happens to a page that is off task, and what the user can do about it."""

from browser_fixture import BrowserTestCase
from stand_in_bridge import off_task, on_task

FORM = "<form method='{method}' action='/result'><input id='field' name='a' value=''>" \
       "<button id='send'>Send</button></form><div id='note' contenteditable></div>"


class BlockingTest(BrowserTestCase):
    def off_task_but(self, *hosts):
        return lambda page: on_task() if any(host in page["origin"] for host in hosts) else off_task()

    def block(self, address):
        """Makes an address known as off task."""
        self.browser.open(address)
        self.wait_until_blocked()

    # -- rules ------------------------------------------------------------------------------------

    def test_a_rule_stops_its_address_alone(self):
        self.start_session(lambda page: off_task() if page["path"] == "/watch" else on_task())
        self.block("http://rule.example/watch")
        for address in ("http://rule.example/watching", "http://rule.example/WATCH",
                        "http://rule.example/watch?v=2", "http://rule.example/watch/"):
            with self.subTest(address):
                if "?" in address:
                    self.bridge.judge = lambda page: on_task()
                self.browser.open(address)
                self.wait_until_at(address)
                self.assert_stays(lambda: self.browser.address == address, "it stays", seconds=0.5)

    def test_a_known_address_with_a_fragment_sends_no_request(self):
        self.start_session(lambda page: off_task())
        self.block("http://fragment.example/a")
        before = self.web.visits("fragment.example")
        self.browser.new_tab()
        self.block("http://fragment.example/a#part")
        self.assertEqual(self.web.visits("fragment.example"), before)

    def test_an_address_that_no_rule_can_name_is_blocked_when_it_has_come(self):
        self.start_session(lambda page: off_task())
        for index, path in enumerate(("/a*b", "/a|b", "/a^b")):
            with self.subTest(path):
                self.block(f"http://odd{index}.example{path}")
                self.browser.new_tab()
                self.block(f"http://odd{index}.example{path}")

    # -- input that must not be lost ----------------------------------------------------------------

    def cover(self, host, prepare):
        """A visible page that becomes off task after `prepare` has run in it."""
        self.web.put(host, "/", FORM.format(method="post"))
        self.visit(f"http://{host}/")
        prepare()
        self.start_session(lambda page: off_task())
        self.eventually(lambda: self.is_covered, "the page is covered")
        self.assertEqual(self.browser.address.partition("?")[0], f"http://{host}/")

    def test_a_half_filled_form_is_covered_and_never_left(self):
        self.cover("half.example", lambda: self.browser.type("#field", "half"))
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")
        self.assert_stays(lambda: not self.is_blocked, "the page stays")

    def test_input_that_the_page_takes_for_its_default_is_covered_too(self):
        """As libraries do it that hold what a field shows."""
        for name, tag in (("input", "<input {}>"), ("textarea", "<textarea {}></textarea>")):
            for keys in ((), (self.browser.keys.TAB,)):
                with self.subTest(name, keys=keys):
                    host = f"controlled-{name}-{len(keys)}.example"
                    field = tag.format("id='field' oninput='this.defaultValue = this.value'")
                    self.web.put(host, "/", field + "<button>Send</button>")
                    self.visit(f"http://{host}/")
                    self.browser.type("#field", "half")
                    self.browser.press(*keys)
                    self.start_session(lambda page: off_task(), goals=f"Goals for {host}")
                    self.eventually(lambda: self.is_covered, "the page is covered")
                    self.assertEqual(self.browser.address, f"http://{host}/")
                    self.bridge.end_session()
                    self.eventually(lambda: not self.is_covered, "it is free")

    def test_edited_text_is_covered(self):
        self.cover("note.example", lambda: self.browser.type("#note", "a letter"))

    def test_a_half_filled_form_stays_where_a_stopped_page_has_not_taken_its_place(self):
        self.web.put("writing.example", "/", FORM.format(method="post"))
        self.start_session(self.off_task_but("writing"))
        self.block("http://stopper.example/")
        self.browser.new_tab()
        self.visit("http://writing.example/")
        self.browser.type("#field", "half")
        self.browser.run("location.href = 'http://stopper.example/'")
        if self.browser.name == "chromium":
            # This browser has left the form itself before a rule is asked.
            self.wait_until_blocked()
            return
        self.eventually(lambda: self.has_strip, "it is told")
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")

    def test_an_untouched_form_is_left(self):
        self.web.put("untouched.example", "/", FORM.format(method="post"))
        self.start_session(lambda page: off_task())
        self.block("http://untouched.example/")

    def test_a_filled_form_that_nobody_has_touched_is_left(self):
        self.web.put("filled.example", "/", "<input value='given'><textarea>given</textarea>")
        self.start_session(lambda page: off_task())
        self.block("http://filled.example/")

    def test_the_answer_to_a_posted_form_is_covered(self):
        self.web.put("posted.example", "/", FORM.format(method="post"))
        self.start_session(lambda page: off_task() if page["path"] == "/result" else on_task())
        self.visit("http://posted.example/")
        self.browser.type("#field", "order")
        self.browser.click("#send")
        self.wait_until_at("http://posted.example/result")
        self.eventually(lambda: self.is_covered, "the answer is covered")

    def test_a_form_that_is_posted_to_a_known_page_arrives_and_its_answer_is_covered(self):
        self.web.put("known.example", "/", FORM.format(method="post"))
        self.start_session(lambda page: off_task() if page["path"] == "/result" else on_task())
        self.block("http://known.example/result")
        self.browser.new_tab()
        self.visit("http://known.example/")
        self.browser.type("#field", "order")
        self.browser.click("#send")
        self.wait_until_at("http://known.example/result")
        self.eventually(lambda: self.is_covered, "the answer is covered")
        self.assertIn(("POST", "known.example", "/result"), self.web.requests)

    def test_a_covered_tab_is_muted_until_it_is_free(self):
        self.cover("muted.example", lambda: self.browser.type("#field", "half"))
        covered = self.browser.tab
        self.browser.new_tab()
        self.eventually(lambda: self.tab_state("http://muted.example/")["mutedInfo"]["muted"], "muted")
        self.bridge.pause()
        self.browser.show(covered)
        self.eventually(lambda: not self.is_covered, "it is free")
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")
        self.browser.new_tab()
        self.eventually(lambda: not self.tab_state("http://muted.example/")["mutedInfo"]["muted"],
                        "no longer muted")

    def test_a_cover_that_comes_back_from_the_history_goes_where_its_session_is_over(self):
        self.cover("again.example", lambda: self.browser.type("#field", "half"))
        self.bridge.judge = lambda page: on_task()
        self.browser.run("window.isSameDocument = true")
        self.browser.run("location.href = 'http://meanwhile.example/'")
        self.wait_until_at("http://meanwhile.example/")
        self.wait_until_asked("http://meanwhile.example")
        self.bridge.end_session()
        # Behind the script's end: a driver runs one again whose page goes while it runs.
        self.browser.run("setTimeout(() => history.back())")
        self.wait_until_at("http://again.example/")
        self.eventually(lambda: not self.is_covered, "it is free")
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")
        # The other browser loads the page anew, with what was typed.
        if self.browser.name == "firefox":
            self.assertTrue(self.browser.run("return window.isSameDocument"), "the page was kept")

    def test_a_cover_goes_with_its_session_when_the_worker_was_ended_meanwhile(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser lets its worker be ended over the wire.")
        self.cover("outlived.example", lambda: self.browser.type("#field", "half"))
        covered = self.browser.tab
        self.browser.new_tab()
        self.assertTrue(self.tab_state("http://outlived.example/")["mutedInfo"]["muted"])
        hellos = len(self.bridge.hellos)
        self.browser.end_workers()
        self.bridge.end_session()
        self.browser.show(covered)
        self.eventually(lambda: len(self.bridge.hellos) > hellos, "the worker is there again")
        self.eventually(lambda: not self.is_covered, "it is free")
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")
        self.browser.new_tab()
        self.eventually(lambda: not self.tab_state("http://outlived.example/")["mutedInfo"]["muted"],
                        "no longer muted")

    def test_escape_does_not_take_the_cover_away(self):
        self.cover("escape.example", lambda: self.browser.type("#field", "half"))
        keys = self.browser.keys
        self.browser.press(keys.ESCAPE, keys.ESCAPE, keys.ESCAPE)
        self.assert_stays(lambda: self.is_covered, "the cover stays", seconds=0.5)

    def test_the_cover_can_be_left_by_keyboard(self):
        self.cover("leave.example", lambda: self.browser.type("#field", "half"))
        self.browser.press(self.browser.keys.ENTER)
        self.wait_until_blocked()

    def test_the_covered_page_can_be_called_on_task_by_keyboard(self):
        self.cover("mine.example", lambda: self.browser.type("#field", "half"))
        self.browser.press(self.browser.keys.TAB, self.browser.keys.ENTER)
        self.eventually(lambda: not self.is_covered, "it is free")
        self.assertEqual(self.browser.run("return document.querySelector('#field').value"), "half")
        self.assertEqual(self.bridge.overrides[-1]["page"]["origin"], "http://mine.example")

    # -- doubt -------------------------------------------------------------------------------------

    def doubt(self, host):
        self.start_session(lambda page: off_task(confidence=0.6))
        self.visit(f"http://{host}/")
        self.eventually(lambda: self.has_strip, "the strip is shown")

    def test_a_doubtful_page_is_asked_about_on_the_page(self):
        self.doubt("doubt.example")
        self.browser.press(self.browser.keys.TAB, self.browser.keys.ENTER)
        self.eventually(lambda: not self.has_strip, "the strip is gone")
        self.eventually(lambda: any(override["page"]["origin"] == "http://doubt.example"
                                    for override in self.bridge.overrides), "it is told")

    def test_no_to_the_strip_blocks_the_page(self):
        self.doubt("refused.example")
        keys = self.browser.keys
        self.browser.press(keys.TAB, keys.TAB, keys.ENTER)
        self.wait_until_blocked()

    def test_the_strip_goes_with_the_session(self):
        self.doubt("gone.example")
        self.bridge.end_session()
        self.eventually(lambda: not self.has_strip, "the strip is gone")

    def test_a_page_cannot_press_the_strip(self):
        self.doubt("presser.example")
        self.browser.run("""
            const host = document.documentElement.firstElementChild;
            host.click();
            host.dispatchEvent(new KeyboardEvent('keydown', {key: 'Enter', bubbles: true}));
            host.shadowRoot?.querySelector('button')?.click();""")
        self.assert_stays(lambda: self.has_strip, "the strip stays", seconds=0.5)
        self.assertTrue(self.browser.run(
            "return document.documentElement.firstElementChild.shadowRoot === null"))

    # -- the block page's buttons ------------------------------------------------------------------

    def test_go_back_returns_to_the_page_before(self):
        self.start_session(self.off_task_but("before"))
        self.visit("http://before.example/")
        self.wait_until_asked("http://before.example")
        self.browser.run("location.href = 'http://wrong.example/'")
        self.wait_until_blocked()
        self.browser.click("#back")
        self.wait_until_at("http://before.example/")

    def test_go_back_from_a_page_that_a_rule_has_stopped_returns_too(self):
        self.start_session(self.off_task_but("origin"))
        self.block("http://stopped.example/")
        self.browser.new_tab()
        self.visit("http://origin.example/")
        self.browser.run("location.href = 'http://stopped.example/'")
        self.wait_until_blocked()
        self.browser.click("#back")
        self.wait_until_at("http://origin.example/")

    def test_go_back_without_a_history_opens_a_new_tab(self):
        self.start_session(self.off_task_but("opener"))
        self.visit("http://opener.example/")
        first = self.browser.tab
        self.browser.run("window.open('http://alone.example/', '_blank', 'noopener')")
        self.eventually(lambda: len(self.browser.tabs) == 2, "there are two tabs")
        second = next(tab for tab in self.browser.tabs if tab != first)
        self.browser.show(second)
        self.wait_until_blocked()
        self.browser.click("#back")
        self.eventually(lambda: second not in self.browser.tabs and len(self.browser.tabs) == 2,
                        "a new tab has taken its place")

    def test_each_block_page_of_a_history_stands_for_its_own_page(self):
        self.start_session(self.off_task_but("aside"))
        self.block("http://one.example/")
        self.visit("http://aside.example/")
        self.browser.run("location.href = 'http://two.example/'")
        self.wait_until_blocked()
        self.assertIn("two.example", self.text("#heading"))
        self.browser.click("#back")
        self.wait_until_at("http://aside.example/")
        self.browser.run("setTimeout(() => history.back())")
        self.wait_until_blocked()
        self.eventually(lambda: "one.example" in self.text("#heading"), "it stands for the first page")
        self.browser.click("#onTask")
        self.wait_until_at("http://one.example/")

    def test_a_block_page_from_which_another_blocked_page_is_opened_stands_for_that(self):
        self.start_session(lambda page: off_task())
        self.block("http://later.example/")
        self.block("http://sooner.example/")
        self.assertIn("sooner.example", self.text("#heading"))
        self.browser.open("http://later.example/")
        self.wait_until_blocked()
        self.eventually(lambda: "later.example" in self.text("#heading"), "it stands for that page")

    def test_always_allow_frees_the_site(self):
        self.start_session(lambda page: off_task())
        self.block("http://allowed.example/a")
        self.browser.click("#allowSite")
        self.wait_until_at("http://allowed.example/a")
        self.visit("http://allowed.example/b")
        self.assert_stays(lambda: self.bridge.asked_about("http://allowed.example", path="/b") == [],
                          "it is not asked about any more")

    def test_the_second_override_of_a_site_is_offered_the_whole_site_first(self):
        self.start_session(lambda page: off_task())
        self.block("http://twice.example/a")
        order = "return [...document.querySelectorAll('#buttons button')].map(({id}) => id)"
        self.assertEqual(self.browser.run(order)[1], "onTask")
        self.browser.click("#onTask")
        self.wait_until_at("http://twice.example/a")
        self.block("http://twice.example/b")
        self.assertEqual(self.browser.run(order)[1], "allowSite")

    def test_ask_again_asks_for_a_fresh_answer(self):
        self.start_session(lambda page: off_task())
        self.block("http://fresh.example/")
        self.bridge.judge = lambda page: on_task()
        self.browser.click("#askAgain")
        self.wait_until_at("http://fresh.example/")
        self.wait_until_asked("http://fresh.example", times=2)
        last = [question for question in self.bridge.questions
                if question["page"]["origin"] == "http://fresh.example"][-1]
        self.assertIs(last["fresh"], True)

    def test_the_breath_can_be_cancelled(self):
        self.start_session(lambda page: off_task())
        self.block("http://breath.example/")
        self.browser.click("#grant")
        self.eventually(lambda: "Cancel" in self.text("#grant"), "it counts")
        self.browser.click("#grant")
        self.assert_stays(lambda: self.is_blocked, "it stays closed", seconds=6)

    def test_a_hidden_block_page_returns_when_it_is_shown(self):
        self.start_session(self.off_task_but("front"))
        self.block("http://behind.example/")
        behind = self.browser.tab
        self.browser.new_tab()
        self.visit("http://front.example/")
        before = self.web.visits("behind.example")
        self.bridge.end_session()
        self.assert_stays(lambda: self.web.visits("behind.example") == before, "nobody sees it")
        self.browser.show(behind)
        self.wait_until_at("http://behind.example/")

    # -- the user's lists --------------------------------------------------------------------------

    def test_the_block_list_needs_no_server(self):
        self.settings(consent=None, block=["listed.example", "partly.example/forum"])
        self.bridge.set_server("absent")
        self.start_session()
        self.browser.open("http://listed.example/first")
        self.wait_until_blocked()
        self.browser.open("http://www.listed.example/any")
        self.wait_until_blocked()
        self.assertEqual(self.web.visits("www.listed.example"), 0)
        self.assertIn("block list", self.text("#heading"))
        self.assertFalse(self.shown("#onTask"))
        self.browser.open("http://partly.example/forum/thread")
        self.wait_until_blocked()
        self.assertEqual(self.web.visits("partly.example"), 0)
        self.visit("http://partly.example/forums")
        self.visit("http://notlisted.example/")
        self.bridge.end_session()
        self.open_own("pages/options.html")
        self.eventually(lambda: "No session" in self.text("#phase"), "the end is known")
        self.visit("http://listed.example/")

    def test_an_entry_that_is_too_long_for_a_rule_takes_no_other_rule_away(self):
        path = "/" + "/".join(["a-part-of-a-long-path"] * 40)
        entries = [f"long.example{path}", "short.example", "some.example/part"]
        self.settings(consent=None, block=entries)
        self.start_session()
        self.block(f"http://long.example{path}")
        for address in ("http://short.example/", "http://some.example/part/a"):
            self.browser.new_tab()
            self.block(address)
        self.assertEqual(self.web.visits("short.example") + self.web.visits("some.example"), 0)

    def test_the_allow_list_comes_first(self):
        self.settings(consent="title", allow=["docs.both.example"], block=["both.example"])
        self.start_session(lambda page: off_task())
        self.visit("http://docs.both.example/")
        self.browser.open("http://both.example/")
        self.wait_until_blocked()

    def test_an_allowed_part_of_a_blocked_site_is_open(self):
        self.settings(consent="title", allow=["part.example/work"], block=["part.example"])
        self.start_session(lambda page: off_task())
        self.visit("http://part.example/work/a")
        self.browser.open("http://part.example/play")
        self.wait_until_blocked()

    def test_off_for_this_session_opens_everything_until_the_next(self):
        self.settings(consent="title", block=["offlist.example"])
        self.start_session(lambda page: off_task())
        self.block("http://offlist.example/")
        blocked = self.browser.tab
        self.browser.new_tab()
        self.open_own("pages/popup.html")
        self.eventually(lambda: self.shown("#off"), "the popup offers it")
        self.browser.click("#off")
        self.eventually(lambda: "Off for this session" in self.text("#phase"), "it is off")
        self.browser.show(blocked)
        self.wait_until_at("http://offlist.example/")
        self.bridge.start_session("The next goals")
        self.wait_until_blocked()
