"""Measures the goals API beside nginx that answers the same body, and prints the figures as JSON.

    goals_api.py GOALS_SERVER [SECONDS]

wrk with 16 clients, a connection a request, all on the loopback interface; each server is loaded
for SECONDS (4) three times, in turns. Then ours serves a million requests, to see that its memory
does not grow.
"""

import contextlib
import json
import math
import pathlib
import re
import resource
import socket
import statistics
import subprocess
import sys
import tempfile
import time

CLIENTS = 16
TURNS = 3
SILENT_CONNECTIONS = 1000
ENOUGH_REQUESTS = 1_000_000

NGINX = """
worker_processes 1;
daemon off;
pid {folder}/pid;
error_log {folder}/errors;
events {{ worker_connections 4096; }}
http {{
  access_log off;
  keepalive_timeout 0;
  server_tokens off;
  client_body_temp_path {folder}/body;
  proxy_temp_path {folder}/proxy;
  fastcgi_temp_path {folder}/fastcgi;
  uwsgi_temp_path {folder}/uwsgi;
  scgi_temp_path {folder}/scgi;
  server {{
    listen 127.0.0.1:{port} backlog=4096;
    location /goals {{
      default_type application/json;
      add_header Access-Control-Allow-Origin *;
      add_header Access-Control-Allow-Methods "GET, POST, OPTIONS";
      add_header Access-Control-Allow-Headers Content-Type;
      return 200 '{body}';
    }}
  }}
}}
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def answer(port):
    with socket.create_connection(("127.0.0.1", port), timeout=10) as connection:
        connection.sendall(b"GET /goals HTTP/1.1\r\nHost: localhost\r\n\r\n")
        received = b""
        while chunk := connection.recv(65536):
            received += chunk
    return received


def await_answer(port):
    for _ in range(200):
        with contextlib.suppress(OSError):
            return answer(port)
        time.sleep(0.05)
    sys.exit(f"nothing answers on port {port}")


@contextlib.contextmanager
def running(command):
    process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
    try:
        yield process
    finally:
        process.terminate()
        process.wait()


def load(port, seconds):
    """How many requests were served, and how many a second."""
    report = subprocess.run(
        ["wrk", "--threads=1", f"--connections={CLIENTS}", f"--duration={seconds}s",
         "--header=Connection: close", f"http://127.0.0.1:{port}/goals"],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    if "Non-2xx" in report or "Socket errors" in report:
        sys.exit(report)
    return (int(re.search(r"(\d+) requests in", report)[1]),
            float(re.search(r"Requests/sec:\s+([\d.]+)", report)[1]))


def own_kilobytes(process):
    """Resident memory without what is mapped from files, whose pages come and go by themselves."""
    status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(r"RssAnon:\s+(\d+)", status)[1])


def answer_beside_silent_connections(port):
    """The slowest of 20 answers in ms, while others are connected and say nothing."""
    with contextlib.ExitStack() as held:
        for _ in range(SILENT_CONNECTIONS):
            held.enter_context(socket.create_connection(("127.0.0.1", port)))
        slowest = 0
        for _ in range(20):
            begin = time.monotonic()
            answer(port)
            slowest = max(slowest, time.monotonic() - begin)
    return 1000 * slowest


def figures(program, seconds):
    resource.setrlimit(resource.RLIMIT_NOFILE, (4096, 4096))
    port, reference_port = free_port(), free_port()
    with tempfile.TemporaryDirectory() as folder, running([program, str(port)]) as server:
        body = await_answer(port).split(b"\r\n\r\n", 1)[1].decode()
        configuration = pathlib.Path(folder, "nginx.conf")
        configuration.write_text(NGINX.format(folder=folder, port=reference_port, body=body))
        with running(["nginx", "-p", folder, "-e", f"{folder}/errors", "-c", configuration]):
            reference_answer = await_answer(reference_port)
            if reference_answer.split(b"\r\n\r\n", 1)[1].decode() != body:
                sys.exit("nginx answers something else")
            turns = [(load(port, seconds)[1], load(reference_port, seconds)[1])
                     for _ in range(TURNS)]
        ours, theirs = (statistics.median(rates) for rates in zip(*turns))
        before = own_kilobytes(server)
        served = 0
        # In one go: clients that go away without a request leave their connections to the server.
        while served < ENOUGH_REQUESTS:
            served += load(port, math.ceil((ENOUGH_REQUESTS - served) / ours) + 1)[0]
        return {"requests/s": ours, "nginx requests/s": theirs,
                "grown KiB": own_kilobytes(server) - before, "requests": served,
                "beside silent ms": answer_beside_silent_connections(port)}


if __name__ == "__main__":
    print(json.dumps(figures(sys.argv[1], int((sys.argv[2:] or ["4"])[0]))))
