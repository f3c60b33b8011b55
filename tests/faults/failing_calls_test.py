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
import gzip
import os
import re
import resource
import shlex
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
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
EVERYDAY_QUERY = (
    "events_are_chosen_by_name_or_code",
    "the_name_and_all_that_is_shown_are_searched",
    "the_newest_ones_their_neighbours_and_the_order",
    "hostile_bytes_reach_no_terminal",
)
LARGEST_INPUT = 1 << 20
QUERY_COMMAND = re.compile(r"(try|picks|fails|events-query) (?!.*(`|\$[({a-z]))([^<>]*?)( 2>&1)?( \|.*)?")
COMMAND = re.compile(r"(?:exec )?events-viewer\b([^<>|&;$`*]*?)(?: *[0-9]?[<>|].*)?")
TIME_LIMIT = 60
START = time.time()  # when the inputs were changed, as far as the program can see


class Case:
    def __init__(self, name, arguments, inputs, standard_input=b""):  # at most 64 KiB
        self.name = name
        self.arguments = arguments
        self.inputs = inputs  # bytes by name
        self.standard_input = standard_input


def cases_of(folder):
    """The program's runs in the case `folder`, without what is done with their output. None if the
    case does more than run the program."""
    inputs = {path.name: path.read_bytes() for path in folder.iterdir()
              if path.name not in ("cmd", "expected")}
    if sum(map(len, inputs.values())) > LARGEST_INPUT:
        return []
    cmd = folder / "cmd"
    if not cmd.exists():
        cmd = folder.parent.parent / "usual_cmd"
    cases = []
    for line in cmd.read_text().splitlines():
        command = COMMAND.fullmatch(line)
        if command is None and not line.startswith("exec cmp "):
            return []
        if command is not None:
            cases.append(Case(folder.name, shlex.split(command[1]), inputs))
    return cases


def query_cases_of(folder):
    """The same for events-query. A case runs it many times; see the functions there."""
    shared = folder.parent.parent / "query_inputs"
    inputs = {path.name: path.read_bytes() for path in [*shared.iterdir(), *folder.iterdir()]
              if path.name not in ("cmd", "expected", "functions")}
    commands = [QUERY_COMMAND.fullmatch(line) for line in (folder / "cmd").read_text().splitlines()]
    return [Case(folder.name, ["-o", "lines"] * (c[1] == "picks") + shlex.split(c[3]), inputs)
            for c in commands if c is not None and "generated" not in c[3]]


def query_cases_with_times():
    """A log that is read twice, from files and from a pipe; some events have diagnostics."""
    lines = [b'{"id":1228,"time":"Nov 20 %02d:%02d:00","vars":{"inet_id":%s}}\n'
             % (i // 60, i % 60, b"5" if i == 99 else b'"%s"' % (b"x" * (i % 977)))
             for i in range(400)]
    files = {"log.0": b"".join(lines[:150]), "log": b"".join(lines[150:])}
    for options in (["-o", "csv"], ["-o", "json", "-S", "01:00", "-U", "-1h"], ["-g", "x{90}", "-C", "1"],
                    ["-c", "event,log"], ["-c", "hour", "-o", "csv"], ["--check"], ["--check", "-o", "json"]):
        yield Case("two files of several blocks", [*options, "log"], files)
    yield Case("a pipe", ["-S", "01:00", "-"], {}, b"".join(lines[:250]))
    packed = {f"{name}.gz": gzip.compress(text) for name, text in files.items()}
    for options in (["log"], ["-m", "-n", "5", "-S", "-1h", "-C", "1", ".", "copy", "-"], ["-r", "copy", "."]):
        yield Case("several logs", ["--name", "log", "-o", "csv", *options], {**packed, "copy": files["log"]},
                   packed["log.gz"])


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


class Place(threading.local):
    """A folder for each thread. To make and remove one takes as long as a run."""
    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="failing_calls.")
        self.work = Path(self.folder.name, "work")
        self.work.mkdir()
        self.record = Path(self.folder.name, "record")


