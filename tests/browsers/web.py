"""The web of the tests: one server on port 80 of the box, which every made-up name leads to."""

import html
import http.server
import threading
import urllib.parse

PAGE = """<!doctype html><html lang="en"><head><meta charset="utf-8"><title>{title}</title>
<meta name="description" content="{description}"></head><body>{body}</body></html>"""


class Web:
    """Answers any address with a page that is titled like its path, unless told otherwise."""

    def __init__(self):
        self.requests = []
        self._pages = {}
        web = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                web.answer(self)

            def do_POST(self):
                self.rfile.read(int(self.headers.get("Content-Length", 0)))
                web.answer(self)

            def log_message(self, *_):
                pass

        class Server(http.server.ThreadingHTTPServer):
            daemon_threads = True
            request_queue_size = 64

            def handle_error(self, *_):
                pass  # A browser hangs up as it likes.

        self._server = Server(("127.0.0.1", 80), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def put(self, host, path, body="", title=None, description=""):
        """The page at this host and path, whatever its query."""
        self._pages[host, path] = (title or path, description, body)

    def answer(self, handler):
        url = urllib.parse.urlsplit(handler.path)
        host = handler.headers["Host"].partition(":")[0]
        if url.path != "/favicon.ico":
            self.requests.append((handler.command, host, handler.path))
        title, description, body = self._pages.get((host, url.path), (handler.path, "", "<p>Text</p>"))
        content = PAGE.format(title=html.escape(title), description=html.escape(description),
                              body=body).encode()
        handler.send_response(200)
        handler.send_header("Content-Type", "text/html; charset=utf-8")
        handler.send_header("Content-Length", str(len(content)))
        handler.end_headers()
        handler.wfile.write(content)

    def visits(self, host, path=None):
        """How many requests have come for a host, or one address of it, with its query."""
        return sum(1 for _, asked, target in self.requests
                   if asked == host and path in (None, target))

    def close(self):
        self._server.shutdown()
        self._server.server_close()
