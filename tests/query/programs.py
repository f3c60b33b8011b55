"""Runs both programs on logs, for the tests of events-query."""

import argparse
import contextlib
import json
import os
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.setrecursionlimit(10000)  # for values that are nested deep

KEYS = "at time code event detail vars reason meaning file line log".split()


def absolute(path):
    return Path(path).resolve()


def as_json_holds(text):
    """`text` with U+FFFD for each byte that is not UTF-8."""
    return re.sub("[\udc80-\udcff]", "\ufffd", text.decode("utf-8", "surrogateescape"))


def check(holds, *what):
    if not holds:
        raise AssertionError(" ".join(map(str, what)))


class Programs:
    """The programs that the command line names, and a folder in which they find their log."""

    def __init__(self, description, more_options=()):
        parser = argparse.ArgumentParser(description=description)
        parser.add_argument("--programs", required=True, type=absolute, metavar="FOLDER")
        parser.add_argument("--write-lines", type=absolute, metavar="PROGRAM")
        parser.add_argument("--emulator", default=[],
                            type=lambda text: [word for word in text.split(";") if word])
        parser.add_argument("--amount", type=int, default=10, metavar="N",
                            help="how much is tried; 10 takes seconds")
        parser.add_argument("--seed", type=int, default=1)
        parser.add_argument("--keeps-bytes", action="store_true",
                            help="JsonCpp writes a string without ASCII characters as it is")
        for option in more_options:
            parser.add_argument(option, type=absolute, nargs="*", default=[])
        self.args = parser.parse_args()
        if self.args.emulator:  # it takes its time
            self.args.amount = max(1, self.args.amount // 10)
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        self.random = random.Random(self.args.seed)
        self.folder = Path(tempfile.mkdtemp(prefix="query."))

    @contextlib.contextmanager
    def on(self, log):
        """Makes `log` the one that is read. If a check fails, it is kept."""
        try:
            self.write(log)
            yield
        except AssertionError:
            self.write(log)
            print(f"kept for a look: {self.folder}, made with the seed {self.args.seed}")
            raise

    def remove(self, folder):
        shutil.rmtree(self.folder / folder)

    def finish(self):
        shutil.rmtree(self.folder)

    def run(self, program, *arguments):
        result = subprocess.run([*self.args.emulator, program, *arguments], cwd=self.folder,
                                stdin=subprocess.DEVNULL, capture_output=True,
                                env={**os.environ, "LC_ALL": "C", "TZ": "UTC"}, check=False)
        # AddressSanitizer says once that a "%" of a description begins no conversion.
        result.stderr = re.sub(rb"==\d+==AddressSanitizer: WARNING: unexpected format .*\n"
                               rb" \(reported once per process\)\n", b"", result.stderr)
        return result

    def viewer(self, log):
        """Runs events-viewer --all on a log, which is the bytes of each file by its name."""
        self.write(log)
        return self.run(self.args.programs / "events-viewer", "--all", "--input_file", "log")

    def query(self, *options):
        """Runs events-query on the log that was written last."""
        return self.run(self.args.programs / "events-query", *options, "log")

    def write(self, log):
        for name in ("log.0", "log"):
            (self.folder / name).unlink(missing_ok=True)
            if name in log:
                (self.folder / name).write_bytes(log[name])

    def mutated_logs(self, count):
        """Logs of mutated lines, some with a predecessor, some without a newline at the end."""
        seed = self.random.randrange(2**32)
        lines = self.run(self.args.write_lines, str(count), str(seed)).stdout.split(b"\n")[:-1]
        check(len(lines) == count, "not the wanted number of lines")
        while lines:
            size = self.random.choice((1, 5, 30, 300))
            cut = self.random.randint(0, size)
            log = {"log.0": lines[:cut], "log": lines[cut:size]}
            if self.random.random() < 0.3:
                del log["log.0"]
            lines = lines[size:]
            end = self.random.choice((b"\n", b""))
            yield {name: b"\n".join(part) + end for name, part in log.items()}


# What a terminal never gets, and bytes that are not UTF-8.
UNSAFE = "\0-\x1f\x7f-\x9f\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069\u2028\u2029\udc80-\udcff"


def refuse(name):
    raise ValueError(f"{name} is not JSON")


def rows_of(text):
    """The events in the output of -o json."""
    unsafe = re.search(f"[{UNSAFE}]", text.decode("utf-8").replace("\n", ""))
    check(unsafe is None, "unsafe characters in JSON:", unsafe)
    rows = []
    for line in text.decode("utf-8").split("\n")[:-1]:
        try:
            rows.append(json.loads(line, parse_constant=refuse))
        except ValueError as error:
            check(False, "not JSON:", error, line)
    check(all(list(row) == KEYS for row in rows), "not the promised keys")
    return rows
