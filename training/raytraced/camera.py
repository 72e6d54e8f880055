"""The pinhole camera: one projection for the ray tracer and for the truth."""
import math

import numpy as np


class Camera:
    """Pixels: the middle of the top-left pixel is (0,0). `tilt` is the angle between the optical and the hub axis."""

    def __init__(self, size, focal_px, distance, tilt_deg=0.0, azimuth_deg=0.0, hub_px=None, principal=None):
        self.w, self.h = size
        self.focal = float(focal_px)
        self.distance = float(distance)
        self.pp = np.array(principal if principal is not None else ((self.w - 1) / 2, (self.h - 1) / 2), float)
        t, a = math.radians(tilt_deg), math.radians(azimuth_deg)
        back = np.array([math.sin(t) * math.cos(a), math.sin(t) * math.sin(a), math.cos(t)])
        self.forward = -back
        self.right = np.cross([0, 1, 0], back)
        self.right /= np.linalg.norm(self.right)
        self.up = np.cross(back, self.right)
        off = (np.asarray(hub_px, float) - self.pp) * distance / self.focal if hub_px is not None else np.zeros(2)
        self.place = back * distance - self.right * off[0] + self.up * off[1]

    def project(self, points):
        """World points (..., 3) to pixels (..., 2)."""
        p = np.asarray(points, float) - self.place
        k = self.focal / (p @ self.forward)
        return np.stack([self.pp[0] + k * (p @ self.right), self.pp[1] - k * (p @ self.up)], axis=-1)

    def sdl(self, window=None):
        """The camera for the picture, or for its window (x0, y0, width, height) in whole pixels."""
        x0, y0, w, h = window or (0, 0, self.w, self.h)
        dx, dy = x0 + w / 2 - 0.5 - self.pp[0], y0 + h / 2 - 0.5 - self.pp[1]
        ahead = self.forward * self.focal + self.right * dx - self.up * dy
        return "camera { perspective location %s direction %s right %s up %s }\n" % tuple(
            "<%.9g,%.9g,%.9g>" % tuple(v) for v in (self.place, ahead / self.focal, self.right * w / self.focal,
                                                    self.up * h / self.focal))


def ellipse_of(points):
    """Least-squares ellipse through projected points: centre x, y, semi-major, semi-minor."""
    p = np.asarray(points, float)
    mid, s = p.mean(axis=0), p.std()
    x, y = ((p - mid) / s).T
    a, b, c, d, e = np.linalg.lstsq(np.stack([x * x, x * y, y * y, x, y], 1), np.ones(len(x)), rcond=None)[0]
    centre = np.linalg.solve([[2 * a, b], [b, 2 * c]], [-d, -e])
    level = 1 + a * centre[0] ** 2 + b * centre[0] * centre[1] + c * centre[1] ** 2
    axes = np.sort(np.sqrt(level / np.linalg.eigvalsh([[a, b / 2], [b / 2, c]])))[::-1] * s
    return centre[0] * s + mid[0], centre[1] * s + mid[1], axes[0], axes[1]
