#!/usr/bin/env python3
"""Runs the program with files, pipes and disks that fail, and checks its output.

usage: surroundings_test.py PROGRAM, which is events-viewer or events-query
"""

import gzip
import itertools
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
        self.program = folder / Path(program).name
        shutil.copy(program, self.program)  # where every user can reach it
        folder.chmod(0o777)
        (folder / "log").write_bytes(LOG)

    def run(self, *arguments, **options):
        return subprocess.run([self.program, *arguments], cwd=self.folder, timeout=60, check=False,
                              env={"LC_ALL": "C"},
                              **{"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE,
                                 "stderr": subprocess.PIPE, **options})

    def query(self, *arguments, **options):
        """The status, what is printed, and the messages of a run of events-query."""
        done = self.run(*arguments, **options)
        return done.returncode, done.stdout, done.stderr

    def table(self):
        done = self.run("-a", "-i", "log")
        check((done.returncode, done.stdout.count(b"\x1b[1;34m")) == (0, EVENT_COUNT),
              "the whole table")
        return done.stdout

    def export(self):
        return (self.folder / "export").read_bytes()


def run_in_own_mounts(place, script):
    """Runs a script whose mounts nobody else sees. It exits with 99 if it cannot mount."""
    if os.geteuid() != 0 or shutil.which("unshare") is None:
        raise Skipped("mounting takes root and unshare")
    done = subprocess.run(["unshare", "-m", "sh", "-c", script], cwd=place.folder,
                          capture_output=True, timeout=60, check=False)
    if done.returncode == 99 or b"unshare" in done.stderr:
        raise Skipped("nothing can be mounted here")
    return done


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
    done = run_in_own_mounts(place, "mount -t tmpfs -o size=8k none disk || exit 99\n"
                                    "./events-viewer -l -i log -o disk/export; status=$?\n"
                                    "cat disk/export >export; exit $status")
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


DIAGNOSTIC = b"Tarvik workaround: in Json::Value::asCString(): requires stringValue\n"
LOUD = b'{"id":4294968524,"time":"a","vars":{"inet_id":5}}\n'  # a diagnostic for "id", one for 5


def printed_after_a_full_pipe(place, action, older, newer):
    """What the program prints if its pipe is full while it reads `older`, and empty from then on."""
    (place.folder / "log.0").write_bytes(older)
    log = place.folder / "log"
    log.unlink()
    os.mkfifo(log)
    reader, writer = os.pipe()
    os.set_blocking(writer, False)
    filler = os.write(writer, bytes(1 << 24))
    process = subprocess.Popen([place.program, action, "-i", "log"], cwd=place.folder,
                               stdout=writer)
    os.close(writer)
    with open(log, "wb") as pipe:  # waits until the program opens it, after the older file
        while filler > 0:
            filler -= len(os.read(reader, filler))
        pipe.write(newer)
    with open(reader, "rb") as rest:
        printed = rest.read()
    check(process.wait(timeout=60) == 0, "a success")
    return printed


def a_diagnostic_is_printed_once_a_later_line_is_read_although_one_was_lost(place):
    for action in ("-a", "-s"):
        printed = printed_after_a_full_pipe(place, action, LOUD, b"{}")
        check(printed.startswith(DIAGNOSTIC + b"Last 1 events from a to a:\n"), f"one with {action}")


def no_diagnostic_is_printed_while_the_last_line_read_is_one_whose_own_was_lost(place):
    for action in ("-a", "-s"):
        for newer in (b"", b"\nno brace"):
            printed = printed_after_a_full_pipe(place, action,
                                                b'{"id":835,"time":"a"}\n' + LOUD, newer)
            check(printed.startswith(b"Last 2 events from a to a:\n"), f"none with {action}")


def every_few_descriptors():
    """Which standard streams are closed, a limit, and how many descriptors are left to open files."""
    for closed in itertools.product((False, True), repeat=3):
        for limit in (1, 2, 3, 4, 5):
            left = sum(stream > 2 or closed[stream] for stream in range(limit))
            if left > 0:  # the system needs one to load the program

                def prepare(closed=closed, limit=limit):
                    for stream in range(3):
                        if closed[stream]:
                            os.close(stream)
                    resource.setrlimit(resource.RLIMIT_NOFILE, (limit, limit))
                yield closed, left, {"preexec_fn": prepare}


