"""An ssh server of a test's own, on the loopback interface, with keys that live as long as the
test."""

import getpass
import os
import shutil
import socket
import subprocess
import time

PATH = os.environ["PATH"] + ":/usr/sbin:/usr/local/sbin"
SECONDS = 60
WITHOUT_SERVER = (
    "openssh-server is not installed: its package would start a server on this machine"
)


def has_server():
    return shutil.which("sshd", path=PATH) is not None


def needed(program):
    """The path of a program that ./check installs."""
    path = shutil.which(program, path=PATH)
    if path is None:
        raise RuntimeError(f"{program} is missing; ./check installs parallel and openssh-client")
    return path


class SshServer:
    """Knows one key and listens on this machine alone. Its files are in the folder of the test, a
    ScratchTest, with which it ends."""

    def __init__(self, test):
        self._test = test
        for name in ("host_key", "key"):
            command = [needed("ssh-keygen"), "-q", "-t", "ed25519", "-N", "", "-f", test.file(name)]
            subprocess.run(command, check=True)
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self._port = free.getsockname()[1]
        self._make_separation_directory()
        self._start()
        self._client = test.file(
            "ssh_config",
            f"Host *\nHostName 127.0.0.1\nPort {self._port}\nUser {getpass.getuser()}\n"
            f"IdentityFile {test.file('key')}\nIdentitiesOnly yes\nIdentityAgent none\n"
            f"StrictHostKeyChecking no\nUserKnownHostsFile {test.file('known')}\n"
            "BatchMode yes\nLogLevel ERROR\n",
        )

    def login(self, host):
        """What GNU parallel takes for --sshlogin; every host is this machine."""
        return f"{needed('ssh')} -F {self._client} {host}"

    def log(self):
        with open(self._test.file("sshd.log"), encoding="utf-8") as file:
            return file.read()

    def _make_separation_directory(self):
        """Root's server needs the folder that its service makes when it starts."""
        if os.getuid() == 0 and not os.path.exists("/run/sshd"):
            os.mkdir("/run/sshd", 0o755)
            self._test.addCleanup(os.rmdir, "/run/sshd")

    def _start(self):
        config = self._test.file(
            "sshd_config",
            f"Port {self._port}\nListenAddress 127.0.0.1\nHostKey {self._test.file('host_key')}\n"
            f"AuthorizedKeysFile {self._test.file('key.pub')}\nPasswordAuthentication no\n"
            "KbdInteractiveAuthentication no\nUsePAM no\nStrictModes no\nPidFile none\n",
        )
        command = [needed("sshd"), "-D", "-e", "-f", config]
        with open(self._test.file("sshd.log"), "w", encoding="utf-8") as file:
            server = subprocess.Popen(command, stderr=file, stdin=subprocess.DEVNULL)
        self._test.addCleanup(server.wait)
        self._test.addCleanup(server.terminate)
        deadline = time.monotonic() + SECONDS
        while "listening" not in self.log():
            self._test.assertIsNone(server.poll(), self.log())
            self._test.assertLess(time.monotonic(), deadline, self.log())
            time.sleep(0.05)
