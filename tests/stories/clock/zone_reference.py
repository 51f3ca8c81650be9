#!/usr/bin/env python3
"""What Python's zoneinfo makes of every time zone of the system, for ZonesTest.cpp.

    zone_reference.py FIRST_YEAR LAST_YEAR STEP

Prints, for each zone (each STEPth) with all its days and transitions of these years, lines of
numbers; moments are seconds since 1970:

    Z name
    D year month day weekday start                          a day, Monday is 0, and its first moment
    W year month day hour minute first last shown           a reading of the clock and its moments:
                                                            the same twice but where it comes twice;
                                                            and the first again, as it is shown
    T moment year month day hour minute second              what the clock shows at a moment
"""

import datetime
import pathlib
import sys
import zoneinfo

FOLDER = pathlib.Path("/usr/share/zoneinfo")
UTC = datetime.timezone.utc
# Readings of each day. Clocks are mostly set at night.
READINGS = ((0, 0), (0, 30), (2, 30), (23, 30))
# Rules know no two changes within this.
SEARCH_STEP = 12 * 3600


def names():
    """All zones and links of the data, as many as there are files for."""
    found = []
    for line in (FOLDER / "tzdata.zi").read_text().splitlines():
        words = line.split()
        if words and words[0] in ("Z", "L"):
            name = words[1] if words[0] == "Z" else words[2]
            if (FOLDER / name).is_file():
                found.append(name)
    return sorted(set(found))


def offset(zone, moment):
    return datetime.datetime.fromtimestamp(moment, zone).utcoffset()


def transitions(zone, begin, end):
    found = []
    for moment in range(begin, end, SEARCH_STEP):
        low, high = moment, moment + SEARCH_STEP
        if offset(zone, low) == offset(zone, high):
            continue
        before = offset(zone, low)
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (middle, high) if offset(zone, middle) == before else (low, middle)
        found.append(high)
    return found


def moments(zone, reading):
    """The first and the last moment of a reading of the clock, as PEP 495 has them."""
    return [int(reading.replace(tzinfo=zone, fold=fold).timestamp()) for fold in (0, 1)]


def start_of_day(zone, day, changes):
    first, _ = moments(zone, day)
    if datetime.datetime.fromtimestamp(first, zone).replace(tzinfo=None) == day:
        return first
    # Midnight is skipped: the day begins where the clock is set forward over it.
    return next((change for change in changes if datetime.datetime.fromtimestamp(
        change, zone).replace(tzinfo=None) > day >= datetime.datetime.fromtimestamp(
        change - 1, zone).replace(tzinfo=None)), None)


def print_reading(zone, reading, out):
    first, second = moments(zone, reading)
    last = second if second > first else first
    shown = datetime.datetime.fromtimestamp(first, zone)
    out.append(f"W {reading.year} {reading.month} {reading.day} {reading.hour} {reading.minute} "
               f"{first} {last} {shown.hour * 60 + shown.minute}")


def print_moment(zone, moment, out):
    shown = datetime.datetime.fromtimestamp(moment, zone)
    out.append(f"T {moment} {shown.year} {shown.month} {shown.day} {shown.hour} {shown.minute} "
               f"{shown.second}")


def print_zone(name, first_year, last_year):
    zone = zoneinfo.ZoneInfo(name)
    begin = int(datetime.datetime(first_year, 1, 1, tzinfo=UTC).timestamp()) - 86400
    end = int(datetime.datetime(last_year + 1, 1, 1, tzinfo=UTC).timestamp()) + 86400
    changes = transitions(zone, begin, end)
    out = [f"Z {name}"]
    day, last_day = datetime.datetime(first_year, 1, 1), datetime.datetime(last_year, 12, 31)
    while day <= last_day:
        start = start_of_day(zone, day, changes)
        # A zone may leave out a whole day.
        if start is not None and datetime.datetime.fromtimestamp(start, zone).date() == day.date():
            out.append(f"D {day.year} {day.month} {day.day} {day.weekday()} {start}")
            for hour, minute in READINGS:
                print_reading(zone, day.replace(hour=hour, minute=minute), out)
        day += datetime.timedelta(days=1)
    for change in changes:
        for moment in (change - 3600, change - 1, change, change + 1, change + 3600):
            print_moment(zone, moment, out)
        around = datetime.datetime.fromtimestamp(change, zone).replace(tzinfo=None, second=0)
        for minutes in range(-180, 181, 15):
            print_reading(zone, around + datetime.timedelta(minutes=minutes), out)
    print("\n".join(out))


if __name__ == "__main__":
    for zone_name in names()[::int(sys.argv[3])]:
        print_zone(zone_name, int(sys.argv[1]), int(sys.argv[2]))
