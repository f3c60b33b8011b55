#!/usr/bin/env python3
"""Checks that the options of events-query select what this test selects from all events, on mutated logs.
By hand: --amount 1000, and any --seed."""

import fnmatch
import re
from datetime import datetime, timedelta

from calendar_rules import in_range
from programs import Programs, check, rows_of

# The last "id" is the one that counts.
TWO_IDS = b'\n{"id":949,"id":1008}\n{"id":1008,"id":949}\n{"id":949,"vars":{"id":1008}}\n'


class Log:
    """All events of a log: as JSON, and as the line of text that -o lines has for each."""

    def __init__(self, json, lines):
        self.rows = rows_of(json)
        self.json = json.split(b"\n")[:-1]
        self.lines = lines.split(b"\n")[:-1]
        check(len(self.lines) == len(self.rows), "not one line for each event")

    def words(self, line):
        """What -g looks through; nothing matches in the place of an escape."""
        _, name, detail, _ = re.sub(rb"\\x[0-9a-f]{2}|\\u[0-9a-f]{4}", b"\0", line).split(b"\t")
        return [name, *detail.split(b" | ")]


def selected_by_events(log, patterns):
    """The rows by the patterns of -e: some wanted ones, or all, without those that are left out."""
    def matches(row, pattern):
        if re.fullmatch(r"-?\d+", pattern):
            return int(pattern) in (row["code"], row["code"] % 2**32)
        return fnmatch.fnmatchcase(row["event"], pattern.upper())
    wanted = [pattern for pattern in patterns if pattern[0] != "!"] or ["*"]
    refused = [pattern[1:] for pattern in patterns if pattern[0] == "!"]
    return [any(matches(row, pattern) for pattern in wanted) and
            not any(matches(row, pattern) for pattern in refused) for row in log.rows]


def selected_by_text(log, expression):
    any_case = 0 if re.search("[A-Z]", expression) else re.IGNORECASE
    wanted = re.compile(expression.encode(), any_case)
    return [any(wanted.search(part) for part in log.words(line)) for line in log.lines]


def random_pattern(random, log):
    row = random.choice(log.rows)
    name = row["event"]
    at = random.randrange(len(name))
    patterns = [str(row["code"]), str(row["code"] % 2**32), "12345",
                name, name[:at] + "*", "*" + name[at:], f"*{name[at:at + 4]}*"]
    if "UNRECOGNIZED" not in name:
        patterns += [name[:at] + "?" + name[at + 1:], f"{name[:at]}[A-M_{name[at]}]*", f"*[!{name[-1]}]{name[-2:]}"]
    pattern = random.choice(patterns)
    known = any(fnmatch.fnmatchcase(other["event"], pattern) for other in log.rows)
    pattern = pattern if known or pattern.lstrip("-").isdecimal() else name  # an unknown name is an error
    return random.choice(("", "", "!")) + random.choice((pattern, pattern.lower()))


def random_expression(random, log):
    words = [word.decode() for part in log.words(random.choice(log.lines))
             for word in re.findall(rb"[A-Za-z_]{4,}", part)]
    word, other = random.choice(words), random.choice(words)
    word = word.lower() if random.random() < 0.5 else word
    return random.choice([word, word[:-1] + ".", f"^{word}", f"{word}$", f"{word}|{other}", f"{word[0]}.*{word[-2:]}",
                          f"[{word[:3]}]+{word[3:]}", f"({word[:-1]})?{word[-1]}$", "no such words"])


def random_time(random, log):
    times = [row["at"] for row in log.rows if row["at"]] or ["2026-11-20T08:15:02"]
    time = datetime.fromisoformat(random.choice(times)) + timedelta(seconds=random.choice((0, 0, 0, 60, -3600)))
    form = random.choice(("%Y-%m-%dT%H:%M:%S", "%Y-%m-%d %H:%M", "%b %d %H:%M:%S", "%b %d", "%H:%M", "%H:%M:%S"))
    return random.choice((time.strftime(form), time.strftime(form), f"-{random.randint(0, 40)}min"))


def random_options(random, log):
    """Options as a list of letters and values: each by itself, or some of them."""
    some = [letter for letter in "eegSUnrC" if random.random() < 0.4] or [random.choice("egSUnrC")]
    make = {"e": lambda: ",".join(random_pattern(random, log) for _ in range(random.choice((1, 1, 2, 3)))),
            "g": lambda: random_expression(random, log), "r": lambda: None,
            "S": lambda: random_time(random, log), "U": lambda: random_time(random, log),
            "n": lambda: str(random.choice((1, 2, 3, 10, 1000))), "C": lambda: str(random.choice((0, 1, 2, 5)))}
    return [(letter, make[letter]()) for letter in some]


def matching_events(log, options, span=None):
    """The indexes of the events that match; nothing if -S is after -U. See in_range for `span`."""
    given = dict(options)
    patterns = [pattern for letter, value in options if letter == "e" for pattern in value.split(",")]
    inside = in_range([row["at"] for row in log.rows], given.get("S"), given.get("U"), span)
    if inside is None:
        return None
    by_name = selected_by_events(log, patterns)
    by_text = selected_by_text(log, given["g"]) if "g" in given else by_name
    return [i for i, all_three in enumerate(zip(inside, by_name, by_text)) if all(all_three)]


def expected_events(log, options):
    """The indexes of the events that are shown; nothing if -S is after -U."""
    given = dict(options)
    matches = matching_events(log, options)
    if matches is None:
        return None
    matches = matches[-int(given.get("n", len(matches))):] if matches else []
    context = int(given.get("C", 0))
    shown = [i for i in range(len(log.rows)) if any(abs(i - match) <= context for match in matches)]
    return shown[::-1] if "r" in given else shown


def compare(programs, log):
    options = random_options(programs.random, log)
    command = [f"-{letter}{value or ''}" for letter, value in options]
    shown = expected_events(log, options)
    groups = any(letter == "C" and value != "0" for letter, value in options)
    for form, rows in (("json", log.json), ("lines", log.lines)):
        expected = b""
        for before, i in zip([None, *(shown or [])], shown or []):
            apart = groups and form == "lines" and before is not None and abs(i - before) > 1
            expected += (b"--\n" if apart else b"") + rows[i] + b"\n"
        result = programs.query(*command, "-o", form)
        check(result.stdout == expected, "another selection:", command, form, shown, result)
        check(result.returncode == (2 if shown is None else 0 if shown else 1), "a wrong status:", command, result)


def main():
    programs = Programs(__doc__)
    for lines in programs.mutated_logs(100 * programs.args.amount):
        lines["log"] += TWO_IDS
        with programs.on(lines):
            log = Log(programs.query("-o", "json").stdout, programs.query("-o", "lines").stdout)
            for _ in range(10):
                compare(programs, log)
    programs.finish()


if __name__ == "__main__":
    main()
