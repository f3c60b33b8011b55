#!/usr/bin/env python3
"""Checks that the help text, the parser, the pages and the completions have the same options.

usage: option_table_test.py --program PROGRAM [--emulator COMMAND] ROOT

An option is its letter, its long name, and whether it takes an argument. The completions must also
offer files after just those whose argument is a <name>.
"""

import argparse
import re
import string
import subprocess
import sys
import tempfile
from pathlib import Path

from shells import SHELLS


def of_parser(run):
    """The letters and long names that the parser knows, each with whether it takes an argument."""
    # The empty name is short for every long option, and the C library lists them.
    names = re.findall(r"'--(\w+)'", run("--=").partition("possibilities:")[2])
    known = set()
    for word in [f"-{letter}" for letter in string.ascii_letters + string.digits] + \
            [f"--{name}" for name in names]:
        # A count of 0 is refused, so no action runs, unless the option takes "-n0" as its argument.
        complaint = run(word, "-n0")
        if "invalid option" not in complaint:
            known.add((word, "greater than zero" not in complaint))
    return known


def of_help(text):
    return {(letter, name, bool(argument)) for letter, name, argument in
            re.findall(r"^  -(\w), --(\w+)( <\w+>)?  ", text, re.MULTILINE)}


def of_manual(text):
    return {(letter, name, bool(argument)) for letter, argument, name in
            re.findall(r"^\.It Fl (\w)(| Ar \w+) , Fl -(\w+)\2$", text, re.MULTILINE)}


def of_readme(text):
    return {(letter, name, bool(argument)) for letter, name, argument in
            re.findall(r"^\| `-(\w)`, `--(\w+)( <\w+>)?` \|", text, re.MULTILINE)}


def words(options):
    return sorted([f"-{option[0]}" for option in options] +
                  [f"--{option[1]}" for option in options])


def of_shell(shell, options, file):
    """The options that a shell offers, and those of them after which it offers a file."""
    return (shell.candidates("events-viewer -"),
            [word for word in words(options)
             if shell.candidates(f"events-viewer {word} {file[:1]}") == [file]])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("root", type=Path)
    args = parser.parse_args()
    root = args.root.resolve()

    def run(*arguments):
        done = subprocess.run([*filter(None, args.emulator.split(";")), args.program, *arguments],
                              capture_output=True, text=True, check=False, env={"LC_ALL": "C"})
        return done.stdout + done.stderr

    help_text = run("--help")
    options = of_help(help_text)
    found = {"the manual": of_manual((root / "doc/events-viewer.1").read_text()),
             "the README": of_readme((root / "README.md").read_text())}
    wrong = [f"{where} has {sorted(has)}" for where, has in found.items() if has != options]
    known = of_parser(run)
    if known != {(word, argument) for letter, name, argument in options
                 for word in (f"-{letter}", f"--{name}")}:
        wrong.append(f"the parser knows {sorted(known)}")

    of_files = re.findall(r"^  -(\w), --(\w+) <name>", help_text, re.MULTILINE)
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "file")
        file.touch()
        for name, make in SHELLS.items():
            shell = make(root / "completions", folder)
            offered = of_shell(shell, options, file.name)
            shell.close()
            if offered != (words(options), words(of_files)):
                wrong.append(f"{name} offers {offered}")
    if wrong or not options:
        sys.exit("\n".join([f"--help has {sorted(options)}", *wrong]))
    print(f"{len(options)} options are the same in --help, the parser, "
          f"{', '.join(found)} and {', '.join(SHELLS)}")


main()
