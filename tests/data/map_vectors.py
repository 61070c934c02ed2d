#!/usr/bin/env python3
"""Writes map_vectors.txt: where seeds stand, whose each cell is, wobbled and smoothed borders.

A second, plain implementation of what core/realm does, written from the definition alone and kept
apart from it on purpose. Run it with no arguments after a change of the sets below, never to make a
failing test pass: every realm's place on the map hangs on the table.

Lines of the table, the fields apart by one blank, doubles as hexadecimal floats:
    seed SET ID WEIGHT X Y
        one for each seed of the set, in their order; ID is its bytes in hexadecimal, "-" for none;
        X and Y are where it stands
    cells SET RESOLUTION RUN...
        all cells row by row, each run "OWNER" or "OWNER*LENGTH"; OWNER is the place in the set of
        the first seed with the owner's id
    fused ID ID WEIGHT COLUMN ROW
        two seeds, the first of weight 1, that are equally far from that cell of a map of 48 by 48,
        but not when a multiplication and an addition are fused into one rounding
    wobble X Y MOVED_X MOVED_Y
    smooth ITERATIONS COUNT X Y... SMOOTHED_X SMOOTHED_Y...
        COUNT points, then the points that they become
"""

import fractions
import math
import pathlib

from realm_identity_vectors import MASK, WORDS, Generator, stable_hash

INFINITY = float("inf")
NAN = float("nan")
LARGEST = float.fromhex("0x1.fffffffffffffp+1023")


