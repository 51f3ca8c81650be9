"""The key store and the classification server: first launch, launch, key, crash, restart, quit."""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess

from fixture import PROGRAM, TarneTestCase

KEY_FIELD = "Enter your Gemini API key"
STAND_IN = pathlib.Path(__file__).with_name("stand_in_server.py")


class KeyTestCase(TarneTestCase):
    """With gnome-keyring on the desktop, and the words to use it."""

    def setUp(self):
        super().setUp()
        self.desktop.start_key_store()

    def stored_key(self):
        return self.desktop.ask("secret-tool", "lookup", "service", "com.tarne.app",
                                "account", "GeminiAPIKey")

    def type_key(self, key):
        """Replaces the text of the secure field; what is in it cannot be read from outside."""
        field = self.node(KEY_FIELD, role="text")
        field.grab_focus()
        self.eventually(lambda: field.has("focused"), "the field has the keyboard focus")
        self.desktop.xdotool("key", "ctrl+a", "Delete")
        self.desktop.xdotool("type", "--delay", "5", key)

    def has_completed_onboarding(self):
        return (self.store.document("UserPreferences") or {}).get("hasCompletedOnboarding")


class ServerTestCase(KeyTestCase):
    """With a server where the program looks for it."""

    def setUp(self):
        super().setUp()
        # The program's working directory, which is searched.
        self.server = self.folder / "tarne-server"
        shutil.copy(STAND_IN, self.server)
        self.server.chmod(0o755)

    def start(self, **how):
        return super().start(has_own_network=True, **how)

    def runs(self):
        """How the server was started so far."""
        log = self.server.with_name("server-runs.log")
        return [json.loads(line) for line in log.read_text().splitlines()] if log.exists() else []

    def processes_with(self, text):
        """The processes that have this in their command line."""
        found = []
        for process in pathlib.Path("/proc").iterdir():
            try:
                if process.name.isdigit() and \
                        text.encode() in (process / "cmdline").read_bytes():
                    found.append(int(process.name))
            except OSError:
                continue
        return found

    def server_processes(self):
        return self.processes_with(str(self.server))

    def own_lines(self):
        """The log without the publication's lines and the search's steps upwards."""
        return [line for line in self.program.log
                if not line.startswith("📱") and "Checking [" not in line]

    def await_healthy(self, count):
        self.eventually(lambda: len(self.runs()) == count, f"the server's start number {count}")
        self.eventually(lambda: self.program.log.count("✅ Server health check passed") >= count,
                        "the server is healthy")


class Onboarding(ServerTestCase):
    has_seen_onboarding = False

    def test_by_the_keyboard_alone_gives_the_server_its_key_and_never_returns(self):
        self.launch()
        self.await_healthy(1)
        self.assertIsNone(self.runs()[0]["GEMINI_API_KEY"])
        self.assertIsNone(self.find("Start Session"))
        self.assert_shown("AppIcon")
        self.activate("Next")
        self.assert_shown("Complete Setup")
        self.tab_to(KEY_FIELD, role="text")
        self.desktop.xdotool("type", "--delay", "5", "typed key ")
        self.activate("Start Focusing")
        self.assert_shown("Setup Complete", "Start Using TARNE")
        self.desktop.xdotool("key", "Return")
        self.assert_shown("Start Session")
        self.assertEqual(self.stored_key(), "typed key")
        self.await_healthy(2)
        self.assertEqual(self.runs()[1]["GEMINI_API_KEY"], "typed key")

        self.assertEqual(self.program.terminate(), 0)
        self.launch()
        self.assert_shown("Start Session")
        self.assertIsNone(self.find("Next"))

    def test_by_names_and_killed_while_the_closing_alert_is_up_never_returns(self):
        self.launch()
        self.press("Next")
        self.type_key("named key")
        self.press("Start Focusing")
        self.assert_shown("Start Using TARNE")
        self.eventually(self.has_completed_onboarding, "it is stored that onboarding is done")
        self.program.kill()
        self.assertEqual(self.stored_key(), "named key")
        self.launch()
        self.assert_shown("Start Session")


