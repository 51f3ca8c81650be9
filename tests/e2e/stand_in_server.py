#!/usr/bin/python3
"""A classification server that honours its contract, and writes down how it was started.

Installed by a test under the name that TARNE looks for.
"""

import http.server
import json
import os
import pathlib
import signal
import sys


class Health(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(200 if self.path == "/health" else 404)
        self.send_header("Content-Length", "0")
        self.end_headers()

    def log_message(self, *_):
        pass


signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
port = int(sys.argv[1])
server = http.server.HTTPServer(("127.0.0.1", port), Health)
run = {"arguments": sys.argv[1:], "PORT": os.environ.get("PORT"),
       "GEMINI_API_KEY": os.environ.get("GEMINI_API_KEY"), "folder": os.getcwd()}
with open(pathlib.Path(__file__).with_name("server-runs.log"), "a") as runs:
    runs.write(json.dumps(run) + "\n")
print(f"TARNE Classification Server running on port {port}", flush=True)
server.serve_forever()
