"""Finds links of installed pages that lead nowhere: a file that is not there, or a missing heading."""

import re

LINK = re.compile(r"\]\(([^)#:]*)(?:#([^)]*))?\)")  # one with a scheme leads out of the folder


def anchors(page):
    headings = re.findall(r"^#+ (.*)$", page, re.MULTILINE)
    return {re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in headings}


def broken_links(folder):
    """The links that lead nowhere, and how many were followed, in the pages below `folder`."""
    broken, followed = [], 0
    for page in sorted(folder.rglob("*.md")):
        for name, anchor in LINK.findall(page.read_text()):
            target = page.parent / name if name else page
            followed += 1
            if not target.is_file() or anchor and anchor not in anchors(target.read_text()):
                broken.append(f"{page.relative_to(folder)}: {name}#{anchor} leads nowhere")
    return broken, followed
