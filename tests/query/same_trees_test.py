#!/usr/bin/env python3
"""Checks what events-query selects from a tree of logs, and in which order. Some of the mutated logs are
compressed, cut off, empty, missing or unreadable. By hand: --amount 1000, and any --seed."""

import gzip
import os
import re
import zlib

from calendar_rules import moment
from programs import Programs, check
from same_selection_test import Log, expected_events, matching_events, random_options

NAMES = ["4417", "4418", "a", "a-b", "a.0", "with space", "new\nline", "esc\x1b[2J", "\u00e9", "x.gz", "z"]
CHANGED = 1_800_000_000  # the date of all files


def unpacked(packed):
    """The whole lines in a compressed file that may be cut off, and whether it is whole."""
    stream = zlib.decompressobj(zlib.MAX_WBITS + 16)
    text = stream.decompress(packed)
    return (text, True) if stream.eof else (text[:text.rfind(b"\n") + 1], False)


class Tree:
    """Logs in random folders below tree/, and what they hold, uncompressed, in the same ones below plain/."""

    def __init__(self, programs, logs):
        self.programs = programs
        self.random = programs.random
        self.fails = False
        self.compressed = set()
        self.paths = []
        for log in logs:
            path = "/".join(self.random.choices(NAMES, k=self.random.choice((1, 1, 2, 3)))) + "/events_report"
            if path not in self.paths:
                self.paths.append(path)
                self.add(path, log)
        # In the order of the names. What lies deeper below a folder comes where its name comes.
        self.paths.sort(key=lambda path: [name.encode() for name in path.split("/")])
        self.logs = [self.read(path) for path in self.paths]

    def write(self, path, text):
        file = self.programs.folder / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(text)
        os.utime(file, (CHANGED, CHANGED))

    def add(self, path, log):
        (self.programs.folder / "tree" / path).parent.mkdir(parents=True, exist_ok=True)
        for name, text in log.items():
            file = path + name.removeprefix("log")
            kind = self.random.choice(("plain", "plain", "gzip", "gzip", "cut", "empty", "folder", "missing"))
            if kind == "plain":
                self.write(f"tree/{file}", text)
            elif kind in ("gzip", "cut"):
                packed = gzip.compress(text, self.random.choice((0, 1, 9)))
                packed = packed[:self.random.randrange(2, len(packed))] if kind == "cut" else packed
                self.write(f"tree/{file}.gz", packed)
                text, whole = unpacked(packed)
                self.fails = self.fails or not whole
                self.compressed.add(file)
            elif kind == "empty":
                self.write(f"tree/{file}", b"")
                text = b""
            elif kind == "folder" and file.endswith(".0"):
                (self.programs.folder / "tree" / file).mkdir()
                text = b""
                self.fails = True
            elif kind == "missing" and not file.endswith(".0") and len(log) == 1:
                (self.programs.folder / "tree" / file).symlink_to("nowhere")
                text = b""
                self.fails = True
            else:
                self.write(f"tree/{file}", text)
            self.write(f"plain/{file}", text)

    def read(self, path):
        """The events of a log, as they are in the tree."""
        json = self.run("-o", "json", f"plain/{path}").stdout
        lines = self.run("-o", "lines", f"plain/{path}").stdout.replace(b"\tplain/", b"\ttree/")
        json = re.sub(rb'"(file|log)":"plain/', rb'"\1":"tree/', json)
        for end in ("", ".0"):
            if path + end in self.compressed:
                json = json.replace(b"/events_report" + end.encode() + b'","line"',
                                    b"/events_report" + end.encode() + b'.gz","line"')
        return Log(json, lines)

    def run(self, *arguments):
        return self.programs.run(self.programs.args.programs / "events-query", *arguments)


def expected_merged(logs, options):
    """The pairs of log and event that -m shows; nothing if -S is after -U."""
    given = dict(options)
    known = [[moment(row["at"]) for row in log.rows if row["at"]] for log in logs]
    span = [min(times[0] for times in known if times), max(times[-1] for times in known if times)] \
        if any(known) else None
    keys, found = [], []
    for number, log in enumerate(logs):
        matches = matching_events(log, options, span)
        if matches is None:
            return None
        last = ""
        keys.append([last := row["at"] or last for row in log.rows])
        found += [(keys[-1][i], number, i) for i in matches]
    found = sorted(found)[-int(given.get("n", len(found))):] if found else []
    context = int(given.get("C", 0))
    shown = {(keys[number][i], number, i) for _, number, match in found
             for i in range(max(0, match - context), min(len(keys[number]), match + context + 1))}
    return [(number, i) for _, number, i in sorted(shown, reverse="r" in given)]


def expected_one_by_one(logs, options):
    """The same without -m, and whether the range of a log is wrong."""
    shown = [expected_events(log, options) for log in logs]
    return [(number, i) for number, events in enumerate(shown) for i in events or []], None in shown


def compare(programs, tree, events):
    options = random_options(programs.random, events)
    merges = programs.random.random() < 0.5
    if merges:
        shown, fails = expected_merged(tree.logs, options), False
        shown, fails = (shown or []), shown is None
    else:
        shown, fails = expected_one_by_one(tree.logs, options)
    command = [f"-{letter}{value or ''}" for letter, value in options] + ["-m"] * merges
    groups = any(letter == "C" and value != "0" for letter, value in options)
    for form in ("json", "lines"):
        expected = b""
        for before, (number, i) in zip([None, *shown], shown):
            apart = before is not None and (before[0] != number or abs(before[1] - i) > 1)
            expected += b"--\n" if groups and form == "lines" and apart else b""
            expected += getattr(tree.logs[number], form)[i] + b"\n"
        result = tree.run(*command, "-o", form, "tree")
        check(result.stdout == expected, "another selection:", command, form, shown, result)
        status = 2 if fails or tree.fails else 0 if shown else 1
        check(result.returncode == status, "a wrong status:", command, status, result)


def main():
    programs = Programs(__doc__)
    logs = list(programs.mutated_logs(100 * programs.args.amount))
    while logs:
        count = programs.random.randint(1, 8)
        with programs.on({}):
            tree = Tree(programs, logs[:count])
            events = next((log for log in tree.logs if log.rows), None)
            for _ in range(8 if events else 0):
                compare(programs, tree, events)
            for folder in ("tree", "plain"):
                programs.remove(folder)
        logs = logs[count:]
    programs.finish()


if __name__ == "__main__":
    main()
