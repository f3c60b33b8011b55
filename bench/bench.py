"""bench.py [--gates | --board QEMU] BUILD TOOLS SCRATCH: the measuring half of scripts/bench, which
builds what it needs. BUILD is the build folder of the programs to measure, TOOLS that of the
programs to measure with (the same, except for the board)."""
import argparse
import json
import os
import subprocess
import sys

import measure
import report

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FEW, MANY, MOST = 20_000, 200_000, 1_000_000
CHART_SIZES = [2_000, FEW, MANY, MOST]


class Gate:
    """One figure, and the most that it may be; without a limit it is only reported."""

    def __init__(self, name, value, limit=None, unit="times"):
        self.name, self.value, self.limit, self.unit = name, value, limit, unit
        self.passed = limit is None or value <= limit

    def shown(self, value):
        if self.unit == "times":
            return f"{value:.4g}"
        return f"{value / 1e6:.2f} {self.unit}"

    def print(self):
        limit = "" if self.limit is None else f"  (at most {self.shown(self.limit)})"
        print(f"{'' if self.passed else 'MISSED: '}{self.name}: {self.shown(self.value)}{limit}",
              flush=True)


class Bench:
    def __init__(self, build, tools, scratch):
        self.build, self.tools, self.scratch = build, tools, scratch
        self.gates = []

    def add(self, *gate):
        self.gates.append(Gate(*gate))
        self.gates[-1].print()

    def log(self, lines, style="compact", damaged=0):
        path = os.path.join(self.scratch, f"{style}-{lines}-{damaged}")
        if not os.path.exists(path):
            with open(path, "wb") as file:
                subprocess.run([f"{self.tools}/bench/generate_log", str(lines), style,
                                str(damaged)], stdout=file, check=True)
        return path

    def viewer(self, action, log):
        return [f"{self.build}/events-viewer", action, "--input_file", log]

    def jsoncpp_alone(self, log):
        return [f"{self.build}/bench/jsoncpp_alone", log]

    def instruction_gates(self, counter, limits):
        """The instruction counts on logs of 20,000 lines and on an empty one."""
        log = self.log(FEW)
        alone = counter.count(self.jsoncpp_alone(log))
        def all_of(style):
            return counter.count(self.viewer("--all", self.log(FEW, style)))
        def against_jsoncpp(style):
            return all_of(style) / counter.count(self.jsoncpp_alone(self.log(FEW, style)))
        show = counter.count(self.viewer("--show", log))
        spaced = counter.count(self.viewer("--show", self.log(FEW, "spaced")))
        last = counter.count(self.viewer("--show", self.log(FEW, "id-last")))
        damaged = counter.count(self.viewer("--show", self.log(FEW, "compact", 5)))
        started = counter.count(self.viewer("--show", self.log(0)))
        nothing = counter.count([f"{self.build}/bench/startup"])
        every = all_of("compact")

        self.add("Instructions of JsonCpp alone", alone, None, "M")
        self.add("`--all` against JsonCpp alone, instructions", every / alone, limits["all"])
        self.add("`--all` on a log with spaces against one without, instructions",
                 all_of("spaced") / every, 1.05)
        self.add("`--all` against JsonCpp alone, a character in each line that is not ASCII, "
                 "instructions", against_jsoncpp("not-ascii"), limits["not-ascii"])
        self.add("`--all` against JsonCpp alone, a real number in each line, instructions",
                 against_jsoncpp("reals"), limits["reals"])
        self.add("`--show` against JsonCpp alone, instructions", show / alone, limits["show"])
        self.add("`--show` on a log with spaces against one without, instructions", spaced / show,
                 1.3)
        self.add('`--show` on a log whose "id" comes last against JsonCpp alone, instructions',
                 last / alone)
        self.add("`--show` on a log with 5 damaged lines in 1,000 against one without, instructions",
                 damaged / show)
        self.add("Start to exit on an empty log, instructions minus those of an empty program with the"
                 " same libraries", started - nothing, 0.3e6, "M")

    def comparing_gates(self, counter):
        """The instruction counts compared with those of other programs that make the table."""
        log = self.log(FEW)
        self.add("`--all` against the plainest program, instructions",
                 counter.count(self.viewer("--all", log)) / counter.count(self.literal(log)), 0.052)
        log = self.log(FEW, "realistic", 10)
        self.add("`--all` against mawk, realistic log, instructions",
                 counter.count(self.viewer("--all", log)) / counter.count(self.mawk(log)), 1)

    def scaling_gates(self, counter):
        """Figures that must not grow with the log, or only in proportion to it."""
        few, most = self.log(FEW), self.log(MOST)
        empty = counter.count(self.viewer("--show", self.log(0)))
        for action in "--all", "--show":
            small = (counter.count(self.viewer(action, few)) - empty) / FEW
            large = (counter.count(self.viewer(action, most)) - empty) / MOST
            self.add(f"`{action}`, instructions a line, 1,000,000 lines against 20,000",
                     large / small, 1.05)
        # The memory varies by some pages from run to run.
        self.add("`--show`, memory on 1,000,000 lines minus that on 20,000",
                 measure.peak_bytes(self.viewer("--show", most))
                 - measure.peak_bytes(self.viewer("--show", few)), 0.3e6, "MB")
        for style, damaged, limit in ("compact", 0, 1.8), ("realistic", 10, 1.58):
            most = self.log(MOST, style, damaged)
            self.add(f"`--all`, memory on 1,000,000 lines against the size of the log, {style}",
                     measure.peak_bytes(self.viewer("--all", most)) / os.path.getsize(most), limit)

    def literal(self, log):
        return [f"{self.build}/bench/literal", log]

    def mawk(self, log):
        return ["/usr/bin/mawk", "-f", f"{SOURCE}/bench/peers/events.awk",
                self.tables_of_columns(), log]

    def tables(self):
        """The path of the program's tables as JSON."""
        path = os.path.join(self.scratch, "tables.json")
        if not os.path.exists(path):
            with open(path, "wb") as file:
                subprocess.run([f"{self.tools}/dump_tables"], stdout=file, check=True)
        return path

    def tables_of_columns(self):
        """The path of the same tables as columns, for events.awk."""
        path = os.path.join(self.scratch, "tables.txt")
        with open(self.tables(), encoding="utf-8") as file:
            tables = json.load(file)
        rows = [("name", *row) for row in tables["names"].items()]
        for code, description in tables["descriptions"].items():
            rows.append(("text", code, description["text"].replace("\n", "\\n")))
            for number, slot in enumerate(description["slots"], 1):
                reasons = slot.get("reasons", {})
                rows.append(("slot", code, str(number), slot["key"], str(int(bool(reasons)))))
                rows += [("reason", code, str(number), *row) for row in reasons.items()]
        with open(path, "w", encoding="utf-8") as file:
            file.writelines("\t".join(row) + "\n" for row in rows)
        return path

    def peers(self):
        """Every command of the chart: a name and what makes its command line for a log."""
        tables = self.tables()
        folder = f"{SOURCE}/bench/peers"
        python = ["/usr/bin/python3", f"{folder}/events.py", tables]
        jq = ["/usr/bin/jq", "--null-input", "--raw-input", "--raw-output", "--slurpfile", "tables",
              tables, "--from-file", f"{folder}/events.jq"]
        return {
            "events-viewer --all": lambda log: self.viewer("--all", log),
            "events-viewer --show": lambda log: self.viewer("--show", log),
            "JsonCpp alone": self.jsoncpp_alone,
            "mawk, all events": self.mawk,
            "jq, all events": lambda log: [*jq, log],
            "Python, all events": lambda log: [*python, log],
            "Python, last 10 events": lambda log: [*python, log, "10"],
            "wc -l": lambda log: ["/usr/bin/wc", "-l", log],
        }

    def check_peers(self, peers):
        """The peers do the same job: their tables are the program's, except for damaged lines."""
        log = self.log(FEW)
        def table(name):
            return subprocess.run(peers[name](log), stdout=subprocess.PIPE, check=True).stdout
        for ours, theirs in (("events-viewer --all", "jq, all events"),
                             ("events-viewer --all", "Python, all events"),
                             ("events-viewer --all", "mawk, all events"),
                             ("events-viewer --show", "Python, last 10 events")):
            if table(ours) != table(theirs):
                raise RuntimeError(f"{theirs}: not the table of {ours}")

    def cpu_series(self):
        peers = self.peers()
        self.check_peers(peers)
        series = {name: {} for name in peers}
        for size in CHART_SIZES:
            log = self.log(size)
            for name, command in peers.items():
                seconds = measure.cpu_seconds(command(log), 1)
                more = min(20, int(2 / max(seconds, 0.001)))
                if more > 0:
                    seconds = min(seconds, measure.cpu_seconds(command(log), more))
                series[name][size] = max(seconds, 0.0001)
                print(f"{name}, {size:,} lines: {seconds:.4f} s of CPU", flush=True)
        at_many = {name: points[MANY] for name, points in series.items()}
        self.add("`--show` against `wc -l`, CPU, 200,000 lines",
                 at_many["events-viewer --show"] / at_many["wc -l"], 4)
        for name in "mawk, all events", "jq, all events", "Python, all events":
            self.add(f"`--all` against {name}, CPU, 200,000 lines",
                     at_many["events-viewer --all"] / at_many[name])
        log = self.log(MANY, "realistic", 10)
        self.add("`--all` against mawk, realistic log, CPU, 200,000 lines",
                 measure.cpu_seconds(self.viewer("--all", log), 10)
                 / measure.cpu_seconds(self.mawk(log), 10), 1)
        return series


