"""Ways to measure one run of a command: its instructions, its CPU time, its memory."""
import os
import re
import subprocess
import tempfile


def run(command):
    """Runs `command` in an environment that never varies. Returns its standard error, drops its output."""
    done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                          check=False, env={"PATH": os.environ["PATH"]})
    if done.returncode not in (0, 1):  # 1 is no error of events-query --check
        raise RuntimeError(f"{' '.join(command)}: status {done.returncode}\n{done.stderr}")
    return done.stderr


class Callgrind:
    """Counts instructions in valgrind. Two runs differ by a few thousand at most."""

    def count(self, command):
        told = run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command])
        return int(re.search(r"Collected : (\d+)", told).group(1))


class Emulator:
    """Counts instructions for other machines too, five times faster. Needs the plugin of count_instructions.c."""

    def __init__(self, command, plugin):
        self.command, self.plugin = command, plugin

    def count(self, command):
        with tempfile.NamedTemporaryFile("r") as told:
            run([*self.command, "-plugin", self.plugin, "-d", "plugin", "-D", told.name, *command])
            return int(told.read())


def cpu_seconds(command, runs):
    """The least CPU time, of the process and of the kernel for it, in `runs` runs."""
    times = []
    for _ in range(runs):
        with subprocess.Popen(command, stdout=subprocess.DEVNULL) as process:
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise RuntimeError(f"{' '.join(command)}: status {process.returncode}")
        times.append(usage.ru_utime + usage.ru_stime)
    return min(times)


def peak_bytes(command):
    """The largest resident size. A small helper measures it: from here it would be Python's own."""
    return int(run(["/usr/bin/time", "-f", "%M", *command]).split()[-1]) * 1024
