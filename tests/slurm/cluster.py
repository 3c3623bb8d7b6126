"""A cluster of Slurm on this machine: a munged, a slurmctld and two slurmd of its own, in a folder
of its own. It needs neither root nor systemd, and leaves a cluster that is there already alone."""

import atexit
import contextlib
import ctypes
import os
import pwd
import shutil
import signal
import socket
import subprocess
import tempfile
import time

from processes import parent_of, with_variables

PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
NODES = ("n1", "n2")
# The machine may be busy with anything.
PATIENCE = 120
# Silent nodes are down soon, and what lost its node starts again as soon as it may.
CONFIGURATION = """\
ClusterName=test
SlurmctldHost=localhost
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={folder}/munge,cred_expire=5
SlurmctldPort={ports[0]}
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/%n.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SlurmdParameters=config_overrides
SchedulerParameters=sched_interval=1,bf_interval=1
SlurmdTimeout=10
KillWait=5
JobRequeue=0
ReturnToService=2
MpiDefault=none
NodeName=n1 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[1]} CPUs=2
NodeName=n2 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[2]} CPUs=2
PartitionName=all Nodes=n1,n2 Default=YES State=UP MaxTime=INFINITE
"""


class ClusterError(Exception):
    """With what the daemons said."""


def free_ports(count):
    """Ports on which nobody listens."""
    with contextlib.ExitStack() as stack:
        sockets = [stack.enter_context(socket.socket()) for _ in range(count)]
        for one in sockets:
            one.bind(("127.0.0.1", 0))
        return [one.getsockname()[1] for one in sockets]


def wait_until(condition, told=lambda: ""):
    """Waits until the condition holds, and gives what it said."""
    deadline = time.monotonic() + PATIENCE
    while not (found := condition()):
        if time.monotonic() > deadline:
            raise ClusterError(f"waited for {PATIENCE} s\n{told()}")
        time.sleep(0.02)
    return found


def adopt_orphans():
    """What the daemons leave behind becomes a child of this process, which can see to its end."""
    set_child_subreaper = 36
    ctypes.CDLL(None).prctl(set_child_subreaper, 1, 0, 0, 0)


def bury_orphans():
    with contextlib.suppress(ChildProcessError):
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass


class Cluster:
    """Owns its processes, those of the jobs too, and its folder; close() ends and removes all, and
    so does the end of this process."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="orvelin-cluster-")
        self._user = pwd.getpwuid(os.getuid()).pw_name
        self._daemons = {}
        self.work = os.path.join(self.folder, "work")
        # Jobs take over the variables of whoever submits them: none of another cluster.
        self.environment = {
            "PATH": PATH,
            "HOME": self.folder,
            "SLURM_CONF": os.path.join(self.folder, "slurm.conf"),
        }
        adopt_orphans()
        atexit.register(self.close)
        try:
            self._configure()
            self._start_all()
        except BaseException:
            self.close()
            raise

    def _configure(self):
        for name in ("state", "work", *NODES):
            os.mkdir(os.path.join(self.folder, name))
        with open(self.environment["SLURM_CONF"], "w", encoding="utf-8") as file:
            file.write(
                CONFIGURATION.format(
                    folder=self.folder,
                    user=self._user,
                    host=socket.gethostname().partition(".")[0],
                    ports=free_ports(3),
                )
            )
        key = os.path.join(self.folder, "key")
        with open(os.open(key, os.O_WRONLY | os.O_CREAT, 0o600), "wb") as file:
            file.write(os.urandom(1024))
        # munged wants a folder that others may search.
        os.chmod(self.folder, 0o755)

    def _start_all(self):
        places = (("socket", ""), ("key-file", "key"), ("pid-file", "munged.pid"))
        places += (("log-file", "munged.log"), ("seed-file", "munged.seed"))
        named = [f"--{what}={os.path.join(self.folder, name or 'munge')}" for what, name in places]
        self._start("munged", "munged", "--foreground", *named)
        wait_until(lambda: os.path.exists(os.path.join(self.folder, "munge")), self.logs)
        self._start("slurmctld", "slurmctld", "-D")
        for node in NODES:
            self.start_node(node)

    def _start(self, name, program, *arguments):
        """Its output goes to a file, and it is no part of the group that Ctrl-C ends."""
        path = shutil.which(program, path=PATH)
        if path is None:
            raise ClusterError(f"{program} is missing; tools/check-cluster installs it")
        with open(os.path.join(self.folder, f"{name}.out"), "ab") as output:
            self._daemons[name] = subprocess.Popen(
                [path, *arguments],
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
                cwd=self.folder,
                env=self.environment,
                start_new_session=True,
            )

    def start_node(self, node):
        """Starts a node, which is there when this returns."""
        self._start(node, "slurmd", "-D", "-N", node)
        wait_until(lambda: self._state(node) in ("idle", "mixed", "allocated"), self.logs)

    def _state(self, node):
        for name, daemon in self._daemons.items():
            if daemon.poll() is not None:
                raise ClusterError(f"{name} ended with {daemon.returncode}\n{self.logs()}")
        run = self._client("sinfo", "--noheader", "--nodes", node, "--format", "%T")
        return run.stdout.strip()

    def kill_node(self, node):
        """As if the plug were pulled: its daemon and all that it has started are gone."""
        daemon = self._daemons.pop(node)
        daemon.kill()
        daemon.wait()
        # Who watches over the jobs goes first, and tells nobody of their end.
        while found := self._processes(SLURMD_NODENAME=node):
            watchers = {parent_of(process) for process in found} & set(self._processes())
            for process in (*(watchers - set(found)), *found):
                self._kill(process)

    def _client(self, *command, **more):
        return subprocess.run(
            command,
            capture_output=True,
            text=True,
            stdin=subprocess.DEVNULL,
            cwd=self.work,
            env={**self.environment, **more},
            timeout=PATIENCE,
            check=False,
        )

    def run(self, *command, **environment):
        """The standard output of a command of Slurm, which has to succeed."""
        run = self._client(*command, **environment)
        if run.returncode != 0:
            raise ClusterError(f"{command}: {run.stdout}{run.stderr}\n{self.logs()}")
        return run.stdout

    def wait_for_jobs(self):
        """Waits until no job is queued or runs."""
        wait_until(lambda: not self.run("squeue", "--noheader"), self.logs)

    def states(self, job):
        """The states of the tasks of an array."""
        options = ("--noheader", "--array", "--states", "all", "--format", "%K %T")
        lines = self.run("squeue", "--jobs", job, *options).splitlines()
        return {int(task): state for task, state in map(str.split, lines)}

    def logs(self):
        """The ends of what the daemons and the jobs wrote."""
        text = ""
        for folder in (self.folder, self.work):
            for name in sorted(os.listdir(folder)):
                path = os.path.join(folder, name)
                if name.endswith((".out", ".log")):
                    with open(path, encoding="utf-8", errors="replace") as file:
                        text += f"== {name}\n" + "".join(file.readlines()[-12:])
        return text

    def _processes(self, **variables):
        """Those of this cluster, with these variables too."""
        return with_variables(SLURM_CONF=self.environment["SLURM_CONF"], **variables)

    @staticmethod
    def _kill(process):
        with contextlib.suppress(ProcessLookupError):
            os.kill(process, signal.SIGKILL)

    def close(self):
        """Nothing stays behind, whatever has happened."""
        daemons, self._daemons = self._daemons, {}
        if "slurmctld" in daemons:
            with contextlib.suppress(OSError, subprocess.SubprocessError):
                self._client("scancel", "--user", self._user)
        for daemon in daemons.values():
            daemon.kill()
            daemon.wait()
        # Jobs have their environment from here, and so does what watches over them.
        while found := self._processes():
            for process in found:
                self._kill(process)
            time.sleep(0.02)
            bury_orphans()
        bury_orphans()
        shutil.rmtree(self.folder, ignore_errors=True)