def a_run_does_its_work_with_few_descriptors_whatever_is_closed(place):
    (place.folder / "log").write_bytes(LOUD + LOG)
    whole = place.run("-a", "-i", "log").stdout
    for closed, left, few in every_few_descriptors():
        what = f"{closed} and {left} left"
        for action in ("-a", "-s"):
            done = place.run(action, "-n", "1000", "-i", "log", **few)
            check((done.returncode, done.stderr) == (0, b""), f"a success with {what}")
            check(done.stdout == (b"" if closed[1] else whole), f"the table with {what}")
        done = place.run("-x", **few)
        check((done.returncode, done.stdout) == (255, b""), f"a usage error with {what}")
        check((done.stderr == b"") == closed[2], f"its message with {what}")


def an_export_holds_the_table_alone_with_few_descriptors_whatever_is_closed(place):
    (place.folder / "log").write_bytes(LOUD + LOG)
    whole = place.run("-a", "-i", "log").stdout
    table = whole[whole.index(b"Last"):-1]
    for closed, left, few in every_few_descriptors():
        done = place.run("-l", "-i", "log", "-o", "export", **few)
        check((done.returncode, done.stderr) == (0, b""), f"a success with {closed}")
        expected = table if left > 1 else NO_EVENTS[:-1]  # the log needs one as well
        check(place.export() == expected, f"the table alone with {closed} and {left} left")


def an_export_holds_the_table_alone_where_nothing_is_in_dev(place):
    (place.folder / "log").write_bytes(LOUD + LOG)
    whole = place.run("-a", "-i", "log").stdout
    for closed in ("<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
        done = run_in_own_mounts(place, "mount -t tmpfs none /dev || exit 99\n"
                                        f"./events-viewer -l -i log -o export {closed}")
        check((done.returncode, done.stderr) == (0, b""), f"a success with {closed}")
        check(place.export() == whole[whole.index(b"Last"):-1], f"the table alone with {closed}")


def a_query_names_a_file_without_permission_to_read(place):
    (place.folder / "log").chmod(0)
    user = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
    (place.folder / "log.0").write_bytes(b'{"id":835,"time":"a"}\n')
    status, stdout, stderr = place.query("-o", "lines", "log", **user)
    check((status, stdout[:2], stderr) == (2, b"a\t", b"events-query: log: Permission denied\n"),
          "the predecessor and a message")


def a_query_into_a_closed_pipe_ends_silently(place):
    (place.folder / "log").write_bytes(LOG * 20)
    for arguments in (["log"], ["-r", "log"], ["-n", "1", "log"], ["--help"], ["--catalog"]):
        reader, writer = os.pipe()
        os.close(reader)
        status, _, stderr = place.query(*arguments, stdout=writer)
        os.close(writer)
        check((status, stderr) == (-signal.SIGPIPE, b""), "an end by SIGPIPE")


def a_query_of_a_pipe_shows_each_event_as_soon_as_it_comes(place):
    reader, writer = os.pipe()
    process = subprocess.Popen([place.program, "-o", "lines", "-"], stdin=reader,
                               stdout=subprocess.PIPE)
    os.close(reader)
    for line in LOG.splitlines(keepends=True)[:3]:
        os.write(writer, line)
        time_of_event = line.split(b'"')[5]
        check(process.stdout.readline().startswith(time_of_event + b"\t"), "the event just written")
    os.close(writer)
    check((process.stdout.read(), process.wait(timeout=60)) == (b"", 0), "a success")
    process.stdout.close()


def a_query_that_is_stopped_and_continued_reads_on(place):
    whole = place.query("-U", "-2h", "log")[1]
    process = subprocess.Popen([place.program, "-U", "-2h", "-"], stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
    for at in range(0, len(LOG), 2000):
        process.send_signal(signal.SIGSTOP)
        process.send_signal(signal.SIGCONT)
        process.stdin.write(LOG[at:at + 2000])
        process.stdin.flush()
    check((process.communicate(timeout=60)[0], process.returncode) == (whole, 0), "all events")
    check(whole.count(b"\n") == EVENT_COUNT, "one row for each event")


def a_query_without_memory_says_so(place):
    (place.folder / "log").write_bytes(LOG * 2000)
    limit = (40 << 20, 40 << 20)
    limited = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_AS, limit)}
    check(place.query("-r", "log", **limited) == (2, b"", b"events-query: out of memory\n"), "a message")
    status, stdout, stderr = place.query("log", **limited)
    check((status, stdout.count(b"\n"), stderr) == (0, EVENT_COUNT * 2000, b""),
          "all events, if none is held")


