"""Paints holes and what is no hole onto pieces of real surfaces: a world without end, whose light, matter and depth owe
nothing to any renderer of whole wheels. Gray values are linear, 0 to 255; lengths are in places of the piece."""
import math

import cv2
import numpy as np

F = np.float32


class Piece:
    """A square or strip of surface that is painted on."""

    def __init__(self, gray, center, rng):
        self.gray = gray.astype(F)
        self.rng = rng
        self.center = center
        h, w = gray.shape
        self.dx = np.arange(w, dtype=F)[None, :] - F(center[0])
        self.dy = np.arange(h, dtype=F)[:, None] - F(center[1])
        self.soft = 0.7

    def mix(self, value, share):
        self.gray += (value - self.gray) * share

    def cover(self, signed):
        """Share of a place that lies inside of an edge at signed distance (positive inside)."""
        return np.clip(signed / (2 * self.soft) + 0.5, 0, 1)

    def ellipse(self, x, y, radius, flat, turn):
        """Signed distance, positive inside."""
        c, s = math.cos(turn), math.sin(turn)
        dx, dy = self.dx - F(x), self.dy - F(y)
        u, v = (dx * c + dy * s) / F(flat), dy * c - dx * s
        return F(radius) - np.sqrt(u * u + v * v)

    def around(self):
        """How bright the surface is at the piece's middle."""
        y, x = int(self.center[1]), int(self.center[0])
        near = self.gray[max(0, y - 8): y + 9, max(0, x - 8): x + 9]
        return float(np.median(near)) if near.size else 100.0


def _content(piece, inside_gray):
    """A picture of what lies in a hole, of any kind."""
    rng = piece.rng
    kind = rng.choice(["deep", "gradient", "texture", "edge"], p=[0.55, 0.15, 0.15, 0.15])
    value = np.full_like(piece.gray, inside_gray)
    if kind == "gradient":
        a = rng.uniform(0, 2 * math.pi)
        value = value + F(rng.uniform(-40, 40) / 10) * (piece.dx * math.cos(a) + piece.dy * math.sin(a))
    elif kind == "texture":
        h, w = piece.gray.shape
        cell = rng.uniform(2, 12)
        small = rng.normal(0, rng.uniform(5, 35), (int(h / cell) + 2, int(w / cell) + 2)).astype(F)
        value = value + cv2.resize(small, (w, h), interpolation=cv2.INTER_CUBIC)
    elif kind == "edge":  # a straight edge of something behind
        a, off = rng.uniform(0, 2 * math.pi), rng.uniform(-4, 4)
        side = piece.cover(piece.dx * F(math.cos(a)) + piece.dy * F(math.sin(a)) - F(off))
        value = value + side * F(rng.uniform(-90, 90))
    return np.clip(value, 0, 255)


def _inside_gray(piece, surface, black):
    rng = piece.rng
    u = rng.random()
    if u < 0.6:
        return black + rng.uniform(0, 0.25) * max(5, surface - black)
    if u < 0.85:
        return black + rng.uniform(0.2, 1.0) * max(5, surface - black)
    return min(255, surface * rng.uniform(0.9, 2.2) + rng.uniform(0, 60))


