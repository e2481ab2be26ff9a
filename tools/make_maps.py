#!/usr/bin/env python3
"""Makes the map files from shapefiles and county outlines.

  tools/make_maps.py SHAPES COUNTIES data

SHAPES is a folder with the 1:10m Natural Earth files (Debian's libmagics++-data has them), COUNTIES the
counties-10m.json of the npm package us-atlas.  Both are named with their terms in data/SOURCES.md.

A map file is a run of records, big-endian: number of points (16 bits), bounds (latitude south, north,
longitude west, east; floats), an unused integer, then latitude and longitude of each point as floats.  A
record without points ends the file.
"""
import json
import math
import struct
import sys

MOST_POINTS = 250  # in a record: small ones are clipped as a whole, and need no allocation
MOST_STEP = 1.0    # degrees; a longer chord bends visibly on a conic map, and looks like the seam
AMERICA = (12.0, -172.0, 84.0, -50.0)  # south, west, north, east
DETAIL = (23.5, -130.0, 50.5, -62.0)   # where one radar fills a plot

# Places outside the detailed map that single radars show: box and tolerance in degrees.
WORLD_BOXES = [((20.5, -86, 28.5, -77), 0.005), ((17.3, -68.5, 19, -64), 0.004),
               ((18.5, -161, 22.6, -154.5), 0.004), ((13, 144, 15.6, 146.3), 0.004),
               ((-15, -171.5, -13.5, -168), 0.004), ((36.5, -32, 40, -24.5), 0.006),
               ((25, 126, 28.5, 131), 0.006), ((33, 124, 40, 132), 0.015),
               ((52, -172, 69, -150), 0.015)]
AMERICA_BOXES = [(DETAIL, 0.004), ((50.5, -172, 72, -50), 0.015), (AMERICA, 0.03)]


def inside(box, lon, lat):
    return box[0] <= lat <= box[2] and box[1] <= lon <= box[3]


def by_box(boxes, elsewhere):
    """Tolerance as a function of place: the first box that holds it, else a constant."""
    def tolerance(lon, lat):
        for box, value in boxes:
            if inside(box, lon, lat):
                return value
        return elsewhere
    return tolerance


# ---- sources

def read_shapes(path):
    """Parts of each record, by the index file: records need not be contiguous."""
    data = open(path + ".shp", "rb").read()
    index = open(path + ".shx", "rb").read()
    for i in range(100, len(index), 8):
        at = struct.unpack(">i", index[i:i + 4])[0] * 2 + 8
        kind = struct.unpack("<i", data[at:at + 4])[0]
        if kind not in (3, 5):
            yield []
            continue
        n_parts, n_points = struct.unpack("<2i", data[at + 36:at + 44])
        starts = list(struct.unpack(f"<{n_parts}i", data[at + 44:at + 44 + 4 * n_parts])) + [n_points]
        base = at + 44 + 4 * n_parts
        xy = struct.unpack(f"<{2 * n_points}d", data[base:base + 16 * n_points])
        points = list(zip(xy[0::2], xy[1::2]))
        yield [points[a:b] for a, b in zip(starts, starts[1:])]


def read_fields(path):
    data = open(path + ".dbf", "rb").read()
    n, head, size = struct.unpack("<ihh", data[4:12])
    fields, at, offset = [], 32, 1
    while data[at] != 0x0d:
        name = data[at:at + 11].split(b"\0")[0].decode("latin-1").lower()
        fields.append((name, offset, data[at + 16]))
        offset += data[at + 16]
        at += 32
    for i in range(n):
        row = data[head + i * size:head + (i + 1) * size]
        yield {name: row[o:o + w].decode("latin-1").strip(" \0") for name, o, w in fields}


def area(ring):
    return sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(ring, ring[1:])) / 2


def extent(line):
    """Larger side of the bounding box, in degrees of latitude."""
    xs, ys = zip(*line)
    scale = math.cos(math.radians((min(ys) + max(ys)) / 2))
    return max((max(xs) - min(xs)) * scale, max(ys) - min(ys))


def middle(line):
    xs, ys = zip(*line)
    return (min(xs) + max(xs)) / 2, (min(ys) + max(ys)) / 2


def without_edges(ring):
    """Cuts a ring where it runs along the date line or around the pole: no coast is there."""
    pieces, piece = [], [ring[0]]
    for a, b in zip(ring, ring[1:]):
        if (abs(a[0]) > 179.999 and abs(b[0]) > 179.999) or min(a[1], b[1]) < -89.9:
            pieces.append(piece)
            piece = []
        piece.append(b)
    pieces.append(piece)
    return [p for p in pieces if len(p) > 1]


