"""The Gruk in parts: one head, one body, and the things that he carries.

Colours are those of the light woodland table; the program puts others in their place.
"""

from ink import INK, ellipse, limb, turned

FERN = "#5B9164"
FERN_DARK = "#2D5738"
BLUE = "#4D88B8"
YELLOW = "#F4D451"
RED = "#EB3B2F"
TERRACOTTA = "#C1622C"
PLUM = "#7A4A6B"
SLATE = "#5C6B73"
SAND = "#C9A66B"
CARD = "#FBF8EF"


class Place:
    """Where a part stands: moved, turned, scaled, perhaps mirrored."""

    def __init__(self, at, angle=0.0, scale=1.0, flip=False):
        self.at, self.angle, self.scale, self.flip = at, angle, scale, flip

    def __call__(self, points):
        return turned(points, self.angle, self.scale, self.at, self.flip)

    def pen(self, width):
        return width * (0.35 + 0.65 * self.scale)


# The head, its middle between the eyes. Ears first, since the hood lies over their roots.

def ears(sheet, place, back=0.0):
    """`back` turns both to the left, as the wind of a walk does."""
    for side in (-1, 1):
        cx, cy = side * 101 - back * 0.7, -62 + back * (0.1 if side < 0 else -0.2)
        outer = ellipse(cx, cy, 50 + back * 0.3, 48 - back * 0.3, 28 if back else 0, 0.025)
        inner = ellipse(cx + side * 4, cy + 2, 30 + back * 0.2, 30 - back * 0.3,
                        28 if back else 0, 0.03)
        sheet.shape(place(outer), FERN, place.pen(7))
        sheet.area(place(inner), SAND, 0.8)


def hood(sheet, place, swept):
    """`swept` has its tip blown to the left."""
    tip = ([(-84, -72), (-72, -94), (-78, -124), (-78, -124), (-38, -108), (18, -100), (68, -82)]
           if swept else
           [(-60, -86), (-11, -101), (16, -124), (16, -124), (36, -100), (66, -82)])
    shape = [(-106, 58), (-114, 6), (-102, -44), *tip, (102, -44), (114, 8), (106, 58), (64, 86),
             (0, 93), (-64, 86)]
    sheet.shape(place(shape), FERN_DARK, place.pen(7.5))


def face(sheet, place):
    skin = [(0, -66), (48, -62), (84, -38), (96, 4), (86, 46), (50, 70), (0, 77), (-50, 70),
            (-86, 46), (-96, 4), (-84, -38), (-48, -62)]
    sheet.area(place(skin), FERN)
    sheet.shade(place(skin), 0.42, 0.74, 17, FERN_DARK, 0.5)
    sheet.line(place(skin), place.pen(6), closed=True)
    for side in (-1, 1):
        sheet.area(place(ellipse(side * 69, 23, 15, 10)), RED, 0.42)
        sheet.area(place(ellipse(side * 48, -9, 14.5, 18)), INK, steady=True)
        sheet.area(place(ellipse(side * 48 + 4.5, -15.5, 5.6, 6.6)), CARD, steady=True)
        sheet.line(place([(side * 66, -33), (side * 53, -41), (side * 39, -39)]), place.pen(5),
                   steady=True)
    mouth = [(-47, 27), (-47, 27), (-22, 34), (0, 35.5), (22, 34), (47, 27), (47, 27), (36, 47),
             (16, 57), (0, 59), (-16, 57), (-36, 47)]
    sheet.area(place(mouth), PLUM)
    sheet.area(place([(-17, 56), (-8, 48), (0, 46.5), (8, 48), (17, 56), (0, 59)]), TERRACOTTA)
    sheet.line(place([(-53, 23), (-47, 27), (-22, 34), (0, 35.5), (22, 34), (47, 27), (53, 23)]),
               place.pen(5.5), steady=True)
    sheet.line(place([(-47, 28), (-36, 47), (-16, 57), (0, 59), (16, 57), (36, 47), (47, 28)]),
               place.pen(5.5), steady=True)
    for side in (-1, 1):
        tusk = [(side * 39, 43), (side * 40, 32), (side * 36, 19), (side * 36, 19),
                (side * 27, 30), (side * 25, 51), (side * 25, 51), (side * 33, 48)]
        sheet.shape(place(tusk), CARD, place.pen(4.2), steady=True)
    nose = [(0, 4), (13, 5), (16, 12), (8, 20), (0, 22), (-8, 20), (-16, 12), (-13, 5)]
    sheet.shape(place(nose), FERN_DARK, place.pen(4.5), steady=True)


