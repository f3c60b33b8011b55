#!/usr/bin/env python3
"""Checks that events-query shows the same events as events-viewer, on the logs of every case and on
mutated logs:

- The table made again from -o json and from -o csv is that of events-viewer --all, byte for byte. JSON
  cannot hold bytes that are not UTF-8; it has U+FFFD for each.
- The diagnostics are the same. File and line of each event and each diagnostic are right.
- The code, the time and the variables are what Python reads, where it can read the line.

Lines that events-query leaves out, and says so, are removed for events-viewer, which has to fail because
of them. By hand: --amount 1000, and any --seed.
"""

import csv
import io
import json
import os
import re
import signal
import subprocess
import sys
from collections import Counter
from pathlib import Path

from programs import KEYS, UNSAFE, Programs, as_json_holds, check, refuse, rows_of

DIAGNOSTIC = b"Tarvik workaround: "
NO_EVENTS = b"No events to display.\n"
LONGEST_LINE = 16 * 1024 * 1024

# A case of such lines makes no files of its own.
PLAIN_LINE = re.compile(r"((exec )?(events-viewer|cmp) .*|#.*|)")
# Takes the place of events-viewer in the others: keeps the files that it could read.
COLLECT = """#!/bin/sh
mkdir "$COLLECTED/$$"
for file in *; do
    [ ! -f "$file" ] || cp -- "$file" "$COLLECTED/$$"
done
"""


def collected_folders(case, scratch):
    """Copies of the folder of a case, one for each time that it calls the program."""
    for name in ("bin", "work", "collected"):
        (scratch / name).mkdir(parents=True)
    viewer = scratch / "bin" / "events-viewer"
    viewer.write_text(COLLECT)
    viewer.chmod(0o755)
    subprocess.run(f"cp -R {case}/. {scratch}/work", shell=True, check=True)
    environment = {"PATH": f"{viewer.parent}:/usr/bin:/bin", "COLLECTED": str(scratch / "collected")}
    process = subprocess.Popen(["/bin/sh", "cmd"], cwd=scratch / "work", env=environment,
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True)
    process.wait()  # polling with a limit would take longer than the case
    try:  # what waits for a reader
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    return (scratch / "collected").iterdir()


def logs_of_case(case, scratch):
    """The files that are in the folder of a case when it calls the program."""
    command = case / "cmd"
    lines = command.read_text().splitlines() if command.exists() else []
    is_plain = all(map(PLAIN_LINE.fullmatch, lines))
    for folder in [case] if is_plain else collected_folders(case, scratch):
        files = {path.name: path.read_bytes() for path in folder.iterdir()
                 if path.name != "cmd" and path.is_file()}
        for name, text in files.items():
            before = files.get(f"{name}.0")
            yield {"log": text} if before is None else {"log.0": before, "log": text}


def integer(digits):
    """As the library reads it: a double outside 64 bits."""
    return int(digits) if -2**63 <= int(digits) < 2**64 else float(digits)


def bytes_of(text):
    return text.encode("latin-1")


def safe(text):
    """`text` as a message shows it."""
    def escape(character):
        code = ord(character[0])
        return f"\\x{code & 0xff:02x}" if code < 0x80 or code >= 0xdc80 and code <= 0xdcff else f"\\u{code:04x}"
    return re.sub(f"[{UNSAFE}]", escape, text.decode("utf-8", "surrogateescape"))


def table_of(rows):
    """The table of events-viewer for rows of CSV, whose characters are bytes."""
    if not rows:
        return NO_EVENTS
    text = f"Last {len(rows)} events from {rows[0]['time']} to {rows[-1]['time']}:\n\n"
    text += f"{'Timestamp':20}{'Event':30}Detail\n{'=' * 80}\n"
    for row in rows:
        detail = row["detail"].replace("\n", "\n" + " " * 50)
        text += f"{row['time']:20}\033[1;34m{row['event']:30}\033[0m{detail}\n\n"
    return bytes_of(text + "\n")


def diagnostics_of(text):
    """The diagnostics that events-viewer prints, each as one line."""
    lines = []
    for line in text.split(b"\n"):
        if line.startswith(DIAGNOSTIC):
            lines.append(line[len(DIAGNOSTIC):])
        elif line:
            lines[-1] += b" " + line.lstrip(b" ")
    return [safe(line) for line in lines]


def with_lines(log, keeps):
    """The log with empty lines in the place of those that are not kept."""
    return {name: b"\n".join(line if keeps((name, number)) else b""
                             for number, line in enumerate(text.split(b"\n"), 1))
            for name, text in log.items()}


