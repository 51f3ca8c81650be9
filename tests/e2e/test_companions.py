"""TARNE with the classification server that lies beside it, and the bridge of a browser."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

import box
from bridge import Bridge
from fixture import PROGRAM
from gemini import Gemini
from test_server import KeyTestCase

SERVER = pathlib.Path(PROGRAM).parents[1] / "lib" / "tarne" / "tarne-server"
KEY = "key-that-nobody-may-see"


class CompanionsTestCase(KeyTestCase):
    def setUp(self):
        super().setUp()
        self.gemini = Gemini(self.folder)
        self.addCleanup(self.gemini.close)
        self.gemini.set_scenario("judging")

    def start(self, **how):
        return super().start(binds=self.gemini.binds, **how)

    def launch(self):
        super().launch()
        self.await_healthy(1)

    def await_healthy(self, count):
        self.eventually(lambda: self.program.log.count("✅ Server health check passed") >= count,
                        "the server is healthy")

    def start_bridge(self, server):
        """A bridge that has told that there is no session, and the server."""
        self.bridge = Bridge(self.environment())
        self.addCleanup(self.bridge.close)
        self.bridge.await_state("session", "inactive")
        self.bridge.await_state("server", server)

    def save_key(self):
        self.open_tab("Settings")
        self.type_key(KEY)
        self.press("Save API Key")
        self.assert_shown("API Key Saved")
        self.press("OK")

    def sockets(self):
        return sorted(file.name for file in (self.desktop.runtime / "com.tarne.app").iterdir())


class TheBundledServer(CompanionsTestCase):
    def test_runs_without_a_key_and_says_nothing_but_its_port(self):
        self.launch()
        self.assertIn(f"🟢 Using bundled server at: {SERVER}", self.program.log)
        self.assertEqual([line for line in self.program.log if "🖥️" in line or "Error" in line],
                         ["🖥️ Server: TARNE Classification Server running on port 3000"])
        self.assertIn("🔍 Server confirmed running on port: 3000", self.program.log)
        self.open_tab("Settings")
        self.assert_shown("Server Running", "Restart")
        self.assertEqual(self.sockets(), ["server-3000.sock"])
        self.start_bridge("no_key")
        self.assertEqual(self.program.terminate(), 0)
        self.assertIn("🔴 Server process terminated", self.program.log)
        self.assertFalse(self.program.logged("⚠️"), self.program.log)
        self.assertEqual(self.sockets(), [])

    def test_comes_back_on_the_same_port_with_the_key_that_was_saved(self):
        self.launch()
        self.start_bridge("no_key")
        self.save_key()
        self.bridge.await_state("server", "absent")
        self.bridge.await_state("server", "ready")
        self.await_healthy(2)
        self.assertIn("🔴 Server process terminated with status: 0", self.program.log)
        self.assertEqual(self.program.log.count(
            "🔍 Using port: 3000 (Safari extension will auto-discover)"), 2)
        self.assert_shown("Server Running")
        self.press("Restart")
        self.bridge.await_state("server", "ready")
        self.assertEqual(self.program.terminate(), 0)
        self.assert_key_is_told_to_nobody()

    def assert_key_is_told_to_nobody(self):
        for file in self.folder.rglob("*"):
            # The key store's own, and what the stand-in was asked.
            if file.is_file() and "keyring" not in file.parts and "gemini" not in file.parts:
                self.assertNotIn(KEY.encode(), file.read_bytes(), file)


class ASession(CompanionsTestCase):
    def test_is_judged_by_its_goals_until_it_ends(self):
        self.desktop.ask("secret-tool", "store", "--label=TARNE", "service", "com.tarne.app",
                         "account", "GeminiAPIKey", typed=KEY)
        self.launch()
        self.start_bridge("ready")
        self.assertEqual(self.bridge.ask("classify", title="A Film"), {"error": "no_session"})
        self.start_session("Write report, Review", minutes=25)
        session = self.bridge.await_state("session", "active")
        self.assertIn("Write report", session["goals"])
        self.assertEqual(session["duration"], 1500)

        film = self.bridge.ask("classify", title="A Film")
        self.assertEqual(film, {"verdict": "off_task", "confidence": 0.9, "reason": "A film.",
                                "source": "model"})
        self.assertEqual(self.bridge.ask("classify", title="A Film"), film | {"source": "cache"})
        self.assertEqual(self.bridge.ask("classify", title="A manual")["verdict"], "on_task")
        self.assertEqual(self.bridge.ask("override", title="A Film"), {"ok": True})
        self.assertEqual(self.bridge.ask("classify", title="A Film")["source"], "override")
        self.assertEqual(self.bridge.ask("state"), {"key": True, "left_today": 298})
        asked = self.gemini.requests
        self.assertEqual(len(asked), 2)
        self.assertTrue(asked[0]["target"].endswith(f":generateContent?key={KEY}"))
        self.assertIn(session["goals"], asked[0]["body"])

        self.gemini.set_scenario("later429")
        self.assertEqual(self.bridge.ask("classify", title="Another"),
                         {"error": "quota", "retry_after": 7})

        self.press("Pause")
        self.bridge.await_state("session", "inactive", within=10)
        self.assertEqual(self.bridge.ask("classify", title="A Film"), {"error": "no_session"})
        self.press("Resume")
        self.assertEqual(self.bridge.await_state("session", "active")["id"], session["id"])
        self.program.kill()
        self.bridge.await_state("session", "inactive", within=10)
        self.assertEqual(self.bridge.ask("state"), {"error": "no_server"})
        self.assertEqual(self.bridge.close(), 0)


class TheBrowsersManifests(unittest.TestCase):
    """`scripts/companions`, in a checkout whose path needs quoting, for a user without any."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.checkout = self.folder / 'a "check&out"'
        self.home = self.folder / "home"
        self.script = self.checkout / "scripts" / "companions"
        self.bridge = self.checkout / "build" / "release" / "bin" / "tarne-bridge"
        self.script.parent.mkdir(parents=True)
        shutil.copy(box.SOURCES / "scripts" / "companions", self.script)
        shutil.copytree(box.SOURCES / "companions" / "bridge", self.checkout / "companions" / "bridge")

    def run_script(self, *arguments):
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.home)}
        return subprocess.run([self.script, *arguments], env=environment, capture_output=True,
                              text=True, timeout=60)

    def build(self):
        self.bridge.parent.mkdir(parents=True)
        shutil.copy("/bin/true", self.bridge)

    def manifests(self):
        return sorted(str(file.relative_to(self.home)) for file in self.home.rglob("*.json"))

    def test_without_a_build_say_how_it_is_made(self):
        done = self.run_script("install")
        self.assertEqual(done.returncode, 1)
        self.assertIn("cmake --build --preset release", done.stderr)

    def test_tell_each_browser_of_the_bridge_and_of_its_extension_alone(self):
        self.build()
        self.assertEqual(self.run_script("install").returncode, 0)
        chromium, firefox = [json.loads((self.home / name).read_text())
                             for name in self.manifests()]
        for manifest in (chromium, firefox):
            self.assertEqual((manifest["name"], manifest["type"], manifest["path"]),
                             ("com.tarne.bridge", "stdio", str(self.bridge)))
        self.assertEqual(chromium["allowed_origins"],
                         ["chrome-extension://hehdnfjmcoelfcbplfkbhhkahldimemb/"])
        self.assertEqual(firefox["allowed_extensions"], ["companion@tarne.app"])

    def test_go_again_and_nothing_else_with_them(self):
        self.build()
        self.run_script("install")
        other = self.home / ".mozilla" / "native-messaging-hosts" / "other.json"
        other.write_text("{}")
        for _ in range(2):
            self.assertEqual(self.run_script("uninstall").returncode, 0)
            self.assertEqual(self.manifests(), [str(other.relative_to(self.home))])

    def test_leave_nothing_behind_where_there_was_nothing(self):
        self.build()
        self.home.mkdir()
        self.run_script("install")
        self.assertEqual(len(self.manifests()), 2)
        self.assertEqual(self.run_script("uninstall").returncode, 0)
        self.assertEqual(list(self.home.iterdir()), [])
