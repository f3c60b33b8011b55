"""bench.py [--gates | --board] BUILD TOOLS SCRATCH: the measuring half of scripts/bench, which builds
what it needs. BUILD is the build folder of the programs to measure, TOOLS that of the programs to
measure with (the same, except for the board)."""
import argparse
import functools
import json
import os
import subprocess
import sys

import board
import measure
import report
from log_generator import LogGenerator

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(SOURCE, "scripts", "lib"))
import event_catalog  # noqa: E402

FEW, MANY, MOST = SIZES = [20_000, 200_000, 1_000_000]
CHART_SIZES = [2_000, *SIZES]
CHART_LINES = ["events-viewer --all", "events-viewer --show", "JsonCpp alone", "mawk, all events", "wc -l"]
EVENT, CODE, WORD = "MODEM_OUT_OF_NETWORK", 1229, "network"
EVERYDAY = ["events-viewer --show", "events-viewer --all", "events-query", f"events-query -e {EVENT}",
            "events-query -c event", "events-query -o csv", "events-query --check"]
# Of each task of events-query: the name of the event and the word that others look for.
TASKS = {"": ("", ""), f" -e {EVENT}": (EVENT, ""), f" -g {WORD}": ("", WORD)}
LAST_OF_2026 = 1_798_700_000  # the files' date, which decides the year of their events


class Gate:
    """One figure, and the most that it may be; without a limit it is only reported."""

    def __init__(self, name, value, limit=None, unit="times"):
        self.name, self.value, self.limit, self.unit = name, value, limit, unit
        self.passed = limit is None or value <= limit

    def shown(self, value):
        if value is None:
            return ""
        if self.unit == "times":
            return f"{value:.4g}"
        if self.unit in ("M", "MB"):
            return f"{value / 1e6:.2f} {self.unit}"
        return f"{value:,.0f} {self.unit}".rstrip()

    def print(self):
        limit = "" if self.limit is None else f"  (at most {self.shown(self.limit)})"
        print(f"{'' if self.passed else 'MISSED: '}{self.name}: {self.shown(self.value)}{limit}",
              flush=True)