class TheServer(ServerTestCase):
    def test_lives_from_the_launch_over_a_new_key_and_a_crash_to_the_quit(self):
        self.launch()
        self.await_healthy(1)
        self.assertEqual(self.own_lines(), [
            f"🔍 Starting search from: {pathlib.Path(PROGRAM).parent}",
            "🔍 Reached root or no change, stopping search",
            f"🔍 Also checking working directory: {self.server}",
            f"🟡 Using server from working directory: {self.server}",
            "🔍 Using port: 3000 (Safari extension will auto-discover)",
            "🔍 Will pass port 3000 as argument to server",
            '🔍 Starting server with arguments: ["3000"]',
            "🟢 Server started successfully on port 3000",
            "🖥️ Server: TARNE Classification Server running on port 3000",
            "🔍 Server confirmed running on port: 3000",
            "✅ Server health check passed"])
        self.assertEqual(self.runs(), [{"arguments": ["3000"], "PORT": "3000",
                                        "GEMINI_API_KEY": None, "folder": str(self.folder)}])

        self.open_tab("Settings")
        self.assert_shown("Server Running", "Restart")
        self.type_key("key of the test")
        self.press("Save API Key")
        self.assert_shown("API Key Saved")
        self.press("OK")
        self.await_healthy(2)
        self.assertEqual(self.runs()[1]["GEMINI_API_KEY"], "key of the test")
        self.assertEqual(self.stored_key(), "key of the test")
        self.assertIn("🔴 Server process terminated with status: 0", self.program.log)
        self.assert_shown("Server Running")

        process, = self.server_processes()
        os.kill(process, signal.SIGKILL)
        self.assert_shown("Server Stopped", "Server exited with code 9")
        self.assertIn("🔴 Server process terminated with status: 9", self.program.log)
        self.press("Start")
        self.await_healthy(3)
        self.assert_shown("Server Running")
        self.assertIsNone(self.find("Server exited with code 9"))

        self.assertEqual(self.program.terminate(), 0)
        self.assertEqual([line for line in self.own_lines() if line.startswith("🔴")][-2:],
                         ["🔴 Stopping server...", "🔴 Server process terminated"])
        self.assertEqual(self.server_processes(), [])

    def test_does_not_outlive_a_program_that_is_killed(self):
        self.launch()
        self.await_healthy(1)
        self.program.kill()
        self.eventually(lambda: not self.server_processes(), "the server has ended too")

    def test_waits_until_the_window_stands_painted_with_its_final_size(self):
        self.program = self.start()
        self.eventually(self.window_id, "the window is up")
        picture = self.folder / "first.png"
        self.eventually(lambda: self.program.logged("🟡 Using server"), "the start begins")
        self.desktop.screenshot(picture)
        before = self.geometry()
        # The start blocks for two seconds before it looks for a port.
        self.assertFalse(self.program.logged("🔍 Using port"), "the picture came too late")
        self.assertGreater(self.colours(picture), 50, "nothing was painted")
        self.eventually(lambda: self.program.logged("🟢 Server started"), "the start ends")
        self.assert_shown("Start Session")
        self.assertEqual(self.geometry(), before)
        self.assertIn("1000x700", before)

    def geometry(self):
        return self.desktop.xdotool("getwindowgeometry", self.window_id())

    def colours(self, picture):
        return int(subprocess.run(["identify", "-format", "%k", str(picture)], check=True,
                                  capture_output=True, timeout=30).stdout)

    def change_server(self, honest, other):
        text = STAND_IN.read_text()
        self.assertIn(honest, text)
        self.server.write_text(text.replace(honest, other))

    def test_that_announces_another_port_is_asked_for_its_health_there(self):
        self.change_server("port = int(sys.argv[1])", "port = int(sys.argv[1]) + 5")
        self.launch()
        self.await_healthy(1)
        self.assertIn("🔍 Server confirmed running on port: 3005", self.program.log)
        self.open_tab("Settings")
        self.assert_shown("The classification server runs locally on port 3000")

    def test_that_answers_503_is_told_in_the_settings_and_runs_on(self):
        self.change_server("200 if", "503 if")
        self.launch()
        self.eventually(
            lambda: self.program.logged("⚠️ Server health check: unexpected response"),
            "the server's health was asked")
        self.open_tab("Settings")
        self.assert_shown("Server Running", "Server not responding properly")
        self.assertEqual(len(self.server_processes()), 1)

    def test_that_ends_at_once_is_told_in_the_settings(self):
        self.server.write_text("#!/bin/sh\nexit 7\n")
        self.launch()
        self.open_tab("Settings")
        self.assert_shown("Server Stopped", "Server exited with code 7")

    def test_that_ends_at_once_with_zero_is_stopped_without_an_error(self):
        self.server.write_text("#!/bin/sh\nexit 0\n")
        self.launch()
        self.open_tab("Settings")
        self.assert_shown("Server Stopped", "Start")
        self.eventually(
            lambda: "🔴 Server process terminated with status: 0" in self.program.log,
            "the server's end is logged")
        self.assertIsNone(self.find("Server exited with code 0"))
        self.press("Start")
        self.eventually(
            lambda: self.program.log.count("🔴 Server process terminated with status: 0") == 2,
            "it was started again, and ended again")
        self.assert_shown("Server Stopped", "Start")

    def test_that_ignores_its_end_is_killed_with_what_it_started(self):
        self.server.write_text("#!/bin/bash\ntrap '' TERM\nsleep 1000 &\necho ready\n"
                               "while true; do wait; done\n")
        self.launch()
        self.eventually(lambda: self.program.logged("🖥️ Server: ready"), "the server is up")
        self.assertEqual(self.program.terminate(), 0)
        self.assertIn("⚠️ Server didn't terminate gracefully, force killing...", self.program.log)
        self.assertEqual(self.program.log[-1], "🔴 Server process terminated")
        self.eventually(lambda: not self.server_processes(), "the server has ended")


