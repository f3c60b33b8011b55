#!/usr/bin/env python3
"""Runs the commands of a page as a reader pastes them, and compares what they print with the page.

usage: examples_test.py --program PROGRAM... [--emulator COMMAND] [--busybox] ROOT PAGE

In Markdown a block of code marked "sh" holds commands, and one marked "text" what the commands
before it print on both streams. In a manual an indented literal display holds commands, and one that
is not indented what they print. Commands without such a block print nothing. A line "..." is any
number of lines. A last line "^C" says that the user interrupts the commands, which is done here
once the lines above it have come. What is printed is compared without colours and without the
carriage returns of csv.

A shell reads each block of commands from its standard input. The blocks of a page are run one after
the other in a folder that has a copy of ROOT/examples in it. With --busybox there are no tools but
BusyBox's, as on the board, and those of which the same section of the page says "needs `TOOL`".
"""

import argparse
import difflib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "cli"))
import run_case  # noqa: E402 (how a test has the program run by its name)

UNSEEN = re.compile(r"\x1b\[[0-9;]*m|\r$", re.MULTILINE)
MANUAL_ESCAPES = {r"\-": "-", r"\e": "\\", r"\&": "", r"\(aq": "'", r"\(ha": "^", r"\(ti": "~"}
NEEDED = re.compile(r"\bneeds (?:GNU )?`(\w+)`")
LIMIT = 60  # seconds for an example


class Example:
    def __init__(self, line, tools):
        self.line = line
        self.tools = tools
        self.commands = ""
        self.output = []
        self.interrupted = False


def markdown_lines(text):
    """Each line with its kind: "sh", "text", "" for other code, or None outside of code."""
    fence = None
    for line in text.split("\n"):
        if line.startswith("```"):
            fence = line[3:] if fence is None else None
            yield None, ""
        else:
            indented = fence is None and line.startswith("    ")
            yield ("", line[4:]) if indented else (fence, line)


def manual_lines(text):
    """The same for a manual, where literal displays are code."""
    kind = None
    for number, line in enumerate(text.split("\n"), 1):
        if line == ".Ed":
            kind = None
        yield kind, manual_text(number, line) if kind else line
        if line.startswith(".Bd -literal"):
            kind = "sh" if line.endswith(" -offset indent") else "text"


def manual_text(number, line):
    escape = re.compile("|".join(map(re.escape, MANUAL_ESCAPES)))
    if re.search(r"[-'`^~\\]", escape.sub("", line)) or line.startswith("."):
        sys.exit(f"line {number}: a character that a manual does not show as it is: {line}")
    return escape.sub(lambda match: MANUAL_ESCAPES[match[0]], line)


def examples_of(lines):
    examples, tools, before = [], set(), None
    for number, (kind, line) in enumerate(lines, 1):
        if kind is None:
            tools = set() if line.startswith("#") else tools.union(NEEDED.findall(line))
        elif kind == "sh":
            if before != "sh":
                examples.append(Example(number, tools))
            examples[-1].commands += line + "\n"
        elif re.match(r"\$ |(\S*/)?events-(viewer|query) ", line):
            sys.exit(f"line {number}: a command that is not in a block of commands: {line}")
        elif kind == "text":
            examples[-1].output.append(line)
        before = kind
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
        process = subprocess.Popen(["sh"], cwd=folder, env=environment, stdin=subprocess.PIPE,
                                   stdout=output, stderr=subprocess.STDOUT, start_new_session=True)
    with process.stdin as commands:
        commands.write(example.commands.encode())

    def lines():
        text = run_case.without_added_messages(path.read_bytes(), emulated)
        seen = UNSEEN.sub("", text.decode(errors="backslashreplace"))
        return without_empty_lines_at_the_end(seen.split("\n"))

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


def put_tools(folder, tools):
    """Fills a new folder with BusyBox's tools and `tools`."""
    folder.mkdir()
    subprocess.run(["busybox", "--install", "-s", folder], check=True)
    for tool in tools:
        (folder / tool).symlink_to(shutil.which(tool))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True, action="append")
    parser.add_argument("--emulator", default="")
    parser.add_argument("--busybox", action="store_true")
    parser.add_argument("root", type=Path)
    parser.add_argument("page")
    args = parser.parse_args()

    lines = markdown_lines if args.page.endswith(".md") else manual_lines
    examples = examples_of(lines((args.root / args.page).read_text()))
    if not examples:
        sys.exit(f"{args.page}: no example found")

    wrong = 0
    with tempfile.TemporaryDirectory() as scratch:
        scratch = Path(scratch)
        # The emulator finds its tools even if the examples have BusyBox's only.
        emulator = args.emulator and ["/usr/bin/env", f"PATH={os.environ['PATH']}",
                                      *args.emulator.split(";")]
        for program in args.program:
            run_case.install_program(scratch / "bin", os.path.abspath(program), emulator)
        environment = run_case.environment(scratch / "bin")
        environment["HOME"] = str(scratch)
        work = scratch / "work"
        work.mkdir()
        subprocess.run(["cp", "-r", args.root / "examples", work], check=True)
        for example in examples:
            if args.busybox:
                tools = scratch / f"tools_{example.line}"
                put_tools(tools, example.tools)
                environment["PATH"] = f"{scratch}/bin:{tools}"
            actual = run(example, work, environment, bool(emulator))
            if not matches(example.output, actual):
                wrong += 1
                print(f"{args.page}:{example.line}:\n{example.commands}", end="")
                print("\n".join(difflib.unified_diff(example.output, actual, "page", "run",
                                                     lineterm="")))
    if wrong:
        sys.exit(f"{wrong} of {len(examples)} examples differ")
    print(f"{len(examples)} examples are as the page says")


if __name__ == "__main__":
    main()
