"""Writes the results of scripts/bench as a page and a chart, and those of the board into its page."""
import math
import os
import subprocess
import sys

# The colours of the lines and of their names, in light and in dark mode. All have a contrast of at
# least 4.5 : 1 with the background.
BACKGROUND, TEXT, GRID = ("#ffffff", "#0d1117"), ("#24292f", "#e6edf3"), ("#d0d7de", "#30363d")
COLOURS = [("#0059b3", "#58a6ff"), ("#b34700", "#ffa657"), ("#57606a", "#c9d1d9"),
           ("#8250df", "#d2a8ff"), ("#1a7f37", "#56d364"), ("#116b7c", "#76e3ea"),
           ("#9a6700", "#e3b341"), ("#a40e26", "#ff7b72")]


def gate_table(gates):
    lines = ["| | measured | at most | |", "|---|---:|---:|---|"]
    for gate in gates:
        verdict = "" if gate.limit is None else "ok" if gate.passed else "**missed**"
        limit = "" if gate.limit is None else gate.shown(gate.limit)
        lines.append(f"| {gate.name} | {gate.shown(gate.value)} | {limit} | {verdict} |")
    return "\n".join(lines)


def cpu_table(series, sizes):
    lines = ["| CPU seconds | " + " | ".join(f"{size:,} lines" for size in sizes) + " |",
             "|---|" + "---:|" * len(sizes)]
    for name, points in series.items():
        lines.append(f"| {name} | " + " | ".join(f"{points[size]:.3f}" for size in sizes) + " |")
    return "\n".join(lines)


class Axis:
    """A logarithmic axis from `low` to `high`, drawn from the pixel `start` to the pixel `end`."""

    def __init__(self, low, high, start, end):
        self.low, self.high = math.log10(low), math.log10(high)
        self.start, self.end = start, end

    def place(self, value):
        part = (math.log10(value) - self.low) / (self.high - self.low)
        return round(self.start + part * (self.end - self.start), 1)

    def decades(self):
        return [10.0 ** power for power in range(math.ceil(self.low), math.floor(self.high) + 1)]


def spread(places, distance):
    """`places`, moved at least `distance` apart, in the same order."""
    order = sorted(range(len(places)), key=lambda index: places[index])
    moved = list(places)
    for before, after in zip(order, order[1:]):
        moved[after] = max(moved[after], moved[before] + distance)
    return moved


def seconds_label(seconds):
    return f"{seconds:g} s" if seconds >= 1 else f"{seconds * 1000:g} ms"


def style(count):
    """The style sheet of the chart: the class cN draws in the N-th colour, the class g the grid."""
    def rules(mode):
        return (f".b{{fill:{BACKGROUND[mode]}}}text{{fill:{TEXT[mode]}}}.g{{stroke:{GRID[mode]}}}"
                + "".join(f".c{number}{{stroke:{colour[mode]}}}"
                          f"circle.c{number},text.c{number}{{fill:{colour[mode]};stroke:none}}"
                          for number, colour in enumerate(COLOURS[:count])))
    return f"<style>{rules(0)}@media (prefers-color-scheme:dark){{{rules(1)}}}</style>"


def chart(series, sizes):
    """An SVG of CPU time against log size, both axes logarithmic, each line named at its end."""
    if len(series) > len(COLOURS):
        raise ValueError("the chart has more lines than colours")
    times = [time for points in series.values() for time in points.values()]
    across = Axis(sizes[0], sizes[-1], 70, 500)
    up = Axis(10 ** math.floor(math.log10(min(times))), max(times) * 1.3, 370, 40)
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 720 430" font-size="13" '
             'font-family="sans-serif">', style(len(series)),
             '<rect class="b" width="720" height="430" rx="8"/>',
             '<text x="70" y="22" font-size="15">CPU time of a whole run against the size of the '
             'log</text>']
    for time in up.decades():
        y = up.place(time)
        parts.append(f'<path class="g" d="M70 {y}H500"/>'
                     f'<text x="62" y="{y + 4}" text-anchor="end">{seconds_label(time)}</text>')
    for size in sizes:
        x = across.place(size)
        parts.append(f'<path class="g" d="M{x} 40V370"/>'
                     f'<text x="{x}" y="390" text-anchor="middle">{size:,}</text>')
    parts.append('<text x="285" y="415" text-anchor="middle">lines of the log</text>')

    ends = spread([up.place(points[sizes[-1]]) for points in series.values()], 15)
    for number, ((name, points), end) in enumerate(zip(series.items(), ends)):
        dots = [(across.place(size), up.place(points[size])) for size in sizes]
        line = " ".join(f"{x},{y}" for x, y in dots)
        ours = name.startswith("events-viewer")
        weight = ' font-weight="bold"' if ours else ""
        parts.append(f'<polyline class="c{number}" points="{line}" fill="none" '
                     f'stroke-width="{3 if ours else 1.5}"/>')
        parts += [f'<circle class="c{number}" cx="{x}" cy="{y}" r="3"/>' for x, y in dots]
        parts.append(f'<text class="c{number}" x="510" y="{end + 4}"{weight}>{name}</text>')
    parts.append("</svg>\n")
    return "\n".join(parts)


PAGE = """# Performance

`scripts/bench` measures everything on this page in one run and writes the page. It fails if a figure
exceeds its limit. `scripts/bench --gates` counts only the instructions, which takes a minute.
`scripts/bench --board` counts them for the PowerPC board, in an emulator.

The logs are generated: {bytes_a_line:.0f} bytes a line, every described event with all its
variables. In the realistic log two events in five have a description, and one line in a hundred is
damaged. "JsonCpp alone" parses each line once, with one reader, and does nothing else: a program
that uses the library for every line cannot be faster. "The plainest program" is the one that the
tests compare every table with. Instructions are those of the whole process, start and exit included.
They hardly change from run to run or from machine to machine. CPU time is the shortest of a few runs.

{gates}

`--all` reads plain objects without the library. The library parses the other lines: two rows of the
table show the cost. `--show` reads every line, but parses only the newest ones and those that might
have something to report.

## Compared with other tools

An awk, a jq and a Python program make the same table (in `bench/peers` of the source). `wc -l` only
reads the file. The versions: {versions}.

{cpu}

![CPU time against the size of the log](performance.svg)
"""


def write(folder, gates, series, sizes, bytes_a_line, versions):
    with open(f"{folder}/performance.svg", "w", encoding="utf-8") as file:
        file.write(chart(series, sizes))
    with open(f"{folder}/performance.md", "w", encoding="utf-8") as file:
        file.write(PAGE.format(gates=gate_table(gates), cpu=cpu_table(series, sizes),
                               bytes_a_line=bytes_a_line, versions=versions))


BOARD_SECTION = """## Speed

Measured by `scripts/bench --board`, in the emulator of Debian 12, on the logs of
[performance.md](performance.md). The script fails if a figure exceeds its limit.

{gates}
"""


def write_board(page, gates):
    script = os.path.join(os.path.dirname(page), "../scripts/lib/write_section.py")
    subprocess.run([sys.executable, script, page, "speed"], check=True, text=True,
                   input=BOARD_SECTION.format(gates=gate_table(gates)))
