"""The scene language in a few words: vectors, matrices, local frames, and running the ray tracer.

Everything is in millimetres in the wheel's own axes: z is the hub axis and points at the camera, z = 0 is the plane of
the rim's outer edge, x points right and y up on the picture.
"""
import math
import os
import subprocess
import tempfile

import cv2
import numpy as np

TAU = 2 * math.pi


def vec(v):
    return "<%s>" % ",".join("%.6g" % c for c in v)


def rgb(value):
    return "rgb %.5g" % value


def rotated(deg):
    return "rotate <0,0,%.6g>" % deg


class Frame:
    """A place on the wheel: an origin with the axes u, v, n (unit, at right angles); local (x, y, z) = (u, v, n)."""

    def __init__(self, origin, u, n):
        self.o, self.u, self.n = (np.asarray(a, float) for a in (origin, u, n))
        self.n = self.n / np.linalg.norm(self.n)
        self.u = self.u - self.n * self.u.dot(self.n)
        self.u /= np.linalg.norm(self.u)
        self.v = np.cross(self.n, self.u)

    def at(self, x, y, z):
        return self.o + np.multiply.outer(x, self.u) + np.multiply.outer(y, self.v) + np.multiply.outer(z, self.n)

    def matrix(self):
        return "matrix <%s>" % ",".join("%.9g" % c for c in np.concatenate([self.u, self.v, self.n, self.o]))


def prism(points, z0, z1, taper=0.0, texture=""):
    """A column over the closed polygon `points` (n x 2) from z0 up to z1; `taper` > 0 makes it wider at the top: the
    outline at z0 is (1 - taper) times that at z1, about the polygon's mean."""
    p = np.asarray(points, float)
    mid = p.mean(axis=0)
    q = np.vstack([p - mid, p[:1] - mid])
    pts = ",".join(vec(c) for c in q)
    if taper > 1e-4:
        lo, s = 1 - taper, (z1 - z0) / taper
        head, m = "conic_sweep linear_spline %.6g, 1, %d, " % (lo, len(q)), (s, z1 - s)
    else:
        head, m = "linear_spline %.6g, %.6g, %d, " % (z0, z1, len(q)), (1.0, 0.0)
    place = "matrix <1,0,0, 0,0,%.7g, 0,1,0, %.7g,%.7g,%.7g>" % (m[0], mid[0], mid[1], m[1])
    return "prism { %s %s %s %s }" % (head, pts, place, texture)


def cylinder(x, y, z0, z1, r, texture=""):
    return "cylinder { <%.6g,%.6g,%.6g>, <%.6g,%.6g,%.6g>, %.6g %s }" % (x, y, z0, x, y, z1, r, texture)


def cone(z0, r0, z1, r1, texture=""):
    return "cone { <0,0,%.6g>, %.6g, <0,0,%.6g>, %.6g %s }" % (z0, r0, z1, r1, texture)


def lathe(profile, texture=""):
    """The solid that the closed polygon of (radius, z) sweeps about the z axis."""
    p = list(profile) + [profile[0]]
    pts = ",".join("<%.6g,%.6g>" % (r, z) for r, z in p)
    return "lathe { linear_spline %d, %s rotate <90,0,0> scale <1,1,1> %s }" % (len(p), pts, texture)


def trace(scene, width, height, antialias=""):
    """Renders scene text to linear radiance, float32 of height x width x 3: one channel for each sector of lamps (see
    lights.py), gray is their mean. Raises RuntimeError with the tracer's message."""
    with tempfile.TemporaryDirectory(prefix="wheel") as d:
        src, out = os.path.join(d, "s.pov"), os.path.join(d, "s.hdr")
        with open(src, "w") as f:
            f.write(scene)
        cmd = ["povray", "+I" + src, "+O" + out, "+FH", "+W%d" % width, "+H%d" % height, "-D", "-V", "+WT1", "-GD",
               "-GR", "-GS", "+MB8"] + antialias.split()
        run = subprocess.run(cmd, cwd=d, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        image = cv2.imread(out, cv2.IMREAD_ANYDEPTH | cv2.IMREAD_COLOR) if run.returncode == 0 else None
        if image is None:
            if os.environ.get("KEEP_SCENE"):
                os.replace(src, os.environ["KEEP_SCENE"])
            raise RuntimeError("povray failed (%d): %s" % (run.returncode, run.stderr.decode(errors="replace").split("Parsing...")[-1][-1500:]))
    return image
