#!/usr/bin/env python3
"""Writes numbered events into a log, rotates it at random, and checks what events-query -f shows.

usage: follow_test.py EVENTS-QUERY [--rounds N] [--seed N] [--folder FOLDER] [--tail COMMAND]

--tail follows with another program, from its start on.

Each event has to be shown once and in the order of writing. An event may only be missing if standard
error says so. If every rotation has time, as in every second round, none may be missing.
"""

import argparse
import contextlib
import json
import os
import random
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

FIRST_CODE = 100000  # of no known event
LEAST_PAUSE = 0.1  # seconds between two rotations
NOTE = b"events may be missing"
PATIENCE = 20  # seconds that the last event may take on a busy machine


class Follower:
    """A program that follows a log; `shown` has the numbers of the events that it has printed."""

    def __init__(self, command):
        self.shown = []
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.errors = b""
        self.threads = [threading.Thread(target=target, daemon=True)
                        for target in (self.read, self.read_errors)]
        for thread in self.threads:
            thread.start()

    def read(self):
        for line in self.process.stdout:
            try:
                self.shown.append(int(line.split(b'"code":' if b'"code":' in line else b'"id":')[1].split(b",")[0]))
            except (IndexError, ValueError):
                pass  # tail shows halves of lines

    def read_errors(self):
        for line in self.process.stderr:
            self.errors += line

    def wait_until_it_watches(self):
        folder = f"/proc/{self.process.pid}/fd"
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            with contextlib.suppress(FileNotFoundError):  # it may be closed meanwhile
                if any("inotify" in os.readlink(f"{folder}/{name}") for name in os.listdir(folder)):
                    break
            time.sleep(0.01)

    def wait_for(self, number, patience=PATIENCE):
        end = time.monotonic() + patience
        while time.monotonic() < end and (not self.shown or self.shown[-1] < number):
            time.sleep(0.01)

    def wait_for_note(self):
        """Events that are there are shown before a note on others, which may take its time on a busy machine."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end and NOTE not in self.errors:
            time.sleep(0.01)

    def stop(self):
        self.process.send_signal(signal.SIGINT)
        status = self.process.wait(PATIENCE)
        for thread in self.threads:
            thread.join()
        return status


class Writer:
    """Writes the log `path` and does with it what happens to logs."""

    def __init__(self, path, chance):
        self.path = path
        self.chance = chance
        self.written = FIRST_CODE
        self.file = None
        self.rotated = 0
        self.before_rotation = FIRST_CODE  # how far it was written

    def write(self, count):
        lines = b"".join(
            b'{"id":%d,"time":"Nov 20 08:15:02","vars":{"text":"%s"}}\n'
            % (number, b"x" * self.chance.choice((0, 3, 40, 2000)))
            for number in range(self.written, self.written + count)
        )
        self.written += count
        if not self.file:
            self.file = open(self.path, "ab", buffering=0)
        while lines:
            size = self.chance.choice((len(lines), len(lines), self.chance.randint(1, len(lines))))
            self.file.write(lines[:size])
            lines = lines[size:]
            if self.chance.random() < 0.1:
                time.sleep(0.001)

    def close(self):
        if self.file:
            self.file.close()
        self.file = None

    def rotate(self):
        os.replace(self.path, f"{self.path}.0")
        if self.chance.random() < 0.3:
            self.write(self.chance.randint(1, 5))  # still into the old file
        self.close()
        if self.chance.random() < 0.3:
            time.sleep(self.chance.random() / 50)
        self.write(self.chance.choice((0, 1, 9)))
        self.rotated = time.monotonic()

    def replace_by_copy(self):
        shutil.copy(self.path, f"{self.path}.new")
        os.replace(f"{self.path}.new", self.path)
        self.close()

    def truncate(self):
        os.truncate(self.path, 0)

    def remove(self):
        os.unlink(self.path)
        self.close()

    def let_rest(self, follower):
        """Waits until another rotation is allowed: the follower has run since the last one."""
        follower.wait_for(self.before_rotation - 1)
        self.before_rotation = self.written
        time.sleep(max(0, self.rotated + LEAST_PAUSE - time.monotonic()))


def gentle(writer, follower, chance):
    """Nothing of this may lose an event."""
    for _ in range(chance.randint(5, 12)):
        writer.write(chance.choice((1, 10, 300, 1500)))
        time.sleep(chance.random() / 20)
        action = chance.choice(("write", "rotate", "rotate", "stop", "copy"))
        if action == "rotate":
            writer.let_rest(follower)
            writer.rotate()
        elif action == "stop":
            writer.let_rest(follower)
            follower.process.send_signal(signal.SIGSTOP)
            writer.write(chance.randint(0, 50))
            writer.rotate()
            writer.write(chance.randint(0, 50))
            follower.process.send_signal(signal.SIGCONT)
            writer.rotated = time.monotonic()
        elif action == "copy":
            follower.wait_for(writer.written - 1)
            writer.let_rest(follower)
            writer.replace_by_copy()
            writer.rotated = time.monotonic()


def rough(writer, follower, chance):
    """Any of this may lose events."""
    for _ in range(chance.randint(5, 15)):
        writer.write(chance.choice((1, 10, 300)))
        action = chance.choice(("rotate", "rotate", "truncate", "remove", "copy", "stop", "wait"))
        if action == "rotate":
            writer.rotate()
        elif action == "truncate":
            follower.wait_for(writer.written - 1, chance.choice((0, 1)))
            writer.truncate()
            time.sleep(LEAST_PAUSE)  # until it has been seen
        elif action == "remove":
            writer.remove()
        elif action == "copy":
            writer.replace_by_copy()
        elif action == "stop":
            follower.process.send_signal(signal.SIGSTOP)
            for _ in range(chance.randint(0, 4)):
                writer.write(chance.randint(1, 20))
                writer.rotate()
            follower.process.send_signal(signal.SIGCONT)
        else:
            time.sleep(chance.random() / 10)


def run_round(command, folder, seed, is_tail):
    """Returns how many events were written and missing, whether that was said, and what was wrong."""
    chance = random.Random(seed)
    writer = Writer(os.path.join(folder, "log"), chance)
    if chance.random() < 0.7:
        writer.write(chance.choice((1, 5, 40)))
    if chance.random() < 0.3 and writer.file:
        writer.rotate()
    before = writer.written
    follower = Follower([*command, writer.path])
    if before > FIRST_CODE:
        follower.wait_for(before - 1)
    else:
        follower.wait_until_it_watches()
    (rough if seed % 2 else gentle)(writer, follower, chance)
    writer.write(1)
    follower.wait_for(writer.written - 1)
    first = before if is_tail else FIRST_CODE
    missing = set(range(first, writer.written)) - set(follower.shown)
    if missing and not is_tail:
        follower.wait_for_note()
    status = follower.stop()
    writer.close()

    said = NOTE in follower.errors
    wrong = []
    for one, other in zip(follower.shown, follower.shown[1:]):
        if one >= other:
            wrong.append(f"event {other - FIRST_CODE} is shown after {one - FIRST_CODE}")
    if missing and not said:
        wrong.append(f"{len(missing)} events are missing, from {min(missing) - FIRST_CODE} on")
    if missing and seed % 2 == 0:
        wrong.append(f"{len(missing)} events are missing although every rotation had time")
    if status != -signal.SIGINT:
        wrong.append(f"Ctrl-C ends it with {status}")
    return writer.written - FIRST_CODE, len(missing), said, wrong


def line(code, time):
    return b'{"id":%d,"time":"%s"}\n' % (code, time)


def check_filters(command, log):
    """Options work on what comes as on what was there; returns what is wrong."""
    log.write_bytes(line(949, b"Dec 31 23:59:58") + line(1229, b"Dec 31 23:59:59"))
    options = ["-o", "json", "--year", "2025", "-e", "1229", "-C", "1", "-S", "23:59:59"]
    process = subprocess.Popen([*command, "-f", *options, log.name], cwd=log.parent, stdout=subprocess.PIPE)
    shown = [process.stdout.readline() for _ in range(2)]
    with open(log, "ab") as file:
        file.write(line(835, b"Dec 31 23:59:59") + line(836, b"Jan  1 00:00:01"))
        file.write(line(1229, b"Jan  1 00:00:02") + line(837, b"Mar  1 00:00:03"))
    shown += [process.stdout.readline() for _ in range(4)]
    process.terminate()
    process.wait()
    times = [json.loads(text)["at"][:19] for text in shown]
    expected = ["2025-12-31T23:59:58", "2025-12-31T23:59:59", "2025-12-31T23:59:59",
                "2026-01-01T00:00:01", "2026-01-01T00:00:02", "2026-03-01T00:00:03"]
    return [] if times == expected else [f"with {options} it shows {times}"]


def check_diagnostics(command, log):
    """Each is printed once, also of an event that sets the clock; an error ends it. Returns what is wrong."""
    log.write_bytes(line(949, b"Nov 20 08:00:00"))
    process = subprocess.Popen([*command, "-f", "-o", "json", "-e", "949,1227", log], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    process.stdout.readline()
    with open(log, "ab") as file:
        file.write(b'{"id":1227,"vars":{"a":"1" // x\r}}\n' + line(949, b"Nov 20 08:00:01"))
    for _ in range(2):
        process.stdout.readline()
    log.unlink()
    log.mkdir()
    errors = process.communicate()[1]
    log.rmdir()
    right = errors.count(b"error occured") == 1 and errors.endswith(b": Is a directory\n")
    return [] if right and process.returncode == 2 else [f"it ends with {process.returncode} and {errors}"]


def check_closed_streams(command, log, is_emulated):
    """The log does not take the place of standard error; returns what is wrong."""
    log.write_bytes(line(949, b"Nov 20 08:00:00"))
    script = 'exec "$@" <&- 2>&-'
    process = subprocess.Popen(["sh", "-c", script, "sh", *command, "-f", "-o", "lines", log], stdout=subprocess.PIPE)
    shown = process.stdout.readline()
    is_open = Path(f"/proc/{process.pid}/fd/2").exists() and not is_emulated
    process.terminate()
    process.wait()
    return [] if shown and not is_open else [f"without standard error it shows {shown}, open: {is_open}"]


def check_silence(command, log, is_emulated):
    """Nothing happens: it waits, and notices that nobody reads any more; returns what is wrong."""
    wrong = []
    log.write_bytes(line(949, b"Nov 20 08:00:00"))
    process = subprocess.Popen([*command, "-f", "-o", "lines", log], stdout=subprocess.PIPE)
    process.stdout.readline()
    time.sleep(0.3)  # until it waits
    switches = [Path(f"/proc/{process.pid}/status").read_text() for _ in range(2) if not time.sleep(1)]
    if switches[0].split("ctxt")[1:] != switches[1].split("ctxt")[1:] and not is_emulated:
        wrong.append(f"it woke up: {switches}")
    process.stdout.close()
    try:
        status = process.wait(PATIENCE)
    except subprocess.TimeoutExpired:
        status = process.kill()
    if status != -signal.SIGPIPE:
        wrong.append(f"a closed pipe ends it with {status}")
    return wrong


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--rounds", type=int, default=8)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", default=None)
    parser.add_argument("--emulator", default="")
    parser.add_argument("--tail", type=shlex.split, help="another program that follows a file")
    arguments = parser.parse_args()
    emulator = [word for word in arguments.emulator.split(";") if word]
    command = arguments.tail or [*emulator, arguments.program, "-f", "-n", "1000000", "-o", "json"]
    written = missing = said = failed = 0
    if not arguments.tail:
        with tempfile.TemporaryDirectory() as folder:
            program, log = [*emulator, os.path.abspath(arguments.program)], Path(folder, "log")
            for wrong in (*check_filters(program, log), *check_diagnostics(program, log),
                          *check_closed_streams(program, log, emulator),
                          *check_silence(program, log, emulator)):
                print(wrong)
                failed += 1
    for seed in range(arguments.seed, arguments.seed + arguments.rounds):
        with tempfile.TemporaryDirectory(dir=arguments.folder) as folder:
            result = run_round(command, folder, seed, arguments.tail is not None)
        written += result[0]
        missing += result[1]
        said += result[2]
        failed += bool(result[3])
        for text in result[3]:
            print(f"round {seed}: {text}")
    print(
        f"{arguments.rounds} rounds, {written} events written, {missing} missing;"
        f" in {said} rounds standard error says so; {failed} rounds are wrong"
    )
    sys.exit(bool(failed) and not arguments.tail)


main()
