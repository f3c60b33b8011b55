"""Generates logs as the terminal writes them: about 160 bytes a line, events with all their variables.

The styles of the lines:

  compact     {"id":1,"time":...}
  spaced      {"id": 1, "time": ...}
  realistic   compact, but three in five events have no description
  not-ascii   compact, with a character in each event that is not ASCII
  reals       compact, with a number in each event that is not a whole one
"""
import itertools
import json
import random
import time

OTHER_VARIABLES = ["terminal_name", "inet_id", "beam_id", "lat", "lon", "detail"]


class LogGenerator:
    """The same lines each time. `events` are those of event_catalog.py. Of 1,000 lines, `damaged`
    are cut off or have a changed byte."""

    def __init__(self, events, style, damaged):
        self.random = random.Random(1)
        self.style, self.damaged = style, damaged
        self.described = [event for event in events if event["template"]]
        # An event without variables is a third as frequent as another.
        self.weights = list(itertools.accumulate(3 if event["variables"] else 1
                                                 for event in self.described))
        self.others = [event["code"] for event in events if not event["template"]]
        self.seconds = 0
        space = " " if style == "spaced" else ""
        self.encode = json.JSONEncoder(ensure_ascii=False, separators=(f",{space}", f":{space}")).encode

    def digits(self, count):
        return "".join(self.random.choices("123456789", k=count))

    def clock(self):
        return time.strftime("Nov %d %H:%M:%S", time.gmtime(self.seconds % (28 * 86400)))

    def value(self, key):
        """Something that the variable could hold."""
        if key.endswith("_filename"):
            return f"terminal_package_{self.digits(4)}.tar.gz"
        if key.endswith("_version"):
            return f"{self.digits(1)}.{self.digits(1)}.{self.digits(2)}"
        if key.endswith("_hash"):
            return f"{self.random.getrandbits(256):064x}"
        if key.endswith("_time"):
            return self.clock()
        if key in ("lat", "lon", "sat_long"):
            return f"{self.random.choice(['-', ''])}{self.digits(2)}.{self.digits(3)}"
        if key in ("freq", "symrate"):
            return self.digits(8)
        if key == "pol":
            return self.random.choice("LR")
        if key == "detail":
            return f"step {self.digits(1)} of 9 broken off"
        if key == "terminal_name":
            return f"terminal {self.digits(4)}"
        return self.digits(2)

    def line(self):
        self.seconds += self.random.randrange(60)
        if self.style == "realistic" and self.random.random() < 0.6:
            code = self.random.choice(self.others)
            variables = {key: self.value(key) for key in OTHER_VARIABLES}
        else:
            event = self.random.choices(self.described, cum_weights=self.weights)[0]
            code, reasons = event["code"], event["reasons"]
            variables = {key: self.random.choice(list(reasons[key])) if key in reasons
                         else self.value(key) for key in event["variables"]}
        if self.style == "not-ascii":
            variables["site"] = "Köln"
        elif self.style == "reals":
            variables["snr"] = float(f"{self.digits(1)}.{self.digits(2)}")
        event = {"id": code, "time": self.clock(), "vars": variables}
        line = self.encode(event)
        if self.random.random() * 1000 < self.damaged:
            at = self.random.randrange(len(line))
            line = line[:at] + self.random.choice(["\x7f" + line[at + 1:], "", "", ""])
        return line + "\n"
