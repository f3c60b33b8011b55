#!/usr/bin/env python3
"""Checks on a terminal what the pages say about pagers.

usage: pager_test.py --program PROGRAM [--emulator COMMAND] LOG
"""

import argparse
import os
import pty
import select
import subprocess
import sys
import tempfile
import time

LIMIT = 30  # seconds
NAME = b"MODEM_STARTING_UP"  # of the first event of the log, so on the first screen
BLUE = b"\x1b[1;34m"


def first_screen(command):
    """What `command` shows on a new terminal until NAME appears."""
    pid, terminal = pty.fork()
    if pid == 0:
        os.environ.update(TERM="xterm", LINES="24", COLUMNS="80", LC_ALL="C")
        for name in ("LESS", "LESSOPEN"):
            os.environ.pop(name, None)
        os.execvp(command[0], command)
    shown = b""
    deadline = time.monotonic() + LIMIT
    while NAME not in shown:
        if not select.select([terminal], [], [], max(0, deadline - time.monotonic()))[0]:
            break
        try:
            shown += os.read(terminal, 65536)
        except OSError:
            break
    os.close(terminal)  # ends the pager
    os.waitpid(pid, 0)
    if NAME not in shown:
        sys.exit(f"{command}: the table did not appear: {shown!r}")
    return shown


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("log")
    args = parser.parse_args()
    with tempfile.NamedTemporaryFile() as table:
        subprocess.run([*filter(None, args.emulator.split(";")), args.program,
                        "--all", "--input_file", args.log], stdout=table, check=True)
        for pager, name_as_shown in {
            "less -R": BLUE + NAME,
            "busybox more": BLUE + NAME,
            "busybox less -R": b"     " + NAME,
            "less": b"[1;34m" + NAME,  # the escape character before it is made visible
            "busybox less": b"[1;34m" + NAME,
        }.items():
            shown = first_screen([*pager.split(), table.name])
            coloured = BLUE + NAME in shown
            if name_as_shown not in shown or coloured != name_as_shown.startswith(BLUE):
                sys.exit(f"{pager} shows the first name in another way: {shown!r}")


main()
