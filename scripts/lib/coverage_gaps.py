"""Compares what the tests do not reach with the list of exceptions.

Reads the export of llvm-cov and the list. Prints each gap that the list does not have and each
exception that is no longer a gap, and fails if there are any. Otherwise prints the exceptions.

An exception is a paragraph of three parts: the file and the kind of gap, the line of code, the reason.
Kinds of gap:

  never run           the code that begins on the line
  never true          a condition
  never false
  decides nothing     a condition that no test shows to decide the outcome by itself (MC/DC)
"""

import argparse
import json
import sys
from collections import defaultdict
from pathlib import Path

# Which field of the export is which.
BRANCH_START, BRANCH_END, BRANCH_TRUE, BRANCH_FALSE = slice(0, 2), slice(2, 4), 4, 5
MCDC_START, MCDC_END, MCDC_CONDITIONS = slice(0, 2), slice(2, 4), 6
FUNCTION_REGION_COUNT, REGION_FILE, REGION_KIND = 4, 5, 7
CODE_REGION = 0


def gaps_of_file(entry, regions):
    """(line, kind) of each gap. A template counts as reached where any of its instances is."""
    gaps = [(place[0], "never run") for place, count in regions.items() if count == 0]
    outcomes = defaultdict(lambda: [0, 0])
    for branch in entry["branches"]:
        place = (*branch[BRANCH_START], *branch[BRANCH_END])
        outcomes[place][0] += branch[BRANCH_TRUE]
        outcomes[place][1] += branch[BRANCH_FALSE]
    for place, (times_true, times_false) in outcomes.items():
        if times_true == 0:
            gaps.append((place[0], "never true"))
        if times_false == 0:
            gaps.append((place[0], "never false"))
    decisions = defaultdict(list)
    for record in entry["mcdc_records"]:
        place = (*record[MCDC_START], *record[MCDC_END])
        decisions[place].append(record[MCDC_CONDITIONS])
    for place, records in decisions.items():
        for shown in zip(*records):
            if not any(shown):
                gaps.append((place[0], "decides nothing"))
    return gaps


def code_regions(export):
    """How often the code at each place ran, by file."""
    regions = defaultdict(lambda: defaultdict(int))
    for function in export["functions"]:
        for region in function["regions"]:
            if region[REGION_KIND] == CODE_REGION:
                file = function["filenames"][region[REGION_FILE]]
                regions[file][tuple(region[:4])] += region[FUNCTION_REGION_COUNT]
    return regions


def find_gaps(export, root):
    regions = code_regions(export)
    gaps = []
    for entry in export["files"]:
        path = Path(entry["filename"])
        lines = path.read_text().splitlines()
        for line, kind in sorted(gaps_of_file(entry, regions[entry["filename"]])):
            while lines[line - 1].strip() == "{":
                line -= 1  # the function's head says more
            gaps.append((f"{path.relative_to(root)}, {kind}", lines[line - 1].strip(), line))
    return gaps


def read_exceptions(path):
    exceptions = []
    for paragraph in path.read_text().split("\n\n"):
        lines = [line for line in paragraph.splitlines() if not line.startswith("#")]
        if lines:
            head, code, *reason = (line.strip() for line in lines)
            if not reason:
                sys.exit(f"{path}: no reason given for: {code}")
            exceptions.append((head, code, " ".join(reason)))
    return exceptions


def print_summary(totals, exceptions):
    print("## Coverage\n\nMeasured by `scripts/coverage`, of everything in `src/`:\n")
    names = {"Lines": "lines", "Branches": "branches", "Conditions (MC/DC)": "mcdc"}
    for what, name in names.items():
        print(f"- {what}: {totals[name]['covered']} of {totals[name]['count']} reached")
    print(f"\nThese {len(exceptions)} gaps are known. There are no others:\n")
    for head, code, reason in exceptions:
        print(f"- {head}: `{code}`\\\n  {reason}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", type=Path, required=True)
    parser.add_argument("--exceptions", type=Path, required=True)
    parser.add_argument("export", type=Path)
    args = parser.parse_args()

    export = json.loads(args.export.read_text())["data"][0]
    unused = read_exceptions(args.exceptions)
    used = []
    wrong = False
    for head, code, line in find_gaps(export, args.root.resolve()):
        match = next((known for known in unused if known[:2] == (head, code)), None)
        if match is None:
            print(f"not reached: {head}, line {line}:\n    {code}")
            wrong = True
        else:
            unused.remove(match)
            used.append(match)
    for head, code, _ in unused:
        print(f"an exception that is none: {head}\n    {code}")
        wrong = True
    if wrong:
        sys.exit(1)
    print_summary(export["totals"], used)


if __name__ == "__main__":
    main()
