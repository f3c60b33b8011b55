#!/usr/bin/env python3
"""Checks that the folders under src/ include each other in one direction only.

usage: layout_test.py SRC MODULES

The build writes MODULES. Each line names a folder and, after a colon, the folders that it may
include; these are above it in MODULES.
"""

import pathlib
import re
import sys


def main(src, modules):
    lines = [line.split(":") for line in modules.read_text().splitlines()]
    may_include = {name: set(used.split()) for name, used in lines}
    names = list(may_include)
    wrong = [f"{name} uses {used}, which is declared after it" for i, name in enumerate(names)
             for used in may_include[name] - set(names[:i])]
    folders = {path.name for path in src.iterdir() if path.is_dir()}
    wrong += [f"{name}: a folder without a target, or the reverse" for name in folders ^ set(names)]
    seen = 0
    for path in sorted(src.glob("*/*.*")):
        for included in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
            seen += 1
            folder, target = path.parent.name, included.split("/")[0]
            if target != folder and target not in may_include.get(folder, set()):
                wrong.append(f"{path}: {folder} may not include {target}")
    if seen == 0:
        wrong.append("no include found")
    print("\n".join(wrong) or f"{seen} includes point one way")
    return 1 if wrong else 0


sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
