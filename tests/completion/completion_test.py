#!/usr/bin/env python3
"""Asks a real shell to complete command lines of events-viewer.

usage: completion_test.py COMPLETIONS SHELL
"""

import sys
import tempfile
from pathlib import Path

from shells import SHELLS

LOGS = ["logs/events_report", "logs/events_report.0"]

# The line, whose last word is unfinished, and the candidates for that word.
CASES = {
    # the names of options
    "--in": ["--input_file"],
    "--s": ["--show"],
    "--x": [],
    "--show --num": ["--number"],
    "-s -n 3 --o": ["--output_file"],
    # file names after every form of the two options that take one; other arguments are ignored
    "-i l": ["logs"],
    "-o l": ["logs"],
    "-i logs/ev": LOGS,
    "--input_file l": ["logs"],
    "--output_file logs/": LOGS,
    "--input_file=l": ["logs"],
    "--output_file=logs/events_report.": ["logs/events_report.0"],
    "-ai logs/ev": LOGS,
    "-l -i logs/events_report -o o": ["other file"],
    "l": [],
    "--show l": [],
    # nothing after a number
    "-n ": [],
    "-n l": [],
    "--number l": [],
    "--number=l": [],
    "-sn l": [],
}


def main(completions, name):
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        for log in [*LOGS, "other file"]:
            path = Path(folder, log)
            path.parent.mkdir(exist_ok=True)
            path.touch()
        shell = SHELLS[name](completions, folder)
        for line, expected in CASES.items():
            actual = shell.candidates(f"events-viewer {line}")
            if actual != expected:
                wrong += 1
                print(f"events-viewer {line}<TAB>: expected {expected}, got {actual}")
        shell.close()
    if wrong:
        sys.exit(f"{wrong} of {len(CASES)} lines are completed in another way")
    print(f"{len(CASES)} lines are completed")


main(Path(sys.argv[1]).resolve(), sys.argv[2])
