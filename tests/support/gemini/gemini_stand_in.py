#!/usr/bin/env python3
"""A stand-in for the Gemini service, over TLS with a certificate authority of its own.

    gemini_stand_in.py FOLDER [--port N] [--names a.example,b.example]

Makes its certificates in FOLDER (authority.pem is the one to trust), then prints one line of JSON
with the port of each listener:

    main       answers as the key in the query asks (see SCENARIOS), or, for any other key, as
               FOLDER/scenario says, or "good"
    other      the same, on another port, which makes it another origin
    untrusted, expired, misnamed, tls11
               speak TLS with something wrong about it
    silent     accepts connections and says nothing
    refused    nobody listens

The scenario "judging" answers questions about pages, by their titles.

Every request is appended to FOLDER/requests as a line of JSON. Ends when its standard input does.
"""

import argparse
import gzip
import json
import os
import socket
import ssl
import subprocess
import sys
import threading
import time
import warnings
from urllib.parse import parse_qs, urlsplit

ANSWER = (
    "### Session Feedback\n\n"
    "**Overall Assessment:** You finished what you set out to do.\n\n"
    "**Patterns Observed:** You start with the hardest goal.\n\n"
    "**Advice:** Leave ten minutes for a review.\n\n"
    "**Motivation:** Stillhour grows with each session."
)


def candidate(text):
    return json.dumps({"candidates": [{"content": {"parts": [{"text": text}], "role": "model"}}]})


def error(message):
    return json.dumps({"error": {"code": 0, "message": message, "status": "X"}})


def verdict_on(body):
    """What a model says that goes by words in the page's title, "Film" and "Perhaps"."""
    page = json.loads(json.loads(body)["contents"][0]["parts"][0]["text"])["page"]
    if "Film" in page["title"]:
        return json.dumps({"verdict": "off_task", "confidence": 0.9, "reason": "A film."})
    if "Perhaps" in page["title"]:
        return json.dumps({"verdict": "off_task", "confidence": 0.6, "reason": "Perhaps not."})
    return json.dumps({"verdict": "on_task", "confidence": 0.9, "reason": "It helps."})


def response(body, status="200 OK", *headers, length=None):
    if isinstance(body, str):
        body = body.encode()
    head = [f"HTTP/1.1 {status}", f"Content-Length: {len(body) if length is None else length}"]
    return ("\r\n".join([*head, *headers]) + "\r\n\r\n").encode() + body


HTML = "<html><body>Bad Gateway</body></html>"
SCENARIOS = {"good": response(candidate(ANSWER), "200 OK", "Content-Type: application/json")}
for code in (400, 401, 403, 404, 429, 500, 501, 503):
    SCENARIOS[f"json{code}"] = response(error(f"told with {code}"), f"{code} Status")
    SCENARIOS[f"html{code}"] = response(HTML, f"{code} Status")
SCENARIOS.update({
    "later429": response(error("told with 429"), "429 Status", "Retry-After: 7"),
    "basic401": response(error("told with 401"), "401 Status", 'WWW-Authenticate: Basic realm="x"'),
    "bearer401": response(error("told with 401"), "401 Status", 'WWW-Authenticate: Bearer'),
    **{f"{scheme.lower()}401": response(error("told with 401"), "401 Status",
                                        f"WWW-Authenticate: {scheme}{rest}")
       for scheme, rest in (("Digest", ' realm="x", nonce="y"'), ("NTLM", ""), ("Negotiate", ""))},
    "html200": response(HTML, "200 OK", "Content-Type: text/html"),
    "empty": response(""),
    "empty500": response("", "500 Status"),
    "nocontent": b"HTTP/1.1 204 No Content\r\n\r\n",
    "big": response(candidate("**Advice:** " + "x" * 20_000_000)),
    "gzip": response(gzip.compress(candidate(ANSWER).encode()), "200 OK", "Content-Encoding: gzip"),
    "bomb": response(gzip.compress(b"\0" * 100_000_000), "200 OK", "Content-Encoding: gzip"),
    "endless": response("x" * 3_000_000, length=10**12),
    "unclosed": response(candidate(ANSWER)).replace(b"Content-Length", b"X-Length"),
    "cut": response(candidate(ANSWER)[:40], length=5000),
    "cuthead": b"HTTP/1.1 200 OK\r\nContent-Le",
    "cutchunk": b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n40\r\nabc",
    "hangup": b"",
    "nohttp": b"SSH-2.0-OpenSSH\r\n\r\n",
    "stall": None,
    "away": "other",
    "again302": "main",
    "again307": "main",
    "againlost": "main",
    "round": "main",
    "trickle": None,
    "chunks": None,
    "headers": None,
})


