"""Drives the completion of real shells.

A shell is asked with `candidates(line)`: the sorted words that it puts in the place of the last
word of `line`, which is a command line of one of the programs; none if it knows nothing. A folder
has no slash at its end, and an argument not the "--option=" before it, since the shells differ there.
"""

import json
import os
import pty
import re
import select
import shlex
import subprocess
import time

LIMIT = 60  # seconds
INSERT_ALL = "\x14"  # Control-T, bound to a command that inserts every candidate
READY, BEGIN, END = "[ready]", "[begin]", "[end]"

# A function in place of each program that shows the words of the finished line. It joins each marker
# from pieces, so that the line that defines it does not contain one.
SHOW_WORDS = ["show() { "
              "printf '%s%s' '[beg' 'in]'; printf '%s\\n' \"$@\"; printf '%s%s' '[en' 'd]'; }",
              'events-viewer() { show "$@"; }', 'events-query() { show "$@"; }']


def alike(candidates):
    # fish offers an option whose argument can be left out twice, with and without "=".
    return sorted({re.sub(r"^--\w+=(?=.)|=$|/$", "", word) for word in candidates})


class Interactive:
    """A shell on a terminal, to which lines are typed."""

    def __init__(self, command, start, folder):
        pid, self.terminal = pty.fork()
        if pid == 0:
            os.chdir(folder)
            os.environ.update(TERM="dumb", PS1="", LC_ALL="C", HOME=str(folder), COLUMNS="400",
                              INPUTRC="/dev/null", ZDOTDIR=str(folder))
            os.execvp(command[0], command)
        self.pid = pid
        self.shown = ""
        for line in [*start, *SHOW_WORDS, "printf '%s%s' '[rea' 'dy]'"]:
            self.type(f"{line}\n")
        self.wait_for(READY)

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait_for(self, marker):
        deadline = time.monotonic() + LIMIT
        while marker not in self.shown:
            if not select.select([self.terminal], [], [], max(0, deadline - time.monotonic()))[0]:
                raise TimeoutError(f"no {marker} in {self.shown!r}")
            self.shown += os.read(self.terminal, 65536).decode()
        before, self.shown = self.shown.split(marker, 1)
        return before

    def candidates(self, line):
        self.type(f"{line}{INSERT_ALL}\n")
        self.wait_for(BEGIN)
        words = self.wait_for(END).replace("\r", "").split("\n")[:-1]
        typed = shlex.split(line + "_")[1:]  # the underscore keeps an empty last word
        inserted = words[len(typed) - 1:]
        return [] if inserted in ([], [typed[-1][:-1]]) else alike(inserted)

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)


class Bash(Interactive):
    def __init__(self, completions, folder):
        super().__init__(["bash", "--noprofile", "--norc", "-i"],
                         [*(f". {shlex.quote(str(file))}" for file in completions.glob("*.bash")),
                          r"""bind '"\C-t": insert-completions'"""], folder)


class Zsh(Interactive):
    def __init__(self, completions, folder):
        super().__init__(["zsh", "-f", "-i"],
                         [f"fpath=({shlex.quote(str(completions))} $fpath)",
                          "autoload -Uz compinit && compinit -u -d .zcompdump",
                          "all() { _main_complete; compstate[insert]=all compstate[list]= }",
                          "zle -C all complete-word all",
                          "bindkey '^T' all"], folder)


class Fish:
    """fish completes a line without a terminal."""

    def __init__(self, completions, folder):
        self.source = "; ".join(f"source {shlex.quote(str(file))}"
                                for file in completions.glob("*.fish"))
        self.folder = folder

    def candidates(self, line):
        # A string of JSON is one of fish too, for the plain characters used here.
        script = f"{self.source}; complete -C {json.dumps(line)}"
        result = subprocess.run(["fish", "--no-config", "-c", script], cwd=self.folder, check=True,
                                env={**os.environ, "HOME": str(self.folder), "LC_ALL": "C"},
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, timeout=LIMIT)
        words = [row.split("\t")[0] for row in result.stdout.decode().splitlines()]
        # fish 4 also lists words that merely contain the typed characters. On a terminal it puts in
        # those that begin with them, if there are any.
        typed = line.rpartition(" ")[2]
        return alike([word for word in words if word.startswith(typed)] or words)

    def close(self):
        pass


SHELLS = {"bash": Bash, "zsh": Zsh, "fish": Fish}
