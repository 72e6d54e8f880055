"""The valve hole: what is cut, what stands in it, and where its edges are in space."""
import math

import numpy as np

from outlines import TAU
from sdl import cone, cylinder


class Hole:
    """Measures in mm: `r` of the bore, `outer` of the chamfer or counterbore, `sink` the depth of its lower edge below
    the ledge. `level` bores run along the hub axis, the others square to the ledge."""

    def __init__(self, rng, rim_radius, incline):
        r = rng.choice([11.3, 15.7, rng.uniform(8, 20)], p=[0.4, 0.3, 0.3]) / 2
        self.r = float(np.clip(r, 0.0155 * rim_radius, 0.054 * rim_radius))
        self.edge = str(rng.choice(["plain", "chamfer", "counterbore"], p=[0.42, 0.36, 0.22]))
        self.level = abs(incline) >= 3 and rng.random() < 0.45
        if self.level and self.edge == "plain":
            self.edge = "inclined"
        self.sink, self.outer = 0.0, self.r
        if self.edge == "chamfer":
            self.sink, half = rng.uniform(0.5, 3.0), rng.uniform(30, 60)
            self.outer = min(self.r + self.sink * math.tan(math.radians(half)), 1.6 * self.r)
        elif self.edge == "counterbore":
            self.sink, self.outer = rng.uniform(0.5, 4.0), self.r * rng.uniform(1.2, 1.7)
        self.through = bool(rng.random() < 0.68)
        self.deep = 60.0 if self.through else self.r * rng.uniform(2.0, 4.0)
        self.stem = str(rng.choice(["none", "snap_in", "clamp_in"], p=[0.88, 0.07, 0.05]))
        self.stem_share, self.stem_height = rng.uniform(0.4, 0.72), rng.uniform(-3, 18)

    def place(self, wheel, angle):
        self.wheel, self.angle = wheel, angle
        self.frame = wheel.frame(wheel.rv, angle, self.level)

    def cutters(self, edge_texture, wall_texture):
        z = -self.sink
        out = [cylinder(0, 0, z - self.deep, 6 if not self.sink else z + 0.01, self.r, wall_texture)]
        if self.edge == "chamfer":
            k = (self.outer - self.r) / self.sink
            out.append(cone(z, self.r, 3, self.r + k * (3 + self.sink), edge_texture))
        elif self.edge == "counterbore":
            out.append(cylinder(0, 0, z, 6, self.outer, edge_texture))
        return ["object { %s %s }" % (o, self.frame.matrix()) for o in out]

    def stem_sdl(self):
        if self.stem == "none":
            return []
        r, h = self.r * self.stem_share, self.stem_height
        rubber = "pigment { rgb 0.035 } finish { ambient 0.6 diffuse 0.7 specular 0.12 roughness 0.06 }"
        metal = "pigment { rgb 0.42 } finish { ambient 0.5 diffuse 0.55 specular 0.5 roughness 0.03 reflection 0.15 }"
        skin = rubber if self.stem == "snap_in" else metal
        parts = [cone(-40, r, h, r * 0.85, skin), cylinder(0, 0, h, h + 4, r * 0.8, metal),
                 cylinder(0, 0, h + 3.5, h + 4.2, r * 0.3, rubber)]
        return ["object { %s %s }" % (p, self.frame.matrix()) for p in parts]

    def _curve(self, radius, sink, n=96):
        """The edge of a bore in space: the circle at `sink`, or for 0 the curve where it meets the ledge's cone."""
        t = np.arange(n) * TAU / n
        x, y, z = radius * np.cos(t), radius * np.sin(t), np.full(n, -float(sink))
        for _ in range(0 if sink else 6):
            p = self.frame.at(x, y, z)
            z -= (p[:, 2] - self.wheel.ledge_z(np.hypot(p[:, 0], p[:, 1]))) / self.frame.n[2]
        return self.frame.at(x, y, z)

    def mouth(self):
        return self._curve(self.r, self.sink)

    def rim(self):
        """The outer edge of the chamfer or counterbore on the ledge; the mouth itself where there is none."""
        if self.edge == "chamfer" and self.level:
            return self._cone_curve()
        return self._curve(self.outer, 0.0)

    def _cone_curve(self):
        """Where a chamfer whose axis is not square to the ledge meets it: the radius grows with the height."""
        k, out = (self.outer - self.r) / self.sink, self._curve(self.outer, 0.0)
        t = np.arange(len(out)) * TAU / len(out)
        radius = np.full(len(out), self.outer)
        for _ in range(12):
            q = self.frame.at(radius * np.cos(t), radius * np.sin(t), 0.0 * t)
            height = self.wheel.ledge_z(np.hypot(q[:, 0], q[:, 1])) - q[:, 2]
            radius = np.maximum(self.r, self.outer + k * height)
        return self.frame.at(radius * np.cos(t), radius * np.sin(t), height)
