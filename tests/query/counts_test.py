#!/usr/bin/env python3
"""Counts the events of -o json in every way that -c knows, and checks that -c counts the same: on mutated
logs, and on logs with gaps and clocks that are not set. By hand: --amount 1000, and any --seed."""

import csv
import io
import itertools
import json
from collections import Counter
from datetime import datetime, timedelta

from calendar_test import lines_of, random_events
from programs import Programs, as_json_holds, check, rows_of

TIMES = {"day": (10, timedelta(days=1)), "hour": (13, timedelta(hours=1))}
KEYS = ["event", "detail", "reason", "log", *TIMES]


def value_of(row, key):
    return row["at"][:TIMES[key][0]] or "?" if key in TIMES else row[key]


def is_time(value):
    return value not in ("", "?")


def between(before, after, key):
    """The times that have rows of zero between two rows."""
    if before == after or not (is_time(before) and is_time(after)):
        return []
    length, step = TIMES[key]
    begin, end = (datetime.fromisoformat(value + ":00" * (length > 10)) for value in (before, after))
    missing = (end - begin) // step - 1
    if missing * step > timedelta(days=31):
        return ["..."]
    return [(begin + (i + 1) * step).isoformat()[:length] for i in range(missing)]


def expected_rows(events, keys):
    """The rows in groups; the order within a group is that of the counts alone."""
    counts = Counter(tuple(value_of(row, key) for key in keys) for row in events)
    if "log" in keys and not counts:
        counts = {tuple("log" if key == "log" else "" for key in keys): 0}
    times = [key for key in keys if key in TIMES]
    at = keys.index(times[0]) if times else None
    rows = sorted(counts.items(), key=lambda row: (row[0][at] if times else "", -row[1]))
    groups, before = [], ""
    for (time, count), group in itertools.groupby(rows, lambda row: (row[0][at] if times else "", row[1])):
        empty = between(before, time, times[0]) if times else []
        groups += [[(tuple(gap if i == at else "" for i in range(len(keys))), 0)] for gap in empty]
        groups.append(sorted(group))
        before = time
    return groups


def actual_rows(form, keys, text, keeps_bytes):
    if form == "json":
        rows = [json.loads(line) for line in text.decode().splitlines()]
        check(all(list(row) == ["count", *keys] for row in rows), "not the promised keys")
        return [(tuple(row[key] for key in keys), row["count"]) for row in rows]
    text = as_json_holds(text) if keeps_bytes else text.decode("utf-8", "surrogateescape")
    rows = list(csv.reader(io.StringIO(text, newline="")))
    check(rows[0] == ["count", *keys], "not the promised columns")
    return [(tuple(row[1:]), int(row[0])) for row in rows[1:]]


def compare(programs, keys, options):
    result = programs.query("-o", "json", *options)
    events = rows_of(result.stdout) if result.stdout else []
    groups = expected_rows(events, keys)
    form = programs.random.choice(("json", "csv"))
    counted = programs.query("-c", ",".join(keys), "-o", form, *options)
    keeps_bytes = programs.args.keeps_bytes
    rows = actual_rows(form, keys, counted.stdout, keeps_bytes) if result.returncode != 2 else []
    for group in groups if result.returncode != 2 else []:
        check(sorted(rows[:len(group)]) == group, "other rows:", keys, options, rows[:len(group)], group)
        rows = rows[len(group):]
    check(rows == [], "more rows:", keys, options, rows)
    check(counted.returncode == result.returncode, "another status:", keys, options, counted)


def random_logs(programs):
    for log in programs.mutated_logs(60 * programs.args.amount):
        yield log
    for _ in range(3 * programs.args.amount):
        yield {"log": b"".join(lines_of(random_events(programs.random)))}


def main():
    programs = Programs(__doc__)
    random = programs.random
    for log in random_logs(programs):
        with programs.on(log):
            for _ in range(6):
                keys = random.sample(KEYS, random.choice((1, 2)))
                if set(keys) == set(TIMES):
                    keys.pop()
                options = random.choice(([], [], ["-e", "!949"], ["-e", "949,12"], ["-g", "modem"],
                                         ["-n", "5"], ["-S", "-40d"], ["-U", "Nov 20 08:30", "-e", "*o*"]))
                compare(programs, keys, [*options])
    programs.finish()


if __name__ == "__main__":
    main()