def positions(ids):
    ranked = sorted(ids)
    side = math.ceil(math.sqrt(float(len(ranked))))
    placed = {}
    for rank, name in enumerate(ranked):
        generator = Generator(stable_hash(name))
        jitter_x = generator.unit(0.15, 0.85)
        jitter_y = generator.unit(0.15, 0.85)
        placed[name] = (
            (jitter_x + float(rank % side)) / float(side),
            (jitter_y + float(rank // side)) / float(side),
        )
    return placed


def partition(seeds, resolution):
    placed = positions([name for name, _ in seeds])
    records = []
    for name, weight in seeds:
        records.append((name, *placed[name], 0.001 if weight <= 0.001 else weight))
    grid = [[b""] * resolution for _ in range(resolution)]
    for gy in range(resolution):
        for gx in range(resolution):
            px = (gx + 0.5) / resolution
            py = (gy + 0.5) / resolution
            owner, best = records[0][0], LARGEST
            for name, x, y, weight in records:
                distance = math.sqrt((px - x) * (px - x) + (py - y) * (py - y)) / weight
                if distance < best:
                    owner, best = name, distance
            grid[gx][gy] = owner
    for name, x, y, _ in sorted(records, key=lambda record: record[0]):
        gx = min(max(int(x * resolution), 0), resolution - 1)
        gy = min(max(int(y * resolution), 0), resolution - 1)
        grid[gx][gy] = name
    return [grid[gx][gy] for gy in range(resolution) for gx in range(resolution)]


def wobbled(x, y):
    def whole(value):
        magnitude = math.floor(fractions.Fraction(abs(100.0 * value)) + fractions.Fraction(1, 2))
        return magnitude if value >= 0 else -magnitude

    generator = Generator((whole(x) * 1000003 + whole(y)) & MASK)
    dx = generator.unit(-0.05, 0.05)
    dy = generator.unit(-0.05, 0.05)
    return x + dx, y + dy


def smoothed(points, iterations):
    if iterations < 1 or len(points) < 3:
        return points
    for _ in range(iterations):
        cut = []
        for i, (ax, ay) in enumerate(points):
            bx, by = points[(i + 1) % len(points)]
            cut.append((0.75 * ax + 0.25 * bx, 0.75 * ay + 0.25 * by))
            cut.append((0.25 * ax + 0.75 * bx, 0.25 * ay + 0.75 * by))
        points = cut
    return points


def runs(cells, names):
    texts = []
    start = 0
    for end in range(1, len(cells) + 1):
        if end == len(cells) or cells[end] != cells[start]:
            length = end - start
            owner = str(names.index(cells[start]))
            texts.append(owner if length == 1 else f"{owner}*{length}")
            start = end
    return " ".join(texts)


def shuffled(draw, items):
    items = list(items)
    for i in range(len(items) - 1, 0, -1):
        j = draw.bounded(i + 1)
        items[i], items[j] = items[j], items[i]
    return items


def ids(draw, count):
    """Distinct ids, in no order, every fourth with a word of some script."""
    plain = [f"/r{draw.bounded(1 << 20):x}".encode() for _ in range(2 * count)]
    worded = [f"/{WORDS[draw.bounded(len(WORDS))]}{i}".encode() for i in range(count // 4)]
    return shuffled(draw, list(dict.fromkeys(worded + plain))[:count])


def weight_of_size(draw):
    """What a realm of a random size between a byte and 16 TB pulls with."""
    size = draw.next() >> (20 + draw.bounded(44))
    return math.sqrt(float(size) + 2.0)


def odd_weight(draw):
    odd = [0.0, -0.0, -1.0, 0.001, 0.0010000000000000002, 1e-300, 5e-324, 1e300, LARGEST,
           INFINITY, -INFINITY, NAN, 1.0, 1.0, 2.0, 1000.0]
    return odd[draw.bounded(len(odd))]


def seed_sets():
    draw = Generator(20261121)
    for count in (1, 2, 3, 4, 5, 8, 9, 10, 16, 17, 25, 26, 48, 100, 120):
        yield [(name, weight_of_size(draw)) for name in ids(draw, count)]
    # Of one weight, and of a few: borders that are straight lines, and many near ties.
    for count in (2, 3, 4, 6, 12, 40):
        yield [(name, 1.0) for name in ids(draw, count)]
        yield [(name, float(1 + draw.bounded(3))) for name in ids(draw, count)]
    for count in (1, 2, 3, 5, 7, 11, 20, 30):
        yield [(name, odd_weight(draw)) for name in ids(draw, count)]
    # The two halves of one name in two Unicode forms, bytes that are no text, no bytes at all.
    strange = [b"", b"/", b"/\xff\xfe", b"/\xc3\xa9", b"/e\xcc\x81", "/🐗".encode(), b"/\x01"]
    for _ in range(4):
        yield [(name, weight_of_size(draw)) for name in shuffled(draw, strange)]
    # Ids that stand more than once, with different weights.
    for count in (2, 5, 9, 15):
        few = ids(draw, (count + 1) // 2)
        yield [(few[draw.bounded(len(few))], weight_of_size(draw)) for _ in range(count)]
    # Nobody but the first, and who is before whom at no distance.
    names = ids(draw, 4)
    for weights in (
        [NAN, NAN, NAN, NAN],
        [NAN, 1.0, 1.0, 1.0],
        [1.0, NAN, 5.0, NAN],
        [1.0, INFINITY, 2.0, INFINITY],
        [NAN, INFINITY, INFINITY, 1.0],
        [INFINITY, INFINITY, INFINITY, INFINITY],
        [0.0, -5.0, 0.001, -INFINITY],
        [1e300, 1e301, LARGEST, 1e308],
        [5e-324, 0.0011, 0.001, 1e-9],
        [1.0, 1e6, 1.0, 1e6],
    ):
        yield list(zip(names, weights))


def set_lines():
    sets = list(seed_sets())
    assert len(sets) >= 50
    for number, seeds in enumerate(sets):
        names = [name for name, _ in seeds]
        placed = positions(names)
        for name, weight in seeds:
            x, y = placed[name]
            yield f"seed {number} {name.hex() or '-'} {weight.hex()} {x.hex()} {y.hex()}"
        resolutions = [48] if len(seeds) > 20 else [48, 1, 2, 7]
        for resolution in resolutions:
            yield f"cells {number} {resolution} {runs(partition(seeds, resolution), names)}"


def fused(a, b, c):
    """a * b + c in one rounding."""
    return float(fractions.Fraction(a) * fractions.Fraction(b) + fractions.Fraction(c))


def fused_lines():
    """Cells where one rounding less, on either side of the addition, has another owner."""
    draw = Generator(48)
    found = 0
    while found < 6:
        pair = ids(draw, 2)
        placed = positions(pair)
        gx, gy = draw.bounded(48), draw.bounded(48)
        offsets = [((gx + 0.5) / 48 - x, (gy + 0.5) / 48 - y)
                   for x, y in (placed[name] for name in pair)]
        plain = [math.sqrt(dx * dx + dy * dy) for dx, dy in offsets]
        first = [math.sqrt(fused(dx, dx, dy * dy)) for dx, dy in offsets]
        second = [math.sqrt(fused(dy, dy, dx * dx)) for dx, dy in offsets]
        weight = plain[1] / plain[0]
        ties = plain[1] / weight == plain[0]
        differ = all(away[1] / weight < away[0] for away in (first, second))
        cells = partition([(pair[0], 1.0), (pair[1], weight)], 48)
        if ties and differ and cells[gy * 48 + gx] == pair[0]:
            found += 1
            yield f"fused {pair[0].hex()} {pair[1].hex()} {weight.hex()} {gx} {gy}"


def border_lines():
    draw = Generator(1000003)
    corners = [(float(x), float(y)) for x in range(0, 49, 4) for y in range(0, 49, 4)]
    corners += [(float(draw.bounded(49)), float(draw.bounded(49))) for _ in range(150)]
    # Halves of a hundredth go away from zero, on either side of it.
    corners += [(x, y) for x in (0.005, -0.005, 1.125, -1.125, 0.375) for y in (0.125, -0.625)]
    corners += [(-0.0, 0.0), (1e12, -1e12), (math.nextafter(0.005, 0.0), -0.004), (47.995, 48.005)]
    for x, y in dict.fromkeys(corners):
        moved_x, moved_y = wobbled(x, y)
        yield f"wobble {x.hex()} {y.hex()} {moved_x.hex()} {moved_y.hex()}"

    for count, iterations in ((0, 3), (1, 3), (2, 3), (3, 1), (3, 0), (3, -1), (3, 3), (4, 3),
                              (5, 2), (7, 1), (12, 3), (40, 3)):
        points = [(draw.unit(0.0, 48.0), draw.unit(0.0, 48.0)) for _ in range(count)]
        flat = [value.hex() for point in points + smoothed(points, iterations) for value in point]
        yield " ".join([f"smooth {iterations} {count}", *flat])


if __name__ == "__main__":
    target = pathlib.Path(__file__).with_suffix(".txt")
    lines = [*set_lines(), *fused_lines(), *border_lines()]
    target.write_text("\n".join(lines) + "\n", encoding="ascii")
