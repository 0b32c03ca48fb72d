"""A Slurm cluster of this machine alone, without systemd, in a folder of its own: for tests, as root.

    with Cluster(folder) as cluster:
        subprocess.run(["sbatch", ...], env=cluster.environment)
"""

import os
import shutil
import signal
import socket
import subprocess
import time

PROGRAMS = ("munged", "slurmctld", "slurmd", "sbatch", "squeue", "scontrol")
CONFIGURATION = """
ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={port}
SlurmdPort={node_port}
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
ReturnToService=2
JobRequeue=1
SlurmdTimeout=5
KillWait=1
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
SchedulerParameters=sched_interval=1,batch_sched_delay=0,requeue_setup_env_fail
NodeName={host} NodeAddr=127.0.0.1 CPUs={cpus} State=UNKNOWN
PartitionName=main Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""


class NoCluster(Exception):
    """There can be none here, and why."""


def _free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Cluster:
    def __init__(self, folder):
        for program in PROGRAMS:
            if shutil.which(program) is None:
                raise NoCluster(f"no {program}")
        if os.geteuid() != 0:
            raise NoCluster("Slurm starts jobs as root only")
        self.folder = folder
        self.environment = {**os.environ, "SLURM_CONF": f"{folder}/slurm.conf"}
        self.node = None
        self.programs = []

    def __enter__(self):
        folder = self.folder
        for name in ("state", "spool"):
            os.makedirs(f"{folder}/{name}")
        # munged wants folders that nobody else may write to.
        with open(os.open(f"{folder}/key", os.O_WRONLY | os.O_CREAT, 0o400), "wb") as key:
            key.write(os.urandom(128))
        with open(f"{folder}/slurm.conf", "w") as file:
            file.write(CONFIGURATION.format(folder=folder, host=socket.gethostname().split(".")[0],
                                            port=_free_port(), node_port=_free_port(),
                                            cpus=os.cpu_count()))
        try:
            self._start("munged", "--foreground", "--force", f"--key-file={folder}/key",
                        f"--socket={folder}/munge.socket", f"--pid-file={folder}/munged.pid",
                        f"--log-file={folder}/munged.log", f"--seed-file={folder}/seed")
            self._wait(lambda: os.path.exists(f"{folder}/munge.socket"), "munged")
            self._start("slurmctld", "-D")
            self.start_node()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.kill_node()
        for program in reversed(self.programs):
            program.terminate()
            try:
                program.wait(10)
            except subprocess.TimeoutExpired:
                program.kill()
                program.wait()

    def start_node(self):
        self.node = self._start("slurmd", "-D")
        self._wait(lambda: self._state() in ("idle", "alloc", "mix", "comp"), "slurmd")

    def kill_node(self):
        """As a power failure of the node: slurmd, what it has started, and their children."""
        if self.node is None:
            return
        victims = [self.node.pid]
        # What watches over a job has the log open, and ends before it can report how the job ended.
        victims += [pid for pid in _processes() if _name(pid) == "slurmstepd" and
                    f"{self.folder}/slurmd.log" in _open_files(pid)]
        for process in victims:
            victims += [child for child in _children(process) if child not in victims]
        for process in victims:
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.node.wait()
        self.node = None

    def wait_until_missed(self):
        """Until the cluster sees that the node is gone."""
        self._wait(lambda: self._state().startswith("down"), "slurmctld", 90)

    def start_waiting_jobs(self):
        """Slurm waits two minutes before it starts a job again."""
        for job in self._ask("squeue", "-h", "-t", "PENDING", "-o", "%A").split():
            self._ask("scontrol", "update", f"JobId={job}", "StartTime=now")

    def _state(self):
        return self._ask("sinfo", "-h", "-o", "%t").strip()

    def _ask(self, *command):
        return subprocess.run(command, env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True, timeout=60).stdout

    def _start(self, *command):
        with open(f"{self.folder}/{command[0]}.out", "ab") as out:
            program = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                       stdout=out, stderr=out)
        if command[0] != "slurmd":
            self.programs.append(program)
        return program

    def _wait(self, is_ready, name, seconds=30):
        end = time.monotonic() + seconds
        while not is_ready():
            if time.monotonic() > end:
                with open(f"{self.folder}/{name}.out", errors="replace") as file:
                    raise NoCluster(f"{name} does not start: {file.read()[-500:]}")
            time.sleep(0.2)


def _processes():
    return [int(name) for name in os.listdir("/proc") if name.isdigit() and int(name) != os.getpid()]


def _read(path):
    try:
        with open(path, errors="replace") as file:
            return file.read()
    except OSError:
        return ""


def _name(pid):
    return _read(f"/proc/{pid}/comm").strip()


def _open_files(pid):
    files = []
    try:
        for number in os.listdir(f"/proc/{pid}/fd"):
            files.append(os.readlink(f"/proc/{pid}/fd/{number}"))
    except OSError:
        pass
    return files


def _children(pid):
    return [int(child) for child in _read(f"/proc/{pid}/task/{pid}/children").split()]
