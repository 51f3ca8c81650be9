"""The wire of Firefox's remote control: a JSON array a message, with its length in front."""

import json
import socket
import time


class RemoteError(Exception):
    """What Firefox answers where it cannot do what is asked."""


class Marionette:
    def __init__(self, port, within):
        deadline = time.monotonic() + within
        while True:
            try:
                self._socket = socket.create_connection(("127.0.0.1", port), timeout=60)
                break
            except OSError:
                if time.monotonic() > deadline:
                    raise
                time.sleep(0.05)
        self._stream = self._socket.makefile("rb")
        self._next = 0
        self._receive()

    def call(self, command, **parameters):
        self._next += 1
        data = json.dumps([0, self._next, command, parameters]).encode()
        self._socket.sendall(b"%d:%s" % (len(data), data))
        while True:
            _, number, error, result = self._receive()
            if number != self._next:
                continue
            if error is not None:
                raise RemoteError(f"{error['error']}: {error['message']}")
            return result["value"] if set(result or {}) == {"value"} else result

    def _receive(self):
        length = b""
        while (byte := self._stream.read(1)) != b":":
            if not byte:
                raise OSError("Firefox has ended")
            length += byte
        return json.loads(self._stream.read(int(length)))

    def close(self):
        self._stream.close()
        self._socket.close()
