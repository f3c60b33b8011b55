#!/usr/bin/env python3
"""Runs one case folder: runs the program as a user does, and checks every byte of its output.

A case folder holds
  cmd               a POSIX shell script, run in a fresh folder that has copies of the inputs;
                    ends with "exec events-viewer ..." so that a signal is seen as such; if it
                    is missing, usual_cmd is run; the program has the name of its file
  expected/stdout   what it prints; a missing stdout or stderr means nothing is printed
  expected/stderr
  expected/status   the exit status, or the name of a signal; 0 if missing
  expected/terminal if present, the case is run again with both streams on a terminal, and this is
                    what the terminal receives; the terminal does not know its width
  expected/terminal.80  the same for a terminal of 80 columns, or any other number
  expected/files/   the files that the run makes or changes
  anything else     the inputs, beside those that all cases of the program have (--inputs)

Some bytes are JsonCpp's own and differ between its releases: its wording of an error, and what it
reports as an error in the log. For these, expected/ may hold a second file "stdout.from-1.9.6" next
to "stdout" (and so for every name above). Of all files of a name, the newest release that is not
newer than the linked one wins. The file without a release is for all older ones. JsonCpp before
1.9.3 also writes other bytes where char is unsigned, as on the board. For these, expected/ may hold
"stdout.unsigned-char", which then takes the place of "stdout".

Afterwards the fresh folder must hold the inputs and expected/files to the byte, and no other file.
Only names that begin with "generated" are ignored: they are for cmd's own use. A cmd that cannot do
its work here writes the reason into a file named "skip".
"""

import argparse
import difflib
import fcntl
import functools
import os
import pty
import re
import resource
import select
import shlex
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
from pathlib import Path
from typing import NamedTuple

EXIT_SKIPPED = 77
EXPECTED_NAME = re.compile(r"(stdout|stderr|status|terminal(\.\d+)?|files)(\.from-1\.9\.\d+|\.unsigned-char)?")
DIFF_LINES = 80
DIFF_COLUMNS = 300


class Skipped(Exception):
    pass


class Library(NamedTuple):
    """What is known of the JsonCpp that the program is linked with."""
    release: str
    unsigned_char: bool


class StillRunning(Exception):
    pass


class Result:
    def __init__(self, status, streams, files):
        self.status = status
        self.streams = streams  # bytes by name: stdout and stderr, or terminal
        self.files = files  # bytes by path in the fresh folder


def install_program(folder, program, emulator):
    """Puts the program into `folder`, where it sees its bare name as its own."""
    folder.mkdir(exist_ok=True)
    name = os.path.basename(program)
    target = folder / name
    if emulator:
        # A shell tells a script its whole path, where a program found on PATH sees its bare name.
        target.write_text(f"""#!/bin/sh
name=$0
[ "$name" != {shlex.quote(str(target))} ] || name={name}
exec {shlex.join(emulator)} -0 "$name" {shlex.quote(program)} "$@"
""")
        target.chmod(0o755)
    else:
        target.symlink_to(program)


def environment(bin_folder):
    kept = ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "LLVM_PROFILE_FILE")
    settings = {name: os.environ[name] for name in kept if name in os.environ}
    settings.update(PATH=f"{bin_folder}:/usr/bin:/bin", LC_ALL="C", TZ="UTC")
    return settings


def status_name(code):
    return signal.Signals(-code).name if code < 0 else str(code)


def kill_session(process):
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def run_in_pipes(command, options, limit):
    process = subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
    try:
        stdout, stderr = process.communicate(timeout=limit)
    except subprocess.TimeoutExpired:
        kill_session(process)
        raise StillRunning("in pipes") from None
    return process.returncode, {"stdout": stdout, "stderr": stderr}