def head(sheet, at, angle=0.0, scale=0.92, back=0.0):
    place = Place(at, angle, scale)
    ears(sheet, place, back)
    hood(sheet, place, back > 0)
    face(sheet, place)


# The rest of him.

PEAR = [(0, -100), (54, -88), (92, -46), (120, 8), (128, 54), (108, 88), (56, 102), (0, 104),
        (-56, 102), (-108, 88), (-128, 54), (-120, 8), (-92, -46), (-54, -88)]


def body(sheet, at, angle=0.0, scale=1.0, belly=(4, 34)):
    place = Place(at, angle, scale)
    pear = place(PEAR)
    sheet.area(pear, FERN)
    sheet.area(place(ellipse(belly[0], belly[1], 80, 62, 0, 0.02)), YELLOW, 0.42)
    sheet.shade(pear, 0.5, 0.79, 30, FERN_DARK, 0.5)
    sheet.line(pear, 7.5, closed=True)


def foot(sheet, at, angle=0.0, scale=1.0, flip=False):
    place = Place(at, angle, scale, flip)
    sole = [(-44, 14), (-46, -2), (-28, -17), (0, -21), (28, -17), (46, -2), (44, 14), (0, 19)]
    sheet.shape(place(sole), FERN)
    for x in (-16, 6):
        sheet.line(place([(x - 1, 17), (x - 2, 9), (x + 1, 2)]), place.pen(4.5))


def mantle(sheet, at, angle=0.0, scale=1.0, blow=0.0):
    """The short cape over the shoulders, open in front, with its clasp. `blow` lifts its left."""
    place = Place(at, angle, scale)
    edge = [(-98 - blow, 48 - blow * 0.5), (-108 - blow * 1.6, 80 - blow)]
    left = [(0, -6), (0, -6), (-44, -2), (-74, 14), edge[0], edge[1], edge[1],
            (-80 - blow, 82 - blow * 0.4), (-44, 66), (0, 26), (0, 26)]
    right = [(0, -6), (0, -6), (44, -2), (74, 14), (98, 48), (108, 80), (108, 80), (80, 82),
             (44, 66), (0, 26), (0, 26)]
    for side in (left, right):
        sheet.shape(place(side), FERN_DARK)
    sheet.shape(place(ellipse(0, 26, 13, 13, 0, 0.04)), YELLOW, place.pen(5))


def arm(sheet, points, widths=(46, 40, 42)):
    tube = limb(points, widths)
    sheet.shape(tube, FERN)


def fingers(sheet, at, angle=0.0, scale=1.0, flip=False):
    """Two strokes that make an end of an arm a fist."""
    place = Place(at, angle, scale, flip)
    for x in (-6, 7):
        sheet.line(place([(x, -16), (x + 1.5, -8), (x, 0)]), place.pen(4.5))


def fist(sheet, at, angle=0.0):
    """A hand around something that it holds up."""
    sheet.shape(ellipse(at[0], at[1], 24, 21, angle, 0.05), FERN)
    fingers(sheet, (at[0] - 1, at[1] + 11), angle * 0.3)


# What he carries.

