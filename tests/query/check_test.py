#!/usr/bin/env python3
"""Damages lines and checks what --check says of them. By hand: --amount 1000, and any --seed.

- A log without damage has no finding.
- A line that has no event, or that a strict parser refuses, has a finding.
- The effect of a finding is what the damage has changed in the event; so the undamaged line says.
- No finding says of a line without damage that it is damaged.

The rest, damage without a finding, is counted and shown.
"""

import json
import re
import sys
from collections import Counter
from pathlib import Path

from programs import Programs, check, refuse, rows_of

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "bench"))
from log_generator import LogGenerator  # noqa: E402  # noqa: E402

COLUMNS = "type kind count effect text file line log".split()
BLANKS = b" \t\r\n\0"


def checked(programs, lines, *options):
    """The records of --check of a log with these lines, and the findings by their line."""
    programs.write({"log": b"\n".join(lines) + b"\n"})
    result = programs.query("--check", "-o", "json", *options)
    records = [json.loads(line) for line in result.stdout.decode().splitlines()]
    check(all(list(record) == COLUMNS for record in records), "not the promised keys")
    findings = {record["line"]: record for record in records if record["type"] == "finding"}
    check(len(findings) == sum(record["type"] == "finding" for record in records), "two findings of a line")
    check(result.returncode == (1 if findings else 0), "a wrong status:", result.returncode, result.stderr)
    counts = Counter(finding["kind"] for finding in findings.values())
    summary = {record["kind"]: record["count"] for record in records if record["type"] == "summary"}
    check(summary["lines"] == len(lines) and summary["findings"] == len(findings)
          and all(summary[kind] == count for kind, count in counts.items()), "a wrong summary:", summary)
    return records, findings


def events_of(programs):
    """The events of the log that was written last, by their line. A string is shown up to its first zero."""
    rows = rows_of(programs.query("-o", "json").stdout)
    for row in rows:
        row["vars"] = {key: value.partition("\0")[0] if isinstance(value, str) else value
                       for key, value in row["vars"].items()}
    return {row["line"]: row for row in rows}


def is_refused(line):
    """Whether a strict parser refuses the object of a line."""
    try:
        json.loads(line[line.index(b"{"):].strip(BLANKS).decode("utf-8"), parse_constant=refuse)
    except (ValueError, RecursionError):
        return True
    return False


# Of an effect: the keys of which it says something, and what else it says.
PARTS = [(re.compile(r"the values? of (.*?) (?:is|are) lost"), "lost"),
         (re.compile(r"the values? of (.*?) ends? at (?:a zero byte|zero bytes)"), "early"),
         (re.compile(r"the values? of (.*?) (?:is|are) changed"), "changed"),
         (re.compile(r"the value of (.*?) may be wrong"), "wrong"),
         (re.compile(r"what followed (.*) is lost"), "kept"),
         (re.compile(r"the value of (.*?) is not a string and is not shown"), "type"),
         (re.compile(r"the values of (.*?) are not strings and are not shown"), "type")]
WORDS = {"what followed is lost": "rest", "what follows is lost": "rest", "what is missing or wrong cannot be seen": "anything", "what was in the place of zero bytes is lost": "rest", "a name is changed": "name",
         "vars is not an object, so the event has no variables": "rest", "a second event is not shown": "second",
         "the code is lost": "code", "the code may be incomplete": "code", "the code may be wrong": "code",
         "nothing is lost": "nothing", "no event is shown": "no event",
         "no object, so no event is shown": "no event", "no code, so no event is shown": "no event"}


def parts_of(effect):
    named, others = {}, set()
    for part in effect.split("; "):
        for pattern, what in PARTS:
            match = pattern.fullmatch(part)
            if match:
                named.update(dict.fromkeys(re.split(", | and ", match[1]), what))
                others.update({"rest"} if what == "kept" else {})
                break
        else:
            code = part.startswith("the code is not a whole number of 32 bits and reads as ")
            part = re.sub(r"^(a second event) \(.*\) (is not shown)$", r"\1 \2", part)
            check(code or part in WORDS, "an unknown effect:", effect)
            others.add("code" if code else WORDS[part])
    return named, others


