"""The bridge as a browser starts it: outside TARNE's process namespace, with pipes for its streams."""

import json
import os
import pathlib
import select
import struct
import subprocess
import time

from fixture import PROGRAM
from waiting import PATIENCE

BRIDGE = pathlib.Path(PROGRAM).with_name("tarne-bridge")


class Bridge:
    def __init__(self, environment):
        self._process = subprocess.Popen([BRIDGE, "manifest.json", "companion@tarne.app"],
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         env=environment)
        self._received = b""
        self._id = 0
        self.say({"v": 1, "type": "hello", "browser": "test", "version": "1"})

    @property
    def pid(self):
        return self._process.pid

    def say(self, message):
        text = json.dumps(message).encode()
        self._process.stdin.write(struct.pack("=I", len(text)) + text)
        self._process.stdin.flush()

    def next(self, within=PATIENCE):
        """The next message; fails when there is none in time."""
        deadline = time.monotonic() + within
        while True:
            if len(self._received) >= 4:
                length, = struct.unpack("=I", self._received[:4])
                if len(self._received) >= 4 + length:
                    message = json.loads(self._received[4:4 + length])
                    self._received = self._received[4 + length:]
                    return message
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self._process.stdout], [], [], left)[0]:
                raise AssertionError(f"the bridge says nothing within {within:g} s")
            piece = os.read(self._process.stdout.fileno(), 65536)
            if not piece:
                raise AssertionError("the bridge has ended")
            self._received += piece

    def await_state(self, kind, state, within=PATIENCE):
        """Passes over messages until this one comes; the message."""
        deadline = time.monotonic() + within
        while True:
            message = self.next(max(0.0, deadline - time.monotonic()))
            if message.get("type") == kind and message["state"] == state:
                return message

    def ask(self, op, **page):
        """The answer to a question, about a page where one is given."""
        self._id += 1
        question = {"v": 1, "id": self._id, "op": op}
        if page:
            question["page"] = {"origin": "https://www.example.org", "path": "/watch"} | page
        self.say(question)
        while True:
            message = self.next()
            if message.get("id") == self._id:
                del message["v"], message["id"]
                return message

    def close(self):
        self._process.stdin.close()
        status = self._process.wait(timeout=30)
        self._process.stdout.close()
        return status
