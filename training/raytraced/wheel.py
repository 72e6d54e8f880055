"""A wheel as a solid: the turned profile, the windows and the hub's holes."""
import math

import numpy as np

from outlines import TAU, chaikin, densified
from sdl import Frame, cone, cylinder, lathe, prism, rotated


class Wheel:
    """Design and size in, places in mm out. `room` is the radius that the valve hole's surroundings need on the ledge."""

    def __init__(self, design, rim_radius, room):
        d, self.design, self.R = design, design, rim_radius
        rng = np.random.default_rng(d.seed)
        self.r_lip = self.R * (1 - d.lip)
        self.r_flange = self.r_lip - d.flange * rng.uniform(0.05, 0.5)
        self.r1 = self.r_flange - d.seat * self.R - rng.uniform(0.8, 3)
        width = max(d.ledge * self.R, 2.3 * room + 3)
        self.r0 = self.r1 - width
        self.rv = self.r1 - width * rng.uniform(0.45, 0.55)
        self.slope = math.tan(math.radians(d.incline))
        self.zv = -d.flange - max(d.drop, 0.6 * width * abs(self.slope) + 1)
        face_top = min(self.ledge_z(self.r0) + d.step, -1.0)
        self.rf = self.r0 - 1.5 - 0.35 * abs(face_top - self.ledge_z(self.r0))
        self.r_hub, self.r_bore = d.hub * self.R, d.bore * self.R
        self.r_hub = min(self.r_hub, self.rf - 0.2 * self.R)
        self.zf, self.z_hub = face_top, min(d.hub_z, 4.0)
        self.depth = rng.uniform(0.6, 1.0) * self.R
        self.depth = max(self.depth, 25 + d.thick - min(self.z_hub, self.zv, self.zf))
        self.thin = rng.uniform(4, 11)
        self.r_bolt = 0.5 * (self.r_bore + self.r_hub) * rng.uniform(0.95, 1.08)
        self.bolt = rng.uniform(5.5, 7.5), rng.uniform(9.5, 13), rng.random() < 0.7
        self.groove = rng.uniform(4, 9), rng.uniform(1.5, 4)
        self.over = d.over
        g = dict(r0=self.r_hub + 3, r1=self.rf - rng.uniform(1.5, 6), corner=d.corner * self.R)
        self.axes, self.windows = d.windows(g, rng)
        self.over_width = rng.uniform(0.25, 0.4) * TAU * self.rv / max(1, len(self.axes))

    def ledge_z(self, r):
        return self.zv + self.slope * (r - self.rv)

    def face_z(self, r):
        """Height of the disc's face inside the ledge, r from the hub to rf."""
        s = np.clip((r - self.r_hub) / (self.rf - self.r_hub), 0, 1)
        return self.z_hub + (self.zf - self.z_hub) * s ** self.design.curve

    def surface_z(self, r):
        """Front surface at radius r, for laying things on it."""
        if r > self.r_flange:
            return 0.0
        if r > self.r1:
            return -self.design.flange
        return float(self.ledge_z(r) if r > self.r0 else self.face_z(r))

    def frame(self, r, angle, level=False):
        """A frame on the surface, u along the radius; `level` keeps its normal along the hub axis."""
        s = 0.0
        if not level:
            e = 0.5
            s = (self.surface_z(r + e) - self.surface_z(r - e)) / (2 * e)
            s = s if abs(s) < 1.2 else 0.0
        c, q = math.cos(angle), math.sin(angle)
        return Frame((r * c, r * q, self.surface_z(r)), (c, q, s), (-s * c, -s * q, 1))

    def profiles(self):
        """Closed (radius, z) outlines of the four rings that the solid is made of: a ray then meets only the cutters
        of the ring that it hits, which makes tracing several times faster than one solid would."""
        d, t = self.design, self.design.thick
        z0, z1 = self.ledge_z(self.r0), self.ledge_z(self.r1)
        outside = max(self.R - 5, self.r1 + 2.5)
        seat = [(self.r1 + 1.5, -d.flange - 0.06 * d.seat * self.R)] if d.seat else []
        shell = [(self.R, 0), (self.r_lip, 0), (self.r_flange, -d.flange)] + seat + [
            (self.r1, z1), (self.r1, -self.depth), (outside, -self.depth), (outside, -d.flange - 5), (self.R - 1, -4)]
        ledge = [(self.r1, z1), (self.r0, z0), (self.r0, z0 - self.thin), (self.r1, z1 - self.thin)]
        rs = np.linspace(self.rf, self.r_hub, 18)
        face = [(self.r0, z0)] + [(r, self.face_z(r)) for r in rs] + [(self.r_hub, self.z_hub - t - 6)]
        face += [(r, self.face_z(r) - t) for r in rs[::-1][2:-1]]
        face += [(self.rf, min(self.zf - t * 0.7, z0 - self.thin)), (self.r0, z0 - self.thin)]
        low = self.z_hub - t - 6
        hub = [(self.r_hub, self.z_hub), (self.r_bore, self.z_hub), (self.r_bore, low - 2), (self.r_hub, low)]
        return dict(lip=shell, ledge=ledge, face=face, hub=hub)

    def pockets(self):
        """Recesses between the bolt holes, as outlines."""
        n, h = self.design.bolts, 0.3 * (self.r_hub - self.r_bore)
        if not self.design.pockets or n > 6:
            return []
        half = 0.5 * math.pi / n
        out = []
        for i in range(n):
            a = TAU * (i + 0.5) / n
            p = [((self.r_bolt + s * h) * math.cos(a + q), (self.r_bolt + s * h) * math.sin(a + q))
                 for s, q in ((1, -half), (1, 0), (1, half), (-0.7, half * 0.6), (-0.7, -half * 0.6))]
            out.append(chaikin(densified(np.array(p), h), 2))
        return out

    def window_cutters(self, wall):
        """Windows and spoke grooves, for the face."""
        z1 = max(self.zf, self.z_hub, self.ledge_z(self.r0)) + 3
        z0 = min(self.zf, self.z_hub, self.ledge_z(self.r0)) - self.design.thick - 12
        out = [prism(w, z0, z1, self.design.taper, wall) for w in self.windows]
        for a in self.axes if self.design.groove and len(self.axes) <= 10 else []:
            ra, rb, (gr, deep) = self.r_hub * 1.12, self.rf - 8, self.groove
            za, zb = (self.face_z(q) + gr - deep for q in (ra, rb))
            out.append("cylinder { <%g,0,%g>,<%g,0,%g>,%g rotate <0,0,%g> %s }" % (ra, za, rb, zb, gr, math.degrees(a), wall))
        return out

    def hub_cutters(self, wall):
        """Bolt holes with their seats, and pockets."""
        r, seat, conical = self.bolt
        z, out = self.z_hub, [prism(p, self.z_hub - 9, self.z_hub + 2, 0.12, wall) for p in self.pockets()]
        for i in range(self.design.bolts):
            a = TAU * i / self.design.bolts
            x, y = self.r_bolt * math.cos(a), self.r_bolt * math.sin(a)
            out.append(cylinder(x, y, z - 60, z + 2, r, wall))
            out.append("object { %s translate <%g,%g,%g> }" % (cone(-6, r * 0.9, 0.5, seat, wall), x, y, z) if conical
                       else cylinder(x, y, z - 5, z + 2, seat, wall))
        return out

    def overs(self, turn, texture):
        """Spoke ends that run over the ledge to the flange."""
        if not self.over or len(self.axes) > 12:
            return []
        zf, zl, w = self.zf, self.ledge_z(self.r0), self.over_width
        top = min(-1.0, max(zf, -self.design.flange))
        p = [(self.rf - 5, zf), (self.r1 + 3, top), (self.r1 + 3, self.ledge_z(self.r1) - 2), (self.rf - 5, min(zf, zl) - 3)]
        pts = ",".join("<%g,%g>" % q for q in p + p[:1])
        one = "prism { linear_spline %g, %g, %d, %s " % (-w / 2, w / 2, len(p) + 1, pts)
        return [one + "%s %s }" % (rotated(turn + math.degrees(a)), texture) for a in self.axes]

    def solid(self, turn, textures, cutters):
        """The wheel's text; `turn` turns the design in degrees, textures are by ring (and wall, for cut faces), and
        `cutters` are (radius, text) of what is taken from the ring there."""
        own = dict(lip=[], ledge=[], face=self.window_cutters(textures["wall"]), hub=self.hub_cutters(textures["wall"]))
        own = {k: ["object { %s %s }" % (o, rotated(turn)) for o in v] for k, v in own.items()}
        for radius, text in cutters:
            own["ledge" if self.r0 < radius < self.r1 else "hub" if radius < self.r_hub else "face"].append(text)
        rings = ["difference { %s %s }" % (lathe(p, textures[k]), "\n".join(own[k])) if own[k] else lathe(p, textures[k])
                 for k, p in self.profiles().items()]
        return "\n".join(rings + self.overs(turn, textures["face"]))