def joined(lines):
    """Joins lines that meet, two and no more, at a node."""
    key = lambda p: (round(p[0], 6), round(p[1], 6))
    ends = {}
    for i, line in enumerate(lines):
        for p in (line[0], line[-1]):
            ends.setdefault(key(p), []).append(i)
    used, out = set(), []

    def extend(line):
        while True:
            here = key(line[-1])
            others = [i for i in ends[here] if i not in used]
            if len(ends[here]) != 2 or len(others) != 1:
                return line
            used.add(others[0])
            more = lines[others[0]]
            line = line + (more[1:] if key(more[0]) == here else more[-2::-1])

    for i, line in enumerate(lines):
        if i in used:
            continue
        used.add(i)
        line = extend(list(line))
        out.append(extend(line[::-1]))
    return out


def land(shapes):
    """Coast lines, and the rings of the lakes."""
    coast, lakes = [], []
    for parts in read_shapes(f"{shapes}/ne_10m_land"):
        for ring in parts:
            if len(ring) < 4:
                continue
            if area(ring) > 0:  # against the clock: water in the land
                lakes.append(ring)
            else:
                coast += without_edges(ring)
    return coast, lakes


def borders(shapes):
    path = f"{shapes}/ne_10m_admin_0_boundary_lines_land"
    skipped = ("Overlay limit", "Lease limit", "ForgetMagics", "International boundary (Magics)")
    parts = []
    for fields, shape in zip(read_fields(path), read_shapes(path)):
        if fields["featurecla"] not in skipped:
            parts += [p for p in shape if len(p) > 1]
    return joined(parts)


def provinces(shapes):
    path = f"{shapes}/ne_10m_admin_1_states_provinces_lines"
    parts = []
    for fields, shape in zip(read_fields(path), read_shapes(path)):
        if fields["adm0_a3"] in ("CAN", "MEX") and "meta bounds" not in fields["featurecla"]:
            parts += [p for p in shape if len(p) > 1]
    return joined(parts)


def rivers(shapes):
    path = f"{shapes}/ne_10m_rivers_lake_centerlines"
    for fields, shape in zip(read_fields(path), read_shapes(path)):
        if float(fields.get("scalerank") or 99) > 8 or "Lake" in fields["featurecla"]:
            continue
        for part in shape:
            if len(part) > 1 and inside(AMERICA, *middle(part)):
                yield part


def decoded_arcs(topology):
    (sx, sy), (tx, ty) = topology["transform"]["scale"], topology["transform"]["translate"]
    for arc in topology["arcs"]:
        x = y = 0
        line = []
        for dx, dy in arc:
            x, y = x + dx, y + dy
            line.append((x * sx + tx, y * sy + ty))
        yield line


def county_lines(path):
    """Lines between counties of one state, and between states."""
    topology = json.load(open(path, encoding="utf-8"))
    users = {}

    def walk(arcs, ident):
        for a in arcs:
            if isinstance(a, list):
                walk(a, ident)
            else:
                users.setdefault(a if a >= 0 else ~a, set()).add(ident)

    for g in topology["objects"]["counties"]["geometries"]:
        walk(g.get("arcs", []), str(g["id"]))
    within, between = [], []
    for i, line in enumerate(decoded_arcs(topology)):
        ids = sorted(users.get(i, ()))
        if len(ids) == 2:
            (within if ids[0][:2] == ids[1][:2] else between).append(line)
    return trails(within), joined(between)


def trails(lines, longest=4.0):
    """Joins lines across nodes, straight on where it can, while a trail stays short."""
    key = lambda p: (round(p[0], 4), round(p[1], 4))
    ends = {}
    for i, line in enumerate(lines):
        ends.setdefault(key(line[0]), []).append((i, False))
        ends.setdefault(key(line[-1]), []).append((i, True))
    used, out = set(), []

    def bend(a, b, c):
        first, second = math.atan2(b[1] - a[1], b[0] - a[0]), math.atan2(c[1] - b[1], c[0] - b[0])
        return abs(math.remainder(second - first, 2 * math.pi))

    def extend(line):
        while True:
            choices = []
            for i, backward in ends[key(line[-1])]:
                if i in used:
                    continue
                more = lines[i][::-1] if backward else lines[i]
                if extent(line + more) <= longest:
                    choices.append((bend(line[-2], line[-1], more[1]), i, more))
            if not choices:
                return line
            _, i, more = min(choices)
            used.add(i)
            line = line + more[1:]

    for i, line in enumerate(lines):
        if i not in used:
            used.add(i)
            out.append(extend(extend(list(line))[::-1]))
    return out


# ---- shaping

