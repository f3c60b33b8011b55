#!/usr/bin/env python3
"""Checks that the pages and the completions have the options of the source, all and no other.

usage: option_table_test.py --program PROGRAM [--emulator COMMAND] ROOT

An option is its letter, its long name, and whether it takes an argument. The completions must also
offer files behind just those whose argument is a <name>.
"""

import argparse
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from shells import SHELLS


def of_source(text):
    actions = dict(re.findall(r"case '(\w)':\s*action = (\w+);", text))
    letters = {action: letter for letter, action in actions.items()}
    options = set()
    for name, kind, action, letter in re.findall(
            r'\{"(\w+)", (no|required)_argument, (?:&action, (\w+)|nullptr, \'(\w)\')\}', text):
        options.add((letter or letters[action], name, kind == "required"))
    short = "".join(sorted(letter + ":" * argument for letter, _, argument in options))
    given = re.search(r'getopt_long\(argc, argv, "([\w:]+)"', text)[1]
    if sorted(re.findall(r"\w:?", given)) != re.findall(r"\w:?", short):
        sys.exit(f"options.cpp: the letters {given!r} are not those of the long options")
    return options


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
    """The options that a shell offers, and those of them behind which it offers a file."""
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

    options = of_source((root / "src/app/options.cpp").read_text())
    help_text = subprocess.run([*filter(None, args.emulator.split(";")), args.program, "--help"],
                               capture_output=True, text=True, check=True).stdout
    found = {"--help": of_help(help_text),
             "the manual": of_manual((root / "doc/events-viewer.1").read_text()),
             "the README": of_readme((root / "README.md").read_text())}
    wrong = [f"{where} has {sorted(has)}" for where, has in found.items() if has != options]

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
        sys.exit("\n".join([f"the source has {sorted(options)}", *wrong]))
    print(f"{len(options)} options are the same in the source, "
          f"{', '.join(found)} and {', '.join(SHELLS)}")


main()
