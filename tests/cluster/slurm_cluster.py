"""A Slurm cluster of two nodes on this machine, for a test: its own configuration, ports, key and folders."""
import getpass
import os
import pathlib
import signal
import socket
import subprocess
import time

programs = ["munged", "slurmctld", "slurmd", "sbatch", "squeue", "sinfo", "scontrol"]
nodes = ["node1", "node2"]

configuration = """ClusterName=survey
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={ports[0]}
AuthType=auth/munge
AuthInfo=socket={folder}/munge/socket,cred_expire=5
CredType=cred/munge
SlurmUser={user}
SlurmdUser={user}
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool/%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.%n.pid
ProctrackType=proctrack/pgid
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerType=sched/builtin
ReturnToService=2
SlurmdTimeout=10
JobRequeue=1
NodeName=node1 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[1]} CPUs=1 RealMemory=4000
NodeName=node2 NodeHostname={host} NodeAddr=127.0.0.1 Port={ports[2]} CPUs=1 RealMemory=4000
PartitionName=all Nodes=node1,node2 Default=YES MaxTime=INFINITE State=UP
"""


def find_program(name):
    """Debian has the daemons where only the administrator's path looks."""
    for folder in [*os.environ["PATH"].split(":"), "/usr/sbin", "/sbin"]:
        path = os.path.join(folder, name)
        if os.access(path, os.X_OK):
            return path
    return None


def missing_programs():
    return [name for name in programs if not find_program(name)]


def free_ports(count):
    """Nobody listens there now."""
    sockets = [socket.socket() for _ in range(count)]
    for one in sockets:
        one.bind(("127.0.0.1", 0))
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


def read_process(pid, name):
    try:
        return pathlib.Path(f"/proc/{pid}/{name}").read_bytes().decode(errors="replace")
    except OSError:
        return ""


def parents():
    """Of every process, its parent."""
    found = {}
    for name in os.listdir("/proc"):
        if name.isdigit() and (stat := read_process(name, "stat")):
            found[int(name)] = int(stat.rpartition(")")[2].split()[1])
    return found


class Cluster:
    """Started at the begin of a `with`, stopped at its end with all that runs on it."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.daemons = {}
        self.environment = {**os.environ, "SLURM_CONF": str(self.folder / "slurm.conf")}

    def __enter__(self):
        try:
            self._write_files()
            munge = self.folder / "munge"
            self._start("munged", "munged", "--foreground",
                        *(f"--{what}={munge / what.split('-')[0]}"
                          for what in ["key-file", "socket", "pid-file", "log-file", "seed-file"]))
            self._wait("munged", (munge / "socket").exists)
            self._start("slurmctld", "slurmctld", "-D")
            for node in nodes:
                self._start(node, "slurmd", "-D", "-N", node)
            self._wait("the nodes", lambda: self.states() == ["idle"] * len(nodes), 60)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for node in nodes:
            if node in self.daemons:
                self.kill_node(node)
        for name in ["slurmctld", "munged"]:
            if name in self.daemons:
                self.daemons[name].terminate()
                try:
                    self.daemons[name].wait(20)
                except subprocess.TimeoutExpired:
                    self.daemons[name].kill()

    def ask(self, name, *arguments):
        """What a command of the cluster prints."""
        done = subprocess.run([find_program(name), *arguments], env=self.environment, text=True, timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return done.stdout

    def states(self):
        return sorted(self.ask("sinfo", "-h", "-N", "-o", "%t").split())

    def kill_node(self, node):
        """As when its power fails: the daemon and every process of its jobs at once."""
        daemon = self.daemons.pop(node)
        # Scripts run from the folder of the node; what watches over them is their parent.
        mark = str(self.folder / "spool" / node) + "/"
        above = parents()
        scripts = [pid for pid in above if mark in read_process(pid, "cmdline")]
        doomed = {pid for script in scripts for pid in [script, above[script]]
                  if pid == script or read_process(pid, "comm").startswith("slurmstepd")}
        while more := {pid for pid, parent in above.items() if parent in doomed} - doomed:
            doomed |= more
        daemon.kill()
        for pid in doomed:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        daemon.wait()
        return len(scripts)

    def _write_files(self):
        for name in ["munge", "state", "log", *(f"spool/{node}" for node in nodes)]:
            (self.folder / name).mkdir(parents=True)
        (self.folder / "munge").chmod(0o711)
        key = self.folder / "munge" / "key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o400)
        (self.folder / "slurm.conf").write_text(configuration.format(
            folder=self.folder, user=getpass.getuser(), host=socket.gethostname().split(".")[0],
            ports=free_ports(1 + len(nodes))))

    def _start(self, name, *command):
        with open(self.folder / "log" / name, "w") as log:
            self.daemons[name] = subprocess.Popen([find_program(command[0]), *command[1:]], stdout=log, stderr=log,
                                                  stdin=subprocess.DEVNULL, env=self.environment)

    def _wait(self, what, ready, seconds=20):
        end = time.monotonic() + seconds
        while not ready():
            if time.monotonic() > end:
                logs = "\n".join(path.read_text()[-1000:] for path in (self.folder / "log").iterdir())
                raise RuntimeError(f"{what} did not come up in {seconds} s:\n{logs}")
            time.sleep(0.2)
