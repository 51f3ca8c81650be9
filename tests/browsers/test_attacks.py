"""Pages that want to know, to press, or to get away."""

import contextlib
import http.server
import json
import os
import pathlib
import socket
import subprocess
import tempfile
import threading
import time

from browser_fixture import BrowserTestCase
from stand_in_bridge import off_task, on_task

MARKUP = "<img src=x onerror=\"document.title='run'\"><script>document.title='run'</script>"

SERVER = pathlib.Path(os.environ["TARNE_PROGRAM"]).parents[1] / "lib" / "tarne" / "tarne-server"
PORT = 3000
QUESTION = {"v": 1, "id": 1, "op": "classify", "goals": "Write",
            "page": {"origin": "https://spied.example", "path": "/"}}
# What a script of a page can learn by each way to send something to an address.
TRIALS = """(async () => {
    const [addresses, body, ways] = arguments;
    const learnt = [];
    for (const address of addresses) {
      for (const path of ['/', '/health', '/classify', '/goals', '/state', '/server-3000.sock']) {
        for (const way of ways) {
          const sent = way.method === 'POST' ? {body} : {};
          learnt.push(await fetch(address + path, {...way, ...sent}).then(
            async (got) => `${path} ${got.type} ${got.status} ${await got.text()}`,
            () => `${path} refused`));
        }
      }
    }
    return learnt; })()"""


