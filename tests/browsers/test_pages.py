"""The extension's own pages: what assistive tools are told, and that the keyboard is enough."""

from browser_fixture import BrowserTestCase
from stand_in_bridge import off_task

INTERACTIVE = {"button", "link", "textbox", "checkbox", "radio", "combobox", "searchbox"}


class PagesTest(BrowserTestCase):
    def assert_told_well(self, heading, buttons):
        """Walks all that assistive tools are told: every control has a name, there is one title."""
        self.assertNotEqual(self.browser.title, "")
        self.assertEqual(self.browser.run("return document.documentElement.lang.slice(0, 2)"), "en")
        controls = self.browser.run("""
            return [...document.querySelectorAll('button, input, a, select, textarea')]
              .filter((element) => element.checkVisibility())
              .map((element) => element.getAttribute('aria-label') || element.labels?.[0]?.textContent
                || element.textContent)""")
        self.assertNotIn("", controls)
        self.assertEqual(self.browser.run(
            "return [...document.querySelectorAll('h1')].map((h) => h.textContent)"), [heading])
        self.assertEqual(self.browser.run("""
            const ids = [...document.querySelectorAll('[id]')].map(({id}) => id);
            return ids.filter((id, index) => ids.indexOf(id) !== index)"""), [])
        if self.browser.name != "chromium":
            return
        tree = self.browser.accessibility_tree()
        roles = [role for role, _, _ in tree]
        self.assertIn("main", roles)
        self.assertEqual([role for role, name, _ in tree if role in INTERACTIVE and not name], [])
        names = {name for role, name, _ in tree if role == "button"}
        self.assertLessEqual(set(buttons), names)

    def focused(self):
        return self.browser.run("return document.activeElement.id")

    def tab_through(self, ids):
        for wanted in ids:
            with self.subTest(f"Tab leads to {wanted}"):
                self.browser.press(self.browser.keys.TAB)
                self.assertEqual(self.focused(), wanted)

    def test_the_block_page_is_told_well_and_worked_by_keyboard(self):
        self.start_session(lambda page: off_task())
        self.browser.open("http://keys.example/")
        self.wait_until_blocked()
        self.assert_told_well("keys.example is off task", [
            "Go back", "This is on task", "Always allow keys.example",
            "Allow for 10 minutes", "Ask again"])
        self.assertEqual(self.focused(), "back")
        self.tab_through(["onTask", "allowSite", "grant", "askAgain"])
        self.browser.run("document.querySelector('#onTask').focus()")
        self.browser.press(self.browser.keys.ENTER)
        self.wait_until_at("http://keys.example/")

    def test_the_welcome_page_is_told_well_and_worked_by_keyboard(self):
        self.settings(consent=None)
        self.open_own("pages/welcome.html")
        self.eventually(lambda: self.shown("#level-host"), "the levels are there")
        self.assert_told_well("Welcome to the TARNE companion",
                              ["Start judging pages", "Add to my block list"])
        self.assertEqual(self.browser.run("return document.querySelectorAll(':checked').length"), 0)
        self.tab_through(["level-host"])
        self.browser.press("\ue015", "\ue015")  # Down
        self.assertEqual(self.focused(), "level-title")
        self.tab_through(["start"])
        self.browser.press(self.browser.keys.ENTER)
        self.eventually(lambda: "judged from now on" in self.text("#startStatus"), "it is told")
        self.tab_through(["group-social", "group-video", "group-news"])
        self.browser.press(self.browser.keys.SPACE)
        self.tab_through(["add"])
        self.browser.press(self.browser.keys.ENTER)
        self.eventually(lambda: self.text("#addStatus") != "", "it is told")
        settings = self.ask_background({"type": "state"})["settings"]
        self.assertEqual(settings["consent"], "title")
        self.assertIn("bbc.com", settings["blockList"])
        self.assertNotIn("youtube.com", settings["blockList"])

    def test_all_that_would_be_blocked_is_shown_before(self):
        self.open_own("pages/welcome.html")
        self.eventually(lambda: self.shown("#group-video"), "the lists are there")
        self.assertIn("youtube.com", self.text("#sites-video"))

    def test_the_examples_say_what_would_leave(self):
        self.open_own("pages/welcome.html")
        self.eventually(lambda: self.shown("#level-title"), "the levels are there")
        self.assertIn("nothing", self.text("#note-host code"))
        self.assertIn("https://video.example.org/watch\nLinear algebra", self.text("#note-title code"))
        self.assertNotIn("k3J9x", self.text("#note-title code"))
        self.assertIn("/shared/*/notes", self.browser.run(
            "return document.querySelector('#note-path').textContent"))

    def test_the_options_are_told_well_and_change_the_lists(self):
        self.settings(consent="title", block=["a.example", "b.example"])
        self.open_own("pages/options.html")
        self.eventually(lambda: self.shown("#blockListField"), "the lists are there")
        self.assert_told_well("Options of the TARNE companion", [
            "Save", "Stop judging pages", "Remove a.example", "Remove b.example", "Add",
            "Forget them all"])
        self.browser.type("#blockListField", "https://www.C.example/forum/\ue007")
        self.eventually(lambda: "c.example/forum" in self.text("[data-list=blockList] ul"),
                        "it is added")
        self.browser.type("#blockListField", "no site\ue007")
        self.eventually(lambda: "no site" in self.text("[data-list=blockList] [role=status]"),
                        "refused")
        self.browser.run("document.querySelector('[aria-label=\"Remove a.example\"]').focus()")
        self.browser.press(self.browser.keys.ENTER)
        self.eventually(lambda: "a.example" not in self.text("[data-list=blockList] ul"), "it is gone")
        self.assertEqual(self.browser.run("return document.activeElement.getAttribute('aria-label')"),
                         "Remove b.example")

    def test_stopping_in_the_options_ends_all_questions(self):
        self.open_own("pages/options.html")
        self.eventually(lambda: self.shown("#stop"), "the options are there")
        self.browser.click("#stop")
        self.eventually(lambda: self.shown("#consent"), "it is told")
        self.start_session()
        before = len(self.bridge.questions)
        self.visit("http://stopped.example/")
        self.assert_stays(lambda: len(self.bridge.questions) == before, "nothing is asked")

    def test_the_popup_is_told_well(self):
        self.start_session(goals="Write the report")
        self.open_own("pages/popup.html")
        self.eventually(lambda: self.shown("#session"), "the session is shown")
        self.assert_told_well("TARNE companion", ["Off for this session", "Options"])
        self.assertEqual(self.text("#goals"), "Write the report")
        self.assertEqual(self.text("#time"), "25 min")

    def test_the_popup_asks_about_its_page_at_once_though_it_is_known(self):
        self.start_session()
        self.visit("http://again.example/")
        self.wait_until_asked("http://again.example")
        self.bridge.judge = lambda page: off_task()
        page = self.browser.tab
        self.browser.new_tab()
        self.open_own("pages/popup.html")
        self.browser.run_asynchronously("""(async () => {
            const api = globalThis.browser ?? chrome;
            const [tab] = await api.tabs.query({url: 'http://again.example/*'});
            return api.runtime.sendMessage({type: 'judge', tabId: tab.id}); })()""")
        self.wait_until_asked("http://again.example", times=2)
        self.assertTrue(self.bridge.questions[-1].get("fresh"))
        self.browser.show(page)
        self.wait_until_blocked()

    def test_where_motion_is_unwelcome_nothing_moves(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser takes such a wish over the wire.")
        self.start_session(lambda page: off_task())
        self.browser.open("http://still.example/")
        self.wait_until_blocked()
        moving = """return [...document.querySelectorAll('*')].map((element) => {
            const {transitionDuration, animationName} = getComputedStyle(element);
            return `${transitionDuration} ${animationName}`;
            }).filter((motion) => motion !== '0s none').length"""
        self.assertGreater(self.browser.run(moving), 0)
        self.addCleanup(self.browser.emulate)
        self.browser.emulate(prefers_reduced_motion="reduce")
        self.assertEqual(self.browser.run(moving), 0)

    def test_the_cover_is_a_dialog_with_a_name(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser tells its tree over the wire.")
        self.web.put("dialog.example", "/", "<textarea id='field'></textarea>")
        self.visit("http://dialog.example/")
        self.browser.type("#field", "text")
        self.start_session(lambda page: off_task())
        self.eventually(lambda: self.is_covered, "the page is covered")
        tree = self.browser.accessibility_tree()
        self.assertIn(("dialog", "This page is off task"), [(role, name) for role, name, _ in tree])
        buttons = [name for role, name, _ in tree if role == "button"]
        self.assertEqual(buttons, ["Leave the page", "This is on task"])

    def test_the_cover_of_a_listed_site_cannot_be_taken_back_page_by_page(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser tells its tree over the wire.")
        self.settings(consent="title", block=["listcover.example"])
        self.web.put("listcover.example", "/", "<textarea id='field'></textarea>")
        self.visit("http://listcover.example/")
        self.browser.type("#field", "text")
        self.start_session()
        self.eventually(lambda: self.is_covered, "the page is covered")
        tree = [(role, name) for role, name, _ in self.browser.accessibility_tree()]
        self.assertIn(("dialog", "listcover.example is on your block list"), tree)
        self.assertEqual([name for role, name in tree if role == "button"], ["Leave the page"])

    def test_the_strip_is_a_region_with_a_name(self):
        if self.browser.name != "chromium":
            self.skipTest("Only this browser tells its tree over the wire.")
        self.start_session(lambda page: off_task(confidence=0.6))
        self.visit("http://region.example/")
        self.eventually(lambda: self.has_strip, "the strip is shown")
        tree = [(role, name) for role, name, _ in self.browser.accessibility_tree()]
        self.assertIn(("region", "TARNE companion"), tree)
        self.assertIn(("button", "Yes, it is"), tree)
        self.assertIn(("status", ""), [(role, "") for role, _ in tree])