# Before the program, in its namespace: strays on its ports, and a tool that only sounds like one.
STRAYS = """#!/bin/bash
for port in $(seq 3000 3010); do
  perl -MIO::Socket::INET -e '
    $socket = IO::Socket::INET->new(Listen => 1, LocalAddr => "127.0.0.1:$ARGV[0]") or die;
    open my $ready, ">", "listening-$ARGV[0]"; close $ready; sleep 1000' $port &
done
bash -c 'exec -a some-node-tool sleep 1000' &
until [ "$(ls listening-* 2>/dev/null | wc -l)" = 11 ]; do sleep 0.05; done
exec "$0.program"
"""


class TheStartSweep(ServerTestCase):
    def test_ends_strays_on_the_ports_and_by_name_before_the_server_starts(self):
        launcher = self.folder / "with-strays"
        launcher.write_text(STRAYS)
        launcher.chmod(0o755)
        self.folder.joinpath("with-strays.program").symlink_to(PROGRAM)
        self.program = self.start(executable=launcher)
        self.await_healthy(1)
        swept = [re.sub(r"process \d+", "process N", line)
                 for line in self.program.log if line.startswith("🔪")]
        self.assertEqual(swept, [f"🔪 Killing existing process N on port {port}"
                                 for port in range(3000, 3011)]
                         + ["🔪 Killed processes matching: node"])
        self.assertEqual(self.processes_with("IO::Socket"), [])
        self.assertEqual(self.processes_with("some-node-tool"), [])
        self.assertEqual(self.runs()[0]["arguments"], ["3000"])
