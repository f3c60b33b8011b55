"""Writes the results of scripts/bench as a page and a chart."""
import math

COLOURS = ["#0072b2", "#56b4e9", "#444444", "#d55e00", "#009e73", "#cc79a7", "#999999"]


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
    """`places`, moved apart to stand at least `distance` from each other, in the same order."""
    order = sorted(range(len(places)), key=lambda index: places[index])
    moved = list(places)
    for before, after in zip(order, order[1:]):
        moved[after] = max(moved[after], moved[before] + distance)
    return moved


def seconds_label(seconds):
    return f"{seconds:g} s" if seconds >= 1 else f"{seconds * 1000:g} ms"


def chart(series, sizes):
    """An SVG of CPU time against log size, both axes logarithmic, each line named at its end."""
    times = [time for points in series.values() for time in points.values()]
    across = Axis(sizes[0], sizes[-1], 70, 500)
    up = Axis(10 ** math.floor(math.log10(min(times))), max(times) * 1.3, 370, 40)
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 720 430" font-size="12" '
             'font-family="sans-serif">',
             '<rect width="720" height="430" fill="white"/>',
             '<text x="70" y="22" font-size="15">CPU time of a whole run against the size of the '
             'log</text>']
    for time in up.decades():
        y = up.place(time)
        parts.append(f'<path d="M70 {y}H500" stroke="#ddd"/>'
                     f'<text x="62" y="{y + 4}" text-anchor="end">{seconds_label(time)}</text>')
    for size in sizes:
        x = across.place(size)
        parts.append(f'<path d="M{x} 40V370" stroke="#ddd"/>'
                     f'<text x="{x}" y="390" text-anchor="middle">{size:,}</text>')
    parts.append('<text x="285" y="415" text-anchor="middle">lines of the log</text>')

    ends = spread([up.place(points[sizes[-1]]) for points in series.values()], 15)
    for (name, points), colour, end in zip(series.items(), COLOURS, ends):
        dots = [(across.place(size), up.place(points[size])) for size in sizes]
        line = " ".join(f"{x},{y}" for x, y in dots)
        ours = name.startswith("events-viewer")
        weight = 'font-weight="bold" ' if ours else ""
        parts.append(f'<polyline points="{line}" fill="none" stroke="{colour}" '
                     f'stroke-width="{3 if ours else 1.5}"/>')
        parts += [f'<circle cx="{x}" cy="{y}" r="3" fill="{colour}"/>' for x, y in dots]
        parts.append(f'<text x="510" y="{end + 4}" {weight}fill="{colour}">{name}</text>')
    parts.append("</svg>\n")
    return "\n".join(parts)


PAGE = """# Performance

Written by `scripts/bench`, which measures everything on this page in one run and fails where a
figure is above what stands beside it. `scripts/bench --gates` does only the instruction counts, in a
minute; `scripts/bench --board` does them for the PowerPC board, in an emulator.

The logs are generated: {bytes_a_line:.0f} bytes a line, every described event with all its
variables. "The floor" is one parse of each line by the JSON library with one reader and nothing
else, what the library costs whoever uses it for every line. Instructions are those of the process,
start and exit included; they hardly change from run to run or from machine to machine. CPU time is
the least of a few runs.

{gates}

`--show` must look at every line, but parses only the newest ones and those of which it cannot tell
without that they have nothing to report.

## Beside other tools

The same table made by a Python script and by a jq program (`events.py` and `events.jq` in the
source's `bench/peers`), and `wc -l`, which only reads the file ({versions}):

{cpu}

![CPU time against the size of the log](performance.svg)
"""


def write(folder, gates, series, sizes, bytes_a_line, versions):
    with open(f"{folder}/performance.svg", "w", encoding="utf-8") as file:
        file.write(chart(series, sizes))
    with open(f"{folder}/performance.md", "w", encoding="utf-8") as file:
        file.write(PAGE.format(gates=gate_table(gates), cpu=cpu_table(series, sizes),
                               bytes_a_line=bytes_a_line, versions=versions))