class AttacksTest(BrowserTestCase):
    def test_no_page_can_frame_or_fetch_the_block_page(self):
        self.visit("http://framer.example/")
        for page in ("pages/block.html", "pages/popup.html", "pages/options.html", "shared/address.js",
                     "icons/companion-32.png"):
            with self.subTest(page):
                address = self.browser.own_address + page
                self.assertEqual(self.browser.run_asynchronously(
                    "fetch(arguments[0]).then(() => 'read', () => 'refused')", address), "refused")
                self.assertEqual(self.browser.run_asynchronously(
                    "new Promise((done) => { const image = new Image();"
                    "image.onload = () => done('shown'); image.onerror = () => done('refused');"
                    "image.src = arguments[0]; })", address), "refused")
        self.browser.run("const frame = document.createElement('iframe'); frame.src = arguments[0];"
                         "document.body.append(frame)",
                         self.browser.own_address + "pages/block.html")
        self.assert_stays(lambda: self.browser.run(
            "try { return frames[0].document.body.children.length === 0 }"
            "catch { return true }"), "nothing of the page is in the frame")

    def test_no_page_can_go_to_a_page_of_the_extension(self):
        self.visit("http://goer.example/")
        self.browser.run("try { location.href = arguments[0] } catch { /* refused at once */ }",
                         self.browser.own_address + "pages/options.html")
        self.assert_stays(lambda: not self.browser.address.startswith(
            self.browser.own_address + "pages/options"), "it does not get there")

    def test_no_page_can_speak_to_the_background(self):
        self.visit("http://speaker.example/")
        self.assertTrue(self.browser.run(
            "return typeof chrome === 'undefined' || chrome.runtime === undefined"
            " || chrome.runtime.sendMessage === undefined"))
        self.browser.run("for (const type of ['page/onTask', 'block/grant', 'consent', 'off'])"
                         "{ postMessage({type}, '*'); dispatchEvent(new CustomEvent(type)); }")

    def test_words_of_strangers_are_shown_as_text(self):
        self.start_session(lambda page: off_task(reason=MARKUP), goals=f"Goals {MARKUP}")
        self.browser.open("http://markup.example/")
        self.wait_until_blocked()
        self.assertIn("<img src=x", self.text("#reason"))
        self.assertIn("<script>", self.text("#goals"))
        self.assertEqual(self.browser.run(
            "return document.querySelectorAll('img, main script').length"), 0)
        self.assertNotEqual(self.browser.title, "run")

    def test_words_of_strangers_are_shown_as_text_on_a_covered_page(self):
        self.web.put("covered.example", "/", "<textarea id='field'></textarea>", title="Covered")
        self.visit("http://covered.example/")
        self.browser.type("#field", "text")
        self.start_session(lambda page: off_task(reason=MARKUP), goals=f"Covered {MARKUP}")
        self.eventually(lambda: self.is_covered, "the page is covered")
        self.assertEqual(self.browser.title, "Covered")

    def test_a_page_cannot_reach_into_its_cover(self):
        self.web.put("climber.example", "/", "<textarea id='field'></textarea>")
        self.visit("http://climber.example/")
        self.browser.type("#field", "text")
        self.start_session(lambda page: off_task())
        self.eventually(lambda: self.is_covered, "the page is covered")
        self.assertTrue(self.browser.run("""
            const host = document.elementFromPoint(innerWidth / 2, innerHeight / 2);
            return host.shadowRoot === null && globalThis.tarneCompanionCover === undefined"""))
        before = len(self.bridge.overrides)
        self.browser.run("document.elementFromPoint(innerWidth / 2, innerHeight / 2).click()")
        self.assert_stays(lambda: self.is_covered and len(self.bridge.overrides) == before,
                          "nothing is pressed", seconds=0.5)

    def test_a_page_that_changes_its_address_all_the_time_is_asked_about_and_stops_nothing(self):
        self.start_session(lambda page: off_task() if page["path"] == "/end" else on_task())
        self.web.put("changer.example", "/", """<script>
            let n = 0;
            const timer = setInterval(() => history.replaceState({}, '', '/at' + n++), 20);
            addEventListener('stop', () => clearInterval(timer));</script>""")
        self.browser.open("http://changer.example/")
        self.eventually(lambda: len(self.browser.address) > len("http://changer.example/at50"),
                        "it changes its address")
        asked = len(self.bridge.asked_about("http://changer.example"))
        self.assertLess(asked, 10)
        self.browser.run("window.dispatchEvent(new Event('stop'));"
                         "history.replaceState({}, '', '/end'); document.title = 'End'")
        self.wait_until_blocked()

    def test_a_page_that_names_the_host_of_another_is_asked_about_as_itself(self):
        self.start_session()
        self.web.put("liar.example", "/", "<base href='http://truth.example/'>"
                     "<link rel='canonical' href='http://truth.example/'>")
        self.visit("http://liar.example/")
        self.wait_until_asked("http://liar.example")
        self.assertEqual(self.bridge.asked_about("http://truth.example"), [])

    def test_fifty_tabs_at_once_are_all_kept_from_a_known_page(self):
        self.start_session(lambda page: off_task() if "known" in page["origin"] else on_task())
        self.browser.open("http://known.example/")
        self.wait_until_blocked()
        before = self.web.visits("known.example")
        self.browser.new_tab()
        self.open_own("pages/options.html")
        start = time.monotonic()
        count = self.browser.run_asynchronously("""(async () => {
            const api = globalThis.browser ?? chrome;
            const block = api.runtime.getURL('pages/block.html');
            const made = await Promise.all(Array.from({length: 50}, () =>
              api.tabs.create({url: 'http://known.example/', active: false})));
            for (let round = 0; round < 150; round += 1) {
              const tabs = await api.tabs.query({url: block});
              if (tabs.length === 51) break;
              await new Promise((done) => setTimeout(done, 100));
            }
            const tabs = await api.tabs.query({url: block});
            await api.tabs.remove(made.map(({id}) => id));
            return tabs.length; })()""")
        print(f"50 tabs to the block page: {time.monotonic() - start:.2f} s")
        self.assertEqual(count, 51)
        self.assertEqual(self.web.visits("known.example"), before)

    def test_the_browser_takes_as_many_rules_as_there_ever_are(self):
        self.open_own("pages/options.html")
        count = self.browser.run_asynchronously("""(async () => {
            const api = (globalThis.browser ?? chrome).declarativeNetRequest;
            const {rulesFor, ruleLimit} = await import('/shared/rules.js');
            const addresses = Array.from({length: 5000}, (_, n) => `https://many.example/?v=${n}`);
            const blockList = Array.from({length: 400}, (_, n) => `site${n}.example/part${n}`);
            const addRules = rulesFor({addresses, blockList, passingSites: ['free.example']});
            await api.updateSessionRules({removeRuleIds: [], addRules});
            const rules = await api.getSessionRules();
            await api.updateSessionRules({removeRuleIds: rules.map(({id}) => id)});
            return rules.length === ruleLimit ? rules.length : `only ${rules.length}`; })()""")
        self.assertEqual(count, 1000)


