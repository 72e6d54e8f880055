"""The catalogue of discs. A design number gives its family, number % len(FAMILIES), and fixed measures of its own.

Families stand in pairs of kin, so that even and odd numbers are two catalogues of like breadth and no common design.
"""
import math

import numpy as np

from outlines import TAU, arc_slot, polar, round_hole, spokes


def even_angles(n):
    return [TAU * i / n for i in range(n)]


def bars(n, inner, outer, twist=0.0):
    """n spokes; widths at the inner and the outer end as shares of the free pitch."""
    def make(g, rng):
        n_ = n(rng) if callable(n) else n
        w0 = rng.uniform(*inner) * TAU * g["r0"] / n_
        w1 = rng.uniform(*outer) * TAU * g["r1"] / n_
        t = twist * rng.uniform(0.6, 1.3) * (1 if rng.random() < 0.5 else -1)
        mid = rng.uniform(-0.25, 0.1) * w0
        share = lambda r: (r - g["r0"]) / (g["r1"] - g["r0"])
        width = lambda r, k: w0 + (w1 - w0) * share(r) + 4 * mid * share(r) * (1 - share(r))
        bend = (lambda r, k: t * share(r) ** 1.4) if twist else None
        return even_angles(n_), spokes(even_angles(n_), width, g["r0"], g["r1"], g["corner"], bend)
    return make


def twins(n, join, spread, split=0.0):
    """Pairs of spokes: `join` and `spread` are half the pair's angle at the inner and the outer end, in shares of the
    pitch; with `split` > 0 the pair is one spoke up to that share of the radius (Y)."""
    def make(g, rng):
        pitch = TAU / n
        j, s = rng.uniform(*join) * pitch, rng.uniform(*spread) * pitch
        cut = split * rng.uniform(0.8, 1.25)
        w = rng.uniform(0.10, 0.16) * TAU * g["r1"] / n
        share = lambda r: max(0.0, ((r - g["r0"]) / (g["r1"] - g["r0"]) - cut) / (1 - cut))
        angles = sorted(a for m in even_angles(n) for a in (m, m + 1e-6))
        sign = lambda k: -1 if k % 2 == 0 else 1
        bend = lambda r, k: sign(k) * (j + (s - j) * share(r))
        start = lambda i: (cut + 0.05 if cut and i % 2 == 0 else 0.0)
        return even_angles(n), spokes(angles, lambda r, k: w, g["r0"], g["r1"], g["corner"], bend, start)
    return make


def mesh(n, cross):
    """Crossing spokes: kites inside, triangles outside."""
    def make(g, rng):
        c, w = rng.uniform(*cross), rng.uniform(0.10, 0.16) * TAU / n
        out, h = [], TAU / n / 2
        for a in even_angles(n):
            kite = [(0.02, a - w * 0.9), (c, a - h + w), (0.97, a - w / 3), (0.97, a + w / 3), (c, a + h - w), (0.02, a + w * 0.9)]
            wedge = [(c + 0.16, a + h), (1.0, a + h - h + w * 1.1), (1.0, a + h), (1.0, a + h + h - w * 1.1)]
            out += [polar(kite, g["r0"], g["r1"], g["corner"]), polar(wedge, g["r0"], g["r1"], g["corner"])]
        return even_angles(n), out
    return make


def vents(n, where, along, across, rows=1):
    """Round or oval vents on a circle; half axes as shares of the window band and of the pitch."""
    def make(g, rng):
        n_ = n(rng) if callable(n) else n
        out, band = [], g["r1"] - g["r0"]
        for row in range(rows):
            r = g["r0"] + band * (rng.uniform(*where) if rows == 1 else (0.25, 0.75)[row])
            ru = rng.uniform(*along) * band
            rv = ru if across is None else rng.uniform(*across) * TAU * r / n_
            ru, rv = min(ru, 0.46 * band), min(rv, 0.4 * TAU * r / n_)
            if across is None:
                ru = rv = min(ru, rv)
            out += [round_hole(r, a + row * math.pi / n_, ru, rv, 24) for a in even_angles(n_)]
        return even_angles(n_), out
    return make


def slots(n, where, wide, long):
    def make(g, rng):
        r = g["r0"] + (g["r1"] - g["r0"]) * rng.uniform(*where)
        half = min(rng.uniform(*wide) * (g["r1"] - g["r0"]), g["r1"] - r - 2, r - g["r0"] - 2)
        return even_angles(n), [arc_slot(r, half, a, rng.uniform(*long) * math.pi / n) for a in even_angles(n)]
    return make


def solid(g, rng):
    return even_angles(int(rng.integers(5, 9))), []


def cells(n, shape):
    """One polar outline, repeated: shape is a list of (radius share, angle in shares of half a pitch)."""
    def make(g, rng):
        s, squeeze = math.pi / n, rng.uniform(0.85, 1.1)
        lean = rng.uniform(-0.15, 0.15)
        return even_angles(n), [polar([(r, a + t * squeeze * s + lean * r * s) for r, t in shape], g["r0"], g["r1"],
                                      g["corner"]) for a in even_angles(n)]
    return make


