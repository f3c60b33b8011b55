#!/usr/bin/env python3
"""Tries every two options of events-query together, and checks that just those that the manual lists as
meaningless are refused.

usage: option_conflicts_test.py --program PROGRAM [--emulator COMMAND] MANUAL LOG
"""

import argparse
import itertools
import os
import re
import subprocess
import sys
from pathlib import Path

LOG = "a log"
OPTIONS = {"-e": ["949"], "-g": ["x"], "-S": ["08:14"], "-U": ["08:14"], "--year": ["2026"], "-n": ["1"],
           "-C": ["1"], "-r": [], "-f": [], "-m": [], "--name": ["x"], "--progress": [], "-c": ["event"],
           "--check": [], "-o table": [], "-o lines": [], "-o csv": [], "-o json": [], "-o html": [],
           "--color=always": [], "--color=never": [], "--catalog": [], LOG: []}


def listed(manual):
    """The pairs in the manual's table, each in the order of OPTIONS."""
    table = manual.partition(".Sh OPTIONS THAT MEAN NOTHING TOGETHER\n")[2].partition(".Sh")[0]
    pairs = set()
    for option, others in re.findall(r"^\.It (.*) Ta (.*)$", table, re.MULTILINE):
        names = [LOG if LOG in name else "-" + re.sub(r"Fl |Ar ", "", name).replace(" Ns ", "")
                 for name in [option, *others.split(" , ")]]
        pairs.update(tuple(sorted((names[0], other), key=[*OPTIONS].index)) for other in names[1:])
    return pairs


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("manual", type=Path)
    parser.add_argument("log")
    args = parser.parse_args()
    command = [*filter(None, args.emulator.split(";")), args.program]

    def is_refused(pair):
        words = [word for name in pair if name != LOG for word in [*name.split(), *OPTIONS[name]]]
        log = [] if "--catalog" in pair and LOG not in pair else [args.log]
        reading, writing = os.pipe()
        os.close(reading)  # -f ends if nobody reads what it shows
        with os.fdopen(writing) as nobody:
            return subprocess.run([*command, *words, *log], stdin=subprocess.DEVNULL, stdout=nobody,
                                  stderr=subprocess.DEVNULL, check=False).returncode == 2

    # A word of its own that is given twice, such as -o, is another mistake.
    pairs = [pair for pair in itertools.combinations(OPTIONS, 2)
             if not all(name.startswith("-o") for name in pair)
             and not all(name.startswith("--color") for name in pair)]
    refused = {pair for pair in pairs if is_refused(pair)}
    in_manual = listed(args.manual.read_text())
    for pair in sorted(refused ^ in_manual):
        print(" and ".join(pair), "is refused" if pair in refused else "is accepted",
              "and the manual says otherwise")
    if refused != in_manual or not refused:
        sys.exit(1)
    print(f"{len(refused)} of {len(pairs)} pairs are refused, as the manual says")


main()
