#!/usr/bin/env python3
"""Asks a real shell to complete command lines of events-viewer and events-query.

usage: completion_test.py COMPLETIONS SHELL [FOLDER]

events-query is in FOLDER. Without FOLDER only the lines of events-viewer are completed.
"""

import os
import sys
import tempfile
from pathlib import Path

from shells import SHELLS

LOGS = ["logs/events_report", "logs/events_report.0"]

# The line, whose last word is unfinished, and the candidates for that word.
VIEWER_CASES = {
    # the names of options
    "--in": ["--input_file"],
    "--s": ["--show"],
    "--zz": [],
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
QUERY_CASES = {
    # the names of options
    "--ev": ["--event"],
    "-r --co": ["--color", "--context", "--count"],
    "--zz": [],
    # what events are counted by
    "-c de": ["detail"],
    "-rc h": ["hour"],
    "--count=da": ["day"],
    # the names of events after every form of the option
    "-e MODEM_OUT": ["MODEM_OUT_OF_NETWORK"],
    "--event MODEM_OUT": ["MODEM_OUT_OF_NETWORK"],
    "--event=MODEM_OUT": ["MODEM_OUT_OF_NETWORK"],
    "-re MODEM_OUT": ["MODEM_OUT_OF_NETWORK"],
    "-e modem_out": ["MODEM_OUT_OF_NETWORK"],
    "-e 949,MODEM_OUT": ["949,MODEM_OUT_OF_NETWORK"],
    "-e MODEM_BEAM_SWITCH_": ["MODEM_BEAM_SWITCH_FAILED", "MODEM_BEAM_SWITCH_SUCCEEDED"],
    r"-e \!MODEM_OUT": ["!MODEM_OUT_OF_NETWORK"],
    "-e logs": [],
    # formats and colours
    "-o ": ["csv", "html", "json", "lines", "table"],
    "--output=j": ["json"],
    "-ro l": ["lines"],
    "--color=a": ["always", "auto"],
    # nothing after a time, a number or an expression
    "-S l": [],
    "--until=l": [],
    "--year l": [],
    "--name l": [],
    "-n l": [],
    "--context l": [],
    "-rg l": [],
    # the log
    "l": ["logs"],
    "-r logs/ev": LOGS,
    "-m logs/events_report.0 logs/ev": LOGS,
    "logs/events_report.0 logs -mre MODEM_OUT": ["MODEM_OUT_OF_NETWORK"],
    "--color l": ["logs"],
    "-e 949 o": ["other file"],
}


def main(completions, name, folder_of_query=None):
    cases = {f"events-viewer {line}": words for line, words in VIEWER_CASES.items()}
    if folder_of_query:
        os.environ["PATH"] = f"{folder_of_query}:{os.environ['PATH']}"
        cases.update({f"events-query {line}": words for line, words in QUERY_CASES.items()})
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        for log in [*LOGS, "other file"]:
            path = Path(folder, log)
            path.parent.mkdir(exist_ok=True)
            path.touch()
        shell = SHELLS[name](completions, folder)
        for line, expected in cases.items():
            actual = shell.candidates(line)
            if actual != expected:
                wrong += 1
                print(f"{line}<TAB>: expected {expected}, got {actual}")
        shell.close()
    if wrong:
        sys.exit(f"{wrong} of {len(cases)} lines are completed in another way")
    print(f"{len(cases)} lines are completed")


main(Path(sys.argv[1]).resolve(), *sys.argv[2:])
