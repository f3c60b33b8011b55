"""Draws the folders of the source and what each uses, as the build has them, with Graphviz."""

import subprocess
import sys

from dark_mode import with_dark_mode

# What comes in and goes out.
DATA = [("logs", "eventlog"), ("app", "standard output"), ("query", "standard output"),
        ("render", "export file")]


def source(modules):
    """The graph in Graphviz's language. A line of `modules` has a folder, a colon and what it uses."""
    uses = {name: used.split() for name, used in
            (line.split(":") for line in modules.splitlines())}
    lost = [arrow for arrow in DATA if not uses.keys() & set(arrow)]
    if lost:
        sys.exit(f"no folder of the source is at the arrow {lost}")
    return "\n".join([
        "digraph {",
        'graph [bgcolor="#ffffff" fontname="sans-serif" fontsize=12',
        '    label="solid: includes    dashed: data"]',
        'node [fontname="sans-serif" shape=box style="filled,rounded" color="#336699"',
        '    fillcolor="#eaf2fb"]',
        'edge [color="#336699"]',
        *(f'"{name}" -> "{used}"' for name in reversed(uses) for used in uses[name]),
        "node [shape=plaintext style=solid]",
        *(f'"{start}" -> "{end}" [style=dashed]' for start, end in DATA),
        "}", ""])


def draw(graph):
    """An SVG that has its source in a comment: the same graph gets other places from other releases."""
    svg = subprocess.run(["dot", "-Tsvg"], input=graph, stdout=subprocess.PIPE, check=True,
                         text=True).stdout
    return with_dark_mode(svg).replace("<style>", f"<!--\n{graph}-->\n<style>")