class ServersPortTest(BrowserTestCase):
    """Pages that reach for a server that has a key: what it knows it tells on its socket alone."""

    def start_server(self):
        runtime = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        server = subprocess.Popen([SERVER, str(PORT)], stdout=subprocess.PIPE,
                                  env={"XDG_RUNTIME_DIR": str(runtime), "GEMINI_API_KEY": "key"})
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        self.assertIn(str(PORT), server.stdout.readline().decode())
        self.socket = str(runtime / "com.tarne.app" / f"server-{PORT}.sock")

    def ask_server(self, question):
        with socket.socket(socket.AF_UNIX) as connection, connection.makefile("rwb") as lines:
            connection.connect(self.socket)
            lines.write(json.dumps(question).encode() + b"\n")
            lines.flush()
            return json.loads(lines.readline())

    def assert_nothing_was_judged(self):
        self.assertEqual(self.ask_server({"v": 1, "id": 1, "op": "state"})["left_today"], 300)
        # Nor was anything noted: the page is asked about as one that nobody has heard of.
        self.assertEqual(self.ask_server(QUESTION)["error"], "offline")

    def test_no_page_can_ask_or_read_over_the_servers_port(self):
        self.start_server()
        self.visit("http://attacker.example/")
        for question in (QUESTION, QUESTION | {"op": "override"}):
            learnt = self.browser.run_asynchronously(
                TRIALS,
                [f"http://{host}:{PORT}" for host in ("127.0.0.1", "localhost", "made.example")],
                json.dumps(question) + "\n",
                [{"method": "POST", "mode": "no-cors"}, {"method": "GET", "mode": "no-cors"},
                 {"method": "POST", "mode": "cors"}, {"method": "GET", "mode": "cors"}])
            self.assertEqual(len(learnt), 72)
            self.assertLessEqual({line.partition(" ")[2] for line in learnt},
                                 {"opaque 0 ", "refused"})
        self.assert_nothing_was_judged()

    def test_no_page_can_ask_or_read_by_a_name_that_it_lets_point_to_the_server(self):
        class Page(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(b"<!doctype html><title>Rebound</title>")

            def log_message(self, *_):
                pass

        class Server(http.server.ThreadingHTTPServer):
            taken = []

            def get_request(self):
                connection, address = super().get_request()
                self.taken.append(connection)
                return connection, address

        page = Server(("127.0.0.1", PORT), Page)
        threading.Thread(target=page.serve_forever, daemon=True).start()
        self.visit(f"http://rebound.example:{PORT}/")
        page.shutdown()
        page.server_close()
        # A browser may have opened one more, for what it asks next.
        for connection in page.taken:
            with contextlib.suppress(OSError):
                connection.shutdown(socket.SHUT_RDWR)
        self.start_server()
        for question in (QUESTION, QUESTION | {"op": "override"}):
            learnt = self.browser.run_asynchronously(
                TRIALS, [""], json.dumps(question) + "\n", [{"method": "POST"}, {"method": "GET"}])
            self.assertEqual(len(learnt), 12)
            self.assertEqual({line for line in learnt if not line.endswith(" basic 404 ")},
                             {"/health basic 200 "})
        self.assert_nothing_was_judged()