def lantern(sheet, at, angle=0.0, scale=1.0, rays="left"):
    """`at` is where the hand holds it."""
    place = Place(at, angle, scale)
    sheet.line(place([(-22, 44), (-24, 22), (-12, 4), (0, 0), (12, 4), (24, 22), (22, 44)]),
               place.pen(6), taper=1)
    roof = [(-13, 34), (-13, 34), (13, 34), (13, 34), (36, 54), (36, 54), (-36, 54), (-36, 54)]
    frame = [(-31, 54), (-31, 54), (31, 54), (31, 54), (33, 122), (33, 122), (-33, 122), (-33, 122)]
    pane = [(-20, 64), (-20, 64), (20, 64), (20, 64), (21, 112), (21, 112), (-21, 112), (-21, 112)]
    base = [(-40, 120), (-40, 120), (40, 120), (40, 120), (40, 134), (40, 134), (-40, 134),
            (-40, 134)]
    sheet.shape(place(frame), SLATE, place.pen(6.5))
    sheet.shape(place(pane), YELLOW, place.pen(5))
    flame = [(0, 76), (0, 76), (9, 92), (7, 104), (0, 108), (-7, 104), (-9, 92)]
    sheet.area(place(flame), TERRACOTTA)
    sheet.shape(place(roof), SLATE, place.pen(6.5))
    sheet.shape(place(base), SLATE, place.pen(6.5))
    sign = -1 if rays == "left" else 1
    for dy, slope in ((66, -13), (92, 0), (118, 13)):
        ray = limb([(sign * 50, dy + slope * 0.2), (sign * 67, dy + slope * 0.8)], (10, 9))
        sheet.shape(place(ray), YELLOW, place.pen(4))


def disk(sheet, at, angle=0.0, scale=1.0, squash=1.0):
    """The shield: rim, platter, hub and the arm that reads."""
    place = Place(at, angle, scale)
    round_ = lambda r, wobble=0.008: place([(x * squash, y) for x, y in
                                            ellipse(0, 0, r, r, 0, wobble, 18)])
    sheet.shape(round_(66), BLUE, place.pen(7.5))
    sheet.shape(round_(49), SAND, place.pen(5.5))
    sheet.line(round_(35), place.pen(3.2), closed=True)
    sheet.shape(round_(17), CARD, place.pen(5))
    sheet.area(round_(6), INK)
    pivot, tip = (50 * squash, -44), (14 * squash, -24)
    sheet.shape(place(limb([pivot, (36 * squash, -38), tip], (15, 11, 9))), TERRACOTTA,
                place.pen(4.5))
    sheet.area(place(ellipse(pivot[0] - 1, pivot[1] + 1, 4)), INK)


def sparkle(sheet, at, size, angle=0.0, colour=YELLOW):
    k = 0.26
    star = []
    for i in range(4):
        star += [turned([(0, -size)], 90 * i)[0]] * 2 + [turned([(size * k, -size * k)], 90 * i)[0]]
    sheet.shape(turned(star, angle, at=at), colour, max(3.4, size * 0.19))


def ground(sheet, left, right, y):
    sheet.line([(left, y), ((left + right) / 2, y + 1.5), (right, y)], 5)


def scroll(sheet, at, angle=0.0, scale=1.0):
    """An unrolled report, its middle at `at`."""
    place = Place(at, angle, scale)
    paper = [(-48, -66), (-48, -66), (48, -66), (48, -66), (46, 0), (48, 66), (48, 66), (-48, 66),
             (-48, 66), (-46, 0)]
    sheet.shape(place(paper), CARD)
    for y, right in ((-38, 14), (-16, 28), (6, 20)):
        sheet.line(place([(-28, y), ((right - 28) / 2, y + 1.5), (right, y)]), place.pen(5.5))
    sheet.line(place([(-26, 34), (-16, 44), (4, 20)]), place.pen(7.5), colour=FERN, taper=0.8)
    for y in (-68, 66):
        sheet.shape(place(limb([(-58, y), (58, y)], (19, 18, 19))), SAND)
        for x in (-50, 50):
            sheet.line(place([(x, y - 6), (x + 1, y + 6)]), place.pen(4))


def quill(sheet, at, angle=0.0, scale=1.0):
    """A feather, its point at `at`."""
    place = Place(at, angle, scale)
    # Two notches in its edge, or it would be a leaf.
    vane = [(0, -36), (0, -36), (-18, -48), (-21, -66), (-21, -66), (-8, -64), (-8, -64),
            (-22, -74), (-22, -98), (2, -138), (2, -138), (15, -112), (15, -94), (15, -94),
            (5, -86), (5, -86), (15, -82), (14, -58), (0, -36)]
    sheet.shape(place(limb([(0, 8), (0, -20), (1, -44)], (5, 9, 10))), CARD, place.pen(4.5))
    sheet.shape(place(vane), BLUE, place.pen(6))
    sheet.line(place([(0, -42), (0, -60), (1, -114)]), place.pen(4.5))


