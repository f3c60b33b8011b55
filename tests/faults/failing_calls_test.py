#!/usr/bin/env python3
"""Runs the program many times, each time with a different one of its calls failing, and checks
that each run ends as outcomes.py allows.

The runs are those of the CLI cases that only run the program. Without --all only a few cases are
taken, and of each kind of call only twelve, evenly spread.
"""

import argparse
import collections
import concurrent.futures
import errno
import os
import re
import resource
import shlex
import signal
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

import outcomes
from outcomes import SHORT, Run

KINDS = ("alloc", "open", "read", "write", "close")
RECORD = struct.Struct("<6IQ256s")
ERRORS = {
    "alloc": [errno.ENOMEM],
    "open": [errno.EACCES, errno.EMFILE],
    "read": [errno.EIO, errno.EINTR, SHORT],
    "write": [errno.EIO, errno.ENOSPC, errno.EINTR, SHORT],
    "close": [errno.EIO, errno.EINTR],
}
EVERYDAY = (
    "the_predecessor_comes_before_the_current_file",
    "log_exports_all_events_whatever_the_count",
    "an_export_is_the_table_without_a_final_newline",
    "an_export_to_a_missing_folder_succeeds_without_a_file",
    "with_show_the_diagnostics_come_before_the_table",
    "with_log_the_saving_line_comes_before_the_diagnostics",
    "each_variable_that_is_not_a_string_is_reported",
    "a_reason_that_is_not_a_string_is_not_explained_and_not_reported",
    "an_unknown_code_is_named_by_its_number",
    "help_text_by_letter",
    "no_arguments_complain_and_succeed",
    "an_ambiguous_name_is_refused",
    "a_missing_count_is_refused",
)
LARGEST_INPUT = 1 << 20
COMMAND = re.compile(r"(?:exec )?events-viewer\b([^<>|&;$`*]*?)(?: *[0-9]?[<>|].*)?")
TIME_LIMIT = 60


class Case:
    def __init__(self, name, arguments, inputs):
        self.name = name
        self.arguments = arguments
        self.inputs = inputs  # bytes by name


def cases_of(folder):
    """The program's runs in the case `folder`, without what is done with their output. None if the
    case does more than run the program."""
    inputs = {path.name: path.read_bytes() for path in folder.iterdir()
              if path.name not in ("cmd", "expected")}
    if sum(map(len, inputs.values())) > LARGEST_INPUT:
        return []
    cases = []
    for line in (folder / "cmd").read_text().splitlines():
        command = COMMAND.fullmatch(line)
        if command is None and not line.startswith("exec cmp "):
            return []
        if command is not None:
            cases.append(Case(folder.name, shlex.split(command[1]), inputs))
    return cases


def large_case():
    """Files of several blocks, whose lines end anywhere in them."""
    def lines(first, count):
        return b"".join(b'{"id":1228,"time":"%d","vars":{"inet_id":"%s"}}\n' % (i, b"x" * (i % 977))
                        for i in range(first, first + count))
    return Case("files of several blocks", ["-s", "-n", "3", "-i", "log"],
                {"log.0": lines(0, 250), "log": lines(250, 400)})


def long_variables_case(name, beginning):
    """An event whose variables do not fit in the first memory that a stream takes for them."""
    variables = ",".join(f'"terminal_post_{name}":"{beginning}{name * 100}"'
                         for name in ("number", "param1", "param2"))
    return Case(name, ["-a", "-i", "log"],
                {"log": b'{"id":945,"vars":{%s}}\n' % variables.encode()})


class Runner:
    def __init__(self, program, library):
        self.program = program
        self.library = library

    def run(self, case, inputs, kind="alloc", number=0, error=0, mode="once"):
        with tempfile.TemporaryDirectory(prefix="failing_calls.") as scratch:
            work = Path(scratch, "work")
            work.mkdir()
            for name, text in inputs.items():
                (work / name).write_bytes(text)
            record = Path(scratch, "record")
            record.write_bytes(bytes(RECORD.size))
            settings = {"LC_ALL": "C", "TZ": "UTC", "LD_PRELOAD": self.library,
                        "FAULT": f"{kind}:{number}:{error}:{mode}", "FAULT_RECORD": str(record)}
            done = subprocess.run(["events-viewer", *case.arguments], executable=self.program,
                                  cwd=work, env=settings, stdin=subprocess.DEVNULL,
                                  capture_output=True, timeout=TIME_LIMIT, check=False)
            *calls, failures, transferred, path = RECORD.unpack(record.read_bytes())
            if number and failures == 0 and done.returncode == 0:
                sys.exit(f"{case.name}: call {number} of {kind} was never made")
            return Run(done.returncode, done.stdout, done.stderr,
                       {p.name: p.read_bytes() for p in work.iterdir()},
                       dict(zip(KINDS, calls)), path.split(b"\0")[0].decode(), transferred)


