"""Writes the results of scripts/bench into its pages, and draws the chart."""
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "scripts/lib"))
from dark_mode import with_dark_mode  # noqa: E402

# All have a contrast of at least 4.5 : 1 with the background.
COLOURS = ["#0059b3", "#b34700", "#57606a", "#8250df", "#1a7f37"]
CHART = """
set terminal svg size 720,430 dynamic background "#ffffff" font "sans-serif,13"
set title "CPU time of a whole run against the size of the log"
set xlabel "lines of the log"
set ylabel "seconds"
set logscale xy
set format x "%'.0f"
set format y "%g"
set xtics ({sizes})
set grid
set border 3
set tics nomirror
set key outside right center Left reverse
$cpu << END
{rows}
END
plot for [line=1:{count}] $cpu using 1:line+1 with linespoints pointtype 7 pointsize 0.5 \\
    linewidth (line <= 2 ? 3 : 1.5) linecolor rgb word("{colours}", line) title columnhead(line+1)
"""


def replace_section(page, name, text):
    """Replaces what is between the lines "<!-- NAME -->" and "<!-- end of NAME -->"."""
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    with open(page, encoding="utf-8") as file:
        before, rest = file.read().split(begin)
    _, after = rest.split(end)
    with open(page, "w", encoding="utf-8") as file:
        file.write(f"{before}{begin}{text}\n{end}{after}")


def table(heading, rows):
    """The first column is of words, the others of numbers."""
    columns = ["---", *["---:"] * (len(heading) - 1)]
    return "\n".join("| " + " | ".join(row) + " |" for row in (heading, columns, *rows))


def gate_table(gates):
    return table(["", "measured", "at most"],
                 [(gate.name, gate.shown(gate.value), gate.shown(gate.limit)) for gate in gates])


def size_table(series, sizes, unit="lines", figure="CPU seconds"):
    return table([figure, *(f"{size:,} {unit}" for size in sizes)],
                 [(name, *(f"{points[size]:.3g}" for size in sizes))
                  for name, points in series.items()])


def draw(path, series, sizes):
    heading = " ".join(f'"{name}"' for name in ("lines", *series))
    rows = [" ".join(str(x) for x in (size, *(points[size] for points in series.values()))) for size in sizes]
    script = CHART.format(sizes=", ".join(f'"{size:,}" {size}' for size in sizes),
                          rows="\n".join([heading, *rows]), count=len(series),
                          colours=" ".join(COLOURS))
    svg = subprocess.check_output(["gnuplot"], input=script, text=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(with_dark_mode(svg))