class Runner:
    def __init__(self, program, library):
        self.program = program
        self.name = os.path.basename(program)
        self.library = library
        self.place = Place()

    def run(self, case, inputs, kind="alloc", number=0, error=0, mode="once"):
        work, record = self.place.work, self.place.record
        for path in work.iterdir():
            path.unlink()
        for name, text in inputs.items():
            (work / name).write_bytes(text)
            os.utime(work / name, (START, START))
        record.write_bytes(bytes(RECORD.size))
        settings = {"LC_ALL": "C", "TZ": "UTC", "LD_PRELOAD": self.library,
                    "FAULT": f"{kind}:{number}:{error}:{mode}", "FAULT_RECORD": str(record),
                    **{k: v for k, v in os.environ.items() if k == "LLVM_PROFILE_FILE"}}
        # A pipe that is full at once, so that each run makes the same calls.
        standard_input, writer = os.pipe()
        os.write(writer, case.standard_input)
        os.close(writer)
        done = subprocess.run([self.name, *case.arguments], executable=self.program,
                              cwd=work, env=settings, stdin=standard_input,
                              capture_output=True, timeout=TIME_LIMIT, check=False)
        os.close(standard_input)
        *calls, failures, transferred, path = RECORD.unpack(record.read_bytes())
        if number and failures == 0 and done.returncode == 0:
            sys.exit(f"{case.name}: call {number} of {kind} was never made")
        # A coverage build whose calls fail before main may write no profile.
        stderr = re.sub(rb"LLVM Profile Error: .*\n", b"", done.stderr)
        return Run(done.returncode, done.stdout, stderr,
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
                # Byte by byte is slow, and the same from whatever call on.
                most = 2 if limit and error == SHORT and mode == "on" else limit
                for number in numbers(calls[kind], most):
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


def check_query_case(runner, case, kinds, limit):
    """The same for events-query."""
    usual = runner.run(case, case.inputs)
    counts = collections.Counter()
    wrong = []
    judge = outcomes.QueryJudge(usual)
    for kind, number, error, mode in faults(usual.calls, kinds, limit):
        run = runner.run(case, case.inputs, kind, number, error, mode)
        counts[kind, "usual" if judge.same(run) else "other"] += 1
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


def jobs_for_viewer(pool, runner, args, limit):
    names = sorted(p.name for p in args.cases.iterdir()) if args.all else EVERYDAY
    cases = [case for name in names for case in cases_of(args.cases / name)]
    if len({case.name for case in cases}) < len(EVERYDAY):
        sys.exit(f"only {len(cases)} cases can be run")
    bare_details = details_without_variables(runner)
    if len(bare_details) < 400:
        sys.exit("the table of all names cannot be read")

    def submit(case, kinds, most):
        return pool.submit(check_case, runner, case, kinds, most, bare_details)
    jobs = [submit(case, KINDS, limit) for case in cases]
    jobs.append(submit(large_case(), ("open", "read", "close"), limit))
    # Only strings with escapes are written through a stream, which swallows exceptions.
    for case in (long_variables_case("long variables", ""),
                 long_variables_case("long variables with escapes", r"\t")):
        jobs.append(submit(case, ("alloc",), None))
    return jobs


def jobs_for_query(pool, runner, args, limit):
    folder = args.cases.with_name("query_cases")
    names = sorted(p.name for p in folder.iterdir()) if args.all else EVERYDAY_QUERY
    cases = [case for name in names for case in query_cases_of(folder / name)]
    if len({case.name for case in cases}) < len(EVERYDAY_QUERY):
        sys.exit(f"only {len(cases)} cases can be run")
    if not args.all:
        cases = cases[::6]
    return [pool.submit(check_query_case, runner, case, KINDS, limit)
            for case in [*cases, *query_cases_with_times()]]


def main():
    parser = argparse.ArgumentParser(description="Runs the program with failing calls.")
    parser.add_argument("--program", required=True, help="events-viewer or events-query")
    parser.add_argument("--library", required=True, help="failing_calls, to be preloaded")
    parser.add_argument("--cases", type=Path, default=Path(__file__).parent.parent / "cli/cases")
    parser.add_argument("--all", action="store_true", help="every call of every case; takes long")
    parser.add_argument("--limit", type=int, help="calls of a kind to fail in a case")
    args = parser.parse_args()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    runner = Runner(os.path.abspath(args.program), os.path.abspath(args.library))
    jobs_for = jobs_for_query if runner.name == "events-query" else jobs_for_viewer

    limit = args.limit if args.all or args.limit else 12
    counts = collections.Counter()
    wrong = []
    checked = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        for job in jobs_for(pool, runner, args, limit):
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
