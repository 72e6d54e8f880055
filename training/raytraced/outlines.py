"""Window outlines between the spokes: closed polygons about the hub, from control points in polar form.

A control point is (radius, angle): radius 0 at the inner and 1 at the outer end of the windows, angle in radians.
"""
import math

import numpy as np

TAU = 2 * math.pi


def chaikin(points, times=2, keep=0.25):
    """Rounds the corners of a closed polygon by cutting them."""
    p = np.asarray(points, float)
    for _ in range(times):
        q = np.roll(p, -1, axis=0)
        p = np.stack([p * (1 - keep) + q * keep, p * keep + q * (1 - keep)], 1).reshape(-1, 2)
    return p


def densified(points, step):
    """The same polygon with points no further apart than `step`, so that cut corners keep a small radius."""
    out = []
    for a, b in zip(points, np.roll(points, -1, axis=0)):
        n = max(1, int(np.linalg.norm(b - a) / step))
        out += [a + (b - a) * i / n for i in range(n)]
    return np.array(out)


def pruned(points, bend=0.02):
    """Without points that lie on a straight run: fewer sides to test for every ray."""
    p = np.asarray(points, float)
    a, b = p - np.roll(p, 1, axis=0), np.roll(p, -1, axis=0) - p
    turn = np.abs(a[:, 0] * b[:, 1] - a[:, 1] * b[:, 0]) / (np.hypot(*a.T) * np.hypot(*b.T) + 1e-9)
    return p[turn > bend]


def area(p):
    x, y = np.asarray(p).T
    return 0.5 * abs((x * np.roll(y, -1) - y * np.roll(x, -1)).sum())


def polar(points, r0, r1, corner):
    p = np.array([((r0 + (r1 - r0) * r) * math.cos(a), (r0 + (r1 - r0) * r) * math.sin(a)) for r, a in points])
    return pruned(chaikin(densified(p, max(corner, 1.0)), 2))


def between(left, right, r0, r1, corner, start=0.0, end=1.0, steps=7):
    """The window between two spoke flanks: `left(r)` and `right(r)` give the flanks' angles at radius r in mm."""
    rs = np.linspace(start, end, steps)
    a0, a1 = (np.array([f(r0 + (r1 - r0) * t) for t in rs]) for f in (left, right))
    gap = (a1 - a0) * (r0 + (r1 - r0) * rs)
    ok = gap > 2.5
    if ok.sum() < 2 or not ok[-1]:
        ok = gap > gap.max() * 0.25
        if ok.sum() < 2:
            return None
    rs, a0, a1 = rs[ok], a0[ok], a1[ok]
    outer = [(rs[-1], a0[-1] + (a1[-1] - a0[-1]) * t) for t in np.linspace(0, 1, 6)[1:-1]]
    inner = [(rs[0], a1[0] + (a0[0] - a1[0]) * t) for t in np.linspace(0, 1, 4)[1:-1]]
    ring = list(zip(rs, a0)) + outer + list(zip(rs[::-1], a1[::-1])) + inner
    return polar(ring, r0, r1, corner)


def spokes(angles, widths, r0, r1, corner, bend=None, start=0.0):
    """Windows between spokes at `angles` with widths(r, index) in mm; bend(r, index) adds to a spoke's angle."""
    n, out = len(angles), []
    for i in range(n):
        j = (i + 1) % n
        a, b = angles[i], angles[j] + (TAU if j == 0 else 0)

        def flank(k, base, side):
            return lambda r: base + (bend(r, k) if bend else 0) + side * math.asin(min(0.9, widths(r, k) / 2 / r))
        w = between(flank(i, a, 1), flank(j, b, -1), r0, r1, corner, start(i) if callable(start) else start)
        if w is not None and area(w) > 40:
            out.append(w)
    return out


def round_hole(r, angle, radius_u, radius_v, n=20):
    """An oval at (r, angle), half axes along and across the radius."""
    t = np.arange(n) * TAU / n
    u, v = r + radius_u * np.cos(t), radius_v * np.sin(t)
    c, s = math.cos(angle), math.sin(angle)
    return np.stack([u * c - v * s, u * s + v * c], 1)


def arc_slot(r, half_width, angle, half_angle, n=7):
    """A slot that follows a circle, with rounded ends."""
    ts = np.linspace(-half_angle, half_angle, n)
    outer = [((r + half_width) * math.cos(angle + t), (r + half_width) * math.sin(angle + t)) for t in ts]
    inner = [((r - half_width) * math.cos(angle + t), (r - half_width) * math.sin(angle + t)) for t in ts[::-1]]
    return pruned(chaikin(densified(np.array(outer + inner), half_width * 0.9), 2))