def versions():
    asked = (["/usr/bin/mawk", "-W", "version"], ["/usr/bin/jq", "--version"],
             ["/usr/bin/python3", "--version"], ["/usr/bin/wc", "--version"])
    return ", ".join(subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                    text=True, check=True).stdout.splitlines()[0]
                     for command in asked)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--gates", action="store_true")
    parser.add_argument("--board", metavar="QEMU")
    parser.add_argument("build")
    parser.add_argument("tools")
    parser.add_argument("scratch")
    given = parser.parse_args()
    bench = Bench(given.build, given.tools, given.scratch)
    plugin = f"{given.tools}/bench/libcount_instructions.so"

    if given.board:
        bench.instruction_gates(measure.Emulator(given.board.split(), plugin, given.scratch),
                                {"all": 0.62, "not-ascii": 2.84, "reals": 2.82, "show": 0.0397})
        report.write_board(f"{SOURCE}/doc/board.md", bench.gates)
    else:
        bench.instruction_gates(measure.Callgrind(), {"all": 0.45, "not-ascii": 2.6, "reals": 2.65,
                                                      "show": 0.0337})
        bench.comparing_gates(measure.Callgrind())
        if not given.gates:
            bench.scaling_gates(measure.Emulator(["qemu-x86_64"], plugin, given.scratch))
            series = bench.cpu_series()
            report.write(f"{SOURCE}/doc", bench.gates, series, CHART_SIZES,
                         os.path.getsize(bench.log(MANY)) / MANY, versions())
    missed = [gate for gate in bench.gates if not gate.passed]
    print(f"{len(missed)} of {sum(gate.limit is not None for gate in bench.gates)} limits missed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
