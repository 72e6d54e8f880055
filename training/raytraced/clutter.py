"""What else lies, stands or is cut on a wheel, each with its name, place and radius: the valve hole's rivals.

Every maker takes a place (a Frame on the surface) and adds solids and cutters there in local mm. No rival is a smooth
dark disc of the hole's own size: nobody could distinguish that from a hole, and its name would be a mistake in the
truth.
"""
import math

import numpy as np

from outlines import TAU, chaikin
from sdl import cylinder, prism

RUBBER = "pigment { rgb 0.04 } finish { ambient 0.6 diffuse 0.7 specular 0.1 roughness 0.05 }"
STEEL = "pigment { rgb 0.45 } finish { ambient 0.45 diffuse 0.5 specular 0.5 roughness 0.03 metallic reflection 0.15 }"
ZINC = "pigment { rgb 0.6 } finish { ambient 0.55 diffuse 0.6 specular 0.2 roughness 0.06 }"


def matt(shade):
    return "pigment { rgb %.4g } finish { ambient 0.7 diffuse 0.75 specular 0.04 roughness 0.1 }" % shade


class Place:
    """Collects what is put at one frame."""

    def __init__(self, heap, frame, kind):
        self.heap, self.frame, self.kind, self.radius = heap, frame, kind, 0.0

    def add(self, text, radius):
        self.heap.solids.append("object { %s %s }" % (text, self.frame.matrix()))
        self.radius = max(self.radius, radius)

    def cut(self, text, radius):
        self.heap.cutters.append((math.hypot(*self.frame.o[:2]), "object { %s %s }" % (text, self.frame.matrix())))
        self.radius = max(self.radius, radius)


def ragged(rng, r, n=13, rough=0.35):
    t = np.arange(n) * TAU / n
    q = r * (1 + rough * rng.uniform(-1, 0.6, n))
    return chaikin(np.stack([q * np.cos(t), q * np.sin(t)], 1), 2)


def drain(p, rng, size, wall):
    r = size * rng.uniform(0.25, 0.5)
    p.cut(cylinder(0, 0, -40, 5, r, wall), r)


def dimple(p, rng, size, wall):
    r, deep = size * rng.uniform(0.5, 1.1), rng.uniform(0.15, 0.6)
    p.cut("sphere { 0, 1 scale <%g,%g,%g> %s }" % (r, r, deep * r, wall), r)


def pin_mark(p, rng, size, wall):
    r, deep = size * rng.uniform(0.5, 1.3), rng.uniform(0.2, 1.0)
    if rng.random() < 0.6:
        p.cut(cylinder(0, 0, -deep, 4, r, wall), r)
    else:
        p.add(cylinder(0, 0, -2, deep, r, wall), r)


def screw(p, rng, size, wall):
    r, h = size * rng.uniform(0.6, 1.2), rng.uniform(1.5, 5)
    skin = STEEL if rng.random() < 0.7 else matt(0.05)
    kind, turn = rng.choice(["slot", "socket", "dome", "hex"]), rng.uniform(0, 360)
    skin = skin if kind == "hex" else STEEL
    if kind == "hex":
        t = np.arange(6) * TAU / 6
        head = prism(np.stack([r * np.cos(t), r * np.sin(t)], 1), -1, h)
    elif kind == "dome":
        head = "sphere { 0, 1 scale <%g,%g,%g> }" % (r, r, h)
    else:
        head = cylinder(0, 0, -1, h, r)
    if kind == "slot":
        head = "difference { %s box { <%g,%g,%g>,<%g,%g,%g> } }" % (head, -2 * r, -0.14 * r, h * 0.5, 2 * r, 0.14 * r, h + 1)
    elif kind == "socket":
        t = np.arange(6) * TAU / 6
        head = "difference { %s %s }" % (head, prism(0.55 * r * np.stack([np.cos(t), np.sin(t)], 1), 0.2 * h, h + 1))
    p.add("object { %s rotate <0,0,%g> %s }" % (head, turn, skin), r)


def blot(p, rng, size, wall):
    r = size * rng.uniform(0.5, 1.4)
    p.add(prism(ragged(rng, r, int(rng.integers(9, 18)), rng.uniform(0.22, 0.5)), -1, 0.1, 0, matt(rng.uniform(0.01, 0.1))), r)


def paint_dot(p, rng, size, wall):
    r = size * rng.uniform(0.3, 1.2)
    shade = rng.choice([rng.uniform(0.02, 0.08), rng.uniform(0.15, 0.3), rng.uniform(0.6, 0.85)])
    rough = rng.uniform(0, 0.1) + (0.2 if shade < 0.1 else 0)
    p.add(prism(ragged(rng, r, 14, rough), -1, 0.1, 0, matt(shade)), r)


