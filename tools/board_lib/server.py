"""Serves the files of one folder to the browsers of this machine."""

import os
import socket
from http import HTTPStatus
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

ADDRESS = "127.0.0.1"
TYPES = {
    ".bin": "application/octet-stream",
    ".css": "text/css; charset=utf-8",
    ".html": "text/html; charset=utf-8",
    ".js": "text/javascript; charset=utf-8",
    ".json": "application/json",
    ".mjs": "text/javascript; charset=utf-8",
    ".svg": "image/svg+xml",
    ".txt": "text/plain; charset=utf-8",
    ".wasm": "application/wasm",
    ".webmanifest": "application/manifest+json",
}
# The page sets a policy of its own, for hosts that send none; no other page may frame it.
POLICY = (
    "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; style-src 'self'; img-src 'self'; "
    "connect-src 'self'; worker-src 'self'; manifest-src 'self'; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'none'"
)
HEADERS = {
    "Content-Security-Policy": POLICY,
    # With these two the engine hears `stop` in shared memory.
    "Cross-Origin-Opener-Policy": "same-origin",
    "Cross-Origin-Embedder-Policy": "require-corp",
    "Cross-Origin-Resource-Policy": "same-origin",
    "X-Content-Type-Options": "nosniff",
    "Referrer-Policy": "no-referrer",
    "Cache-Control": "no-cache",
}
# Who says nothing for so many seconds is not waited for any longer.
PATIENCE = 20


def known_files(folder):
    """{path in an address: file} of all files of a folder that are of a known type."""
    files = {}
    for place, _, names in os.walk(folder):
        for name in names:
            if os.path.splitext(name)[1] in TYPES:
                file = os.path.join(place, name)
                files["/" + os.path.relpath(file, folder).replace(os.sep, "/")] = file
    if "/index.html" in files:
        files["/"] = files["/index.html"]
    return files


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = PATIENCE

    def do_GET(self):
        self._answer(with_body=True)

    def do_HEAD(self):
        self._answer(with_body=False)

    def _answer(self, with_body):
        # A page of another name that leads here is no page of ours.
        if self.headers.get("Host") not in self.server.hosts:
            self.send_error(HTTPStatus.MISDIRECTED_REQUEST)
            return
        file = self.server.files.get(self.path.partition("?")[0])
        if file is None:
            self.send_error(HTTPStatus.NOT_FOUND)
            return
        try:
            with open(file, "rb") as source:
                body = source.read()
        except OSError:
            self.send_error(HTTPStatus.NOT_FOUND)
            return
        self.send_response(HTTPStatus.OK)
        self.send_header("Content-Type", TYPES[os.path.splitext(file)[1]])
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        if with_body:
            self.wfile.write(body)

    def end_headers(self):
        for name, value in HEADERS.items():
            self.send_header(name, value)
        super().end_headers()

    def version_string(self):
        return "orvelin-board"

    def log_message(self, *_words):
        """Nobody reads a list of the requests."""


class BoardServer(ThreadingHTTPServer):
    """Answers GET and HEAD of the files that the folder had when it was made, and nothing else."""

    daemon_threads = True

    def __init__(self, folder, port=0):
        super().__init__((ADDRESS, port), _Handler)
        self.files = known_files(folder)
        port = self.server_address[1]
        self.hosts = {f"{name}:{port}" for name in (ADDRESS, "localhost")}
        self.address = f"http://{ADDRESS}:{port}/"

    def server_bind(self):
        # A name for the address is not asked for: that can take long where there is no network.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.socket.bind(self.server_address)
        self.server_address = self.socket.getsockname()
        self.server_name, self.server_port = self.server_address[:2]

    def handle_error(self, _request, _client):
        """Browsers go away in the middle of an answer: that is no fault."""
