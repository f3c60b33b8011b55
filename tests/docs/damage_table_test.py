#!/usr/bin/env python3
"""Gives the program each line of the damage tables and checks that it prints the row that they show, and
that events-query --check finds the damage as they say.

usage: damage_table_test.py --program PROGRAM [--query PROGRAM] [--emulator COMMAND] --jsoncpp RELEASE PAGE

A row of the tables is: damage, line, time, event, detail, kind of the finding or note. One without time, event and detail says
that the line has no event; "(reported)" says that there is a diagnostic before the table.
A release of JsonCpp may come before the damage. The row is then for this release and newer ones, and
replaces the row with the same line for older releases.
"""

import argparse
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "cli"))
from run_case import release_number  # noqa: E402

ROW = re.compile(r"^\| (?:(1\.9\.\d+) \| )?(.*?) \| `(.*)` \|(.*)\|(.*)\|(.*)\| (.*) \|$", re.MULTILINE)
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


def kinds_of(check, log):
    """The kinds of the findings, or else of the notes."""
    output = subprocess.run([*check, log], capture_output=True, check=False).stdout
    kinds = {"finding": [], "note": [], "summary": []}
    for record in map(json.loads, output.decode().splitlines()):
        kinds[record["type"]].append(record["kind"])
    return ", ".join(kinds["finding"] or kinds["note"])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--query")
    parser.add_argument("--emulator", default="")
    parser.add_argument("--jsoncpp", required=True, metavar="RELEASE")
    parser.add_argument("page", type=Path)
    args = parser.parse_args()
    emulator = [*filter(None, args.emulator.split(";"))]
    command = [*emulator, args.program, "--all", "--input_file"]
    check = [*emulator, args.query, "--check", "-o", "json"]

    wrong = 0
    rows = rows_for(args.jsoncpp, args.page.read_text())
    for line, (damage, *columns, kind) in rows.items():
        time, event, detail = (column[1:-1] for column in columns)
        with tempfile.NamedTemporaryFile() as log:
            log.write(bytes_of(line) + b"\n")
            log.flush()
            actual = subprocess.run([*command, log.name], capture_output=True, check=True).stdout
            kinds = kinds_of(check, log.name) if args.query else kind
        expected = expected_pattern(damage, time, event, detail.replace("⏎", "\n" + 50 * " "))
        if not re.fullmatch(expected, actual.decode()):
            wrong += 1
            print(f"{damage}: the page shows another row than this:\n{actual.decode()}")
        if kinds != kind:
            wrong += 1
            print(f"{damage}: found as {kinds!r}, the page says {kind!r}")
    if wrong or len(rows) < 20:
        sys.exit(f"{wrong} of {len(rows)} rows differ; at least 20 rows are expected")
    print(f"{len(rows)} rows are as the page says")


main()