class StandIn:
    def __init__(self, folder, names):
        self.folder = folder
        self.names = names
        self.ports = {}
        self.lock = threading.Lock()

    def openssl(self, *arguments):
        subprocess.run(["openssl", *arguments], cwd=self.folder, check=True, capture_output=True)

    def authority(self, name):
        self.openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                     "-nodes", "-keyout", f"{name}.key", "-out", f"{name}.pem", "-days", "30",
                     "-subj", f"/CN=Test authority {name}")

    def certificate(self, name, authority, names, days="30"):
        self.openssl("req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                     "-keyout", f"{name}.key", "-out", f"{name}.csr", "-subj", f"/CN={names[0]}")
        with open(f"{self.folder}/{name}.ext", "w") as extensions:
            alternatives = ",".join([f"DNS:{n}" for n in names])
            extensions.write(f"subjectAltName={alternatives}\nbasicConstraints=CA:FALSE\n")
        self.openssl("x509", "-req", "-in", f"{name}.csr", "-CA", f"{authority}.pem", "-CAkey",
                     f"{authority}.key", "-CAcreateserial", "-days", days, "-extfile",
                     f"{name}.ext", "-out", f"{name}.pem")

    def context(self, name):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(f"{self.folder}/{name}.pem", f"{self.folder}/{name}.key")
        return context

    def listen(self, name, serve, port=0):
        listener = socket.create_server(("", port), backlog=64)
        self.ports[name] = listener.getsockname()[1]

        def loop():
            while True:
                connection, _ = listener.accept()
                threading.Thread(target=serve, args=(connection, name), daemon=True).start()

        threading.Thread(target=loop, daemon=True).start()

    def serve_tls(self, context):
        def serve(connection, listener):
            try:
                with context.wrap_socket(connection, server_side=True) as stream:
                    stream.settimeout(30)
                    self.converse(stream, listener)
            except (OSError, ValueError):
                pass  # The client went away, or did not want this connection.

        return serve

    def converse(self, stream, listener):
        data = b""
        while b"\r\n\r\n" not in data:
            piece = stream.recv(65536)
            if not piece:
                return
            data += piece
        head, body = data.split(b"\r\n\r\n", 1)
        lines = head.decode("latin-1").split("\r\n")
        method, target, _ = lines[0].split(" ")
        headers = [line.split(": ", 1) for line in lines[1:]]
        length = int({k.lower(): v for k, v in headers}.get("content-length", "0"))
        while len(body) < length:
            body += stream.recv(65536)
        with self.lock, open(f"{self.folder}/requests", "a") as record:
            record.write(json.dumps({"listener": listener, "method": method, "target": target,
                                     "headers": headers, "body": body.decode()}) + "\n")
        self.answer(stream, self.scenario(target), target, body.decode())

    def scenario(self, target):
        key = parse_qs(urlsplit(target).query).get("key", [""])[0]
        if key in SCENARIOS:
            return key
        try:
            with open(f"{self.folder}/scenario") as file:
                return file.read().strip()
        except FileNotFoundError:
            return "good"

    def answer(self, stream, scenario, target, body):
        if scenario == "judging":
            stream.sendall(response(candidate(verdict_on(body))))
            self.say_goodbye(stream)
        elif scenario == "stall":
            stream.recv(1)
        elif scenario == "trickle":
            # A byte at a time, each well within a client's patience, all together far beyond it.
            head, body = response(candidate("**Advice:** slow")).split(b"\r\n\r\n")
            stream.sendall(head + b"\r\n\r\n")
            for byte in body:
                stream.sendall(bytes([byte]))
                time.sleep(0.02)
        elif scenario == "chunks":
            stream.sendall(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n")
            for letter in candidate(ANSWER).encode():
                stream.sendall(b"1\r\n" + bytes([letter]) + b"\r\n")
            stream.sendall(b"0\r\n\r\n")
        elif scenario == "headers":
            stream.sendall(b"HTTP/1.1 200 OK\r\n")
            for _ in range(100_000):
                stream.sendall(b"X-Header: " + b"x" * 4000 + b"\r\n")
        elif scenario in ("away", "again302", "again307", "againlost", "round"):
            status = {"again307": "307 Temporary Redirect"}.get(scenario, "302 Found")
            port = self.ports[SCENARIOS[scenario]]
            next_key = {"round": "round", "againlost": "hangup"}.get(scenario, "good")
            location = f"https://localhost:{port}" + target.replace(scenario, next_key)
            stream.sendall(response("", status, f"Location: {location}"))
        else:
            stream.sendall(SCENARIOS[scenario])
            if scenario not in ("cut", "cuthead", "cutchunk", "hangup"):
                self.say_goodbye(stream)

    def say_goodbye(self, stream):
        """Sends the closing alert of TLS, as a server does, without waiting for the peer's."""
        stream.setblocking(False)
        try:
            stream.unwrap()
        except ssl.SSLWantReadError:
            pass

    def hold(self, connection, _):
        connection.recv(1_000_000)
        time.sleep(3600)

    def start(self, port):
        self.authority("authority")
        self.authority("stranger")
        self.certificate("server", "authority", self.names)
        self.certificate("untrusted", "stranger", self.names)
        self.certificate("expired", "authority", self.names, days="-1")
        self.certificate("misnamed", "authority", ["elsewhere.example"])
        self.listen("main", self.serve_tls(self.context("server")), port)
        self.listen("other", self.serve_tls(self.context("server")))
        for name in ("untrusted", "expired", "misnamed"):
            self.listen(name, self.serve_tls(self.context(name)))
        old = self.context("server")
        old.set_ciphers("ALL:@SECLEVEL=0")
        warnings.simplefilter("ignore", DeprecationWarning)
        old.minimum_version = ssl.TLSVersion.TLSv1
        old.maximum_version = ssl.TLSVersion.TLSv1_1
        self.listen("tls11", self.serve_tls(old))
        self.listen("silent", self.hold)
        with socket.create_server(("", 0)) as closed:
            self.ports["refused"] = closed.getsockname()[1]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--names", default="localhost,generativelanguage.googleapis.com")
    arguments = parser.parse_args()
    os.makedirs(arguments.folder, exist_ok=True)
    stand_in = StandIn(arguments.folder, arguments.names.split(","))
    stand_in.start(arguments.port)
    print(json.dumps(stand_in.ports), flush=True)
    sys.stdin.read()


if __name__ == "__main__":
    main()
