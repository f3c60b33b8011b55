#!/usr/bin/env python3
"""Checks the years that events-query finds, and what it takes -S and -U for, on logs of random times:
New Years, clocks that start anew or are set, steps back, leap days, times that are missing or have an
unknown form. By hand: --amount 1000, and any --seed."""

import json
import os
from datetime import datetime, timedelta, timezone

from calendar_rules import MONTHS, Event, in_range, times_with_years
from programs import Programs, check, rows_of

ODD_TIMES = ["", "-", "Feb 30 00:00:00", "Nov 31 10:00:00", "nov 20 08:15:02", "Nov 20 08:15:60",
             "Nov 20 24:00:00", "Jan 00 00:00:00", "2026-11-20T08:15:02", "Nov 20 08:15:02 "]


def shown(time, random):
    day = f"{time.day:2}" if random.random() < 0.2 else f"{time.day:02}"
    return f"{MONTHS[time.month - 1]} {day} {time:%H:%M:%S}"


def random_events(random):
    """The events of a terminal whose clock goes wrong now and then."""
    clock = datetime(random.randint(2019, 2026), random.choice((1, 1, 2, 2, 3, 6, 11, 12, 12)),
                     random.choice((1, 1, 2, 5, 9, 20, 28)), random.randrange(24))
    away = None  # the right time, while the clock is wrong
    for _ in range(random.choice((1, 10, 40, 40))):
        step = random.choice((0, 40, 5000, 5000, 80000, 86400, 200000, 86400 * 20, 86400 * 60))
        clock += timedelta(seconds=random.randint(0, step))
        away = away and away + timedelta(seconds=step)
        kind = random.random()
        if kind < 0.08 and away is None:
            clock, away = datetime(clock.year, 1, 1, random.randrange(24)), clock
        elif kind < 0.12:
            clock -= timedelta(days=random.choice((0.01, 1, 1, 30, 100, 182, 183, 184, 200)))
        elif kind < 0.16:
            clock = datetime(2024, 2, 29, random.randrange(24))
        elif kind < 0.2:
            yield Event(random.choice(ODD_TIMES))
        elif away and kind < 0.5 or kind < 0.22:
            new = away or clock + timedelta(hours=1)
            set_to = random.choice((shown(new, random),) * 3 + ("soon", shown(clock, random)))
            yield Event(shown(random.choice((clock, new)), random), set_to)
            clock, away = new, None
        elif away and kind < 0.7:
            clock, away = away, None
        yield Event(shown(clock, random))


def lines_of(events):
    for event in events:
        line = {"id": 1225, "time": event.time}
        if event.set_to is not None:
            line.update(id=1227, vars={"old_time": "Jan 01 00:00:00", "new_time": event.set_to})
        yield json.dumps(line).encode() + b"\n"


def random_bound(random, times):
    """A time for -S or -U, often near one of the log."""
    known = [at for at in times if at] or ["2024-02-28T12:00:00"]
    near = datetime.fromisoformat(random.choice(known))
    near += timedelta(seconds=random.choice((0, 0, -1, 1, 59, -60, 3600, 86400 * random.randint(-400, 400))))
    if random.random() < 0.1:
        near = datetime(2024, 2, 29, near.hour)
    date = random.choice((f"{MONTHS[near.month - 1]} {near.day}", f"{near:%Y-%m-%d}"))
    clock = random.choice((f"{near:%H:%M}", f"{near:%H:%M:%S}"))
    return random.choice((date, f"{date} {clock}", clock, f"{near:%Y-%m-%dT}{clock}",
                          f"-{random.randint(0, 90)}{random.choice(('s', 'sec', 'm', 'min', 'h', 'd', 'w'))}"))


def compare(programs, events):
    random = programs.random
    log = programs.folder / "log"
    changed = int(datetime(random.randint(2019, 2029), random.randint(1, 12), random.randint(1, 28),
                           random.randrange(24), tzinfo=timezone.utc).timestamp())
    year = random.choice((None, None, None, random.randint(2020, 2028)))
    os.utime(log, (changed, changed))
    options = ["-o", "json"] + (["--year", str(year)] if year else [])
    times = [row["at"] for row in rows_of(programs.query(*options).stdout)]
    expected = times_with_years(events, year, changed)
    check(times == expected, "other times:", options, changed,
          [row for row in zip(events, times, expected) if row[1] != row[2]])
    if any(event.time.startswith("Feb 29") and not at for event, at in zip(events, times)):
        return  # it is open when that was
    for _ in range(2):
        since = random_bound(random, times) if random.random() < 0.7 else None
        until = random_bound(random, times) if random.random() < 0.7 or not since else None
        bounds = [part for letter, bound in (("-S", since), ("-U", until)) if bound for part in (letter, bound)]
        inside = in_range(times, since, until)
        result = programs.query(*options, *bounds)
        if inside is None:
            check(result.returncode == 2 and b" is after -U, " in result.stderr.replace(b"which ", b""),
                  bounds, "-S after -U:", result)
            continue
        lines = [number for number, is_inside in enumerate(inside, 1) if is_inside]
        actual = [row["line"] for row in rows_of(result.stdout)]
        check(actual == lines, "another range:", options, bounds, changed, actual, lines, result.stderr)


def main():
    programs = Programs(__doc__)
    for _ in range(15 * programs.args.amount):
        events = list(random_events(programs.random))
        with programs.on({"log": b"".join(lines_of(events))}):
            compare(programs, events)
    programs.finish()


if __name__ == "__main__":
    main()
