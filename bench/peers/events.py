"""events.py TABLES LOG [N]: the event table of LOG, of its last N events or of all, by Python's json.

This is how one would write it without the tool. TABLES is what dump_tables writes.
"""
import collections
import json
import sys


def load(path, count):
    events = collections.deque(maxlen=count)
    for name in (path + ".0", path):
        try:
            file = open(name, encoding="utf-8", errors="replace")
        except OSError:
            continue
        with file:
            for line in file:
                try:
                    event = json.loads(line[line.index("{"):])
                except ValueError:
                    continue
                if "id" in event:
                    events.append(event)
    return events


def describe(descriptions, event):
    description = descriptions.get(str(event["id"]))
    if description is None:
        return "Unknown"
    variables = event.get("vars", {})
    texts = []
    for slot in description["slots"]:
        text = variables.get(slot["key"], "")
        if "reasons" in slot:
            text = slot["reasons"].get(text, "Failed to retrieve description")
        texts.append(text)
    parts = description["text"].split("%s")
    filled = parts[0] + "".join(text + part for text, part in zip(texts, parts[1:]))
    return filled.replace("\n", "\n" + 50 * " ")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        tables = json.load(file)
    events = load(sys.argv[2], int(sys.argv[3]) if len(sys.argv) > 3 else None)
    if not events:
        print("No events to display.")
        return
    rows = [f"Last {len(events)} events from {events[0]['time']} to {events[-1]['time']}:\n\n"
            f"{'Timestamp':20}{'Event':30}Detail\n{80 * '='}\n"]
    for event in events:
        name = tables["names"].get(str(event["id"]), f"UNRECOGNIZED_EVENT_CODE_{event['id']}")
        rows.append(f"{event['time']:20}\033[1;34m{name:30}\033[0m"
                    f"{describe(tables['descriptions'], event)}\n\n")
    print("".join(rows))


main()
