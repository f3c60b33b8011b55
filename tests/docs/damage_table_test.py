#!/usr/bin/env python3
"""Gives the program each line of the damage tables and checks that it prints the row that they show.

usage: damage_table_test.py --program PROGRAM [--emulator COMMAND] PAGE

A row of the tables is: damage, line, time, event, detail. One without time, event and detail says
that the line has no event; "(reported)" says that there is a diagnostic before the table.
"""

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROW = re.compile(r"^\| (.*?) \| `(.*)` \|(.*)\|(.*)\|(.*)\|$", re.MULTILINE)
SIGNS = str.maketrans({"␀": "\0", "␍": "\r"})
BYTE = re.compile(rb"\\x([0-9A-F]{2})")


def bytes_of(line):
    signs = line.translate(SIGNS).encode()
    return BYTE.sub(lambda byte: bytes.fromhex(byte[1].decode()), signs)


def expected_pattern(damage, time, event, detail):
    if not event:
        return "No events to display.\n"
    reported = "Tarvik workaround: .*(?:\n.*)*?\n" if "(reported)" in damage else ""
    time, event, detail = map(re.escape, (f"{time:20}", f"{event:30}", detail))
    return (f"{reported}Last 1 events .*\n\n.*\n=*\n"
            f"{time}\x1b\\[1;34m{event}\x1b\\[0m{detail}\n\n\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("page", type=Path)
    args = parser.parse_args()
    command = [*filter(None, args.emulator.split(";")), args.program, "--all", "--input_file"]

    wrong = 0
    rows = ROW.findall(args.page.read_text())
    for damage, line, *columns in rows:
        time, event, detail = (column[1:-1] for column in columns)
        with tempfile.NamedTemporaryFile() as log:
            log.write(bytes_of(line) + b"\n")
            log.flush()
            actual = subprocess.run([*command, log.name], capture_output=True, check=True).stdout
        expected = expected_pattern(damage, time, event, detail.replace("⏎", "\n" + 50 * " "))
        if not re.fullmatch(expected, actual.decode()):
            wrong += 1
            print(f"{damage}: the page shows another row than this:\n{actual.decode()}")
    if wrong or len(rows) < 20:
        sys.exit(f"{wrong} of {len(rows)} rows differ; at least 20 rows are expected")
    print(f"{len(rows)} rows are as the page says")


main()
