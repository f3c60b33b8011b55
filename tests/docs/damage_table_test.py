#!/usr/bin/env python3
"""Gives the program each line of the damage tables and checks that it prints the row that they show.

usage: damage_table_test.py --program PROGRAM [--emulator COMMAND] --jsoncpp RELEASE PAGE

A row of the tables is: damage, line, time, event, detail. One without time, event and detail says
that the line has no event; "(reported)" says that there is a diagnostic before the table.
A release of JsonCpp may come before the damage. The row is then for this release and newer ones, and
replaces the row with the same line for older releases.
"""

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "cli"))
from run_case import release_number  # noqa: E402

ROW = re.compile(r"^\| (?:(1\.9\.\d+) \| )?(.*?) \| `(.*)` \|(.*)\|(.*)\|(.*)\|$", re.MULTILINE)
SIGNS = str.maketrans({"␀": "\0", "␍": "\r"})
BYTE = re.compile(rb"\\x([0-9A-F]{2})")


def bytes_of(line):
    signs = line.translate(SIGNS).encode()
    return BYTE.sub(lambda byte: bytes.fromhex(byte[1].decode()), signs)


def rows_for(release, page):
    """The rows that are for this release of JsonCpp, by their line."""
    rows = {}
    for first, damage, line, *columns in ROW.findall(page):
        if line in rows and not first:
            sys.exit(f"{damage}: the page has two rows for its line")
        if release_number(first or "0") <= release_number(release):
            rows[line] = damage, *columns
    return rows


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
    parser.add_argument("--jsoncpp", required=True, metavar="RELEASE")
    parser.add_argument("page", type=Path)
    args = parser.parse_args()
    command = [*filter(None, args.emulator.split(";")), args.program, "--all", "--input_file"]

    wrong = 0
    rows = rows_for(args.jsoncpp, args.page.read_text())
    for line, (damage, *columns) in rows.items():
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
