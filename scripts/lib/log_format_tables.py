"""Writes the tables of events and reasons at the end of doc/log-format.md."""

import sys

MARK = "do not edit below. -->\n\n"
# No description explains them: the event shows the reason by its name.
NOT_EXPLAINED = {"OutOfNetworkReasons": ["out_of_network_reason"]}


def event_table(tables):
    """The described events and the variables of each; those that a table explains have an asterisk."""
    lines = ["| code | event | variables |", "|---|---|---|"]
    for code, description in sorted(tables["descriptions"].items(), key=lambda item: int(item[0])):
        if code not in tables["names"]:
            sys.exit(f"src/catalog/event_name_table.h lacks {code}, which has a description")
        variables = ", ".join(f"`{slot['key']}`" + r"\*" * ("table" in slot)
                              for slot in description["slots"])
        lines.append(f"| {code} | {tables['names'][code]} | {variables} |".replace("|  |", "| |"))
    return "\n".join(lines) + "\n"


def reason_table(tables):
    readers = dict(NOT_EXPLAINED)
    for description in tables["descriptions"].values():
        for slot in description["slots"]:
            if "table" in slot and slot["key"] not in readers.setdefault(slot["table"], []):
                readers[slot["table"]].append(slot["key"])
    lines = ["| variable | reason | explanation |", "|---|---|---|"]
    for reason in tables["reasons"]:
        if reason["table"] not in readers:
            sys.exit(f"{reason['table']}: no event reads this table")
        variables = ", ".join(f"`{key}`" for key in readers[reason["table"]])
        lines.append(f"| {variables} | {reason['name']} | {reason['explanation']} |")
    return "\n".join(lines) + "\n"


def renewed(page, tables):
    """The text of `page` with the tables as they are now."""
    head, mark, _ = page.partition(MARK)
    if not mark:
        sys.exit(f"doc/log-format.md: the line that ends in {MARK.strip()!r} is missing")
    return head + mark + event_table(tables) + "\n## Reasons\n\n" + reason_table(tables)
