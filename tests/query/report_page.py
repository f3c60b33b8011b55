"""Makes pages with events-query -o html, for the tests of them."""

import html.parser
import json
import os
import subprocess
from pathlib import Path

OUT, IN, RESET, START, CLOCK_SET, OTHER = 1229, 1228, 946, 1225, 1227, 1231
VOID = {"meta", "link", "input"}

# A log with three outages, of which one goes on over a restart, and a reset in between.
THREE_OUTAGES = [
    (OTHER, "Nov 18 06:00:00", {}),
    (IN, "Nov 18 06:10:00", {"inet_id": "214"}),
    (OUT, "Nov 18 16:44:05", {"out_of_network_reason": "INVALID_SI_TABLE"}),
    (IN, "Nov 18 16:59:51", {"inet_id": "214"}),
    (RESET, "Nov 19 01:30:00", {}),
    (START, "Nov 19 01:30:58", {}),
    (IN, "Nov 19 01:33:00", {"inet_id": "214"}),
    (1232, "Nov 19 18:00:00", {"forced_logout_reason": "OPERATOR_REQUEST"}),
    (START, "Nov 19 18:10:00", {}),
    (IN, "Nov 19 20:00:30", {"inet_id": "214"}),
    (OUT, "Nov 20 07:56:21", {"out_of_network_reason": "ACQ_DISABLE"}),
    (1237, "Nov 20 07:57:10", {"no_service_reason": "NO_ACU_LOCK", "detail": "blocked"}),
    (IN, "Nov 20 08:03:15", {"inet_id": "214"}),
    (OTHER, "Nov 20 08:15:02", {}),
]

# What a page could take for its own, and a reader for something else.
HOSTILE = [
    "</script><script>hostile()</script>", "<img src=x onerror=hostile()>", "\" onmouseover=\"hostile()",
    "' autofocus onfocus='hostile()", "javascript:hostile()", "<a href=javascript:hostile()>x</a>",
    "<svg/onload=hostile()>", "</title></style></textarea><script>hostile()</script>", "<!--row-->", "{{line}}",
    "--><script>hostile()</script><!--", "]]><script>hostile()</script>", "&lt;b&gt;&#x3c;script&#x3e;",
    "a\u2028b\u2029c", "a\u202eb\u2066c", "a\0b\x1b[31m\x7f\x85", "<iframe src=http://192.0.2.1/>",
    "<link rel=stylesheet href=http://192.0.2.1/>", "<meta http-equiv=refresh content=0;url=http://192.0.2.1/>",
    "<base href=http://192.0.2.1/>", "<form action=http://192.0.2.1/><input type=submit autofocus>",
]
HALF_SEQUENCES = [b"\xff", b"\xc3", b"\xe2\x80", b"\xed\xa0\x80", b"\xf0\x9f\x98", b"\xc0\xbc"]


def line_of(code, time, variables):
    return json.dumps({"id": code, "time": time, "vars": variables}, ensure_ascii=False).encode() + b"\n"


def log_of(events):
    return b"".join(line_of(*event) for event in events)


def hostile_log():
    lines = []
    for text in HOSTILE:
        raw = text.encode()
        lines.append(line_of(OUT, "Nov 20 08:00:00", {"out_of_network_reason": text}))
        lines.append(line_of(1350, text, {text: text, "detail": text}))
        lines.append(b'{"id":1232,"time":"Nov 20 08:00:01","vars":{"forced_logout_reason":"' + raw + b'"}}\n')
        lines.append(raw + b'{"id":1228,"time":"Nov 20 08:00:02","vars":{"inet_id":"1"}} ' + raw + b"\n")
        lines.append(raw + b"\n")
    for half in HALF_SEQUENCES:
        lines.append(b'{"id":1229,"time":"Nov 20 08:00:00","vars":{"out_of_network_reason":"' + half + b'"}}\n')
        lines.append(b'{"id":1228,"time":"' + half + b'","vars":{"' + half + b'":"' + half + b'<"}}' + half + b"\n")
    return b"".join(lines)


class Element:
    def __init__(self, tag, attributes):
        self.tag, self.attributes, self.children = tag, dict(attributes), []

    def all(self, tag):
        for child in self.children:
            if isinstance(child, Element):
                if child.tag == tag:
                    yield child
                yield from child.all(tag)

    def text(self):
        return "".join(child if isinstance(child, str) else child.text() for child in self.children)


class Page(html.parser.HTMLParser):
    """A page as a tree. Fails unless each element is closed in its place."""

    def __init__(self, text):
        super().__init__()
        self.root = Element("", {})
        self.open = [self.root]
        self.elements = []
        self.feed(text)
        self.close()
        assert self.open == [self.root], [element.tag for element in self.open]

    def handle_starttag(self, tag, attrs):
        element = Element(tag, attrs)
        assert len(element.attributes) == len(attrs), f"an attribute twice: {attrs}"
        self.elements.append(element)
        self.open[-1].children.append(element)
        if tag not in VOID:
            self.open.append(element)

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)
        if tag not in VOID:
            self.handle_endtag(tag)

    def handle_endtag(self, tag):
        assert self.open[-1].tag == tag, f"</{tag}> ends {self.open[-1].tag}"
        self.open.pop()

    def handle_data(self, data):
        self.open[-1].children.append(data)

    def handle_comment(self, data):
        raise AssertionError(f"a comment: {data}")

    def named(self, tag, **attributes):
        wanted = {name.rstrip("_").replace("_", "-"): value for name, value in attributes.items()}
        return [element for element in self.elements
                if element.tag == tag and wanted.items() <= element.attributes.items()]

    def rows(self):
        """The events: what is in the cells of each, the detail without the line that unfolds."""
        table, = self.named("table", id="rows")
        rows = []
        for row in next(table.all("tbody")).all("tr"):
            cells = [cell.text() for cell in row.all("td")]
            summary, = row.all("summary")
            rows.append([row.attributes["id"], *cells[:3], summary.text()])
        return rows

    def outages(self):
        """The bands that are not in network: what is in their cells."""
        table, = self.named("table", class_="list")
        return [[cell.text().strip() for cell in row.children if isinstance(cell, Element)]
                for row in next(table.all("tbody")).all("tr")]

    def bands(self):
        """The bands that are drawn: state, place and width in percent, link and words."""
        bands = []
        for link in self.elements:
            shapes = list(link.all("rect")) if link.tag == "a" else []
            for shape in shapes:
                bands.append((shape.attributes["class"], float(shape.attributes["x"].rstrip("%")),
                              float(shape.attributes["width"].rstrip("%")), link.attributes["href"],
                              link.attributes["aria-label"]))
        return bands


class Program:
    def __init__(self, program, emulator, folder):
        self.command = [*filter(None, emulator.split(";")), os.path.abspath(program)]
        self.folder = Path(folder)

    def write(self, name, content):
        path = self.folder / os.fsdecode(name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        os.utime(path, (1795608000, 1795608000))  # 2026-11-25 12:00

    def run(self, *arguments, **options):
        return subprocess.run([*self.command, *arguments], cwd=self.folder, capture_output=True, check=False,
                              env={**os.environ, "LC_ALL": "C", "TZ": "UTC"}, **options)

    def page(self, *arguments, **options):
        result = self.run("-o", "html", *arguments, **options)
        assert result.returncode in (0, 1), result.stderr
        return result.stdout

    def events(self, *arguments):
        lines = self.run("-o", "json", *arguments).stdout.decode().splitlines()
        return [json.loads(line) for line in lines]