class Comparison:
    def __init__(self, programs):
        self.programs = programs
        self.seen = set()
        self.lossy = Counter()
        self.counts = Counter()

    def compare(self, log):
        known = tuple(sorted(log.items()))
        if known not in self.seen:
            self.seen.add(known)
            with self.programs.on(log):
                self.compare_new(log)

    def compare_new(self, log):
        in_json, in_csv = self.programs.query("-o", "json"), self.programs.query("-o", "csv")
        check(in_csv.stderr == in_json.stderr, "messages differ between formats")
        messages = [re.fullmatch(r"events-query: (log(?:\.0)?):(\d+): (.*)", line)
                    for line in in_json.stderr.decode("utf-8").split("\n")[:-1]]
        check(all(messages), "a message of another form:", in_json.stderr)
        messages = [((file, int(line)), text) for file, line, text in (m.groups() for m in messages)]
        log = self.without_lines_left_out(log, messages)
        messages = [message for message in messages if not message[1].endswith("; left out")]

        rows = rows_of(in_json.stdout)
        check(in_json.returncode == in_csv.returncode == (0 if rows else 1), "a wrong status")
        reader = csv.reader(io.StringIO(in_csv.stdout.decode("latin-1"), newline=""), strict=True)
        header, *fields = reader
        check(header == KEYS and len(fields) == len(rows), "another header or number of rows in csv")
        as_bytes = [self.checked_row(row, dict(zip(KEYS, values))) for row, values in zip(rows, fields)]
        table = table_of(as_bytes)
        expected = self.programs.viewer(log)
        check(expected.returncode == 0 and expected.stdout.endswith(table), "another table")
        printed = diagnostics_of(expected.stdout[:-len(table)])
        check(sorted(printed) == sorted(text for _, text in messages), "other diagnostics:", messages)
        self.check_lines(log, rows, messages, expected.stdout)
        self.counts.update(logs=1, events=len(rows), diagnostics=len(printed))

    def without_lines_left_out(self, log, messages):
        left_out = [where for where, text in messages if text.endswith("; left out")]
        for file, number in left_out:
            line = log[file].split(b"\n")[number - 1]
            aborts = self.programs.viewer({"log": line}).returncode == -signal.SIGABRT
            check(aborts or len(line) > LONGEST_LINE, "left out without a reason:", line[:200])
        self.counts.update({"lines left out": len(left_out)})
        return with_lines(log, lambda where: where not in left_out) if left_out else log

    def checked_row(self, row, fields):
        """The row of csv, after a comparison with that of JSON."""
        variables = fields["vars"]
        if self.programs.args.keeps_bytes:
            variables = as_json_holds(bytes_of(variables))
        check(json.loads(variables, parse_constant=refuse) == row["vars"], "other variables:", fields)
        for key in KEYS:
            if key != "vars" and str(row[key]).encode() != bytes_of(fields[key]):
                check(row[key] == as_json_holds(bytes_of(fields[key])), "other in csv:", key, fields)
                self.lossy[key] += 1
        return fields

    def check_lines(self, log, rows, messages, expected):
        of_rows = [(row["file"], row["line"]) for row in rows]
        check(of_rows == sorted(set(of_rows), key=lambda at: (at[0] == "log", at[1])), "lines do not ascend")
        where = set(of_rows)
        check(self.programs.viewer(with_lines(log, lambda at: at in where)).stdout == expected,
              "lines that do not give the same events")
        check(self.programs.viewer(with_lines(log, lambda at: at not in where)).stdout == NO_EVENTS,
              "an event in another line")
        lines = {name: text.split(b"\n") for name, text in log.items()}
        for row in rows:
            self.compare_with_python(lines[row["file"]][row["line"] - 1], row)
        self.check_lines_of_messages(log, messages)

    def check_lines_of_messages(self, log, messages):
        """Any two lines with messages differ in a bit of their index: the lines with this bit print
        the messages that they should."""
        index = {at: i for i, at in enumerate(sorted({at for at, _ in messages}), 1)}
        for bit in range(len(index).bit_length()):
            lines = {at for at in index if index[at] >> bit & 1}
            printed = self.programs.viewer(with_lines(log, lines.__contains__)).stdout
            expected = [text for at, text in messages if at in lines]
            ordered = list if len(lines) == 1 else sorted  # those of the parser come before the others
            check(ordered(diagnostics_of(printed[:printed.index(b"Last ")])) == ordered(expected),
                  "not the diagnostics of the lines", lines, expected)

    def compare_with_python(self, line, row):
        try:
            text = line[line.index(b"{"):].decode("utf-8")
            event, _ = json.JSONDecoder(parse_constant=refuse, parse_int=integer).raw_decode(text)
        except ValueError:
            return
        time, variables = event.get("time", ""), event.get("vars", {})
        odd = re.search(r"\\u(0000|d[89a-f])", text, re.IGNORECASE)  # a NUL, or half a character
        if odd or not isinstance(event["id"], int) or abs(event["id"]) >= 2**31:
            return
        check(row["code"] == event["id"], "another code:", line)
        check(row["time"] == (time if isinstance(time, str) else ""), "another time:", line)
        if isinstance(variables, dict):
            known = {key: value for key, value in variables.items() if value is not None}
            check(row["vars"] == known, "other variables:", line, row["vars"])
        self.counts.update({"events that Python reads": 1})


def main():
    programs = Programs(__doc__, ["--cases"])
    csv.field_size_limit(2**31 - 1)
    comparison = Comparison(programs)
    most = 2**20 if programs.args.emulator else LONGEST_LINE
    cases = [case for folder in programs.args.cases for case in sorted(folder.iterdir())]
    for number, case in enumerate(cases):
        for log in logs_of_case(case, programs.folder / str(number)):
            if len(log["log"]) <= most:
                comparison.compare(log)
    check(not cases or 2 * comparison.counts["logs"] > len(cases), "few logs")
    for log in programs.mutated_logs(300 * programs.args.amount):
        comparison.compare(log)
    if not programs.args.emulator:
        for more in (b"", b"x"):
            longest = b"{" + b"x" * (LONGEST_LINE - 1) + more
            comparison.compare({"log": longest + b'\n{"id":949,"id":1008}'})
    programs.finish()
    print(dict(comparison.counts))
    print("fields with bytes that JSON cannot hold:", dict(comparison.lossy))


if __name__ == "__main__":
    main()
