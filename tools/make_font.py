#!/usr/bin/env python3
"""Turns drawn glyphs into the program's stroke fonts.

  tools/make_font.py tools/font/glyphs.txt data

Writes data/modern.fnt and data/slant.fnt.  A glyph line is "code name width stroke ; stroke ...", a
stroke a list of x,y points on the font grid: baseline 35, capitals to 140, 105 units a character height.

Round strokes get points between the drawn ones, on a smooth curve, so that letters stay round when they
are large.  A stroke holds at most 29 points: longer ones are drawn in pieces that share a point.
"""
import math
import sys

BASE = 35
MOST_POINTS = 29
SMOOTH_TURN = math.radians(42)  # a sharper turn is a corner
MOVE = 128
MOST_X, MOST_MOVE = 127, 125
GLYPH_END, TABLE_END = 255, 254


def read_glyphs(path):
    for line in open(path, encoding="ascii"):
        words = line.split(None, 3)
        if not words or words[0].startswith("#"):
            continue
        strokes = [[tuple(map(float, p.split(","))) for p in s.split()] for s in words[3].split(";")]
        yield int(words[0]), words[1], int(words[2]), strokes


def turn(a, b, c):
    first = math.atan2(b[1] - a[1], b[0] - a[0])
    second = math.atan2(c[1] - b[1], c[0] - b[0])
    return abs(math.remainder(second - first, 2 * math.pi))


def rounded(stroke):
    """Adds the middle of each piece that lies between two gentle turns."""
    closed = stroke[0] == stroke[-1] and len(stroke) > 4
    n = len(stroke)
    if n < 4:
        return stroke

    def at(i):
        if closed:
            return stroke[i % (n - 1)]
        return stroke[i] if 0 <= i < n else None

    out = [stroke[0]]
    for i in range(n - 1):
        a, b, c, d = at(i - 1), at(i), at(i + 1), at(i + 2)
        gentle = [0.05 < turn(*t) < SMOOTH_TURN if None not in t else None for t in ((a, b, c), (b, c, d))]
        if gentle == [True, True] and math.dist(b, c) > 9:
            mid = tuple((9 * (b[k] + c[k]) - a[k] - d[k]) / 16 for k in (0, 1))
            out.append(mid)
        out.append(c)
    return out


def pieces(stroke):
    while len(stroke) > MOST_POINTS:
        half = min(MOST_POINTS, (len(stroke) + 1) // 2 + 1)
        yield stroke[:half]
        stroke = stroke[half - 1:]
    yield stroke


def encode(width, strokes):
    values = []
    widest = 0
    for stroke in strokes:
        points = [(round(x), round(y)) for x, y in rounded(stroke)]
        points = [p for i, p in enumerate(points) if i == 0 or p != points[i - 1]]
        for piece in pieces(points):
            assert 2 <= len(piece) <= MOST_POINTS
            for i, (x, y) in enumerate(piece):
                assert 0 <= x <= (MOST_MOVE if i == 0 else MOST_X) and 0 <= y <= 160, (x, y)
                values += [x + MOVE if i == 0 else x, y]
                widest = max(widest, x)
    if width > widest:
        values += [width + MOVE, BASE]  # a last move only widens the advance
    return values


def slanted(strokes):
    return [[(x + (y - BASE) / 6 + 6, y) for x, y in s] for s in strokes]


def write_font(path, glyphs):
    offsets = [-1] * 256
    at = 0
    lines = []
    for code, name, values in glyphs:
        offsets[code] = at
        at += len(values) + 1
        lines.append(f"{name} {' '.join(map(str, values))} {GLYPH_END}")
    lines.append(f"end {TABLE_END}")
    assert at + 1 <= 15008
    with open(path, "w", encoding="ascii") as out:
        out.write("0\n" + "\n".join(lines) + "\n")
        for row in range(0, 256, 16):
            out.write(" ".join(map(str, offsets[row:row + 16])) + "\n")
    print(f"{path}: {len(glyphs)} glyphs, {at + 1} values")


def main():
    source, folder = sys.argv[1:3]
    glyphs = list(read_glyphs(source))
    write_font(f"{folder}/modern.fnt", [(c, n, encode(w, s)) for c, n, w, s in glyphs])
    write_font(f"{folder}/slant.fnt", [(c, n, encode(w + 6, slanted(s))) for c, n, w, s in glyphs])


main()
