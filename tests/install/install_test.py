#!/usr/bin/env python3
"""Installs the build into scratch folders and checks that exactly the right files are there, and that
no page has a broken link.

usage: install_test.py --cmake CMAKE --build BUILD --programs NAMES --bindir .. --mandir .. --docdir ..
                       --datadir ..

NAMES are separated by commas. The folders are those of the build, as CMake's GNUInstallDirs names them.
"""

import argparse
import os
import subprocess
import sys
import tempfile
from pathlib import Path

from broken_links import broken_links


def expected_files(dirs):
    return sorted([
        *(name for program in dirs.programs.split(",") for name in (
            f"{dirs.bindir}/{program}",
            f"{dirs.mandir}/man1/{program}.1",
            f"{dirs.datadir}/bash-completion/completions/{program}",
            f"{dirs.datadir}/zsh/site-functions/_{program}",
            f"{dirs.datadir}/fish/vendor_completions.d/{program}.fish")),
        *(f"{dirs.docdir}/{name}" for name in (
            "ARCHITECTURE.md", "CHANGELOG.md", "CONTRIBUTING.md", "LICENSE", "README.md",
            "doc/board.md", "doc/damage.md", "doc/investigation.md", "doc/log-format.md",
            "doc/performance.md", "doc/performance.svg", "doc/recipes.md",
            "doc/pictures/architecture.svg", "doc/pictures/log.svg", "doc/pictures/report.svg", "doc/pictures/table.svg",
            "examples/events_report", "examples/events_report.0")),
    ])


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir())


def difference(where, expected, actual):
    return [*(f"{where}: {name} is missing" for name in sorted({*expected} - {*actual})),
            *(f"{where}: {name} is not expected" for name in sorted({*actual} - {*expected}))]


def main():
    parser = argparse.ArgumentParser()
    for name in ("cmake", "build", "programs", "bindir", "mandir", "docdir", "datadir"):
        parser.add_argument(f"--{name}", required=True)
    args = parser.parse_args()
    expected = expected_files(args)
    with tempfile.TemporaryDirectory() as scratch:
        scratch = Path(scratch)
        install = [args.cmake, "--install", args.build]

        # A package is made like this: installed into a stage, for a prefix that does not exist. It
        # also keeps files for absolute paths off this machine.
        stage = scratch / "stage"
        subprocess.run([*install, "--prefix", "/opt/viewer"], check=True,
                       stdout=subprocess.DEVNULL, env={**os.environ, "DESTDIR": str(stage)})
        wrong = difference("DESTDIR", [f"opt/viewer/{name}" for name in expected],
                           files_below(stage))
        if wrong:
            sys.exit("\n".join(wrong))

        prefix = scratch / "prefix"
        subprocess.run([*install, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        wrong = difference("--prefix", expected, files_below(prefix))
        modes = {str(path.relative_to(prefix)): oct(path.stat().st_mode & 0o777)
                 for path in prefix.rglob("*") if path.is_file()}
        wrong += [f"{name} has the mode {mode}" for name, mode in sorted(modes.items())
                  if mode != ("0o755" if name.startswith(f"{args.bindir}/") else "0o644")]
        broken, links = broken_links(prefix / args.docdir)
        wrong += broken if links else ["no link found"]
    if wrong:
        sys.exit("\n".join(wrong))
    print(f"{len(expected)} files are installed, none of {links} links is broken")


main()
