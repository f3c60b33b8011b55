#!/usr/bin/env python3
"""Runs every example of a page and compares what it prints with what the page says.

usage: examples_test.py --program PROGRAM [--emulator COMMAND] [--busybox] ROOT PAGE

An example is a block of code with a line that begins with "$ ": that line is a command of the
shell, lines that begin with "> " go on with it, and the lines up to the next command are what it
prints on both its streams. A line "..." stands for any number of lines. A last line "^C" says that
the user interrupts the command, which is done here once the lines above it have come. What the
program prints is compared without its colours, as the pages are.

The commands of a page run one after the other in a folder that has a copy of ROOT/examples in it.
With --busybox they use BusyBox's tools, as on the board, in place of the system's.
"""

import argparse
import difflib
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "cli"))
import run_case  # noqa: E402 (how a test has the program run by its name)

COLOUR = re.compile(r"\x1b\[[0-9;]*m")
MANUAL_ESCAPES = {r"\-": "-", r"\e": "\\", r"\&": "", r"\(aq": "'", r"\(ha": "^", r"\(ti": "~"}
GNU_ONLY = ("less",)  # BusyBox's takes the colours out
LIMIT = 60  # seconds for an example


class Example:
    def __init__(self, line, command):
        self.line = line
        self.command = command
        self.output = []
        self.interrupted = False


def markdown_blocks(text):
    """The blocks of code, fenced or indented, each a list of (line number, line)."""
    block, fenced = [], False
    for number, line in enumerate(text.split("\n") + [""], 1):
        if line.startswith("```"):
            fenced = not fenced
        elif fenced or line.startswith("    "):
            block.append((number, line if fenced else line[4:]))
            continue
        elif not line and block and not fenced:  # an indented block may have empty lines
            block.append((number, ""))
            continue
        if block:
            yield block
        block = []
    if block:
        yield block


def manual_blocks(text):
    """The literal displays of a manual, each a list of (line number, line)."""
    block = None
    for number, line in enumerate(text.split("\n"), 1):
        if line.startswith(".Bd -literal"):
            block = []
        elif line == ".Ed":
            yield block
            block = None
        elif block is not None:
            block.append((number, manual_text(number, line)))


def manual_text(number, line):
    escape = re.compile("|".join(map(re.escape, MANUAL_ESCAPES)))
    if re.search(r"[-'`^~\\]", escape.sub("", line)) or line.startswith("."):
        sys.exit(f"line {number}: a character that a manual does not show as it is: {line}")
    return escape.sub(lambda match: MANUAL_ESCAPES[match[0]], line)


def examples_of(block):
    examples = []
    for number, line in block:
        if line.startswith("$ "):
            examples.append(Example(number, line[2:]))
        elif examples and line.startswith("> ") and not examples[-1].output:
            examples[-1].command += "\n" + line[2:]
        elif examples:
            examples[-1].output.append(line)
        elif re.match(r"(\S*/)?events-viewer ", line):
            sys.exit(f"line {number}: an example that is not run, since it has no '$ ': {line}")
    for example in examples:
        example.output = without_empty_lines_at_the_end(example.output)
        if example.output[-1:] == ["^C"]:
            example.interrupted = True
            example.output.pop()
    return examples


def matches(expected, actual):
    pattern = "".join(r"(?:.*\n)*" if line == "..." else re.escape(line) + "\n"
                      for line in expected)
    return re.fullmatch(pattern, "".join(line + "\n" for line in actual)) is not None


def without_empty_lines_at_the_end(lines):
    while lines and not lines[-1]:
        lines = lines[:-1]
    return lines


def run(example, folder, environment, emulated):
    """The lines that the example prints."""
    path = folder.parent / "output"
    with path.open("wb") as output:
        process = subprocess.Popen(["sh", "-c", example.command], cwd=folder, env=environment,
                                   stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT, start_new_session=True)

    def lines():
        text = run_case.without_added_messages(path.read_bytes(), emulated)
        return without_empty_lines_at_the_end(COLOUR.sub("", text.decode(errors="backslashreplace")).split("\n"))

    deadline = time.monotonic() + LIMIT
    if example.interrupted:
        while not matches(example.output, lines()) and time.monotonic() < deadline:
            time.sleep(0.1)
        os.killpg(process.pid, signal.SIGINT)
    try:
        process.wait(deadline + 1 - time.monotonic())
    except subprocess.TimeoutExpired:
        run_case.kill_session(process)
        return [*lines(), f"(still running after {LIMIT} s)"]
    return lines()


def put_busybox_first(folder, environment):
    folder.mkdir()
    subprocess.run(["busybox", "--install", "-s", folder], check=True)
    for name in GNU_ONLY:
        (folder / name).unlink(missing_ok=True)
    program_folder, rest = environment["PATH"].split(":", 1)
    environment["PATH"] = f"{program_folder}:{folder}:{rest}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("--busybox", action="store_true")
    parser.add_argument("root", type=Path)
    parser.add_argument("page")
    args = parser.parse_args()

    page = args.root / args.page
    blocks = markdown_blocks if page.suffix == ".md" else manual_blocks
    examples = [example for block in blocks(page.read_text()) for example in examples_of(block)]
    if not examples:
        sys.exit(f"{args.page}: no example found")

    wrong = 0
    with tempfile.TemporaryDirectory() as scratch:
        scratch = Path(scratch)
        run_case.install_program(scratch / "bin", os.path.abspath(args.program),
                                 [word for word in args.emulator.split(";") if word])
        environment = run_case.environment(scratch / "bin")
        environment["HOME"] = str(scratch)
        if args.busybox:
            put_busybox_first(scratch / "busybox", environment)
        work = scratch / "work"
        work.mkdir()
        subprocess.run(["cp", "-r", args.root / "examples", work], check=True)
        for example in examples:
            actual = run(example, work, environment, bool(args.emulator))
            if not matches(example.output, actual):
                wrong += 1
                print(f"{args.page}:{example.line}: $ {example.command}")
                print("\n".join(difflib.unified_diff(example.output, actual, "page", "run",
                                                     lineterm="")))
    if wrong:
        sys.exit(f"{wrong} of {len(examples)} examples differ")
    print(f"{len(examples)} examples are as the page says")


if __name__ == "__main__":
    main()
