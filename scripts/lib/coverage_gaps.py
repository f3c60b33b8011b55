"""Prints what the tests do not reach, from the export of llvm-cov in the file that is given: one line
for each gap, with the file, the kind of gap, and the line of code. The kinds:

  never run           the code that begins on the line
  never true          a condition
  never false
  decides nothing     a condition that no test shows to decide the outcome by itself (MC/DC)
"""

import collections
import json
import sys
from pathlib import Path

# Which field of the export is which.
PLACE = slice(0, 4)
BRANCH_TRUE, BRANCH_FALSE = 4, 5
MCDC_CONDITIONS = 6
REGION_COUNT, REGION_FILE, REGION_KIND = 4, 5, 7
CODE_REGION = 0


def reached(export):
    """How often each thing was reached, by its file, its place and its kind. A template counts as
    reached where any of its instances is."""
    counts = collections.Counter()
    wanted = {entry["filename"] for entry in export["files"]}
    for function in export["functions"]:
        for region in function["regions"]:
            file = function["filenames"][region[REGION_FILE]]
            if region[REGION_KIND] == CODE_REGION and file in wanted:
                counts[file, *region[PLACE], "never run"] += region[REGION_COUNT]
    for entry in export["files"]:
        file = entry["filename"]
        for branch in entry["branches"]:
            counts[file, *branch[PLACE], "never true"] += branch[BRANCH_TRUE]
            counts[file, *branch[PLACE], "never false"] += branch[BRANCH_FALSE]
        for record in entry["mcdc_records"]:
            for number, shown in enumerate(record[MCDC_CONDITIONS]):
                counts[file, *record[PLACE], number, "decides nothing"] += shown
    return counts


def main():
    export = json.loads(Path(sys.argv[1]).read_text())["data"][0]
    for (file, line, *_, kind), count in reached(export).items():
        lines = Path(file).read_text().splitlines()
        while count == 0 and lines[line - 1].strip() == "{":
            line -= 1  # the function's head says more
        code = lines[line - 1].strip()
        # The compiler says if a switch without default lacks a value.
        if count == 0 and not (kind == "never true" and code.startswith("switch (")):
            print(f"{Path(file).relative_to(Path.cwd())}, {kind}: {code}")


main()