def compare_effect(before, after, finding, line):
    """Compares an effect with the events of the undamaged line and of the damaged one."""
    named, others = parts_of(finding["effect"])
    if after is None or "no event" in others:
        check(after is None and others == {"no event"}, "an event, or none:", finding, line)
        return
    values = [{**row["vars"], "time": row["time"]} for row in (before, after)]
    second = re.search(r"a second event \((.*?)[,)]", finding["effect"])
    check(second is None or b'"id":' + second[1].encode() in line[line.index(b"{") + 1:], "no such event:", finding, line)
    is_cut = finding["kind"] == "cut off"  # and no comment hides the rest
    for key in [key for key, what in named.items() if what == "kept" and is_cut]:
        rest = line.rpartition(f'"{key}":'.encode())[2]
        check(re.search(rb'"[^"]*":"[^"]*"', rest) is None, f"more followed {key}:", finding, line)
    for key, what in named.items():
        if key == "vars" or what == "wrong" or key not in values[0]:
            continue  # a key that the damage has made
        had, has = values[0][key], values[1].get(key, "")
        text = has if isinstance(has, str) else json.dumps(has)
        wrong = {"kept": had != has, "lost": isinstance(has, str) and has != "", "early": not had.startswith(text),
                 "changed": had == has, "type": isinstance(has, str) and has != ""}[what]
        check(not wrong, f"{key} is not {what}:", had, has, finding, line)
    for key in {key for key in values[0] if values[0][key] not in (values[1].get(key), "")} - set(named):
        missing = values[1].get(key, "") == ""
        if missing and f'"{key}"'.encode() not in line and finding["kind"] != "cut off":
            continue  # its bytes are gone without a trace
        check("anything" in others or "rest" in others and missing or "name" in others and missing,
              f"{key} is not named:", values, finding, line)
    if before["code"] != after["code"]:
        check("code" in others or "id" in named, "the code is not named:", finding, line)


def damaged(random, line, other):
    """A line with damage of one kind: cut off, bytes lost, zeroed, changed or added, lines joined."""
    at = random.randrange(len(line))
    length = random.choice((1, 1, 2, 5, 20))
    kind = random.randrange(9)
    if kind == 0:
        return line[:at]
    if kind == 1:
        return line[at:]
    if kind == 2:
        return line[:at] + line[at + length:]
    if kind == 3:
        return line[:at] + bytes(len(line[at:at + length])) + line[at + length:]
    if kind == 4:
        return line[:at] + bytes([random.choice((0, 9, 0x22, 0x5c, 0x7b, 0x7d, 0x2c, 0x3a, 0x80, 0xc3, 0xff))]) + line[at + 1:]
    if kind == 5:
        return line[:at] + random.choice((b"\xe9", b"\xc3(", b"\0", b'"', b"\\", b"{", b"}", b"/*x*/", b"//", b",")) + line[at:]
    if kind == 6:
        return line[:at] + other
    if kind == 7:
        return line + random.choice((b"", b"\0", b"x", b"Nov 20 host: ")) + other
    return re.sub(rb':"([\w ]+)"', random.choice((rb":7", rb":null", rb":1.5", rb":[]", rb":{}", rb':"\\1\\q"', rb':\1"', rb':"\1')),
                  line, count=1)


def check_effects(programs, generator, missed):
    """Damages lines whose event is known."""
    random = programs.random
    whole = [generator.line().rstrip("\n").encode() for _ in range(100 * programs.args.amount)]
    _, findings = checked(programs, whole)
    check(not findings, "findings in a log without damage:", findings)
    before = events_of(programs)
    lines = [damaged(random, line, random.choice(whole)) for line in whole]
    _, findings = checked(programs, lines)
    after = events_of(programs)
    for number, line in enumerate(lines, 1):
        if line == whole[number - 1]:
            continue
        missed["damaged lines"] += 1
        finding = findings.get(number)
        if finding is not None:
            compare_effect(before[number], after.get(number), finding, line)
            continue
        check(number in after or not line.strip(b"\0"), "a lost event is not found:", line)
        check(number not in after or not is_refused(line), "not found, although a strict parser refuses it:", line)
        if number in after:
            same = all(before[number][key] == after[number][key] for key in ("time", "code", "vars"))
            missed["not found, and without effect" if same else "not found"] += 1
            if not same and missed["shown"] < 5:
                missed["shown"] += 1
                print("not found:", line.decode("utf-8", "replace"))


def check_mutations(programs, missed):
    for log in programs.mutated_logs(100 * programs.args.amount):
        lines = b"\n".join(log.values()).split(b"\n")
        with programs.on({"log": b"".join(line + b"\n" for line in lines)}):
            records, findings = checked(programs, lines)
            events = events_of(programs)
            check([record["count"] for record in records if record["kind"] == "events"] == [len(events)],
                  "another number of events")
            for number, line in enumerate(lines, 1):
                lost = number not in events and line.strip(b"\0")
                refused = number in events and is_refused(line)
                missed["mutated lines with damage"] += bool(lost or refused)
                check(number in findings or not lost and not refused, "not found:", line)
                kind = findings.get(number, {"kind": "wrong type"})["kind"]
                check(kind in ("wrong type", "no event") or lost or refused or b"\\ud" in line.lower(),
                      "not damaged:", findings.get(number), line)


def main():
    programs = Programs(__doc__)
    listed = programs.run(programs.args.programs / "events-query", "--catalog", "-o", "json").stdout
    catalog = [json.loads(line) for line in listed.splitlines()]
    missed = Counter()
    for style in ("compact", "realistic", "not-ascii"):
        check_effects(programs, LogGenerator(catalog, style, 0), missed)
    check_mutations(programs, missed)
    print(dict(missed))
    programs.finish()


if __name__ == "__main__":
    main()
