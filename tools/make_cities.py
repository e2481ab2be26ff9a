#!/usr/bin/env python3
"""Turns the tables of radar sites and stations into the city databases.

  tools/make_cities.py radars.csv stations.csv data

Writes data/rad.cty and data/sao.cty: ten fields a line, name, state, country, identifier, priority,
latitude, longitude, elevation in metres, WMO number, extra.  The order of the tables is kept, since a
lookup takes the first record that fits.
"""
import csv
import sys

PRIORITY = {"WSR-88D": 1, "TDWR": 4}  # a national plot shows every WSR-88D
OTHER_PRIORITY = 6
LONG_ID_PRIORITY = 9  # the same sites once more, under their four-letter identifiers


def line(name, state, country, ident, priority, lat, lon, elev, wmo):
    fields = [name, state or "--", country or "--", ident, str(priority), f"{float(lat):.4f}",
              f"{float(lon):.4f}", elev, wmo, "0"]
    assert len(name) <= 20 and len(ident) <= 9 and all(f and " " not in f for f in fields), fields
    assert name[0].isalpha(), name  # a digit would be taken for the field before
    return " ".join(fields) + "\n"


def radar_lines(path):
    rows = list(csv.DictReader(open(path, encoding="ascii")))
    for column, special in (("id3", None), ("id4", LONG_ID_PRIORITY)):
        for r in rows:
            priority = special or PRIORITY.get(r["type"], OTHER_PRIORITY)
            yield line(r["name"], r["state"], r["country"], r[column], priority, r["lat"], r["lon"],
                       r["elev_m"], "99999")


def station_lines(path):
    for r in csv.DictReader(open(path, encoding="ascii")):
        yield line(r["name"], r["state"], r["country"], r["id"], r["priority"], r["lat"], r["lon"],
                   r["elev_m"], r["wmo"])


def main():
    radars, stations, folder = sys.argv[1:4]
    for name, lines in (("rad.cty", radar_lines(radars)), ("sao.cty", station_lines(stations))):
        with open(f"{folder}/{name}", "w", encoding="ascii") as out:
            out.writelines(lines)


main()
