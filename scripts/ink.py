"""Shapes inked by hand: flat areas, and outlines whose width is a little uneven.

Everything is a list of points. A shape is given by a few points that a smooth line goes through;
where the line is to have a corner, the point stands twice. What comes out is SVG Tiny, with filled
paths only.
"""

import math

INK = "#0B0B0A"
WIDTH = 7.0


def turned(points, angle=0.0, scale=1.0, at=(0.0, 0.0), flip=False):
    """The points, mirrored, scaled and turned (degrees) about the origin, then moved to `at`."""
    c, s = math.cos(math.radians(angle)) * scale, math.sin(math.radians(angle)) * scale
    sign = -1 if flip else 1
    return [(at[0] + sign * x * c - y * s, at[1] + sign * x * s + y * c) for x, y in points]


def ellipse(cx, cy, rx, ry=None, angle=0.0, wobble=0.0, count=14):
    ry = rx if ry is None else ry
    points = []
    for i in range(count):
        a = 2 * math.pi * i / count
        r = 1 + wobble * math.sin(2 * a + 0.7) + wobble * 0.6 * math.sin(3 * a + 2)
        points.append((rx * r * math.cos(a), ry * r * math.sin(a)))
    return turned(points, angle, at=(cx, cy))


def limb(points, widths):
    """The outline of a soft tube along a line, `widths` wide at its points."""
    spine = sample(points, closed=False, step=4)
    count = len(spine)
    left, right = [], []
    for i, (x, y) in enumerate(spine):
        nx, ny = normal(spine, i, closed=False)
        w = between(widths, i / (count - 1)) / 2
        left.append((x + nx * w, y + ny * w))
        right.append((x - nx * w, y - ny * w))
    step = max(1, count // 7)
    ends = []
    for i, direction in ((count - 1, 1), (0, -1)):
        x, y = spine[i]
        nx, ny = normal(spine, i, closed=False)
        w = between(widths, i / (count - 1)) / 2
        w *= direction
        ends.append([(x + w * (nx * math.cos(a) + ny * math.sin(a)),
                      y + w * (ny * math.cos(a) - nx * math.sin(a)))
                     for a in (math.pi * k / 4 for k in (1, 2, 3))])
    return (left[:-1:step] + [left[-1]] + ends[0]
            + [right[-1]] + right[-2:0:-step] + [right[0]] + ends[1])


def between(values, t):
    if len(values) == 1:
        return values[0]
    place = t * (len(values) - 1)
    i = min(int(place), len(values) - 2)
    part = place - i
    part = part * part * (3 - 2 * part)
    return values[i] * (1 - part) + values[i + 1] * part


def runs(points, closed):
    """The smooth lines between corners, which are the points that stand twice in a row."""
    unique, corners = [], []
    for point in points:
        if unique and math.dist(unique[-1], point) < 1e-6:
            corners.append(len(unique) - 1)
        else:
            unique.append(point)
    if not corners:
        return [(unique, closed)]
    if closed:
        first = corners[0]
        unique = unique[first:] + unique[:first] + [unique[first]]
        corners = [c - first for c in corners] + [len(unique) - 1]
    else:
        corners = [0, *corners, len(unique) - 1]
    return [(unique[a:b + 1], False) for a, b in zip(corners, corners[1:]) if b > a]


def controls(points, closed):
    """The cubic segments of the smooth line through the points."""
    n = len(points)
    at = (lambda i: points[i % n]) if closed else (lambda i: points[min(max(i, 0), n - 1)])
    segments = []
    for i in range(n if closed else n - 1):
        p0, p1, p2, p3 = at(i - 1), at(i), at(i + 1), at(i + 2)
        segments.append((p1,
                         (p1[0] + (p2[0] - p0[0]) / 6, p1[1] + (p2[1] - p0[1]) / 6),
                         (p2[0] - (p3[0] - p1[0]) / 6, p2[1] - (p3[1] - p1[1]) / 6),
                         p2))
    return segments


def sample(points, closed, step):
    """Points on the smooth line, about `step` apart."""
    out = []
    for a, b, c, d in controls(points, closed):
        count = max(2, round(math.dist(a, d) / step))
        for i in range(count):
            t = i / count
            u = 1 - t
            out.append(tuple(u * u * u * a[k] + 3 * u * u * t * b[k] + 3 * u * t * t * c[k]
                             + t * t * t * d[k] for k in (0, 1)))
    if not closed:
        out.append(points[-1])
    return out


def normal(points, i, closed):
    n = len(points)
    before = points[(i - 1) % n] if closed else points[max(i - 1, 0)]
    after = points[(i + 1) % n] if closed else points[min(i + 1, n - 1)]
    dx, dy = after[0] - before[0], after[1] - before[1]
    length = math.hypot(dx, dy) or 1
    return -dy / length, dx / length


def number(value):
    text = f"{value:.1f}"
    text = text[:-2] if text.endswith(".0") else text
    return "0" if text == "-0" else text


class Path:
    """Path data in steps from where the pen stands, rounded so that they do not drift."""

    def __init__(self, start):
        self.x, self.y = round(start[0], 1), round(start[1], 1)
        self.data = f"M{number(self.x)} {number(self.y)}"

    def curve(self, letter, *points):
        """A curve by its controls and its end."""
        steps = " ".join(f"{number(x - self.x)} {number(y - self.y)}" for x, y in points)
        self.data += letter + steps.replace(" -", "-")
        last = points[-1]
        self.x = round(self.x + round(last[0] - self.x, 1), 1)
        self.y = round(self.y + round(last[1] - self.y, 1), 1)


def smooth(points):
    """Path data of a shape, with corners where it has them."""
    path = None
    for part, is_ring in runs(points, True):
        segments = controls(part, is_ring)
        path = path or Path(segments[0][0])
        for _, b, c, d in segments:
            path.curve("c", b, c, d)
    return path.data + "z"


def ring(points):
    """Path data of a ring through the middles between points, as soft as a pen."""
    def middle(a, b):
        return (a[0] + b[0]) / 2, (a[1] + b[1]) / 2

    path = Path(middle(points[-1], points[0]))
    for i, point in enumerate(points):
        path.curve("q", point, middle(point, points[(i + 1) % len(points)]))
    return path.data + "z"


class Sheet:
    """What has been drawn, each piece over those before."""

    def __init__(self):
        self.pieces = []
        self.strokes = 0

    def area(self, points, colour, opacity=1.0, steady=False):
        self.raw(smooth(points), colour, opacity, steady)

    def raw(self, data, colour, opacity=1.0, steady=False):
        extra = "" if opacity == 1 else f' fill-opacity="{opacity:g}"'
        extra += ' class="steady"' if steady else ""
        self.pieces.append(f'<path fill="{colour}"{extra} d="{data}"/>')

    def line(self, points, width=WIDTH, closed=False, colour=INK, taper=0.55, steady=False):
        """A line of the pen. Open ones get thinner towards both ends, to `taper` of the width."""
        data = ""
        for part, is_ring in runs(points, closed):
            self.strokes += 1
            data += self._pen(part, is_ring, width, taper)
        self.raw(data, colour, steady=steady)

    def _pen(self, part, is_ring, width, taper):
        rough = sample(part, is_ring, 3)
        length = sum(math.dist(a, b) for a, b in zip(rough, rough[1:]))
        spine = sample(part, is_ring, min(12.0, max(2.0, length / 16)))
        n = len(spine)
        left, right = [], []
        for i, (x, y) in enumerate(spine):
            t = i / n if is_ring else i / (n - 1)
            phase = self.strokes * 1.9
            beats = max(1, round(length / 160))
            w = width * (1 + 0.14 * math.sin(2 * math.pi * beats * t + phase)
                         + 0.07 * math.sin(2 * math.pi * (2 * beats + 1) * t + 2 * phase))
            if not is_ring:
                w *= taper + (1 - taper) * min(1.0, math.sin(math.pi * t) * 1.7)
            nx, ny = normal(spine, i, is_ring)
            left.append((x + nx * w / 2, y + ny * w / 2))
            right.append((x - nx * w / 2, y - ny * w / 2))
        if is_ring:
            return ring(left) + ring(right[::-1])
        return ring(self._cap(right[0], left[0]) + left + self._cap(left[-1], right[-1])
                    + right[::-1])

    @staticmethod
    def _cap(a, b):
        """A round end from `a` to `b`."""
        cx, cy = (a[0] + b[0]) / 2, (a[1] + b[1]) / 2
        rx, ry = a[0] - cx, a[1] - cy
        return [(cx + rx * math.cos(k) + ry * math.sin(k), cy + ry * math.cos(k) - rx * math.sin(k))
                for k in (0.0, math.pi / 3, 2 * math.pi / 3, math.pi)]

    def shape(self, points, colour, width=WIDTH, opacity=1.0, steady=False):
        """An area with its outline."""
        self.area(points, colour, opacity, steady)
        self.line(points, width, closed=True, taper=1, steady=steady)

    def shade(self, points, start, end, depth, colour, opacity=1.0):
        """A crescent inside the edge of a shape, over its ring from `start` to `end` in turns."""
        spine = sample(points, True, 4)
        n = len(spine)
        area = sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(spine, spine[1:] + spine[:1]))
        inward = 1 if area > 0 else -1
        count = 14
        outer, inner = [], []
        for i in range(count + 1):
            t = i / count
            k = round((start + (end - start) * t) * n) % n
            nx, ny = normal(spine, k, True)
            d = depth * math.sin(math.pi * t) ** 0.8
            outer.append(spine[k])
            inner.append((spine[k][0] + inward * nx * d, spine[k][1] + inward * ny * d))
        self.area([outer[0]] + outer + [outer[-1]] + inner[-2:0:-1], colour, opacity)

    def svg(self, box):
        size = box.split()
        head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{size[2]}" height="{size[3]}" '
                f'viewBox="{box}">\n')
        return head + "\n".join("  " + piece for piece in self.pieces) + "\n</svg>\n"
