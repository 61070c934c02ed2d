#!/usr/bin/env python3
"""Writes realm_identity_vectors.txt: the hash, the generator and the shields of many paths.

A second, plain implementation of what core/realm does, kept apart from it on purpose. Run it with
no arguments after a change of the list of paths, never to make a failing test pass: the table is
what every shield and the map hang on.

Lines of the table, the fields apart by one blank, integers as hexadecimal digits:
    identity BYTES HASH SHAPE DIVISION PRIMARY SECONDARY CHARGE SPECIES
        BYTES is the path's bytes in hexadecimal, "-" for the empty path
    next SEED VALUE...
    bounded SEED N VALUE... NEXT
    unit SEED LOWER UPPER VALUE... NEXT
        LOWER, UPPER and VALUE are hexadecimal floats; NEXT is what the generator yields after it
"""

import pathlib

MASK = 2**64 - 1

SHAPES = "round kite banner square".split()
DIVISIONS = "plain halved striped chevron".split()
CHARGES = "disk lantern tree mountain star tusk key acorn".split()
TINCTURES = "fern fernDark blue yellow red ink terracotta teal plum olive slate sand".split()
SPECIES = "gruk dragon fairy human wizard".split()

WORDS = [
    "Archive", "Documents", "Music", "node_modules", "photos 2024", "a", "B", "x.tar.gz",
    "Übergröße", "naïve", "nai\u0308ve", "файлы", "Ἑλλάς", "מסמכים", "مستندات", "文档", "書類",
    "한국어", "हिन्दी", "ไทย", "🐗", "👩‍👩‍👧", "\u0001", "file10", "file2", "..", " ", "%2F",
]


def stable_hash(data):
    value = 0xCBF29CE484222325
    for byte in data:
        value = ((value ^ byte) * 0x100000001B3) & MASK
    return value


def mix(z):
    z = ((z ^ (z >> 30)) * 0xBF58476D1CE4E5B9) & MASK
    z = ((z ^ (z >> 27)) * 0x94D049BB133111EB) & MASK
    return z ^ (z >> 31)


def unshift(z, count):
    """The number whose exclusive-or with itself shifted right by `count` is `z`."""
    result = z
    while z:
        z >>= count
        result ^= z
    return result


def seed_yielding(value):
    """The seed after which the first value is `value`."""
    z = unshift(value, 31)
    z = z * pow(0x94D049BB133111EB, -1, 2**64) & MASK
    z = unshift(z, 27)
    z = z * pow(0xBF58476D1CE4E5B9, -1, 2**64) & MASK
    z = unshift(z, 30)
    seed = (z - 0x9E3779B97F4A7C15) & MASK
    assert mix((seed + 0x9E3779B97F4A7C15) & MASK) == value
    return seed


class Generator:
    def __init__(self, seed):
        self.state = seed

    def next(self):
        self.state = (self.state + 0x9E3779B97F4A7C15) & MASK
        return mix(self.state)

    def bounded(self, n):
        product = self.next() * n
        if product & MASK < n:
            threshold = (2**64 - n) % n
            while product & MASK < threshold:
                product = self.next() * n
        return product >> 64

    def unit(self, lower, upper):
        drawn = self.bounded(2**53 + 1)
        if drawn == 2**53:
            return upper
        return float(drawn) * 2.0**-53 * (upper - lower) + lower


def identity(data):
    generator = Generator(stable_hash(data))
    shape = SHAPES[generator.bounded(4)]
    division = DIVISIONS[generator.bounded(4)]
    charge = CHARGES[generator.bounded(8)]
    primary = TINCTURES[generator.bounded(12)]
    secondary = [name for name in TINCTURES if name != primary][generator.bounded(11)]
    species = SPECIES[generator.bounded(5)]
    return [shape, division, primary, secondary, charge, species]


def paths():
    yield from [b"", b"/", b"/Volumes/Archive", b"/Data", b"/Data/", b"/\xff\xfe", b"/a\x80b"]
    for word in WORDS:
        yield word.encode()
        yield ("/home/gruk/" + word).encode()
    yield from (("/Volumes/" + "/".join([word] * 40)).encode() for word in WORDS)
    yield from (b"/" + b"long" * length for length in (100, 1000, 4096))
    draw = Generator(20261120)
    for _ in range(1100):
        depth = 1 + draw.bounded(6)
        parts = [WORDS[draw.bounded(len(WORDS))] + str(draw.bounded(100)) for _ in range(depth)]
        yield ("/" + "/".join(parts)).encode()


def lines():
    seen = set()
    for path in paths():
        if path not in seen:
            seen.add(path)
            fields = [path.hex() or "-", f"{stable_hash(path):x}", *identity(path)]
            yield "identity " + " ".join(fields)

    seeds = [0, 1, 2**63, MASK, stable_hash(b"/"), *range(1000, 1040)]
    for seed in seeds:
        generator = Generator(seed)
        yield f"next {seed:x} " + " ".join(f"{generator.next():x}" for _ in range(5))

    bounds = [1, 2, 3, 4, 5, 11, 12, 48, 1000, 2**32, 2**53 + 1, MASK]
    # These reject a quarter, a half and three eighths of all draws.
    bounds += [3 * 2**62, 2**63 + 1, 2**63 + 2**61]
    for seed in seeds:
        for bound in bounds:
            generator = Generator(seed)
            drawn = [f"{generator.bounded(bound):x}" for _ in range(4)]
            yield f"bounded {seed:x} {bound:x} {' '.join(drawn)} {generator.next():x}"

    ranges = [(0.0, 1.0), (-1.0, 1.0), (0.1, 0.3), (-0.35, 0.35), (1e-300, 1e300), (5.0, 5.0)]
    # Of these two seeds, the first draws the upper bound itself and the other just not.
    seeds += [seed_yielding(MASK), seed_yielding(MASK - 4096)]
    for seed in seeds:
        for lower, upper in ranges:
            generator = Generator(seed)
            drawn = [generator.unit(lower, upper).hex() for _ in range(3)]
            yield (f"unit {seed:x} {lower.hex()} {upper.hex()} {' '.join(drawn)} "
                   f"{generator.next():x}")


if __name__ == "__main__":
    target = pathlib.Path(__file__).with_suffix(".txt")
    target.write_text("\n".join(lines()) + "\n", encoding="ascii")