def a_query_beyond_the_size_limit_is_an_error(place):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (5000, 5000))
    whole = place.query("log")[1]
    with open(place.folder / "export", "wb") as file:
        status, _, stderr = place.query("log", stdout=file, preexec_fn=limit)
    check((status, stderr) == (2, b"events-query: standard output: File too large\n"), "a message")
    check(place.export() == whole[:5000], "the beginning of the events")


def a_query_never_writes_into_its_log(place):
    """With closed streams a log may take the place of one."""
    for closed in itertools.product((False, True), repeat=3):
        def prepare(closed=closed):
            for stream in range(3):
                if closed[stream]:
                    os.close(stream)
        for arguments in (["log"], ["-o", "json", "log"], ["-U", "-2h", "-"]):
            (place.folder / "log.0").write_bytes(LOUD)
            with subprocess.Popen(["cat", place.folder / "log"], stdout=subprocess.PIPE) as cat:
                status, stdout, stderr = place.query(*arguments, stdin=cat.stdout, preexec_fn=prepare)
            what = f"{arguments} with {closed}"
            fails = closed[1] or (closed[0] and arguments[-1] == "-")
            check(status == (2 if fails else 0), f"the status of {what}")
            check((stdout == b"") == fails, f"the output of {what}")
            check(closed[2] or (b"file descriptor" in stderr) == fails, f"the message of {what}")
            check((place.folder / "log").read_bytes() == LOG, f"the log after {what}")
            check((place.folder / "log.0").read_bytes() == LOUD, f"the older file after {what}")


def a_query_of_many_logs_takes_four_descriptors_and_little_memory(place):
    for i in range(2000):
        for name in ("log.0", "log"):
            path = place.folder / f"tree/{i // 50}/{i % 50}/{name}"
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(LOG[i % 7 * 100:])

    def limit():
        resource.setrlimit(resource.RLIMIT_NOFILE, (3 + 4, 3 + 4))
        resource.setrlimit(resource.RLIMIT_DATA, (8 << 20, 8 << 20))
    for options in ([], ["-o", "json"], ["-m", "-S", "-1h"], ["-m", "-n", "7", "-C", "1"]):
        status, _, stderr = place.query("--name", "log", *options, "-e", "*NETWORK*", "tree", preexec_fn=limit,
                                        stdout=subprocess.DEVNULL)
        check((status, stderr) == (1 if "-S" in options else 0, b""), f"no error with {options}: {stderr}")


def a_query_of_endless_zeros_takes_no_more_memory_than_a_line(place):
    packed = gzip.compress(bytes(1 << 24), 9)
    (place.folder / "zeros").write_bytes(packed * 16)

    def limit():
        resource.setrlimit(resource.RLIMIT_DATA, (60 << 20, 60 << 20))
    check(place.query("zeros", preexec_fn=limit) ==
          (1, b"", b"events-query: zeros:1: longer than 16 MiB; left out\n"), "the line is left out")


QUERY_TESTS = [
    a_query_names_a_file_without_permission_to_read,
    a_query_into_a_closed_pipe_ends_silently,
    a_query_of_a_pipe_shows_each_event_as_soon_as_it_comes,
    a_query_that_is_stopped_and_continued_reads_on,
    a_query_without_memory_says_so,
    a_query_beyond_the_size_limit_is_an_error,
    a_query_never_writes_into_its_log,
    a_query_of_many_logs_takes_four_descriptors_and_little_memory,
    a_query_of_endless_zeros_takes_no_more_memory_than_a_line,
]
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
    a_diagnostic_is_printed_once_a_later_line_is_read_although_one_was_lost,
    no_diagnostic_is_printed_while_the_last_line_read_is_one_whose_own_was_lost,
    a_run_does_its_work_with_few_descriptors_whatever_is_closed,
    an_export_holds_the_table_alone_with_few_descriptors_whatever_is_closed,
    an_export_holds_the_table_alone_where_nothing_is_in_dev,
]


def main():
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    failed = 0
    for test in QUERY_TESTS if Path(sys.argv[1]).name == "events-query" else TESTS:
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