def simplified(line, tolerance):
    """Douglas-Peucker with a tolerance that depends on the place."""
    keep = [False] * len(line)
    keep[0] = keep[-1] = True
    limits = [tolerance(x, y) for x, y in line]
    stack = [(0, len(line) - 1)]
    if line[0] == line[-1] and len(line) > 3:  # a ring begins and ends in one place: cut it in two
        far = max(range(len(line)), key=lambda i: math.dist(line[i], line[0]))
        keep[far] = True
        stack = [(0, far), (far, len(line) - 1)]
    while stack:
        a, b = stack.pop()
        (ax, ay), (bx, by) = line[a], line[b]
        scale = math.cos(math.radians((ay + by) / 2))
        dx, dy = (bx - ax) * scale, by - ay
        square = dx * dx + dy * dy
        worst, at = 1.0, -1
        for i in range(a + 1, b):
            px, py = (line[i][0] - ax) * scale, line[i][1] - ay
            t = 0.0 if square == 0 else min(1.0, max(0.0, (px * dx + py * dy) / square))
            ratio = math.hypot(px - t * dx, py - t * dy) / limits[i]
            if ratio > worst:
                worst, at = ratio, i
        if at >= 0:
            keep[at] = True
            stack += [(a, at), (at, b)]
    return [p for p, k in zip(line, keep) if k]


def dense(line):
    out = [line[0]]
    for (ax, ay), (bx, by) in zip(line, line[1:]):
        n = math.ceil(max(abs(bx - ax), abs(by - ay)) / MOST_STEP - 1e-9)
        for i in range(1, n):
            out.append((ax + (bx - ax) * i / n, ay + (by - ay) * i / n))
        out.append((bx, by))
    return out


def shaped(lines, tolerance, least=0.0):
    """Simplified lines without the rings that are too small to see; least in degrees, or a function of
    the place."""
    for line in lines:
        ring = line[0] == line[-1]
        small = least(*middle(line)) if callable(least) else least
        if ring and extent(line) < small:
            continue
        out = simplified(line, tolerance)
        if not (ring and len(out) < 4):
            yield dense(out)


def write_map(path, lines):
    records = points = 0
    with open(path, "wb") as out:
        for line in lines:
            for i in range(0, len(line) - 1, MOST_POINTS - 1):
                piece = line[i:i + MOST_POINTS]
                lons, lats = zip(*piece)
                out.write(struct.pack(">h4fi", len(piece), min(lats), max(lats), min(lons), max(lons), 0))
                for lon, lat in piece:
                    out.write(struct.pack(">2f", lat, lon))
                records += 1
                points += len(piece)
        out.write(struct.pack(">h4fi", 0, 0, 0, 0, 0, 0))
    # A reader tries the first record as text: its first byte must not look like a number.
    assert open(path, "rb").read(1) == b"\0"
    print(f"{path}: {records} records, {points} points")


def main():
    shapes, counties, folder = sys.argv[1:4]
    coast, lakes = land(shapes)
    lines = borders(shapes)
    province = provinces(shapes)
    within, between = county_lines(counties)
    american_lakes = [r for r in lakes if inside(AMERICA, *middle(r))]
    constant = lambda value: (lambda lon, lat: value)
    in_boxes = lambda small, usual: (
        lambda lon, lat: small if any(inside(b, lon, lat) for b, _ in WORLD_BOXES) else usual)

    world = by_box(WORLD_BOXES, 0.04)
    write_map(f"{folder}/cont.map", [*shaped(coast, world, in_boxes(0.01, 0.06)),
                                     *shaped((r for r in lakes if extent(r) > 1), world)])
    write_map(f"{folder}/country.map", shaped(lines, constant(0.02)))
    america = by_box(AMERICA_BOXES, 0.08)
    states = [*shaped(between, constant(0.002)), *shaped(province, by_box([(DETAIL, 0.004)], 0.01))]
    write_map(f"{folder}/qra.map",
              [*shaped(coast, america, lambda lon, lat: 3 * america(lon, lat)),
               *shaped(lines, by_box([(DETAIL, 0.004), (AMERICA, 0.015)], 0.05)),
               *states,
               *shaped((r for r in lakes if extent(r) > 0.3), america)])
    write_map(f"{folder}/state.map", states)
    write_map(f"{folder}/county.map", shaped(within, constant(0.001)))
    write_map(f"{folder}/lake.map", shaped((r for r in american_lakes if extent(r) <= 0.3),
                                           by_box([(DETAIL, 0.004)], 0.01), 0.03))
    write_map(f"{folder}/river.map", shaped(rivers(shapes), constant(0.008)))


main()