def hole(piece, radius, black):
    """A drilled hole at the piece's centre: ring of chamfer or counterbore, lit wall, depth, perhaps a stem. Returns the
    outer radius of its edge, or None when the eye could not see it."""
    rng = piece.rng
    surface = piece.around()
    before = piece.gray.copy()
    flat = rng.choice([1.0, rng.uniform(0.86, 1.0), rng.uniform(0.74, 0.9)], p=[0.4, 0.45, 0.15])
    turn = rng.normal(0, 0.35)
    light = rng.uniform(0, 2 * math.pi)
    outer = radius
    kind = rng.choice(["plain", "chamfer", "counterbore", "both"], p=[0.3, 0.42, 0.2, 0.08])
    direction = np.arctan2(piece.dy, piece.dx)
    facing = np.cos(direction - F(light))
    edge = piece.ellipse(0, 0, radius, flat, turn)
    sx, sy = rng.normal(0, 0.03, 2) * radius  # the outer edge lies higher: it is seen shifted
    if kind in ("counterbore", "both"):
        outer = radius * rng.uniform(1.25, 2.1)
        step = piece.ellipse(sx, sy, outer, flat, turn)
        piece.mix(F(np.clip(surface * rng.uniform(0.5, 1.5), 0, 255)), piece.cover(step))
        shadow = rng.uniform(0, 0.4) * (outer - radius) + 0.5
        band = piece.cover(step) * (1 - piece.cover(step - F(shadow)))
        piece.gray *= 1 - band * np.clip(F(rng.uniform(0, 0.9)) * (0.5 + 0.5 * facing), 0, 1)
    if kind in ("chamfer", "both"):
        width = radius * rng.uniform(0.06, 0.5)
        if kind == "chamfer":
            outer = radius + width
        ring = piece.ellipse(0.6 * sx, 0.6 * sy, radius + width, flat, turn)
        level = surface * rng.choice([rng.uniform(0.3, 0.9), rng.uniform(0.9, 1.1), rng.uniform(1.1, 2.2)])
        slope = F(level) * (1 + F(rng.uniform(0, 0.8)) * facing)
        piece.mix(np.clip(slope, 0, 255), piece.cover(ring))
    inside = _inside_gray(piece, surface, black)
    open_share = piece.cover(edge)
    content = _content(piece, inside)
    deep = inside < black + 0.35 * max(5, surface - black)
    if rng.random() < (0.65 if deep else 0.95):  # the wall is seen on one side; without it a lit hole would be a dot
        wx, wy = rng.normal(0, 0.22, 2) * radius
        through = piece.cover(piece.ellipse(wx, wy, radius * rng.uniform(0.8, 1.02), flat, turn)) * open_share
        wall = np.clip(F(surface * rng.uniform(0.1, 1.2)) * (1 + F(rng.uniform(-0.6, 0.6)) * facing), 0, 255)
        piece.mix(wall, open_share)
        piece.mix(content, through)
    else:
        piece.mix(content, open_share)
    if rng.random() < 0.16:
        _stem(piece, radius * min(flat, 0.95), surface)
    if kind == "plain" and rng.random() < 0.3:  # a thin burr
        piece.gray += (piece.cover(edge + 0.5) - piece.cover(edge - 0.5)) * F(rng.uniform(-30, 80))
    np.clip(piece.gray, 0, 255, out=piece.gray)
    disc = np.abs(edge) < 1.3 * max(1.0, 0.12 * radius)
    seen = np.abs(piece.gray - before)[edge > 0].mean() if (edge > 0).any() else 0
    gx, gy = cv2.Sobel(piece.gray, cv2.CV_32F, 1, 0), cv2.Sobel(piece.gray, cv2.CV_32F, 0, 1)
    contrast = np.hypot(gx, gy)[disc].mean() / 8 if disc.any() else 0
    return outer if seen > 10 and contrast > 3 else None


def _stem(piece, radius, surface):
    """A valve that stands in the hole: a few concentric discs, off the middle."""
    rng = piece.rng
    sx, sy = rng.normal(0, 0.08, 2) * radius
    light = rng.uniform(0, 2 * math.pi)
    size = rng.uniform(0.4, 0.85) * radius
    gray = surface * rng.uniform(0.15, 1.6)
    for _ in range(rng.integers(1, 4)):
        disc = piece.ellipse(sx, sy, size, 1, 0)
        lit = 1 + F(rng.uniform(-0.4, 0.4)) * ((piece.dx - sx) * math.cos(light) + (piece.dy - sy) * math.sin(light)) / F(size)
        piece.mix(np.clip(F(gray) * lit, 0, 255), piece.cover(disc))
        size *= rng.uniform(0.35, 0.8)
        gray *= rng.choice([rng.uniform(0.3, 0.8), rng.uniform(1.2, 2.0)])


def _ragged(piece, radius, roughness):
    """Signed distance to an outline that no drill makes."""
    rng = piece.rng
    angle = np.arctan2(piece.dy, piece.dx)
    reach = np.full_like(angle, radius)
    for k in range(2, 9):
        reach += F(radius * roughness * rng.normal(0, 1) / k ** 0.6) * np.cos(k * angle + F(rng.uniform(0, 6.3)))
    return reach - np.hypot(piece.dx, piece.dy)


def blot(piece, radius, black):
    """Dirt, rust, a drop, a chip: dark or bright, ragged or fading out."""
    rng = piece.rng
    keep, piece.soft = piece.soft, rng.choice([piece.soft, rng.uniform(0.15, 0.8) * radius])
    share = piece.cover(_ragged(piece, radius, rng.uniform(0.1, 0.3)))
    piece.soft = keep
    surface = piece.around()
    level = surface * rng.uniform(0.05, 0.8) if rng.random() < 0.75 else min(255, surface * rng.uniform(1.2, 2))
    piece.mix(F(max(level, black)), share * F(rng.uniform(0.5, 1)))