STAR = [(0.05, 0), (0.8, -0.62), (1.0, -0.5), (1.0, 0.5), (0.8, 0.62)]
TEAR = [(0.0, 0), (0.45, -0.35), (0.85, -0.6), (1.0, -0.3), (1.0, 0.3), (0.85, 0.6), (0.45, 0.35)]
HEX = [(0.2, -0.3), (0.5, -0.7), (0.85, -0.45), (0.85, 0.45), (0.5, 0.7), (0.2, 0.3)]
KIDNEY = [(0.15, -0.7), (0.7, -0.78), (0.95, -0.5), (0.85, 0), (0.95, 0.5), (0.7, 0.78), (0.15, 0.7), (0.3, 0)]
FIN = [(0.55, -0.75), (1.0, -0.3), (1.0, 0.75), (0.8, 0.6)]

FAMILIES = [
    ("five_spoke", bars(5, (0.45, 0.7), (0.18, 0.4))), ("six_spoke", bars(6, (0.45, 0.7), (0.18, 0.35))),
    ("seven_spoke", bars(7, (0.45, 0.7), (0.2, 0.35))), ("eight_spoke", bars(8, (0.45, 0.7), (0.18, 0.3))),
    ("nine_spoke", bars(9, (0.4, 0.65), (0.2, 0.3))), ("ten_spoke", bars(10, (0.45, 0.7), (0.15, 0.3))),
    ("twelve_spoke", bars(12, (0.45, 0.7), (0.18, 0.3))), ("fifteen_spoke", bars(15, (0.45, 0.7), (0.2, 0.3))),
    ("twin_five", twins(5, (0.10, 0.14), (0.12, 0.2))), ("twin_six", twins(6, (0.11, 0.15), (0.12, 0.2))),
    ("y_five", twins(5, (0.01, 0.03), (0.16, 0.24), 0.35)), ("y_seven", twins(7, (0.01, 0.03), (0.16, 0.24), 0.3)),
    ("v_six", twins(6, (0.06, 0.09), (0.2, 0.27))), ("v_five", twins(5, (0.06, 0.09), (0.2, 0.27))),
    ("mesh_ten", mesh(10, (0.4, 0.55))), ("mesh_eight", mesh(8, (0.4, 0.55))),
    ("turbine_nine", bars(9, (0.4, 0.6), (0.2, 0.35), 0.45)), ("turbine_fourteen", bars(14, (0.4, 0.6), (0.25, 0.4), 0.3)),
    ("steel_round", vents(lambda rng: int(rng.integers(8, 17)), (0.5, 0.75), (0.14, 0.3), None)),
    ("steel_oval", vents(lambda rng: int(rng.integers(5, 13)), (0.5, 0.75), (0.12, 0.22), (0.2, 0.36))),
    ("arc_slots", slots(6, (0.4, 0.7), (0.1, 0.25), (0.45, 0.75))), ("many_slots", slots(10, (0.5, 0.75), (0.08, 0.2), (0.4, 0.7))),
    ("solid_flat", solid), ("drilled_plate", vents(12, None, (0.08, 0.14), None, 2)),
    ("star_five", cells(5, STAR)), ("star_seven", cells(7, STAR)),
    ("tear_eight", cells(8, TEAR)), ("tear_ten", cells(10, TEAR)),
    ("hexagons", cells(9, HEX)), ("kidneys", cells(4, KIDNEY)),
    ("aero_fins", cells(12, FIN)), ("aero_slits", slots(5, (0.8, 0.88), (0.05, 0.09), (0.6, 0.85))),
    ("paddle_five", bars(5, (0.3, 0.45), (0.4, 0.55))), ("tri_spoke", bars(3, (0.3, 0.4), (0.2, 0.35))),
    ("twenty_spoke", bars(lambda rng: int(rng.integers(16, 21)), (0.5, 0.7), (0.22, 0.32))),
    ("oval_radial", vents(lambda rng: int(rng.integers(9, 15)), (0.5, 0.6), (0.25, 0.42), (0.15, 0.25))),
]


class Design:
    """Measures of one design as shares of the rim's radius, apart from angles in degrees and depths in mm."""

    def __init__(self, number):
        rng = np.random.default_rng([7919, number])
        self.number = number
        self.name, self.windows = FAMILIES[number % len(FAMILIES)]
        self.steel = self.name.startswith("steel") or (self.name == "solid_flat" and number % 4 == 0)
        self.seed = int(rng.integers(1 << 30))
        self.lip = rng.uniform(0.012, 0.05)
        self.flange = rng.uniform(5, 18)
        self.seat = rng.uniform(0.02, 0.05) if rng.random() < 0.55 else 0.0
        self.drop = float(np.exp(rng.uniform(math.log(3), math.log(45))))
        self.incline = 0.0 if rng.random() < 0.45 else rng.uniform(2, 25) * (1 if rng.random() < 0.75 else -1)
        self.ledge = rng.uniform(0.07, 0.16)
        self.hub = rng.uniform(0.30, 0.40)
        self.bore = rng.uniform(0.11, 0.17)
        self.bolts = int(rng.choice([4, 5, 5, 5, 6, 8, 10], p=[.2, .2, .2, .15, .15, .05, .05]))
        self.step = rng.uniform(-12, 25)
        self.hub_z = rng.uniform(-70, 5) if rng.random() < 0.75 else rng.uniform(-130, -70)
        self.curve = rng.uniform(0.6, 2.2)
        self.thick = rng.uniform(14, 32) * (0.35 if self.steel else 1)
        self.taper = rng.uniform(0.02, 0.10)
        self.groove = rng.random() < 0.35
        self.over = rng.random() < 0.35 and not self.steel
        self.pockets = rng.random() < 0.5
        self.corner = rng.uniform(0.02, 0.06)
        self.flat = self.name in ("aero_fins", "aero_slits", "drilled_plate") and rng.random() < 0.7
