#!/usr/bin/env python3
"""Checks in which year events-query sees each event, and what -S and -U select.

In the tables a log is written as the times of its events. "-" is an event without a time, and
"TIME > NEW" reports that the clock was set to NEW, which is missing for "-". The lines are numbered from 1 on.
"""

import argparse
import datetime
import json
import os
import subprocess
import sys
import tempfile

FILE_DATE = "2026-11-25 12:00"
CLOCK_SET = 1227

# What is shown; the log; the date of the file or the option --year; the times that are shown.
CALENDAR = [
    ("the last event is not after the file's date",
     "Nov 20 08:15:02", "2026-11-20 00:00", "2026-11-20T08:15:02"),
    ("the terminal's zone may be 14 hours ahead", "Nov 20 23:59:59", "2026-11-19 10:00", "2026-11-20T23:59:59"),
    ("but no more", "Nov 20 00:00:00", "2026-11-19 09:59", "2025-11-20T00:00:00"),
    ("a file of Dec 31 may end next year", "Jan  1 00:00:05", "2026-12-31 12:00", "2027-01-01T00:00:05"),
    ("a given year wins", "Nov 20 08:15:02", "--year=2031", "2031-11-20T08:15:02"),
    ("New Year", "Dec 31 23:59:59; Jan  1 00:00:00", FILE_DATE, "2025-12-31T23:59:59 2026-01-01T00:00:00"),
    ("New Years without Jan 01", "Nov 20 08:00:00; Feb  2 08:00:00; Oct  1 08:00:00; Mar 01 08:00:00", FILE_DATE,
     "2024-11-20T08:00:00 2025-02-02T08:00:00 2025-10-01T08:00:00 2026-03-01T08:00:00"),
    ("a step back by more than half a year is New Year", "Jul  4 08:00:00; Jan  2 08:00:00", FILE_DATE,
     "2025-07-04T08:00:00 2026-01-02T08:00:00"),
    ("by less it is a clock set back", "Jul  3 08:00:00; Jan  2 08:00:00; Jan  1 08:00:00", FILE_DATE,
     "2026-07-03T08:00:00 2026-01-02T08:00:00 2026-01-01T08:00:00"),
    ("within a day too", "Nov 20 08:00:00; Nov 20 07:00:00", FILE_DATE, "2026-11-20T08:00:00 2026-11-20T07:00:00"),
    ("a clock set back over New Year", "Dec 31 23:00:00; Jan  1 00:00:05; Dec 31 23:59:58; Jan  1 00:00:00", FILE_DATE,
     "2025-12-31T23:00:00 2026-01-01T00:00:05 2025-12-31T23:59:58 2026-01-01T00:00:00"),
    ("Jan 01 after Nov is New Year if the year goes on", "Nov 20 08:00:00; Jan  1 08:00:00; Jan  8 08:00:00", FILE_DATE,
     "2025-11-20T08:00:00 2026-01-01T08:00:00 2026-01-08T08:00:00"),
    ("Jan 01 after Dec is New Year even if nothing follows", "Dec 20 08:00:00; Jan  1 08:00:00", FILE_DATE,
     "2025-12-20T08:00:00 2026-01-01T08:00:00"),
    ("Jan 01 after Nov is an unset clock if nothing follows", "Nov 20 08:00:00; Jan  1 08:00:00; Jan  7 08:00:00",
     FILE_DATE, "2026-11-20T08:00:00 - -"),
    ("an unset clock that returns", "Nov 20 08:00:00; Jan  1 00:00:09; Jan  2 00:00:00; Nov 19 08:00:00", FILE_DATE,
     "2026-11-20T08:00:00 - - 2026-11-19T08:00:00"),
    ("up to 31 days later", "Oct 20 08:00:00; Jan  1 00:00:09; Nov 20 08:00:00", FILE_DATE,
     "2026-10-20T08:00:00 - 2026-11-20T08:00:00"),
    ("32 days later it is a new year", "Oct 20 08:00:00; Jan  1 00:00:09; Nov 21 08:00:00", FILE_DATE,
     "2025-10-20T08:00:00 2026-01-01T00:00:09 2026-11-21T08:00:00"),
    ("a clock that is set by an event with the old time",
     "Feb 20 08:00:00; Jan  1 00:00:09; Jan  1 00:01:00 > Nov 20 09:00:00; Nov 20 09:00:01", FILE_DATE,
     "2026-02-20T08:00:00 - - 2026-11-20T09:00:01"),
    ("by one with the new time", "Feb 20 08:00:00; Jan  1 00:00:09; Nov 20 09:00:00 > Nov 20 09:00:00", FILE_DATE,
     "2026-02-20T08:00:00 - 2026-11-20T09:00:00"),
    ("to a time in an unknown form", "Feb 20 08:00:00; Jan  1 00:01:00 > soon; Nov 20 09:00:01", FILE_DATE,
     "2026-02-20T08:00:00 - 2026-11-20T09:00:01"),
    ("by one without a time in a known form", "Feb 20 08:00:00; Jan  1 00:00:09; soon > Nov 20 09:00:00; Nov 20 09:00:01",
     FILE_DATE, "2026-02-20T08:00:00 - - 2026-11-20T09:00:01"),
    ("an event that does not say to what sets no clock",
     "Nov 20 08:00:00; Jan  1 08:00:00; Jan  1 09:00:00 > -; Jan  8 09:00:00", FILE_DATE,
     "2025-11-20T08:00:00 2026-01-01T08:00:00 2026-01-01T09:00:00 2026-01-08T09:00:00"),
    ("a correction within the first week sets no clock",
     "Nov 20 08:00:00; Jan  1 08:00:00 > Jan  3 09:00:00; Jan  8 09:00:00", FILE_DATE,
     "2025-11-20T08:00:00 2026-01-01T08:00:00 2026-01-08T09:00:00"),
    ("a clock that is not set when the log begins",
     "Jan  1 00:00:09; Jan  1 00:01:00 > Nov 20 09:00:00; Nov 20 09:00:01",
     FILE_DATE, "- - 2026-11-20T09:00:01"),
    ("a log of Jan 01", "Jan  1 00:00:09; Jan  2 00:00:00", FILE_DATE, "2026-01-01T00:00:09 2026-01-02T00:00:00"),
    ("a leap day needs a year that has it", "Feb 28 08:00:00; Feb 29 08:00:00; Mar  1 08:00:00", FILE_DATE,
     "2024-02-28T08:00:00 2024-02-29T08:00:00 2024-03-01T08:00:00"),
    ("New Year after a leap day", "Feb 29 08:00:00; Dec 31 08:00:00; Jan  3 08:00:00", FILE_DATE,
     "2024-02-29T08:00:00 2024-12-31T08:00:00 2025-01-03T08:00:00"),
    ("a given year without the leap day", "Feb 28 08:00:00; Feb 29 08:00:00; Mar  1 08:00:00", "--year=2026",
     "2026-02-28T08:00:00 - 2026-03-01T08:00:00"),
    ("a century has one if 400 divides it", "Feb 28 08:00:00; Feb 29 08:00:00; Mar  1 08:00:00", "--year=2000",
     "2000-02-28T08:00:00 2000-02-29T08:00:00 2000-03-01T08:00:00"),
    ("else it has none", "Feb 28 08:00:00; Feb 29 08:00:00; Mar  1 08:00:00", "--year=2100",
     "2100-02-28T08:00:00 - 2100-03-01T08:00:00"),
    ("a clock set back to Jan 01", "Dec 31 08:00:00; Jan  2 08:00:00; Jan  1 09:00:00; Jan 01 10:00:00", FILE_DATE,
     "2025-12-31T08:00:00 2026-01-02T08:00:00 2026-01-01T09:00:00 2026-01-01T10:00:00"),
    ("nor is the year 10000", "Dec 31 23:00:00; Jan  1 00:00:00; Dec 31 23:59:00", "--year=9999",
     "9999-12-31T23:00:00 - 9999-12-31T23:59:00"),
    ("digits that are none", "Nov 02 08:00:00; Nov /2 08:00:00; Nov :2 08:00:00; Nov 2/ 08:00:00; Nov 2: 08:00:00",
     FILE_DATE, "2026-11-02T08:00:00 - - - -"),
    ("months that are none", "Foo 02 08:00:00; anF 02 08:00:00; Nov 00 08:00:00", FILE_DATE, "- - -"),
    ("no time, and times in unknown forms",
     "-; Nov 02 08:00:00; Nov 02X08:00:01; nov 20 08:00:00; Nov 31 08:00:00; Nov 20 24:00:00; Nov 20 08:60:00; 2026-11-20T08:00:00; "
     "Nov 20 08:00:00 2026; Nov  2 08:00:01", FILE_DATE, "- 2026-11-02T08:00:00 - - - - - - - 2026-11-02T08:00:01"),
]