def brush(sheet, tail, tip_at):
    """A paint brush for a spear, wet at the tip."""
    dx, dy = tip_at[0] - tail[0], tip_at[1] - tail[1]
    length = (dx * dx + dy * dy) ** 0.5
    along = lambda d, off=0.0: (tail[0] + dx * d / length - dy * off / length,
                                tail[1] + dy * d / length + dx * off / length)
    sheet.shape(limb([along(0), along(length * 0.4), along(length - 74)], (11, 17, 14)), TERRACOTTA)
    hair = [along(length - 58, 16), along(length - 58, 16), along(length - 38, 25),
            along(length - 18, 17), along(length, 2), along(length, 2), along(length - 18, -15),
            along(length - 38, -23), along(length - 58, -16), along(length - 58, -16)]
    sheet.area(hair, SAND)
    wet = [along(length - 33, 25), along(length - 33, 25), along(length - 18, 17),
           along(length, 2), along(length, 2), along(length - 18, -15), along(length - 36, -23),
           along(length - 36, -23), along(length - 29, -13), along(length - 39, -4),
           along(length - 28, 7), along(length - 41, 16)]
    sheet.area(wet, RED)
    sheet.line(hair, closed=True, taper=1)
    band = [along(length - 78, 11), along(length - 78, 11), along(length - 54, 18),
            along(length - 54, 18), along(length - 54, -18), along(length - 54, -18),
            along(length - 78, -11), along(length - 78, -11)]
    sheet.shape(band, SLATE, 6)


def drop(sheet, at, size, angle=0.0):
    place = Place(at, angle, size / 10)
    sheet.shape(place([(0, -15), (0, -15), (8, -2), (7, 7), (0, 11), (-7, 7), (-8, -2)]), RED, 4)


def footprint(sheet, at, angle=0.0):
    place = Place(at, angle)
    sheet.area(place(ellipse(0, 0, 13, 8)), FERN_DARK)
    for x, y in ((17, -7), (20, 1), (16, 9)):
        sheet.area(place(ellipse(x, y, 4, 3.2)), FERN_DARK)


def unrolled_map(sheet):
    paper = [(122, 330), (122, 330), (216, 327), (322, 331), (322, 331), (340, 356), (350, 386),
             (350, 386), (220, 383), (92, 386), (92, 386), (102, 358)]
    sheet.area(paper, CARD)
    sheet.area([(126, 334), (126, 334), (172, 333), (180, 348), (158, 362), (112, 366),
                (112, 366)], FERN, 0.55)
    sheet.area([(262, 333), (262, 333), (319, 335), (319, 335), (333, 358), (296, 364),
                (270, 352)], BLUE, 0.6)
    sheet.area([(168, 381), (168, 381), (186, 366), (222, 363), (254, 370), (264, 381),
                (264, 381), (220, 380)], YELLOW, 0.75)
    sheet.line(paper, closed=True, taper=1)
    for a, b in (((196, 348), (210, 345)), ((222, 346), (236, 349)), ((246, 354), (258, 361))):
        sheet.line([a, b], 5.5, taper=0.8)
    for points in ([(272, 356), (287, 366)], [(288, 354), (271, 368)]):
        sheet.line(points, 6.5, colour=RED, taper=0.9)
    for x, y in ((288, 343), (306, 352)):
        sheet.line([(x - 9, y + 2), (x - 3, y - 3), (x + 3, y + 2), (x + 9, y - 2)], 3.6)
    # It is rolled from both ends, the far one and the one towards us.
    for left, right, y, width in ((112, 332, 329, 17), (82, 360, 388, 18)):
        sheet.shape(limb([(left, y), ((left + right) / 2, y - 1), (right, y)],
                         (width, width - 1, width)), SAND, 6.5)
        for x in (left + width * 0.45, right - width * 0.45):
            sheet.line([(x, y - width * 0.28), (x + 1, y + width * 0.28)], 4)
