#!/usr/bin/env python3
"""Checks that the help text, the parser, the manual and the completions have the same options.

usage: option_table_test.py --program PROGRAM [--emulator COMMAND] ROOT

An option is its letter, its long name, and whether it takes an argument. The completions must also
offer files where the program takes one.
"""

import argparse
import re
import string
import subprocess
import sys
import tempfile
from pathlib import Path

from shells import SHELLS


REFUSED = {"events-viewer": "greater than zero", "events-query": "-n 0:"}  # a number of 0


def long_names(run, source):
    """The long names that the parser knows."""
    # The empty name is short for every long option, and the C library lists them, or the program
    # keeps it from that.
    return re.findall(r"'--(\w+)'", run("--=").partition("possibilities:")[2]) or \
        re.findall(r'\{"(\w+)", \w+_argument,', source)


def of_parser(run, program, source):
    """The letters and long names that the parser knows, each with whether it needs an argument."""
    known = set()
    for word in [f"-{letter}" for letter in string.ascii_letters + string.digits] + \
            [f"--{name}" for name in long_names(run, source)]:
        # A number of 0 is refused, so nothing else happens, unless the option takes it as its argument.
        complaint = run(word, "-n0", "/missing/log")
        shown = "Examples:" in complaint or re.fullmatch(r"events-query \S+\n", complaint)
        if not re.search("invalid option|no such option|is an option of", complaint):
            known.add((word, not shown and REFUSED[program] not in complaint))
    return known


def of_help(text):
    """The options in the help page: letter, long name and argument."""
    return {(letter, name, argument.strip()) for letter, name, argument in
            re.findall(r"^  (?:-(\w),|   ) --(\w+)( <\w+>| [A-Z]\S+| N|\[=WHEN\]|)  ", text,
                       re.MULTILINE)}


def short_form(options):
    """The options with whether an argument is needed, can be given, or neither."""
    return {(letter, name, argument and ("can be" if argument.startswith("[") else "needed"))
            for letter, name, argument in options}


def of_manual(text):
    rows = re.findall(r"^\.It (?:Fl (\w)(| Ar \w+) , )?Fl -(\w+)( Ar \w+| Ns Op = Ns Ar \w+|)$", text,
                      re.MULTILINE)
    return {(letter, name, long and ("can be" if "Op" in long else "needed"))
            for letter, short, name, long in rows if short == long or not letter}


def words(options):
    return sorted(word for letter, name, _ in options
                  for word in ([f"-{letter}"] if letter else []) + [f"--{name}"])


def of_shell(shell, program, options, file):
    """The options that a shell offers, and those of them after which it offers a file."""
    return (shell.candidates(f"{program} -"),
            [word for word in words(options)
             if shell.candidates(f"{program} {word} {file[:1]}") == [file]])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True, type=Path)
    parser.add_argument("--emulator", default="")
    parser.add_argument("root", type=Path)
    args = parser.parse_args()
    root, program = args.root.resolve(), args.program.name
    is_viewer = program == "events-viewer"

    def run(*arguments):
        done = subprocess.run([*filter(None, args.emulator.split(";")), args.program, *arguments],
                              capture_output=True, text=True, check=False, env={"LC_ALL": "C"})
        return done.stdout + done.stderr

    of_page = of_help(run("--help"))
    options = short_form(of_page)
    in_manual = of_manual((root / f"doc/{program}.1").read_text())
    wrong = [f"the manual has {sorted(in_manual)}"] if in_manual != options else []
    source = root / "src" / ("app" if is_viewer else "query") / "options.cpp"
    known = of_parser(run, program, source.read_text())
    if known != {(word, argument == "needed") for option in options
                 for word in words([option]) for argument in option[2:]}:
        wrong.append(f"the parser knows {sorted(known)}")

    # events-viewer takes files with options, events-query without.
    before_files = [option for option in of_page if
                    (option[2] == "<name>" if is_viewer else option[2] in ("", "[=WHEN]"))]
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "file")
        file.touch()
        for name, make in SHELLS.items():
            shell = make(root / "completions", folder)
            offered = of_shell(shell, program, options, file.name)
            shell.close()
            if offered != (words(options), words(before_files)):
                wrong.append(f"{name} offers {offered}")
    if wrong or not options:
        sys.exit("\n".join([f"--help has {sorted(options)}", *wrong]))
    print(f"{len(options)} options are the same in --help, the parser, "
          f"the manual and {', '.join(SHELLS)}")


main()
