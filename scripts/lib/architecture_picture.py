"""Draws the folders of the source and their dependencies, as the build has them."""

import sys

# The middle of each folder's box, and what the folder does.
BOXES = {
    "app": (400, 50, "options and actions"),
    "render": (400, 160, "events to a table"),
    "eventlog": (150, 270, "lines to events"),
    "describe": (400, 270, "an event to a sentence"),
    "jsonaccess": (275, 380, "calls JsonCpp"),
    "catalog": (650, 380, "names and reasons"),
    "text": (400, 490, "shared strings: used by all but jsonaccess"),
}
BOX_WIDTH, BOX_HEIGHT = 190, 56
WIDE = {"text": 690}
NO_ARROWS = "text"  # its caption says who uses it
NOT_USING_TEXT = {"jsonaccess"}
# Arrows that go round a box.
DETOURS = {("app", "eventlog"): "M 305 50 H 150 V 242",
           ("render", "catalog"): "M 495 160 H 650 V 352"}
# The colours: first in light mode, then in dark mode.
STYLE = """<style>
.paper { fill: #ffffff } .box { fill: #eaf2fb } .words { fill: #1c2128 } .line { stroke: #336699 }
.head { fill: #336699 }
@media (prefers-color-scheme: dark) {
.paper { fill: #0d1117 } .box { fill: #16263a } .words { fill: #e6edf3 } .line { stroke: #6cb6ff }
.head { fill: #6cb6ff }
}
</style>"""
# What comes in and goes out: the arrow, then the words.
OUTSIDE = [
    ("M 14 270 H 55", 14, 252, "logs"),
    ("M 495 50 H 560", 568, 46, "table on the screen,"),
    ("", 568, 64, "or in a file"),
]


def uses(modules):
    """Which folders each folder uses: a line of `modules` has its name, a colon and their names."""
    lines = [line.split(":") for line in modules.splitlines()]
    return {name: set(used.split()) for name, used in lines}


def check(used_by):
    if set(used_by) != set(BOXES):
        sys.exit(f"the picture has {sorted(BOXES)}, the source {sorted(used_by)}: place the boxes")
    for name, used in used_by.items():
        if name != NO_ARROWS and (NO_ARROWS in used) == (name in NOT_USING_TEXT):
            sys.exit(f"the caption of the box {NO_ARROWS} is not true of {name}")


def width_of(name):
    return WIDE.get(name, BOX_WIDTH)


def arrow(user, used):
    if (user, used) in DETOURS:
        return DETOURS[user, used]
    (x1, y1, _), (x2, y2, _) = BOXES[user], BOXES[used]
    # Not in the middle, so that arrows that end at the same box stay apart.
    lean = max(-60, min(60, (x2 - x1) / 4))
    return f"M {x1 + lean:g} {y1 + BOX_HEIGHT / 2:g} L {x2 - lean:g} {y2 - BOX_HEIGHT / 2:g}"


def box(name):
    x, y, caption = BOXES[name]
    left, top = x - width_of(name) / 2, y - BOX_HEIGHT / 2
    return (f'<rect x="{left:g}" y="{top:g}" width="{width_of(name)}" height="{BOX_HEIGHT}" rx="6" '
            f'class="box line"/>\n'
            f'<text x="{x}" y="{y - 4}" font-weight="bold">{name}</text>\n'
            f'<text x="{x}" y="{y + 16}" font-size="13">{caption}</text>')


def draw(modules):
    used_by = uses(modules)
    check(used_by)
    paths = [arrow(user, used) for user in BOXES for used in BOXES
             if used in used_by[user] and used != NO_ARROWS]
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="800" height="530" '
             'viewBox="0 0 800 530">', STYLE,
             '<defs><marker id="head" markerUnits="userSpaceOnUse" markerWidth="9" markerHeight="8" '
             'refX="8" refY="4" orient="auto"><path class="head" d="M 0 0 L 9 4 L 0 8 z"/></marker></defs>',
             '<rect class="paper" width="100%" height="100%" rx="8"/>',
             '<g class="words" font-family="sans-serif" font-size="15" text-anchor="middle">',
             *map(box, BOXES), '</g>',
             '<g class="line" fill="none" stroke-width="1.5">',
             *(f'<path d="{path}" marker-end="url(#head)"/>' for path in paths), '</g>',
             '<g class="line" fill="none" stroke-width="1.5" stroke-dasharray="4 3">',
             *(f'<path d="{path}" marker-end="url(#head)"/>' for path, *_ in OUTSIDE if path),
             '</g>', '<g class="words" font-family="sans-serif" font-size="13">',
             *(f'<text x="{x}" y="{y}">{words}</text>' for _, x, y, words in OUTSIDE), '</g>',
             '</svg>', '']
    return "\n".join(lines)
