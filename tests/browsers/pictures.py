"""Draws the extension's pages for docs/shots, as Chromium shows them.

    browser_box.py BUILD docs/shots chromium pictures
"""

from browser_fixture import ARTIFACTS, BrowserTestCase
from stand_in_bridge import off_task, on_task

GOALS = "Write the report, Read chapter 4"
REASON = "A page about chess openings; the goals name a report and a chapter."
ARTICLE = "<main style='max-width:40rem;margin:3rem auto;font:18px/1.6 serif'>" \
          "<h1>Forty chess openings</h1>" + "<p>The queen's pawn goes first, and what follows is " \
          "known by heart to those who play it every evening.</p>" * 6 + "{more}</main>"
# A popup has no tab of its own; here it is a page, and the tab it is about is another one.
POPUP_OF_ANOTHER_TAB = """
if (location.pathname.endsWith('popup.html')) {
  const query = chrome.tabs.query.bind(chrome.tabs);
  chrome.tabs.query = async () => (await query({})).filter(({url}) => url.includes('chess'));
}"""


class Pictures(BrowserTestCase):
    def draw(self, name, **how):
        for look, features in (("", {}), ("-dark", {"prefers_color_scheme": "dark",
                                                    "prefers_reduced_motion": "reduce"})):
            self.browser.emulate(**features)
            self.browser.picture(ARTIFACTS / f"extension-{name}{look}.png", **how)
        self.browser.emulate()

    def test_welcome(self):
        self.settings(consent=None)
        self.open_own("pages/welcome.html")
        self.eventually(lambda: self.shown("#level-host"), "the levels are there")
        self.draw("welcome", width=860)

    def test_options(self):
        self.settings(consent="title", allow=["docs.example"],
                      block=["video.example", "news.example/sport"])
        self.open_own("pages/options.html")
        self.eventually(lambda: self.shown("#blockListField"), "the lists are there")
        self.draw("options", width=860)

    def test_block(self):
        self.start_session(lambda page: off_task(reason=REASON), goals=GOALS)
        self.browser.open("http://chess.example/openings")
        self.wait_until_blocked()
        self.draw("block", width=1000, height=640)

    def test_strip(self):
        self.web.put("chess.example", "/maybe", ARTICLE.format(more=""), title="Forty chess openings")
        self.start_session(lambda page: off_task(confidence=0.6), goals=GOALS)
        self.visit("http://chess.example/maybe")
        self.eventually(lambda: self.has_strip, "the strip is shown")
        self.draw("strip", width=1000, height=480)

    def test_cover(self):
        self.web.put("chess.example", "/comment",
                     ARTICLE.format(more="<textarea id='field'></textarea>"))
        self.visit("http://chess.example/comment")
        self.browser.type("#field", "Nice")
        self.start_session(lambda page: off_task(reason="A page about chess openings."), goals=GOALS)
        self.eventually(lambda: self.is_covered, "the page is covered")
        self.draw("cover", width=1000, height=640)

    def test_popup(self):
        self.web.put("chess.example", "/popup", ARTICLE.format(more=""), title="Forty chess openings")
        self.start_session(lambda page: on_task("A break is one of the goals."), goals=GOALS)
        self.visit("http://chess.example/popup")
        self.wait_until_asked("http://chess.example")
        self.browser.new_tab()
        self.browser.before_each_page(POPUP_OF_ANOTHER_TAB)
        self.open_own("pages/popup.html")
        self.eventually(lambda: self.shown("#page"), "the page is shown")
        self.draw("popup", width=352, height=self.browser.run("return document.body.offsetHeight"))
