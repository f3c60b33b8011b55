"""events.py CATALOG NAME WORD LOG: as events.jq, by Python's json module."""
import json
import re
import sys

catalog, name, word, log = sys.argv[1:]
with open(catalog, encoding="utf-8") as lines:
    known = {event["code"]: event for event in map(json.loads, lines)}
with open(log, encoding="utf-8") as lines:
    for number, line in enumerate(lines, 1):
        logged = json.loads(line)
        event, time = known[logged["id"]], logged["time"]
        if name not in ("", event["event"]):
            continue
        detail, reason, meaning = event["template"], "", ""
        for key in event["variables"]:
            value = logged["vars"][key]
            detail = detail.replace("%s", event["explained"].get(key, {}).get(value, value), 1)
            if key in event["reasons"] or key == "forced_logout_reason":
                reason, meaning = value, event["reasons"].get(key, {}).get(value, "")
        if re.search(word, f"{event['event']}\n{detail}\n{meaning}", re.IGNORECASE):
            print(json.dumps({
                "at": f"2026-11-{time[4:6]}T{time[7:]}", "time": time, "code": logged["id"],
                "event": event["event"], "detail": detail, "vars": logged["vars"], "reason": reason,
                "meaning": meaning, "file": log, "line": number, "log": log}, ensure_ascii=False))