DAYS = ("Nov 19 23:00:00; Nov 20 07:59:59; Nov 20 08:14:00; Nov 20 08:14:40; Nov 20 08:14:59; Nov 20 08:15:00; -; "
        "Nov 20 20:00:00; Nov 21 06:00:00")
YEARS = "Nov 20 08:00:00; Dec 31 23:59:59; Jan  1 00:00:00; Nov 20 09:00:00"
OUTAGE = "-; Nov 20 08:00:00; Jan  1 00:00:09; Jan  1 00:01:00 > Nov 20 09:00:00; soon; Nov 20 09:00:01"
LEAP_DAY = "Feb 28 08:00:00; Feb 29 08:00:00"

# The log; options; the lines that are selected.
SELECTED = [
    (DAYS, ["-S", "Nov 20"], "2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "november 20"], "2 3 4 5 6 7 8 9"),
    (DAYS, ["-U", "Nov 20"], "1 2 3 4 5 6 7 8"),
    (DAYS, ["-S", "Nov 20", "-U", "Nov 20"], "2 3 4 5 6 7 8"),
    (DAYS, ["-S", "Nov 20 08:14", "-U", "Nov 20 08:14"], "3 4 5"),
    (DAYS, ["-S", "Nov 20 08:14:40", "-U", "Nov 20 08:14:40"], "4"),
    (DAYS, ["-S", "Nov 20 08:14:41", "-U", "Nov 20 08:14"], "5"),
    (DAYS, ["-S", "06:00"], "9"),
    (DAYS, ["-S", "06:00:01"], "2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "08:14"], "3 4 5 6 7 8 9"),
    (DAYS, ["-U", "05:59"], "1 2 3 4 5 6 7 8"),
    (DAYS, ["-U", "06:00:00"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "08:14", "-U", "08:14"], "3 4 5"),
    (DAYS, ["-S", "Nov 20 08:14:40", "-U", "08:14:40"], "4"),
    (DAYS, ["-S", "Nov 20 08:14:40", "-U", "08:14:39"], "4 5 6 7 8 9"),
    (DAYS, ["-S", "-10h"], "8 9"),
    (DAYS, ["-S", "-36000s"], "8 9"),
    (DAYS, ["-S", "-35999sec"], "9"),
    (DAYS, ["-S", "-600m", "-U", "-600min"], "8"),
    (DAYS, ["-U", "-10h"], "1 2 3 4 5 6 7 8"),
    (DAYS, ["-U", "-36001s"], "1 2 3 4 5 6 7"),
    (DAYS, ["-S", "-1d"], "2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "-1w"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "-99999w"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-U", "-2147483647w"],
     "events-query: -U is 0001-01-01T00:00:00, before the first event, 2026-11-19T23:00:00"),
    (DAYS, ["-S", "2026-11-20"], "2 3 4 5 6 7 8 9"),
    (DAYS, ["-U", "2026-11-20"], "1 2 3 4 5 6 7 8"),
    (DAYS, ["-S", "2026-11-20T08:14", "-U", "2026-11-20 08:14"], "3 4 5"),
    (DAYS, ["-S", "2026-11-20 08:14:40", "-U", "2026-11-20T08:14:40"], "4"),
    (DAYS, ["-S", "2025-01-01", "-U", "2025-12-31"],
     "events-query: -U is 2025-12-31T23:59:59, before the first event, 2026-11-19T23:00:00"),
    (DAYS, ["-S", "2026-11-20", "-U", "2026-11-19"],
     "events-query: -S is 2026-11-20T00:00:00, which is after -U, 2026-11-19T23:59:59"),
    (DAYS, ["-S", "Nov 21", "-U", "-10h"],
     "events-query: -S is 2026-11-21T00:00:00, which is after -U, 2026-11-20T20:00:00"),
    (DAYS, ["-S", "Nov 22"],
     "events-query: -S is 2026-11-22T00:00:00, after the last event, 2026-11-21T06:00:00"),
    (DAYS, ["-S", "Dec 22 06:00:00"],
     "events-query: -S is 2026-12-22T06:00:00, after the last event, 2026-11-21T06:00:00"),
    (DAYS, ["-S", "Dec 22 06:00:01"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "Jan 1"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-S", "Feb 29"], "1 2 3 4 5 6 7 8 9"),
    (DAYS, ["-U", "Nov 18"],
     "events-query: -U is 2026-11-18T23:59:59, before the first event, 2026-11-19T23:00:00"),
    (DAYS, ["-S", "Nov 20", "-e", "835", "-n", "2", "-r"], "9 8"),
    (DAYS, ["-S", "20:00", "-C", "1"], "7 8 9"),
    (DAYS, ["-U", "Nov 19", "-C", "1", "-n", "1"], "1 2"),
    (DAYS, ["--year", "2020", "-S", "2020-11-21"], "9"),
    (YEARS, ["-S", "Nov 20"], "4"),
    (YEARS, ["-U", "Nov 20"], "1 2 3 4"),
    (YEARS, ["-U", "Nov 20 08:30"], "1 2 3"),
    (YEARS, ["-S", "Dec 1"], "2 3 4"),
    (YEARS, ["-S", "Dec 1", "-U", "Jan 5"], "2 3"),
    (YEARS, ["-S", "Dec 31 23:59:59", "-U", "00:00"], "2 3"),
    (YEARS, ["-S", "2025-11-20", "-U", "Nov 20"], "1"),
    (YEARS, ["-S", "Feb 29"], "1 2 3 4"),
    (YEARS, ["-S", "2025-12-31T23:59:59", "-U", "2026-01-01T00:00:00"], "2 3"),
    (OUTAGE, ["-S", "08:00"], "2 3 4 5 6"),
    (OUTAGE, ["-S", "08:00:01"], "6"),
    (OUTAGE, ["-U", "08:00"], "1 2 3 4 5"),
    (OUTAGE, ["-U", "Nov 19"], "1"),
    (LEAP_DAY, ["--year", "2026", "-S", "-1d"], "1 2"),
    (LEAP_DAY, ["--year", "2026", "-S", "-86399s"], ""),
    ("-; soon", ["-S", "Nov 20"], ""),
    ("-; soon", ["-S", "-2h", "-U", "08:00"], ""),
    ("-; soon", ["-U", "Nov 20"], "1 2"),
]


def line_of(event):
    time, _, new_time = event.partition(" > ")
    members = {"id": CLOCK_SET if new_time else 835}
    if time != "-":
        members["time"] = time
    if new_time:
        members["vars"] = {"delta_time": "1", "old_time": time, "new_time": new_time}
    if new_time == "-":
        del members["vars"]["new_time"]
    return json.dumps(members) + "\n"


def moment(text):
    return datetime.datetime.fromisoformat(text).replace(tzinfo=datetime.timezone.utc)


class Checks:
    def __init__(self, command, folder):
        self.command = command
        self.log = os.path.join(folder, "log")
        self.count = self.failed = 0

    def run(self, log, options, date=FILE_DATE, pipe=False):
        """The events that are shown, and what is reported."""
        text = "".join(map(line_of, log.split("; ")))
        with open(self.log, "w", encoding="ascii") as file:
            file.write(text)
        os.utime(self.log, (0, moment(date).timestamp()))
        done = subprocess.run([*self.command, "-o", "json", *options, "-" if pipe else self.log],
                              input=text if pipe else "", capture_output=True, text=True, check=False)
        events = [json.loads(line) for line in done.stdout.splitlines()]
        errors = done.stderr.strip()
        if done.returncode != (0 if events else 2 if "after -U" in errors else 1):
            errors += f" status {done.returncode}"
        return events, errors

    def check(self, what, result, key, expected):
        events, errors = result
        actual = errors or " ".join(str(event[key] or "-") for event in events)
        self.count += 1
        if actual != expected:
            self.failed += 1
            print(f"{what}:\n  expected {expected}\n  got      {actual}")


def latest_year(date, day):
    """The latest year in which `day`, such as Feb 29, is not after `date`."""
    for year in range(date.year, date.year - 9, -1):
        try:
            if date.replace(year=year, month=day.month, day=day.day) <= date:
                return year
        except ValueError:
            pass
    return None


def check_standard_input(checks):
    """Its date is the present one, which may change between the two looks at it."""
    zone = datetime.timedelta(hours=14)
    for days in (-3, 3):
        now = datetime.datetime.now(datetime.timezone.utc)
        day = now + datetime.timedelta(days=days)
        year = latest_year(now + zone, day)
        checks.check(f"standard input, {days} days from now",
                     checks.run(day.strftime("%b %d 08:00:00"), [], pipe=True), "at",
                     f"{year}-{day:%m-%d}T08:00:00")


def main():
    parser = argparse.ArgumentParser(description="Checks the times of events-query.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    args = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="times_test.") as folder:
        checks = Checks([*filter(None, args.emulator.split(";")), args.program], folder)
        for what, log, date, expected in CALENDAR:
            options, date = ([date], FILE_DATE) if date.startswith("--") else ([], date)
            checks.check(f"{what} ({log})", checks.run(log, options, date), "at", expected)
        for log, options, expected in SELECTED:
            # A pipe is held in memory, and has a year of its own.
            checks.check(f"{options} of {log}", checks.run(log, options), "line", expected)
            if "--year" not in options:
                checks.check(f"{options} of {log} in a pipe",
                             checks.run(log, ["--year=2026", *options], pipe=True), "line", expected)
        check_standard_input(checks)
    print(f"{checks.failed} of {checks.count} checks failed")
    sys.exit(1 if checks.failed else 0)


if __name__ == "__main__":
    main()