def dimple(piece, radius, black):
    """A round hollow or a flat head without depth: a mark of an ejector, a rivet, a dot."""
    rng = piece.rng
    surface = piece.around()
    light = rng.uniform(0, 2 * math.pi)
    edge = piece.ellipse(0, 0, radius, 1, 0)
    share = piece.cover(edge)
    kind = rng.choice(["dome", "step", "ring"])
    facing = (piece.dx * F(math.cos(light)) + piece.dy * F(math.sin(light))) / F(radius)
    if kind == "dome":
        piece.gray *= 1 + share * np.clip(F(rng.uniform(0.2, 0.7)) * facing * np.minimum(1, np.hypot(piece.dx, piece.dy) / radius), -0.9, 0.9)
    elif kind == "step":
        piece.gray *= 1 + share * F(rng.uniform(-0.25, 0.35))
        band = share * (1 - piece.cover(edge - F(rng.uniform(0.5, 0.15 * radius + 1))))
        piece.gray *= 1 + band * np.clip(F(rng.uniform(0.3, 1.0)) * facing, -0.9, 1.5)
    else:
        band = share * (1 - piece.cover(edge - F(rng.uniform(0.6, 0.2 * radius + 1))))
        piece.mix(F(surface * rng.uniform(0.3, 1.6)), band)


def text(piece, radius, black):
    rng = piece.rng
    mask = np.zeros(piece.gray.shape, np.uint8)
    word = "".join(rng.choice(list("0OQDC8698BGUPRSe")) for _ in range(rng.integers(1, 5)))
    scale = 2 * radius / 22
    (w, h), _ = cv2.getTextSize(word[:1], cv2.FONT_HERSHEY_SIMPLEX, scale, 1)
    at = (int(piece.center[0] - w / 2), int(piece.center[1] + h / 2))
    cv2.putText(mask, word, at, int(rng.choice([cv2.FONT_HERSHEY_SIMPLEX, cv2.FONT_HERSHEY_DUPLEX, cv2.FONT_HERSHEY_TRIPLEX])), scale, 255,
                max(1, int(rng.uniform(0.1, 0.4) * radius)), cv2.LINE_AA)
    turn = cv2.getRotationMatrix2D((float(piece.center[0]), float(piece.center[1])), rng.uniform(0, 360), 1)
    mask = cv2.warpAffine(mask, turn, (mask.shape[1], mask.shape[0]))
    piece.mix(F(np.clip(piece.around() * rng.choice([rng.uniform(0.1, 0.8), rng.uniform(1.2, 2)]), 0, 255)), mask.astype(F) / 255)


def bar(piece, radius, black):
    """A slot, a seam, the edge of a shadow or of a window."""
    rng = piece.rng
    a = rng.uniform(0, math.pi)
    along = piece.dx * F(math.cos(a)) + piece.dy * F(math.sin(a))
    across = piece.dy * F(math.cos(a)) - piece.dx * F(math.sin(a))
    length = radius * rng.uniform(1.5, 6)
    inside = np.minimum(F(radius * rng.uniform(0.3, 1.1)) - np.abs(across), F(length) - np.abs(along + F(rng.uniform(-1, 1) * length)))
    piece.mix(F(np.clip(piece.around() * rng.uniform(0.05, 1.7), 0, 255)), piece.cover(inside))


def dot(piece, radius, black):
    """Paint, chalk, a sticker: a flat disc of one brightness, perhaps with a rim."""
    rng = piece.rng
    surface = piece.around()
    level = surface * (rng.uniform(0.35, 0.9) if rng.random() < 0.6 else rng.uniform(1.15, 2.2))
    keep, piece.soft = piece.soft, piece.soft * rng.uniform(1, 2)
    disc = piece.ellipse(0, 0, radius, rng.uniform(0.8, 1.0), rng.uniform(0, 3.1))
    disc = disc + F(radius * rng.uniform(0, 0.05)) * np.cos(rng.integers(2, 6) * np.arctan2(piece.dy, piece.dx) + F(rng.uniform(0, 6.3)))
    piece.mix(F(np.clip(level, 0, 255)), piece.cover(disc) * F(rng.uniform(0.6, 1)))
    if rng.random() < 0.4:
        piece.gray += (piece.cover(disc + 0.8) - piece.cover(disc - 0.8)) * F(rng.uniform(-0.3, 0.3) * surface)
    piece.soft = keep


def pin_mark(piece, radius, black):
    """A round step in the surface, up or down, whose floor is as bright as its surroundings: lit on one side, in shadow on
    the other."""
    rng = piece.rng
    surface = piece.around()
    light = rng.uniform(0, 2 * math.pi)
    edge = piece.ellipse(0, 0, radius, rng.uniform(0.9, 1), rng.uniform(0, 3.1))
    facing = np.cos(np.arctan2(piece.dy, piece.dx) - F(light)) * F(rng.choice([-1, 1]))
    width = F(rng.uniform(0.05, 0.3) * radius + 0.4)
    piece.gray *= 1 + piece.cover(edge) * F(rng.normal(0, 0.12))
    band = piece.cover(edge + 0.5 * width) * (1 - piece.cover(edge - 0.5 * width))
    piece.gray *= 1 + band * np.clip(F(rng.uniform(0.3, 0.9)) * facing + F(rng.normal(0, 0.15)), -0.95, 1.5)
    if rng.random() < 0.3:  # a mark within the mark
        inner = piece.ellipse(*rng.normal(0, 0.1, 2) * radius, radius * rng.uniform(0.15, 0.5), 1, 0)
        piece.mix(F(surface * rng.uniform(0.3, 1.4)), piece.cover(inner))


