"""The Gemini service under its real name, and the key store that holds the key to it."""

import json
import os
import pathlib
import subprocess
import sys

from waiting import eventually

HOST = "generativelanguage.googleapis.com"
KEY = "key-of-the-test"
STAND_IN = pathlib.Path(__file__).resolve().parents[1] / "support" / "gemini" / "gemini_stand_in.py"


class Gemini:
    """A service on port 443 of the box, with a certificate of an authority of its own.

    A program that gets `binds` finds it under the real name and trusts the authority as it trusts
    those of its system.
    """

    def __init__(self, folder):
        self.folder = pathlib.Path(folder) / "gemini"
        self._process = subprocess.Popen(
            [sys.executable, STAND_IN, self.folder, "--port", "443", "--names", HOST],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        if not self._process.stdout.readline():
            raise AssertionError("the stand-in for Gemini does not come up")
        hosts = self.folder / "hosts"
        hosts.write_text(f"127.0.0.1 localhost {HOST}\n")
        certificates = self.folder / "certificates"
        certificates.mkdir()
        authority = (self.folder / "authority.pem").read_text()
        for name in ("authority.pem", "ca-certificates.crt"):
            (certificates / name).write_text(authority)
        subprocess.run(["openssl", "rehash", certificates], check=True, capture_output=True)
        self.binds = [(hosts, "/etc/hosts"), (certificates, "/etc/ssl/certs")]

    def set_scenario(self, name):
        """Answers from now on as the stand-in's table says under this name."""
        (self.folder / "scenario").write_text(name)

    @property
    def requests(self):
        record = self.folder / "requests"
        lines = record.read_text().splitlines() if record.exists() else []
        return [json.loads(line) for line in lines]

    def close(self):
        self._process.kill()
        self._process.wait()
        self._process.stdin.close()
        self._process.stdout.close()


class Keyring:
    """The desktop's key store, unlocked, with the key in it."""

    def __init__(self, folder, environment):
        home = pathlib.Path(folder) / "keyring"
        home.mkdir()
        self._environment = dict(os.environ, HOME=str(home), XDG_DATA_HOME=str(home),
                                 **environment)
        self._log = open(pathlib.Path(folder) / "keyring.log", "wb")
        self._process = subprocess.Popen(
            ["gnome-keyring-daemon", "--foreground", "--components=secrets", "--unlock"],
            stdin=subprocess.PIPE, stdout=self._log, stderr=self._log, env=self._environment)
        self._process.stdin.write(b"unlocked")
        self._process.stdin.close()
        eventually(lambda: self._store(KEY), "the key is in the key store")

    def _store(self, key):
        done = subprocess.run(
            ["secret-tool", "store", "--label=TARNE", "service", "com.tarne.app", "account",
             "GeminiAPIKey"], input=key.encode(), stdout=self._log, stderr=self._log,
            env=self._environment, timeout=30)
        return done.returncode == 0

    def close(self):
        self._process.kill()
        self._process.wait()
        self._log.close()
