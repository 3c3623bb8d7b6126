"""A fresh Debian that packages are installed into."""

import os
import shutil
import tempfile

from support import run

# A copy of what debootstrap made; without it the packages go into an empty folder.
CHROOT = os.environ["PACKAGE_CHROOT"]
# Written by every use of the package manager, whatever it installs.
PASSING = ("var/cache", "var/log", "var/lib/apt", "var/lib/dpkg", "tmp")
APT = ("apt-get", "-y", "-q", "--no-install-recommends")


class System:
    """A folder that is the root of a system, and what is in it."""

    def __init__(self):
        self._place = tempfile.TemporaryDirectory()
        self.root = os.path.join(self._place.name, "root")

    def remove(self):
        self._place.cleanup()

    def status(self):
        """The state and the version of the package, as dpkg knows them; None without it."""
        form = "${Package} ${db:Status-Status} ${Version}\\n"
        listed = run("dpkg-query", f"--admindir={self.root}/var/lib/dpkg", "-W", "-f", form)
        for line in listed.splitlines():
            package, status = line.split(" ", 1)
            if package == "orvelin":
                return status
        return None

    def files(self):
        """All files with what they are, but for those that every use of the package manager
        writes."""
        found = {}
        for place, folders, files in os.walk(self.root):
            for name in folders + files:
                path = os.path.join(place, name)
                known = os.path.relpath(path, self.root)
                if not known.startswith(PASSING):
                    status = os.lstat(path)
                    size = 0 if name in folders else status.st_size
                    found[known] = (status.st_mode, size)
        return found

    def leftovers(self):
        """What the package manager still keeps of the package."""
        folder = os.path.join(self.root, "var/lib/dpkg/info")
        return [name for name in os.listdir(folder) if name.startswith("orvelin")]


class DebianSystem(System):
    """A whole system, where apt-get installs what is asked for and the programs run in place."""

    def __init__(self):
        super().__init__()
        run("cp", "-a", "--reflink=auto", CHROOT, self.root)
        self.engine = ("chroot", self.root, "/usr/games/orvelin")
        # The engine opens the book of the system, from wherever it is started.
        self.folder = "/"

    def install(self, package):
        name = os.path.basename(package)
        shutil.copy(package, os.path.join(self.root, "tmp"))
        self._run(*APT, "install", f"./tmp/{name}")

    def purge(self):
        self._run(*APT, "purge", "orvelin")

    def _run(self, *command):
        environment = {"DEBIAN_FRONTEND": "noninteractive", "PATH": "/usr/sbin:/usr/bin:/sbin:/bin"}
        run("chroot", self.root, *command, env=environment, folder="/")


class EmptySystem(System):
    """An empty folder with a list of packages, for where nobody may make a whole system. The
    dependencies are not there; the programs run with the libraries of the machine."""

    def __init__(self):
        super().__init__()
        for folder in ("info", "updates", "triggers"):
            os.makedirs(os.path.join(self.root, "var/lib/dpkg", folder))
        for name in ("status", "available"):
            with open(os.path.join(self.root, "var/lib/dpkg", name), "wb"):
                pass
        self.engine = (os.path.join(self.root, "usr/games/orvelin"),)
        self.folder = os.path.join(self.root, "usr/games/orvelin.files")

    def install(self, package):
        self._dpkg("--force-depends", "--install", package)

    def purge(self):
        self._dpkg("--purge", "orvelin")

    def _dpkg(self, *arguments):
        log = os.path.join(self._place.name, "log")
        run("dpkg", f"--root={self.root}", f"--log={log}", "--force-not-root", *arguments)


def new_system():
    return DebianSystem() if CHROOT else EmptySystem()
