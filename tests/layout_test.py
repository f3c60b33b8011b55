#!/usr/bin/env python3
"""Checks that the folders under src/ include each other in one direction only.

usage: layout_test.py SRC
"""

import pathlib
import re
import sys

MAY_INCLUDE = {
    "text": set(),
    "jsonaccess": set(),
    "catalog": {"text"},
    "eventlog": {"jsonaccess", "text"},
    "describe": {"catalog", "jsonaccess", "text"},
    "render": {"eventlog", "describe", "catalog", "text"},
    "app": {"render", "eventlog", "text"},
}


def main(src):
    folders = {path.name for path in src.iterdir() if path.is_dir()}
    wrong = [f"{name}: no folder of the architecture" for name in folders ^ set(MAY_INCLUDE)]
    seen = 0
    for path in sorted(src.glob("*/*")):
        for included in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
            seen += 1
            folder, target = path.parent.name, included.split("/")[0]
            if target != folder and target not in MAY_INCLUDE.get(folder, set()):
                wrong.append(f"{path}: {folder} may not include {target}")
    if seen == 0:
        wrong.append("no include found")
    print("\n".join(wrong) or f"{seen} includes point one way")
    return 1 if wrong else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
