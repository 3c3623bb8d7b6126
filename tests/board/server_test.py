"""The server of the board: what it answers, and to whom. TOOL is orvelin-board."""

import http.client
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

TOOL = os.environ["TOOL"]
PAGE = b"<!DOCTYPE html><title>Board</title>"
FILES = {
    "index.html": PAGE,
    "main.mjs": b"export {};",
    "board.css": b"p {}",
    "texts/en.json": b"{}",
    "engine/orvelin.wasm": b"\0asm",
    "secret.key": b"no file of the board",
}


def start(*words):
    command = [sys.executable, "-B", TOOL, *words]
    return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


class ServerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.folder = os.path.join(cls.scratch.name, "board")
        for name, content in FILES.items():
            file = os.path.join(cls.folder, name)
            os.makedirs(os.path.dirname(file), exist_ok=True)
            with open(file, "wb") as target:
                target.write(content)
        with open(os.path.join(cls.scratch.name, "outside.txt"), "wb") as target:
            target.write(b"outside")
        cls.server = start("--no-browser", "--folder", cls.folder)
        cls.addClassCleanup(cls.end)
        cls.address = cls.server.stdout.readline().strip()
        cls.port = int(cls.address.rsplit(":", 1)[1].strip("/"))

    @classmethod
    def end(cls):
        cls.server.kill()
        cls.server.communicate()

    def ask(self, path, method="GET", host=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=20)
        self.addCleanup(connection.close)
        connection.putrequest(method, path, skip_host=True)
        if host != "":
            connection.putheader("Host", host or f"127.0.0.1:{self.port}")
        connection.endheaders()
        answer = connection.getresponse()
        return answer, answer.read()

    def test_the_address_is_of_this_machine_alone(self):
        self.assertEqual(self.address, f"http://127.0.0.1:{self.port}/")
        with socket.socket() as other:
            other.settimeout(5)
            # Another address of this machine is another door.
            self.assertNotEqual(other.connect_ex(("127.0.0.2", self.port)), 0)

    def test_files_and_their_types(self):
        for path, kind in (
            ("/", "text/html; charset=utf-8"),
            ("/index.html?again", "text/html; charset=utf-8"),
            ("/main.mjs", "text/javascript; charset=utf-8"),
            ("/board.css", "text/css; charset=utf-8"),
            ("/texts/en.json", "application/json"),
            ("/engine/orvelin.wasm", "application/wasm"),
        ):
            answer, body = self.ask(path)
            self.assertEqual(answer.status, 200, path)
            self.assertEqual(answer.headers["Content-Type"], kind)
            name = path.split("?")[0].strip("/") or "index.html"
            self.assertEqual(body, FILES[name])

    def test_headers(self):
        for path, status in (("/", 200), ("/nothing", 404)):
            answer, _ = self.ask(path)
            self.assertEqual(answer.status, status)
            self.assertEqual(answer.headers["Cross-Origin-Opener-Policy"], "same-origin")
            self.assertEqual(answer.headers["Cross-Origin-Embedder-Policy"], "require-corp")
            self.assertEqual(answer.headers["X-Content-Type-Options"], "nosniff")
            policy = answer.headers["Content-Security-Policy"]
            self.assertIn("default-src 'none'", policy)
            self.assertIn("frame-ancestors 'none'", policy)
            self.assertNotIn("'unsafe-inline'", policy)
            self.assertNotIn("'unsafe-eval'", policy)

    def test_head_has_no_body(self):
        answer, body = self.ask("/", "HEAD")
        self.assertEqual((answer.status, body), (200, b""))
        self.assertEqual(answer.headers["Content-Length"], str(len(PAGE)))
        with socket.create_connection(("127.0.0.1", self.port), timeout=20) as plain:
            lines = ("HEAD / HTTP/1.1", f"Host: 127.0.0.1:{self.port}", "Connection: close", "", "")
            plain.sendall("\r\n".join(lines).encode())
            with plain.makefile("rb") as whole:
                self.assertTrue(whole.read().endswith(b"\r\n\r\n"))

    def test_other_hosts_are_refused(self):
        for host in ("", "example.org", f"example.org:{self.port}", "127.0.0.1", f"127.0.0.1:{self.port}x"):
            answer, body = self.ask("/", host=host)
            self.assertEqual(answer.status, 421, host)
            self.assertNotIn(PAGE, body)
        self.assertEqual(self.ask("/", host=f"localhost:{self.port}")[0].status, 200)

    def test_other_files_are_refused(self):
        for path in (
            "/secret.key",
            "/../outside.txt",
            "/%2e%2e/outside.txt",
            "/texts/../../outside.txt",
            "//etc/passwd",
            "/texts",
            "/texts/",
            "http://127.0.0.1/main.mjs",
            "/main.mjs%00",
        ):
            answer, body = self.ask(path)
            self.assertEqual(answer.status, 404, path)
            self.assertNotIn(b"outside", body)

    def test_other_methods_are_refused(self):
        for method in ("POST", "PUT", "DELETE", "OPTIONS", "TRACE", "CONNECT"):
            self.assertEqual(self.ask("/", method)[0].status, 501, method)

    def test_a_silent_client_holds_nobody_up(self):
        with socket.create_connection(("127.0.0.1", self.port), timeout=20) as silent:
            silent.sendall(b"GET / HTT")
            self.assertEqual(self.ask("/")[0].status, 200)

    def test_an_interrupt_ends_it(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            server = start("--no-browser", "--folder", self.folder)
            self.assertTrue(server.stdout.readline().startswith("http://127.0.0.1:"))
            server.send_signal(number)
            _, said = server.communicate(timeout=30)
            self.assertEqual((server.returncode, said), (0, ""))

    def test_a_port_can_be_chosen_once(self):
        server = start("--no-browser", "--folder", self.folder, "--port", str(self.port))
        _, said = server.communicate(timeout=30)
        self.assertEqual(server.returncode, 1)
        self.assertEqual(said, f"orvelin-board: port {self.port}: Address already in use\n")

    def test_bad_arguments(self):
        for words, status in ((["--port", "0"], 2), (["--nothing"], 2), (["--folder", "/nowhere"], 1)):
            server = start("--no-browser", *words)
            _, said = server.communicate(timeout=30)
            self.assertEqual(server.returncode, status, words)
            self.assertEqual(said.count("\n"), 1, said)

    def test_the_browser_is_opened(self):
        program = os.path.join(self.scratch.name, "browser")
        seen = os.path.join(self.scratch.name, "seen")
        with open(program, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\necho "$1" >{seen}.new && mv {seen}.new {seen}\n')
        os.chmod(program, 0o755)
        command = [sys.executable, "-B", TOOL, "--folder", self.folder]
        environment = {**os.environ, "BROWSER": program}
        server = subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment)
        self.addCleanup(server.communicate)
        self.addCleanup(server.kill)
        address = server.stdout.readline()
        end = time.monotonic() + 60
        while not os.path.exists(seen) and time.monotonic() < end:
            time.sleep(0.05)
        with open(seen, encoding="utf-8") as file:
            self.assertEqual(file.read(), address)


if __name__ == "__main__":
    unittest.main()