def run_in_terminal(name, command, options, limit):
    master, slave = pty.openpty()
    if name != "terminal":
        size = struct.pack("4H", 24, int(name.split(".")[1]), 0, 0)
        fcntl.ioctl(slave, termios.TIOCSWINSZ, size)
    modes = termios.tcgetattr(slave)
    modes[1] &= ~termios.OPOST  # a newline stays one
    termios.tcsetattr(slave, termios.TCSANOW, modes)
    process = subprocess.Popen(command, stdout=slave, stderr=slave, **options)
    os.close(slave)
    deadline = time.monotonic() + limit
    received = b""
    while True:
        if not select.select([master], [], [], max(0, deadline - time.monotonic()))[0]:
            kill_session(process)
            raise StillRunning("on the terminal")
        try:
            received += os.read(master, 65536)
        except OSError:  # the last writer has closed the terminal
            break
    os.close(master)
    return process.wait(), {name: received}


def without_added_messages(text, emulated):
    """`text` without the messages of AddressSanitizer and the emulator."""
    # One description has a "%" that intentionally begins no conversion.
    text = re.sub(rb"==\d+==AddressSanitizer: WARNING: unexpected format specifier in printf "
                  rb"interceptor: %\n \(reported once per process\)\n", b"", text)
    if emulated:
        text = re.sub(rb"(?m)^qemu: uncaught target signal .*\n", b"", text)
    return text


