"""A bridge in the test's own hands: the browser starts a relay, and the test says what it says."""

import json
import os
import pathlib
import socket
import stat
import struct
import threading
import time
import uuid

HOST = "com.tarne.bridge"
CHROMIUM_ID = "hehdnfjmcoelfcbplfkbhhkahldimemb"
FIREFOX_ID = "companion@tarne.app"

# Hands on what it reads in both directions, and ends when either side does.
RELAY = """#!{python}
import os, socket, sys, threading
server = socket.socket(socket.AF_UNIX)
server.connect({address!r})
def to_browser():
    try:
        while data := server.recv(65536):
            os.write(1, data)
    finally:
        os._exit(0)
threading.Thread(target=to_browser, daemon=True).start()
while data := os.read(0, 65536):
    server.sendall(data)
"""


class StandInBridge:
    """Answers `judge(page)`, a function that tests set; None keeps a question open."""

    def __init__(self, folder):
        self._folder = pathlib.Path(folder)
        self.questions = []
        self.overrides = []
        self.hellos = []
        self.judge = lambda page: on_task()
        self.is_away = False
        self.is_mute = False
        self._session = {"v": 1, "type": "session", "state": "inactive"}
        self._server = {"v": 1, "type": "server", "state": "ready"}
        self._connections = []
        self._lock = threading.RLock()
        self._address = str(self._folder / "bridge.sock")
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(self._address)
        self._listener.listen()
        threading.Thread(target=self._accept, daemon=True).start()

    def install(self, hosts):
        """Tells a browser that looks into the folder `hosts` how to start the relay."""
        relay = self._folder / "relay"
        relay.write_text(RELAY.format(python="/usr/bin/python3", address=self._address))
        relay.chmod(relay.stat().st_mode | stat.S_IXUSR)
        hosts.mkdir(parents=True, exist_ok=True)
        manifest = {"name": HOST, "description": "A stand-in", "path": str(relay), "type": "stdio"}
        for name, more in (
                ("chromium", {"allowed_origins": [f"chrome-extension://{CHROMIUM_ID}/"]}),
                ("firefox", {"allowed_extensions": [FIREFOX_ID]})):
            if name == os.environ["TARNE_BROWSER"]:
                (hosts / f"{HOST}.json").write_text(json.dumps(manifest | more))

    # -- what it says ---------------------------------------------------------------------------

    def start_session(self, goals, seconds=1500, identity=None):
        self._session = {"v": 1, "type": "session", "state": "active",
                         "id": identity or str(uuid.uuid4()).upper(), "goals": goals,
                         "ends": time.time() + seconds, "duration": seconds}
        self.say(self._session)

    def pause(self):
        self.say({"v": 1, "type": "session", "state": "inactive"})

    def resume(self):
        self.say(self._session)

    def end_session(self, state="inactive"):
        self._session = {"v": 1, "type": "session", "state": state}
        self.say(self._session)

    def set_server(self, state):
        self._server = {"v": 1, "type": "server", "state": state}
        self.say(self._server)

    def say(self, frame):
        self.say_bytes(framed(json.dumps(frame).encode()))

    def say_bytes(self, data):
        with self._lock:
            for connection in self._connections:
                connection.sendall(data)

    def die(self):
        """Ends as a crash would, and does not come back while `is_away`."""
        with self._lock:
            for connection in self._connections:
                connection.shutdown(socket.SHUT_RDWR)
            self._connections.clear()

    @property
    def is_connected(self):
        return bool(self._connections)

    def close(self):
        self.is_away = True
        self.die()
        self._listener.close()

    # -- what it hears --------------------------------------------------------------------------

    def asked_about(self, origin, **members):
        """The pages of this origin that were asked about."""
        return [question["page"] for question in self.questions
                if question["page"]["origin"] == origin
                and all(question["page"].get(name) == value for name, value in members.items())]

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            if self.is_away:
                connection.close()
            else:
                threading.Thread(target=self._converse, args=(connection,), daemon=True).start()

    def _converse(self, connection):
        try:
            with connection.makefile("rb") as stream:
                while head := stream.read(4):
                    self._hear(connection, json.loads(stream.read(struct.unpack("=I", head)[0])))
        except (OSError, struct.error):
            pass  # The browser ended it.
        with self._lock:
            if connection in self._connections:
                self._connections.remove(connection)
        connection.close()

    def _hear(self, connection, frame):
        if self.is_mute:
            return
        if frame.get("type") == "hello":
            with self._lock:
                self.hellos.append(frame)
                self._connections.append(connection)
                for message in (self._session, self._server):
                    connection.sendall(framed(json.dumps(message).encode()))
        elif frame["op"] == "classify":
            self.questions.append(frame)
            answer = self.judge(frame["page"])
            if answer is not None:
                self.say({"v": 1, "id": frame["id"], **answer})
        elif frame["op"] == "override":
            self.overrides.append(frame)
            self.say({"v": 1, "id": frame["id"], "ok": True})


def framed(data):
    return struct.pack("=I", len(data)) + data


def on_task(reason="It serves the goals."):
    return {"verdict": "on_task", "confidence": 0.95, "reason": reason, "source": "model"}


def off_task(confidence=0.95, reason="It is a game."):
    return {"verdict": "off_task", "confidence": confidence, "reason": reason, "source": "model"}