def details_without_variables(runner):
    """What the rows of all events say when no variable is given, by the event's name."""
    log = b"".join(b'{"id":%d}\n' % code for code in range(600, 1400))
    table = runner.run(Case("", ["-a", "-i", "log"], {}), {"log": log}).stdout
    return {name.rstrip(): detail for _, name, detail in outcomes.split_table(table)[1]}


def numbers(count, limit):
    """The calls to fail: all, or `limit` of them, the first and the last included."""
    if limit is None or count <= limit:
        return range(1, count + 1)
    return sorted({1 + i * (count - 1) // (limit - 1) for i in range(limit)})


def faults(calls, kinds, limit):
    for kind in kinds:
        for error in ERRORS[kind]:
            for mode in ("once", "on"):
                if error == errno.EINTR and mode == "on" and kind in ("read", "write"):
                    continue  # would be tried again forever
                for number in numbers(calls[kind], limit):
                    yield kind, number, error, mode


def opened_paths(runner, case, usual):
    paths = [runner.run(case, case.inputs, "open", number, errno.EACCES).failed_path
             for number in range(1, usual.calls["open"] + 1)]
    # The log is not read if the export cannot be opened even without a fault.
    return paths if len(paths) > 1 else ["", ""]


def check_case(runner, case, kinds, limit, bare_details):
    """Counts the runs by what failed and how they ended; returns the counts and the violations."""
    usual = runner.run(case, case.inputs)
    counts = collections.Counter()
    wrong = []
    *export, older_log, log = opened_paths(runner, case, usual)
    if not {*export}.isdisjoint({older_log, log}) or any("/" in path for path in [*export, log]):
        return counts, wrong  # it is not known which file fails, or the file is not the case's
    judge = outcomes.Judge(usual, case.inputs, export[0] if export else None, [older_log, log],
                           lambda files: runner.run(case, files), bare_details)
    for kind, number, error, mode in faults(usual.calls, kinds, limit):
        run = runner.run(case, case.inputs, kind, number, error, mode)
        ending = ("usual" if judge.same(run, usual) else
                  signal.Signals(-run.status).name if run.status < 0 else "other")
        counts[kind, ending] += 1
        if not judge.allows(run, kind, error, mode == "on"):
            wrong.append((f"{case.name}: {shlex.join(case.arguments)}: {kind} {number} fails with "
                          f"{errno.errorcode.get(error, 'one byte')} ({mode})", run, usual))
    return counts, wrong


def report(what, run, usual):
    print(f"{what}: status {run.status}, file {run.failed_path!r} after {run.transferred} bytes")
    for name in ("stdout", "stderr", "files"):
        actual, expected = getattr(run, name), getattr(usual, name)
        if actual != expected:
            print(f"  {name}: {str(actual)[:1500]}\n  usually {str(expected)[:1500]}")


def main():
    parser = argparse.ArgumentParser(description="Runs the program with failing calls.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--library", required=True, help="failing_calls, to be preloaded")
    parser.add_argument("--cases", type=Path, default=Path(__file__).parent.parent / "cli/cases")
    parser.add_argument("--all", action="store_true", help="every call of every case; takes long")
    parser.add_argument("--limit", type=int, help="calls of a kind to fail in a case")
    args = parser.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    runner = Runner(os.path.abspath(args.program), os.path.abspath(args.library))

    names = sorted(p.name for p in args.cases.iterdir()) if args.all else EVERYDAY
    cases = [case for name in names for case in cases_of(args.cases / name)]
    if len({case.name for case in cases}) < len(EVERYDAY):
        sys.exit(f"only {len(cases)} cases can be run")
    limit = args.limit if args.all or args.limit else 12
    bare_details = details_without_variables(runner)
    if len(bare_details) < 400:
        sys.exit("the table of all names cannot be read")

    counts = collections.Counter()
    wrong = []
    checked = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        jobs = [pool.submit(check_case, runner, case, KINDS, limit, bare_details) for case in cases]
        jobs.append(pool.submit(check_case, runner, large_case(), ("open", "read", "close"),
                                limit, bare_details))
        # Only strings with escapes are written through a stream, which swallows exceptions.
        for case in (long_variables_case("long variables", ""),
                     long_variables_case("long variables with escapes", r"\t")):
            jobs.append(pool.submit(check_case, runner, case, ("alloc",), None, bare_details))
        for job in jobs:
            more_counts, more_wrong = job.result()
            checked += bool(more_counts)
            counts += more_counts
            wrong += more_wrong
    for details in wrong[:20]:
        report(*details)
    for kind in KINDS:
        endings = {ending: n for (k, ending), n in sorted(counts.items()) if k == kind}
        print(f"{kind}: {sum(endings.values())} failed",
              *(f"{number} {ending}" for ending, number in endings.items()), sep=", ")
        if not endings:
            sys.exit(f"no call of {kind} was failed")
    print(f"{checked} commands, {sum(counts.values())} runs, {len(wrong)} of them not as allowed")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
