"""Draws the beginning of a page of events-query -o html, as a browser shows it."""

import base64
import hashlib
import subprocess
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
WIDTH, HEIGHT = 1200, 800


def page_of(build):
    return subprocess.run([build / "events-query", "--year=2026", "-o", "html", "examples/events_report"], cwd=ROOT,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout


def source(build):
    """A comment that is in the picture: it has to be drawn anew if what it shows of the page changes."""
    seen = page_of(build).partition(b'<h2 id="findings">')[0]
    return f"<!-- of a page with the hash {hashlib.sha256(seen).hexdigest()} -->\n"


def draw(build):
    """An SVG with a picture, which takes chromium."""
    with tempfile.TemporaryDirectory() as folder:
        (Path(folder) / "page.html").write_bytes(page_of(build))
        subprocess.run(["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                        f"--user-data-dir={folder}/profile", f"--window-size={WIDTH},{HEIGHT}",
                        f"--screenshot={folder}/page.png", f"file://{folder}/page.html"],
                       stderr=subprocess.DEVNULL, check=True)
        picture = base64.b64encode((Path(folder) / "page.png").read_bytes()).decode()
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" viewBox="0 0 {WIDTH} {HEIGHT}">\n'
            f'{source(build)}<image width="{WIDTH}" height="{HEIGHT}" href="data:image/png;base64,{picture}"/>\n</svg>\n')
