#!/usr/bin/env python3
"""Runs the program with files, pipes and disks that fail, and checks its output.

usage: surroundings_test.py PROGRAM
"""

import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

NOBODY = 65534
EVENT_COUNT = 200
LOG = b"".join(b'{"id":1228,"time":"t%d","vars":{"inet_id":"%d"}}\n' % (i, i)
               for i in range(EVENT_COUNT))
NO_EVENTS = b"No events to display.\n"


class Skipped(Exception):
    pass


def check(holds, what):
    if not holds:
        raise AssertionError(what)


class Surroundings:
    def __init__(self, program, folder):
        self.folder = folder
        self.program = folder / "events-viewer"
        shutil.copy(program, self.program)  # where every user can reach it
        folder.chmod(0o777)
        (folder / "log").write_bytes(LOG)

    def run(self, *arguments, **options):
        return subprocess.run([self.program, *arguments], cwd=self.folder, timeout=60, check=False,
                              stdin=subprocess.DEVNULL, env={"LC_ALL": "C"},
                              **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})

    def table(self):
        done = self.run("-a", "-i", "log")
        check((done.returncode, done.stdout.count(b"\x1b[1;34m")) == (0, EVENT_COUNT),
              "the whole table")
        return done.stdout

    def export(self):
        return (self.folder / "export").read_bytes()


def a_file_without_permission_to_read_counts_as_missing(place):
    (place.folder / "log").rename(place.folder / "secret.0")
    secret = place.folder / "secret"
    secret.write_bytes(b'{"id":835,"time":"secret"}\n')
    secret.chmod(0)
    user = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
    done = place.run("-s", "-n", "1", "-i", "secret", **user)
    check(done.returncode == 0 and b"t199 " in done.stdout and b"secret" not in done.stdout,
          "the predecessor alone is shown")
    (place.folder / "secret.0").chmod(0)
    done = place.run("-a", "-i", "secret", **user)
    check((done.returncode, done.stdout, done.stderr) == (0, NO_EVENTS, b""), "no events")


def an_export_without_permission_to_write_is_left_unchanged(place):
    export = place.folder / "export"
    export.write_bytes(b"before")
    export.chmod(0o444)
    user = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
    done = place.run("-l", "-i", "log", "-o", "export", **user)
    check((done.returncode, done.stderr) == (0, b""), "a success")
    check(done.stdout == b"Saving table of events (from log) to export\n", "the saving line")
    check(place.export() == b"before", "the file is untouched")


def an_export_beyond_the_size_limit_is_cut_off_by_a_signal(place):
    whole = place.table()[:-1]
    done = place.run("-l", "-i", "log", "-o", "export",
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000)))
    check(done.returncode == -signal.SIGXFSZ and done.stderr == b"", "an end by SIGXFSZ")
    check(place.export() == whole[:5000], "the beginning of the table")


def an_export_beyond_the_size_limit_is_cut_off_if_the_signal_is_ignored(place):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))
    whole = place.table()[:-1]
    done = place.run("-l", "-i", "log", "-o", "export", preexec_fn=limit)
    check((done.returncode, done.stderr) == (0, b""), "nothing is reported")
    check(place.export() == whole[:5000], "the beginning of the table")


def an_export_to_a_disk_that_fills_is_cut_off(place):
    whole = place.table()[:-1]
    (place.folder / "disk").mkdir()
    script = ("mount -t tmpfs -o size=8k none disk || exit 99\n"
              "./events-viewer -l -i log -o disk/export; status=$?\n"
              "cat disk/export >export; exit $status")
    command = ["unshare", "-m", "sh", "-c", script]
    if os.geteuid() != 0 or shutil.which("unshare") is None:
        raise Skipped("mounting a small disk takes root and unshare")
    done = subprocess.run(command, cwd=place.folder, capture_output=True, timeout=60, check=False)
    if done.returncode == 99 or b"unshare" in done.stderr:
        raise Skipped("a small disk cannot be mounted here")
    check((done.returncode, done.stderr) == (0, b""), "nothing is reported")
    check(0 < len(place.export()) < len(whole) and whole.startswith(place.export()),
          "the beginning of the table")


