"""How pictures are sampled for the judge: the same formulas as in the finder (Pyramid, RingMap, HoleView)."""
import math

import cv2
import numpy as np

PATCH_SIDE = 32        # places along each side of a judged patch
PATCH_REACHES = (2.4, 7.0)  # half sides of the near and the wide view, in radii of the hole
MAP_RADIUS = 4.5       # radius of the hole looked for, in places of a ring map
BAND_MARGIN = 2.6      # radii of the hole by which a ring map reaches beyond the ring


def pyramid(gray, levels=6):
    """Level k is the 2x2 mean of level k-1; the middle of a pixel x lies at (x + 0.5) / 2^k - 0.5."""
    all_levels = [gray]
    while len(all_levels) < levels and min(all_levels[-1].shape) >= 64:
        g = all_levels[-1]
        h, w = g.shape[0] // 2, g.shape[1] // 2
        all_levels.append(cv2.resize(g[: 2 * h, : 2 * w], (w, h), interpolation=cv2.INTER_AREA))
    return all_levels


def read(file):
    """The pyramid of an image file, of any name."""
    return pyramid(cv2.imdecode(np.fromfile(file, np.uint8), cv2.IMREAD_GRAYSCALE))


def level_for(step, count):
    return int(np.clip(round(math.log2(max(step, 1e-6))), 0, count - 1))


def sample(levels, xs, ys, step):
    """Bilinear gray values at image points, from the level whose pixels are about as large as the step."""
    k = level_for(step, len(levels))
    scale = 1.0 / (1 << k)
    mx = ((xs + 0.5) * scale - 0.5).astype(np.float32)
    my = ((ys + 0.5) * scale - 0.5).astype(np.float32)
    return cv2.remap(levels[k], mx, my, cv2.INTER_LINEAR, borderMode=cv2.BORDER_REPLICATE)


def ring_map(levels, hub, band, radius):
    """The ring `band` (low, high) around `hub`, unwrapped: row = direction, column = distance. Returns the map, the
    distance of the first column and the step between places, in pixels."""
    step = radius / MAP_RADIUS
    low = max(1.0, band[0] - BAND_MARGIN * radius)
    columns = int(math.ceil((band[1] + BAND_MARGIN * radius - low) / step)) + 1
    columns = (columns + 3) // 4 * 4
    turn = max(64, int(round(math.pi * (band[0] + band[1]) / step)))
    turn = (turn + 3) // 4 * 4
    angles = 2 * math.pi * np.arange(turn) / turn
    radii = low + step * np.arange(columns)
    xs = hub[0] + radii[None, :] * np.cos(angles)[:, None]
    ys = hub[1] + radii[None, :] * np.sin(angles)[:, None]
    return sample(levels, xs, ys, step), low, step


def patch(levels, center, direction, half_side, side):
    """A square around `center`, its x axis along `direction` (radians, image axes)."""
    step = 2 * half_side / side
    u = (np.arange(side) + 0.5 - side / 2) * step
    c, s = math.cos(direction), math.sin(direction)
    xs = center[0] + u[None, :] * c - u[:, None] * s
    ys = center[1] + u[None, :] * s + u[:, None] * c
    return sample(levels, xs, ys, step)


def levels_of(gray):
    """Gray values below which 0.2 % and 95 % of a picture lie."""
    small = cv2.resize(gray, None, fx=0.125, fy=0.125, interpolation=cv2.INTER_AREA)
    return float(np.percentile(small, 0.2)), float(np.percentile(small, 95))