def plain_files(folder):
    """The bytes of each file of `folder` and the folders below it, by its path in there."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in sorted(folder.rglob("*"))
            if path.is_file() and not path.is_symlink()
            and not path.relative_to(folder).parts[0].startswith("generated")}


def inputs(case, shared):
    paths = [*(shared.iterdir() if shared else []), *case.iterdir()]
    return {path.name: path.read_bytes() for path in paths if path.name not in ("cmd", "expected")}


def script_of(case):
    own = case / "cmd"
    return own if own.exists() else Path(__file__).with_name("usual_cmd")


def run(case, args, scratch, run_streams):
    bin_folder = scratch / "bin"
    work = scratch / "work"
    scratch.mkdir()
    install_program(bin_folder, os.path.abspath(args.program), args.emulator)
    work.mkdir()
    for name, content in inputs(case, args.inputs).items():
        (work / name).write_bytes(content)
    options = {"cwd": work, "env": environment(bin_folder), "stdin": subprocess.DEVNULL,
               "start_new_session": True}
    code, streams = run_streams(["sh", str(script_of(case))], options, args.time_limit)
    if (work / "skip").exists():
        raise Skipped((work / "skip").read_text().strip())
    streams = {name: without_added_messages(text, bool(args.emulator)) for name, text in streams.items()}
    return Result(status_name(code), streams, plain_files(work))


def release_number(text):
    return tuple(int(number) for number in text.split("."))


def path_for_library(path, library):
    """`path` itself, or the one of its variants that counts for `library`."""
    variants = {release_number(variant.name.split(".from-")[1]): variant
                for variant in path.parent.glob(f"{path.name}.from-*")}
    known = [first for first in variants if first <= release_number(library.release)]
    if known:
        return variants[max(known)]
    unsigned = path.with_name(f"{path.name}.unsigned-char")
    return unsigned if library.unsigned_char and unsigned.exists() else path


def read_if_there(path):
    return path.read_bytes() if path.exists() else b""


def expectation(case, shared, stream_names, library):
    expected = case / "expected"
    for path in expected.glob("*"):
        if not EXPECTED_NAME.fullmatch(path.name):
            sys.exit(f"{path}: not a name of something expected")

    def of(name):
        return path_for_library(expected / name, library)

    return Result(read_if_there(of("status")).decode().strip() or "0",
                  {name: read_if_there(of(name)) for name in stream_names},
                  {**inputs(case, shared), **plain_files(of("files"))})


def printable(text):
    """The lines of `text` in ASCII, with visible newlines, and cut to a readable length."""
    lines = [repr(line)[2:-1] for line in re.findall(rb"[^\n]*\n|[^\n]+", text)]
    return [line if len(line) <= DIFF_COLUMNS else
            f"{line[:DIFF_COLUMNS]}... ({len(line)} columns)" for line in lines]


def print_difference(what, expected, actual):
    lines = list(difflib.unified_diff(printable(expected), printable(actual),
                                      f"{what} (expected)", f"{what} (actual)", lineterm=""))
    print("\n".join(lines[:DIFF_LINES] or [f"{what}: long lines differ after the part that is shown"]))
    if len(lines) > DIFF_LINES:
        print(f"... and {len(lines) - DIFF_LINES} lines more")


def compare(expected, actual):
    """Prints how the two results differ; returns whether they are the same."""
    same = True
    if expected.status != actual.status:
        print(f"status: expected {expected.status}, got {actual.status}")
        same = False
    for name, text in expected.streams.items():
        if text != actual.streams[name]:
            print_difference(name, text, actual.streams[name])
            same = False
    for name in sorted({*expected.files, *actual.files}):
        if name not in actual.files:
            print(f"file {name}: missing")
        elif name not in expected.files:
            print(f"file {name}: made, but not expected")
        elif expected.files[name] == actual.files[name]:
            continue
        else:
            print_difference(f"file {name}", expected.files[name], actual.files[name])
        same = False
    return same


def write_or_remove(path, text):
    if text or "." in path.name:  # otherwise an older release's file would be used
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text)
    else:
        path.unlink(missing_ok=True)


def update(case, shared, actual, library):
    def of(name):
        return path_for_library(case / "expected" / name, library)

    if "stdout" not in actual.streams:
        for name, text in actual.streams.items():
            of(name).write_bytes(text)
        return
    status = "" if actual.status == "0" else f"{actual.status}\n"
    write_or_remove(of("status"), status.encode())
    for name, text in actual.streams.items():
        write_or_remove(of(name), text)
    files = of("files")
    shutil.rmtree(files, ignore_errors=True)
    unchanged = inputs(case, shared)
    for name, text in actual.files.items():
        if unchanged.get(name) != text:
            path = files / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(text)


def main():
    parser = argparse.ArgumentParser(description="Runs one case folder.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--jsoncpp", required=True, metavar="RELEASE",
                        help="the release of JsonCpp that the program is linked with")
    parser.add_argument("--unsigned-char", action="store_true",
                        help="it was built for a machine where char is unsigned")
    parser.add_argument("--emulator", default=[], type=lambda text: [w for w in text.split(";") if w],
                        help="command that runs the program, its words parted by semicolons")
    parser.add_argument("--inputs", type=Path, metavar="FOLDER",
                        help="files that each case has beside its own")
    parser.add_argument("--time-limit", type=float, default=120, metavar="SECONDS")
    parser.add_argument("--update", action="store_true",
                        help="make what the program does now the expectation")
    parser.add_argument("case", type=Path)
    args = parser.parse_args()
    if args.update and "CI" in os.environ:
        sys.exit("--update: expectations are not rewritten in CI")

    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    os.umask(0o022)
    case = args.case.resolve()
    scratch = Path(tempfile.mkdtemp(prefix=f"{case.name[:40]}."))
    runs = {"pipes": run_in_pipes}
    library = Library(args.jsoncpp, args.unsigned_char)
    for path in sorted((case / "expected").glob("terminal*")):
        name = re.match(r"terminal(\.\d+)?", path.name)[0]
        if path_for_library(path.with_name(name), library).exists():
            runs[name] = functools.partial(run_in_terminal, name)
    same = True
    try:
        for name, run_streams in runs.items():
            actual = run(case, args, scratch / name, run_streams)
            if args.update:
                update(case, args.inputs, actual, library)
            else:
                same = compare(expectation(case, args.inputs, actual.streams, library),
                               actual) and same
    except Skipped as reason:
        print(f"skipped: {reason}")
        shutil.rmtree(scratch)
        sys.exit(EXIT_SKIPPED)
    except StillRunning as what:
        print(f"still running after {args.time_limit:g} s {what}")
        same = False
    if not same:
        sys.exit(f"kept for a look: {scratch}")
    shutil.rmtree(scratch)


if __name__ == "__main__":
    main()
