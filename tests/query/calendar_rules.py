"""The rules of events-query for years and times, a second time: those at the top of
src/query/calendar.h, and what -S and -U mean."""

import re
from collections import namedtuple
from datetime import datetime, timedelta, timezone

MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
HALF_A_YEAR = 183
FIRST_WEEK = 7
LEAP_YEAR = 2000  # any
AHEAD = timedelta(hours=14)  # as far as the terminal's zone may be

# `set_to` is the new time that an event about the clock gives, else nothing.
Event = namedtuple("Event", "time set_to", defaults=[None])


def parsed(time):
    """The time in some leap year; nothing if it has another form."""
    if not re.fullmatch(r"[A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d", time):
        return None
    try:
        month = MONTHS.index(time[:3]) + 1
        return datetime(LEAP_YEAR, month, int(time[4:6]), *map(int, time[7:].split(":")))
    except ValueError:
        return None


def day_of(stamp):
    return stamp.timetuple().tm_yday


def is_leap(year):
    return year % 4 == 0 and (year % 100 != 0 or year % 400 == 0)


def in_year(stamp, year):
    """`stamp` in `year`; nothing if there is no such day."""
    try:
        return stamp.replace(year=year)
    except ValueError:
        return None


def end_of_fall(events, begin, before):
    """What the fall at `begin` is: the first event that has a set clock again, or "new year"."""
    def is_return(stamp):
        return before is not None and -1 <= day_of(stamp) - day_of(before) <= 31

    def is_set(stamp):
        return day_of(stamp) > FIRST_WEEK or is_return(stamp)

    for at, event in enumerate(events[begin + 1:], begin + 1):
        stamp = parsed(event.time)
        new = parsed(event.set_to) if event.set_to is not None else None
        if event.set_to is not None and (new is None or is_set(new)):
            return at if stamp and is_set(stamp) else at + 1
        if stamp and is_return(stamp):
            return at
        if stamp and day_of(stamp) > FIRST_WEEK:
            return "new year"
    return "new year" if before is None or before.month == 12 else len(events)


def relative_years(events):
    """The year of each event, counted from that of the first one; nothing while the clock is unset."""
    years, year, before, at = [], 0, None, 0
    checked = 0  # no fall begins before this one: what may begin here was part of another
    while at < len(events):
        stamp = parsed(events[at].time)
        if stamp is None:
            years.append(year)
            at += 1
            continue
        day, last = day_of(stamp), day_of(before) if before else None
        if at >= checked and day == 1 and last not in (1, 2, 366):
            end = end_of_fall(events, at, before)
            if end != "new year":
                years += [None] * (end - at)
                at = checked = end
                continue
            year += 1 if before else 0
            checked = next((i + 1 for i in range(at, len(events)) if parsed(events[i].time)
                            and day_of(parsed(events[i].time)) > FIRST_WEEK), len(events))
        elif last and at >= checked and last - day > HALF_A_YEAR:
            year += 1
        elif at >= checked and day == 366 and last == 1:
            year -= 1
        years.append(year)
        before, at = stamp, at + 1
    return years


def times_with_years(events, given_year, changed):
    """The `at` of each event. `changed` is when the file was changed, in seconds since 1970."""
    years = relative_years(events)
    stamps = [parsed(event.time) for event in events]
    known = [(stamp, year) for stamp, year in zip(stamps, years) if stamp and year is not None]
    if not known:
        return [""] * len(events)
    latest = datetime.fromtimestamp(changed, timezone.utc) + AHEAD
    last, last_year = known[-1]
    year = given_year
    if year is None:
        year = latest.year - ((last.month, last.day) > (latest.month, latest.day))
        leap_days = [of for stamp, of in known if (stamp.month, stamp.day) == (2, 29)]
        while leap_days and not is_leap(year - last_year + leap_days[-1]):
            year -= 1
    found = [in_year(stamp, year - last_year + of) if stamp and of is not None else None
             for stamp, of in zip(stamps, years)]
    return [time.strftime("%Y-%m-%dT%H:%M:%S") if time else "" for time in found]


def moment(at):
    return datetime.strptime(at, "%Y-%m-%dT%H:%M:%S")


UNITS = {"s": 1, "sec": 1, "m": 60, "min": 60, "h": 3600, "d": 86400, "w": 604800}


class Bound:
    """What -S or -U is given: a time, or what is left of one, and how long it is."""

    def __init__(self, text):
        duration = re.fullmatch(r"-(\d+)([a-z]+)", text)
        self.before_last = duration and timedelta(seconds=int(duration[1]) * UNITS[duration[2]])
        date, clock = re.fullmatch(r"(\d{4}-\d\d-\d\d|[A-Z]\w\w +\d+)?[T ]?([\d:]+)?", text).groups() \
            if not duration else (None, None)
        self.year = int(date[:4]) if date and date[0].isdigit() else None
        self.date = (int(date[5:7]), int(date[8:])) if self.year else \
            (MONTHS.index(date[:3]) + 1, int(date[3:])) if date else None
        fields = [int(field) for field in clock.split(":")] if clock else []
        hour, minute, second = fields + [0] * (3 - len(fields))
        self.clock = timedelta(hours=hour, minutes=minute, seconds=second)
        self.length = timedelta(seconds={0: 86400, 2: 60, 3: 1}[len(fields)] - 1)

    def in_years(self, first, last):
        days = (in_year(datetime(LEAP_YEAR, *self.date), year) for year in range(first, last + 1))
        return [day + self.clock for day in days if day]

    def nearest(self, first, last):
        def distance(begin):
            return max(begin - last, first - (begin + self.length), timedelta())
        return min(reversed(self.in_years(first.year - 8, last.year + 8)), key=distance)

    def since(self, first, last):
        if self.before_last is not None:
            return last - self.before_last
        if self.year:
            return datetime(self.year, *self.date) + self.clock
        if self.date:
            return self.nearest(first, last)
        begin = datetime(*last.timetuple()[:3]) + self.clock
        return begin if begin <= last else begin - timedelta(days=1)

    def until(self, since, first, last):
        if self.before_last is not None:
            return last - self.before_last
        if self.year:
            begin = datetime(self.year, *self.date) + self.clock
        elif self.date and since is None:
            begin = self.nearest(first, last)
        elif self.date:
            begin = next(day for day in self.in_years(since.year, since.year + 8)
                         if day + self.length >= since)
            if begin > last + timedelta(days=183):
                begin = self.nearest(first, last)
        else:
            begin = datetime(*(since or last).timetuple()[:3]) + self.clock
            if since and begin + self.length < since:
                begin += timedelta(days=1)
        return begin + self.length


def in_range(times, since, until, span=None):
    """Whether each event is between the two bounds, either of which may be missing; nothing if the
    first is after the second. `span` are the first and the last time of several logs, as `times`
    gives them for one."""
    known = span or [moment(at) for at in times if at]
    if not known:
        return [since is None] * len(times)
    begin = Bound(since).since(known[0], known[-1]) if since else None
    end = Bound(until).until(begin, known[0], known[-1]) if until else None
    if begin and end and begin > end:
        return None
    inside, last = [], None
    for at in times:
        last = moment(at) if at else last
        inside.append((last is not None or begin is None) and
                      (begin is None or last >= begin) and
                      (end is None or last is None or last <= end))
    return inside