def rust_spot(p, rng, size, wall):
    r = size * rng.uniform(0.5, 1.3)
    skin = "pigment { granite color_map { [0 rgb 0.05] [1 rgb 0.2] } scale 6 } finish { ambient 0.7 diffuse 0.7 }"
    p.add(prism(ragged(rng, r, 15, 0.4), -1, 0.1, 0, skin), r)


def water_drop(p, rng, size, wall):
    r = size * rng.uniform(0.3, 0.9)
    skin = "pigment { rgb 0.4 transmit 0.75 } finish { ambient 0.1 diffuse 0.15 specular 1 roughness 0.003 reflection 0.06 } interior { ior 1.33 }"
    p.add("sphere { 0, 1 scale <%g,%g,%g> %s }" % (r, r * rng.uniform(0.8, 1), 0.35 * r, skin), r)


def chip(p, rng, size, wall):
    r, w = size * rng.uniform(0.3, 0.8), rng.uniform(0.15, 0.5)
    for _ in range(int(rng.integers(1, 4))):
        p.add("torus { %g, %g rotate <%g,%g,%g> translate <%g,%g,%g> %s }" % (
            r * rng.uniform(0.5, 1), w, rng.uniform(50, 130), rng.uniform(-40, 40), rng.uniform(0, 360),
            r * rng.uniform(-1, 1), r * rng.uniform(-1, 1), w, STEEL), 1.5 * r)


def clock(p, rng, size, wall):
    """A date stamp: a round sunk dial with ticks and an arrow."""
    r = size * rng.uniform(0.7, 1.5)
    p.cut("difference { %s %s }" % (cylinder(0, 0, -0.7, 3, r), cylinder(0, 0, -2, 4, r * 0.88)), r)
    for i in range(12):
        p.add("box { <%g,-0.2,-0.5>,<%g,0.2,0.35> rotate <0,0,%g> %s }" % (0.66 * r, 0.82 * r, 30 * i, wall), r)
    p.cut(cylinder(0, 0, -0.5, 3, 0.5 * r), r)
    p.add("box { <%g,-0.35,-0.6>,<%g,0.35,0.2> rotate <0,0,%g> %s }" % (-0.4 * r, 0.42 * r, rng.uniform(0, 360), wall), r)


def letters(p, rng, size, wall):
    word = "".join(rng.choice(list("0O6QDCAB8JX12579EH"), int(rng.integers(2, 7))))
    h, t = size * rng.uniform(0.7, 1.6), rng.uniform(0.3, 1.2)
    # On a concave step the letters are set so that their middle lies at the place.
    p.add('text { internal 1 "%s" %g, 0 scale <%g,%g,1> translate <%g,%g,-0.1> rotate <0,0,%g> %s }' % (
        word, t, h, h, -0.28 * h * len(word), -0.33 * h, rng.choice([-90, 90]), wall), 0.3 * h * len(word))


def weight(p, rng, size, wall):
    r, skin = size * rng.uniform(0.6, 1.2), ZINC if rng.random() < 0.7 else matt(0.06)
    if rng.random() < 0.4:
        p.add(cylinder(0, 0, -0.5, rng.uniform(2, 4), r, ZINC), r)
        return
    for i in range(int(rng.integers(1, 4))):
        y = i * 2.3 * r
        p.add("box { <%g,%g,-1>,<%g,%g,%g> %s }" % (-0.8 * r, y - r, 0.8 * r, y + r, rng.uniform(2, 4), skin), y + r)


def sticker(p, rng, size, wall):
    w, h = size * rng.uniform(1.0, 2.2), size * rng.uniform(0.7, 1.3)
    turn = rng.uniform(-20, 20) + rng.choice([0, 90])
    p.add("box { <%g,%g,-1>,<%g,%g,0.12> rotate <0,0,%g> %s }" % (-w, -h, w, h, turn, matt(rng.uniform(0.6, 0.85))), math.hypot(w, h))
    x = -0.8 * w
    while x < 0.8 * w:
        b = rng.uniform(0.02, 0.09) * w
        p.add("box { <%g,%g,0>,<%g,%g,0.2> rotate <0,0,%g> %s }" % (x, -0.5 * h, x + b, 0.6 * h, turn, matt(0.03)), w)
        x += b + rng.uniform(0.03, 0.1) * w


def scratch(p, rng, size, wall):
    long, wide = size * rng.uniform(0.8, 4), rng.uniform(0.1, 0.4)
    skin = matt(rng.choice([0.04, 0.7]))
    p.add("box { <%g,%g,-1>,<%g,%g,0.06> rotate <0,0,%g> %s }" % (-long, -wide, long, wide, rng.uniform(0, 180), skin), long)