def a_closed_pipe_ends_the_run_silently(place):
    for arguments in (["-a", "-i", "log"], ["-h"]):
        reader, writer = os.pipe()
        os.close(reader)
        done = place.run(*arguments, stdout=writer)
        os.close(writer)
        check((done.returncode, done.stderr) == (-signal.SIGPIPE, b""), "an end by SIGPIPE")


def a_pipe_that_is_read_for_a_while_gets_the_beginning(place):
    (place.folder / "log").write_bytes(LOG * 20)
    whole = place.run("-a", "-i", "log").stdout
    process = subprocess.Popen([place.program, "-a", "-i", "log"], cwd=place.folder,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    beginning = process.stdout.read(1000)
    process.stdout.close()
    errors = process.stderr.read()
    process.stderr.close()
    check((process.wait(timeout=60), errors) == (-signal.SIGPIPE, b""), "an end by SIGPIPE")
    check(whole[:1000] == beginning, "the beginning of the table")


def a_log_that_arrives_slowly_through_a_pipe_is_read_whole(place):
    whole = place.table()
    os.mkfifo(place.folder / "pipe")

    def write_slowly():
        with open(place.folder / "pipe", "wb", buffering=0) as pipe:
            for at in range(0, len(LOG), 997):
                pipe.write(LOG[at:at + 997])
                time.sleep(0.001)
    writer = threading.Thread(target=write_slowly)
    writer.start()
    done = place.run("-a", "-i", "pipe")
    writer.join()
    check((done.returncode, done.stdout) == (0, whole), "the whole table")


def a_reader_that_is_stopped_and_continued_reads_on(place):
    whole = place.table()
    os.mkfifo(place.folder / "pipe")
    process = subprocess.Popen([place.program, "-a", "-i", "pipe"], cwd=place.folder,
                               stdout=subprocess.PIPE)
    with open(place.folder / "pipe", "wb", buffering=0) as pipe:
        for at in range(0, len(LOG), 2000):
            process.send_signal(signal.SIGSTOP)
            process.send_signal(signal.SIGCONT)
            pipe.write(LOG[at:at + 2000])
    stdout = process.communicate(timeout=60)[0]
    check((process.returncode, stdout) == (0, whole), "the whole table")


def a_run_without_memory_ends_without_a_table(place):
    (place.folder / "log").write_bytes(LOG * 2000)
    limit = (40 << 20, 40 << 20)
    done = place.run("-a", "-i", "log",
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, limit))
    check((done.returncode, done.stdout, done.stderr) == (-signal.SIGABRT, b"", b""),
          "an end by SIGABRT")


TESTS = [
    a_file_without_permission_to_read_counts_as_missing,
    an_export_without_permission_to_write_is_left_unchanged,
    an_export_beyond_the_size_limit_is_cut_off_by_a_signal,
    an_export_beyond_the_size_limit_is_cut_off_if_the_signal_is_ignored,
    an_export_to_a_disk_that_fills_is_cut_off,
    a_closed_pipe_ends_the_run_silently,
    a_pipe_that_is_read_for_a_while_gets_the_beginning,
    a_log_that_arrives_slowly_through_a_pipe_is_read_whole,
    a_reader_that_is_stopped_and_continued_reads_on,
    a_run_without_memory_ends_without_a_table,
]


def main():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    failed = 0
    for test in TESTS:
        with tempfile.TemporaryDirectory(prefix="surroundings.") as folder:
            try:
                test(Surroundings(sys.argv[1], Path(folder)))
                print(f"passed   {test.__name__}")
            except Skipped as reason:
                print(f"skipped  {test.__name__}: {reason}")
            except (AssertionError, subprocess.TimeoutExpired) as problem:
                print(f"FAILED   {test.__name__}: expected {problem}")
                failed += 1
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