class Bench:
    def __init__(self, build, tools, scratch, counter):
        self.build, self.scratch, self.counter = build, scratch, counter
        self.gates = []
        self.events = event_catalog.read(f"{tools}/events-query")
        # The tables for events.awk, and those for events.jq and events.py.
        self.columns, self.catalog = (os.path.join(scratch, name) for name in ("columns", "catalog"))
        rows = []
        for event in self.events:
            template = event["template"].replace("\n", "\\n")
            rows.append(("event", str(event["code"]), event["event"], template, *event["variables"]))
            rows += [("reason", key, *row) for key, reasons in event["explained"].items()
                     for row in reasons.items()]
        with open(self.columns, "w", encoding="utf-8") as file:
            file.writelines("\t".join(row) + "\n" for row in rows)
        with open(self.catalog, "w", encoding="utf-8") as file:
            file.writelines(json.dumps(event) + "\n" for event in self.events)

    def add(self, *gate):
        self.gates.append(Gate(*gate))
        self.gates[-1].print()

    def log(self, lines=FEW, style="compact", damaged=0):
        path = os.path.join(self.scratch, f"{style}-{lines}-{damaged}")
        if not os.path.exists(path):
            generator = LogGenerator(self.events, style, damaged)
            with open(path, "w", encoding="utf-8") as file:
                file.writelines(generator.line() for _ in range(lines))
            os.utime(path, (LAST_OF_2026, LAST_OF_2026))
        return path

    def command(self, program, log):
        """The command line of one of the programs that are measured or compared with."""
        name, *options = program.split()
        event, word = TASKS.get(program[len(name):], ("", ""))
        return {
            "events-viewer": [f"{self.build}/events-viewer", *options, "--input_file", log],
            "events-query": [f"{self.build}/events-query", *options, log],
            "JsonCpp": [f"{self.build}/bench/jsoncpp_alone", log],
            "nothing": [f"{self.build}/bench/startup"],
            "mawk,": ["/usr/bin/mawk", "-f", f"{SOURCE}/bench/events.awk", self.columns, log],
            "wc": ["/usr/bin/wc", "-l", log],
            "jq": ["/usr/bin/jq", "-cnf", f"{SOURCE}/bench/events.jq", "--slurpfile", "catalog",
                   self.catalog, "--arg", "event", event, "--arg", "word", word, "--arg", "log", log,
                   log],
            "Python": [sys.executable, f"{SOURCE}/bench/events.py", self.catalog, event, word, log],
            "ripgrep": ["/usr/bin/rg", f'"id":{CODE},', log],
        }[name]

    @functools.cache
    def count(self, program, *log):
        """How many instructions the program executes on such a log."""
        return self.counter.count(self.command(program, self.log(*log)))

    def against(self, program, other, *log):
        return self.count(program, *log) / self.count(other, *log)

    def instruction_gates(self, limits):
        """The instruction counts on logs of 20,000 lines and on an empty one. `limits` are those of
        the figures against JsonCpp alone."""
        every, show, alone = "events-viewer --all", "events-viewer --show", "JsonCpp alone"
        self.add("Instructions of JsonCpp alone", self.count(alone), None, "M")
        rows = [(every, "", []), (every, ", realistic log", [FEW, "realistic", 10]),
                (every, ", a character in each line that is not ASCII", [FEW, "not-ascii"]),
                (every, ", a real number in each line", [FEW, "reals"]), (show, "", []),
                *((f"events-query {options}", "", [])
                  for options in ("-o json", f"-e {EVENT}", f"-g {WORD}", "-c event"))]
        for (program, kind, log), limit in zip(rows, limits):
            self.add(f"`{program}` against JsonCpp alone{kind}, instructions",
                     self.against(program, alone, *log), limit)
        for program, limit in (every, 1.05), (show, 1.3):
            self.add(f"`{program}` on a log with spaces against one without, instructions",
                     self.count(program, FEW, "spaced") / self.count(program), limit)
        self.add("`events-query --check` against `-o json`, 10 damaged lines in 1,000, instructions",
                 self.against("events-query --check", "events-query -o json", FEW, "compact", 10), 1.2)
        self.add("Start to exit on an empty log, instructions minus those of an empty program with the"
                 " same libraries", self.count(show, 0) - self.count("nothing"), 0.3e6, "M")

    def scaling_gates(self, counter):
        """Figures that must not grow with the log, or only in proportion to it."""
        def count(program, lines):
            return counter.count(self.command(f"events-viewer {program}", self.log(lines)))
        empty = count("--show", 0)
        for action in "--all", "--show":
            small, large = ((count(action, lines) - empty) / lines for lines in (FEW, MOST))
            self.add(f"`{action}`, instructions a line, 1,000,000 lines against 20,000",
                     large / small, 1.05)
        # The memory varies by some pages from run to run.
        for program, limit in ("events-viewer --show", 0.3e6), ("events-query -o json", 0.5e6):
            self.add(f"`{program}`, memory on 1,000,000 lines minus that on 20,000",
                     self.memory(program, MOST) - self.memory(program, FEW), limit, "MB")
        for style, name, damaged, limit in ("compact", "", 0, 1.8), ("realistic", ", realistic log", 10, 1.58):
            self.add(f"`--all`, memory on 1,000,000 lines against the size of the log{name}",
                     self.memory("events-viewer --all", MOST, style, damaged)
                     / os.path.getsize(self.log(MOST, style, damaged)), limit)

    def memory(self, program, *log):
        return measure.peak_bytes(self.command(program, self.log(*log)))

    def output(self, program):
        return subprocess.check_output(self.command(program, self.log()))

    def cpu(self, programs, sizes):
        """The CPU seconds of each program on compact logs of these sizes."""
        series = {name: {} for name in programs}
        for size in sizes:
            for name in programs:
                command = self.command(name, self.log(size))
                seconds = measure.cpu_seconds(command, 1)
                for _ in range(min(20, int(2 / max(seconds, 0.001)))):
                    seconds = min(seconds, measure.cpu_seconds(command, 1))
                series[name][size] = max(seconds, 0.0001)
                print(f"{name}, {size:,} lines: {seconds:.4f} s of CPU", flush=True)
        return series

    def query_series(self):
        """The tasks of events-query, by others too. All write the same JSON but ripgrep, which prints
        the lines of the log."""
        programs = []
        for task in TASKS:
            same = [f"{program}{task}" for program in ("events-query -o json", "jq", "Python")]
            found = [list(map(json.loads, self.output(program).splitlines())) for program in same]
            if not found[0] == found[1] == found[2]:
                raise RuntimeError(f"{same} do not write the same")
            programs += [*same, *[f"ripgrep{task}"] * (EVENT in task)]
        return self.cpu(programs, [FEW, MANY])

    def many_logs(self):
        """300 logs of 1 MB: by one process, by a process for each, compressed, and unpacked by zcat."""
        def shell(script):
            return ["sh", "-ec", f"cd {self.scratch}; {script}"]
        log = self.log(6_250)
        measure.run(shell(f"gzip -k {log}; for i in $(seq 300); do mkdir -p plain/$i packed/$i;"
                          f"cp {log} plain/$i/events_report; cp {log}.gz packed/$i/events_report.gz; done"))
        tasks = {"{}": "{} plain", "xargs {}": "find plain -type f | xargs -n 1 {}", "{}, gzip": "{} packed",
                 "zcat, {}": "find packed -type f | while read -r log; do zcat $log | {} -; done"}
        return {name.format(query): {300: measure.cpu_seconds(shell(task.format(f"{os.path.abspath(self.build)}/{query}")), 3)}
                for query in ("events-query -o json", f"events-query -e {EVENT}") for name, task in tasks.items()}

    def cpu_series(self):
        if self.output("events-viewer --all") != self.output("mawk, all events"):
            raise RuntimeError("mawk does not make the same table")
        series = self.cpu(CHART_LINES, CHART_SIZES)
        for action, other, limit in ("--show", "wc -l", 4), ("--all", "mawk, all events", None):
            self.add(f"`{action}` against {other}, CPU, 200,000 lines",
                     series[f"events-viewer {action}"][MANY] / series[other][MANY], limit)
        ours, theirs = (measure.cpu_seconds(self.command(name, self.log(MANY, "realistic", 10)), 10)
                        for name in ("events-viewer --all", "mawk, all events"))
        self.add("`--all` against mawk, realistic log, CPU, 200,000 lines", ours / theirs, 1)
        return series


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--gates", action="store_true")
    parser.add_argument("--board", action="store_true")
    for name in "build", "tools", "scratch":
        parser.add_argument(name)
    given = parser.parse_args()

    def emulator(*command):
        return measure.Emulator(command, f"{given.tools}/bench/libcount_instructions.so")
    if given.board:
        counter = emulator(*board.EMULATOR) if board.emulator_loads_plugins() else None
        bench = Bench(given.build, given.tools, given.scratch, counter)
        for figure in board.figures(given.build, bench.log, counter):
            bench.add(*figure)
        if counter is None:
            print("This emulator loads no plugins, so instructions are not counted. Debian 12's does.")
        else:
            bench.instruction_gates([0.62, 0.46, 2.84, 2.82, 0.0397, 0.764, 0.0871, 0.839, 0.0871])
            report.replace_section(f"{SOURCE}/doc/board.md", "figures",
                                   report.gate_table(bench.gates))
    else:
        bench = Bench(given.build, given.tools, given.scratch, measure.Callgrind())
        bench.instruction_gates([0.45, 0.35, 2.6, 2.65, 0.0337, 0.48, 0.045, 1.1, 0.045])
        if not given.gates:
            bench.scaling_gates(emulator("qemu-x86_64"))
            series = bench.cpu_series()
            page = f"{SOURCE}/doc/performance.md"
            report.replace_section(page, "figures", report.gate_table(bench.gates))
            memory = {name: {size: bench.memory(name, size) / 1e6 for size in SIZES} for name in EVERYDAY}
            for name, *of_table in (("cpu", bench.cpu(EVERYDAY, SIZES), SIZES),
                                    ("memory", memory, SIZES, "lines", "MB"),
                                    ("queries", bench.query_series(), [FEW, MANY]),
                                    ("logs", bench.many_logs(), [300], "logs")):
                report.replace_section(page, name, report.size_table(*of_table))
            report.draw(f"{SOURCE}/doc/performance.svg", series, CHART_SIZES)
    missed = [gate for gate in bench.gates if not gate.passed]
    print(f"{len(missed)} of {sum(gate.limit is not None for gate in bench.gates)} limits missed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