def clock(piece, radius, black):
    """A dial cast into the surface: rings, digits or dots around, an arrow in the middle."""
    rng = piece.rng
    surface = piece.around()
    ink = F(np.clip(surface * rng.choice([rng.uniform(0.3, 0.8), rng.uniform(1.2, 1.9)]), 0, 255))
    for share in rng.choice([0.35, 0.5, 0.7, 1.0, 1.3], rng.integers(1, 4), replace=False):
        ring = piece.ellipse(0, 0, radius * share, 1, 0)
        width = rng.uniform(0.4, 0.12 * radius + 0.6)
        piece.mix(ink, piece.cover(ring + 0.5 * width) * (1 - piece.cover(ring - 0.5 * width)))
    n = int(rng.integers(6, 13))
    for i in range(n):
        a = 2 * math.pi * i / n
        x, y = 0.82 * radius * math.cos(a), 0.82 * radius * math.sin(a)
        if rng.random() < 0.8:
            piece.mix(ink, piece.cover(piece.ellipse(x, y, rng.uniform(0.06, 0.12) * radius, rng.uniform(0.4, 1), a)))
    if rng.random() < 0.7:
        a = rng.uniform(0, 2 * math.pi)
        along = piece.dx * F(math.cos(a)) + piece.dy * F(math.sin(a))
        across = piece.dy * F(math.cos(a)) - piece.dx * F(math.sin(a))
        piece.mix(ink, piece.cover(np.minimum(F(0.08 * radius + 0.3) - np.abs(across), F(0.45 * radius) - np.abs(along))))


def round_mark(piece, radius, black):
    """Round, but nothing deep."""
    (dot, pin_mark, dimple)[int(piece.rng.integers(3))](piece, radius, black)


def drop(piece, radius, black):
    """Ragged dirt, or a drop that bends the light: bright on one side, dark on the other."""
    rng = piece.rng
    if rng.random() < 0.75:
        blot(piece, radius, black)
        return
    edge = _ragged(piece, radius, rng.uniform(0.02, 0.12))
    a = rng.uniform(0, 2 * math.pi)
    slope = (piece.dx * F(math.cos(a)) + piece.dy * F(math.sin(a))) / F(radius)
    piece.gray *= 1 + piece.cover(edge) * np.clip(F(rng.uniform(0.2, 0.6)) * slope, -0.9, 1.5)
    x, y = rng.normal(0, 0.35, 2) * radius
    piece.mix(F(255), piece.cover(piece.ellipse(x, y, rng.uniform(0.1, 0.25) * radius, 1, 0)) * F(rng.uniform(0.2, 1)))


def lettering(piece, radius, black):
    (text if piece.rng.random() < 0.6 else clock)(piece, radius, black)


LOOKALIKES = (drop, round_mark, lettering, bar)  # in the order of the finder's Lookalike


def no_hole(piece, radius, black):
    """Paints something that is no hole, and returns its kind."""
    kind = int(piece.rng.choice(len(LOOKALIKES), p=[0.3, 0.35, 0.2, 0.15]))
    LOOKALIKES[kind](piece, radius * piece.rng.uniform(0.7, 1.3), black)
    np.clip(piece.gray, 0, 255, out=piece.gray)
    return kind


def photograph(gray, rng, blur=2.0):
    """Lens, light and sensor, once more: blur, gain, gamma, a slope of light, noise."""
    out = gray.astype(F)
    if rng.random() < 0.5:
        out = cv2.GaussianBlur(out, (0, 0), rng.uniform(0.3, blur))
    if rng.random() < 0.6:
        gamma = math.exp(rng.normal(0, 0.25))
        out = 255 * (out / 255) ** F(gamma)
    if rng.random() < 0.5:
        h, w = out.shape
        a = rng.uniform(0, 2 * math.pi)
        slope = (np.arange(w, dtype=F)[None, :] / w - 0.5) * F(math.cos(a)) + (np.arange(h, dtype=F)[:, None] / h - 0.5) * F(math.sin(a))
        out *= 1 + slope * F(rng.uniform(0, 1.0))
    out = out * F(math.exp(rng.normal(0, 0.25))) + F(rng.normal(0, 5))
    if rng.random() < 0.6:
        out += rng.normal(0, rng.uniform(0.5, 10), out.shape).astype(F)
    return np.clip(out, 0, 255)