def chalk(p, rng, size, wall):
    skin = "pigment { granite color_map { [0 rgb 0.9] [0.5 rgb 0.8] [0.7 rgb 0.8 transmit 1] [1 rgb 0.8 transmit 1] } scale 5 } finish { ambient 0.7 diffuse 0.75 }"
    x = np.cumsum(rng.normal(0, size * 0.8, (5, 2)), axis=0)
    x -= x.mean(axis=0)
    for a, b in zip(x, x[1:]):
        p.add("cylinder { <%g,%g,0>,<%g,%g,0>,%g scale <1,1,0.1> %s }" % (a[0], a[1], b[0], b[1], size * 0.16, skin), float(np.hypot(*x.T).max()))


def rubber_plug(p, rng, size, wall):
    r = size * rng.uniform(0.35, 0.6)
    p.add(cylinder(0, 0, -1, rng.uniform(0.3, 2), r, RUBBER), r)


MAKERS = dict(drain=(drain, 1.2), dimple=(dimple, 0.8), pin_mark=(pin_mark, 1.2), screw=(screw, 0.8), blot=(blot, 1.2),
              paint_dot=(paint_dot, 1.2), rust_spot=(rust_spot, 0.6), water_drop=(water_drop, 0.6), chip=(chip, 0.6),
              clock=(clock, 1.0), letters=(letters, 1.4), counterweight=(weight, 0.8), sticker=(sticker, 0.6),
              scratch=(scratch, 1.2), chalk=(chalk, 0.5), rubber_plug=(rubber_plug, 0.4))


class Heap:
    """All clutter of one wheel. `others` are (kind, world point, radius in mm)."""

    def __init__(self, rng, wheel, hole_size, hole_angle, keep_free, wall, count):
        self.solids, self.cutters, self.others = [], [], []
        self.wheel, self.taken = wheel, [(hole_angle, keep_free)] if hole_angle is not None else []
        kinds = list(MAKERS)
        w = np.array([MAKERS[k][1] for k in kinds])
        favourite = rng.dirichlet(np.full(len(kinds), 0.5)) + 0.02
        for kind in rng.choice(kinds, count, p=w * favourite / (w * favourite).sum()):
            self._put(str(kind), rng, hole_size, wall)
        if rng.random() < 0.12:
            self._row(rng, hole_size, wall)
        if rng.random() < 0.08:
            self._seam(rng)

    def _angle(self, rng, reach):
        for _ in range(20):
            a = rng.uniform(0, TAU)
            if all(self.wheel.rv * abs((a - b + math.pi) % TAU - math.pi) > reach + far for b, far in self.taken):
                return a
        return None

    def _put(self, kind, rng, size, wall):
        w = self.wheel
        reach = 2.2 * size + (4 * size if kind in ("letters", "scratch", "counterweight", "chalk", "sticker") else 0)
        a = self._angle(rng, reach)
        if a is None:
            return
        r = w.rv + rng.uniform(-0.5, 0.5) * max(0.0, w.r1 - w.r0 - 2 * size)
        if kind in ("letters", "sticker", "scratch", "chalk", "blot", "paint_dot", "pin_mark") and rng.random() < 0.45:
            r = rng.uniform(w.r_hub * 1.05, w.rf * 0.97) if rng.random() < 0.6 else rng.uniform(w.r_bore * 1.1, w.r_hub)
        self._make(kind, r, a, rng, size, wall)
        if r > w.r0:
            self.taken.append((a, 0.6 * reach))

    def _make(self, kind, r, a, rng, size, wall):
        p = Place(self, self.wheel.frame(r, a), kind)
        MAKERS[kind][0](p, rng, size, wall)
        self.others.append((kind, p.frame.o, p.radius))

    def _row(self, rng, size, wall):
        """Small vents on a circle near the valve's."""
        w, n = self.wheel, int(rng.integers(5, 13))
        r, a0, size = w.rv + rng.uniform(-0.3, 0.3) * (w.r1 - w.r0), rng.uniform(0, TAU), size * rng.uniform(0.25, 0.7)
        for i in range(n):
            a = a0 + TAU * i / n
            if all(w.rv * abs((a - b + math.pi) % TAU - math.pi) > size * 1.5 + far for b, far in self.taken):
                p = Place(self, w.frame(r, a), "vent")
                p.cut(cylinder(0, 0, -40, 5, size, wall), size)
                self.others.append(("vent", p.frame.o, size))

    def _seam(self, rng):
        """A weld along part of the ledge's inner border."""
        w, a, step = self.wheel, rng.uniform(0, TAU), rng.uniform(1.5, 4)
        for i in range(int(rng.integers(8, 30))):
            f = w.frame(w.r0 + 1, a + i * step / w.r0, level=True)
            self.solids.append("sphere { 0, 1 scale <%g,%g,%g> %s %s }" % (
                step * 1.2, step, step * 0.6, STEEL if i % 2 else ZINC, f.matrix()))
        self.others.append(("weld", w.frame(w.r0, a, level=True).o, step * 2))
