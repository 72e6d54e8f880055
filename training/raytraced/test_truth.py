#!/usr/bin/python3
"""The truth against the ray tracer: what is projected lies where it is rendered."""
import math
import os
import sys
import unittest

import numpy as np

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from camera import Camera, ellipse_of  # noqa: E402
from optics import Optics  # noqa: E402
from outlines import TAU  # noqa: E402
from picture import Picture  # noqa: E402
from sdl import Frame, trace  # noqa: E402

BRIGHT = "pigment { rgb 1 } finish { emission 1 ambient 0 diffuse 0 }"
DARK = "pigment { rgb 0 } finish { emission 0 ambient 0 diffuse 0 }"
HEAD = "#version 3.7; global_settings { assumed_gamma 1.0 }\n"
FINE = 4
ALL = list(range(72))


def centroid(share, x0=0.0, y0=0.0):
    """Centre and equal-area radius of a picture of shares 0..1, traced FINE times finer than a pixel."""
    yy, xx = np.mgrid[:share.shape[0], :share.shape[1]]
    a = share.sum()
    place = lambda g, o: (float((share * g).sum() / a) + 0.5) / FINE - 0.5 + o
    return place(xx, x0), place(yy, y0), math.sqrt(a / math.pi) / FINE


class Projection(unittest.TestCase):
    def test_disc_lies_where_it_is_projected(self):
        camera = Camera((320, 240), 800, 1000, 1.8, 200, (180, 100), (150, 125))
        frame = Frame((70, -30, -40), (1, 0, 0), (0.25, -0.1, 1))
        t = np.arange(90) * TAU / 90
        x, y, a, b = ellipse_of(camera.project(frame.at(15 * np.cos(t), 15 * np.sin(t), 0 * t)))
        disc = "disc { 0, <0,0,1>, 15 %s %s }" % (frame.matrix(), BRIGHT)
        seen = centroid(trace(camera.sdl() + HEAD + disc, 320 * FINE, 240 * FINE).mean(axis=2))
        for want, got in zip((x, y, math.sqrt(a * b)), seen):
            self.assertAlmostEqual(want, got, delta=0.03)


class ValveHole(unittest.TestCase):
    """Wheels that glow, with a bore that does not: the dark part is the mouth."""

    def rendered(self, picture, edge_skin):
        x0, y0, w, h = picture.sharp_windows()[0]
        textures = {k: BRIGHT for k in picture.textures}
        cut = [(picture.wheel.rv, c) for c in picture.hole.cutters(edge_skin, DARK)]
        hole = picture.hole
        plug = "disc { <0,0,%g>, <0,0,1>, %g %s %s }" % (-hole.sink - 2, hole.r * 1.01, hole.frame.matrix(), DARK)
        scene = HEAD + "background { rgb 1 }\n" + picture.wheel.solid(picture.turn, textures, cut) + plug
        return centroid(1 - trace(picture.camera.sdl((x0, y0, w, h)) + scene, w * FINE, h * FINE).mean(axis=2), x0, y0)

    def test_mouth_and_outer_edge_lie_where_the_truth_says(self):
        kinds = {}
        for index in range(40):
            p = Picture(5, index, (640, 480), ALL, 0.0)
            p.wheel.over = False
            if kinds.get(p.hole.edge, 0) >= 2 or p.hole.outer * p.camera.focal / p.camera.distance < 5:
                continue
            kinds[p.hole.edge] = kinds.get(p.hole.edge, 0) + 1
            t = p.truth()
            for skin, keys in ((BRIGHT, ("vx", "vy", "vr")), (DARK, ("ox", "oy", "outer_r"))):
                got = self.rendered(p, skin)
                with self.subTest(index=index, edge=p.hole.edge, design=t["design"], keys=keys):
                    self.assertAlmostEqual(t[keys[0]], got[0], delta=0.05)
                    self.assertAlmostEqual(t[keys[1]], got[1], delta=0.05)
                    self.assertAlmostEqual(t[keys[2]], got[2], delta=0.03 * t[keys[2]] + 0.05)
        self.assertEqual({"plain", "chamfer", "counterbore", "inclined"}, set(kinds))

    def test_angle_is_about_the_hub_at_the_depth_of_the_mouth(self):
        p = Picture(9, 3, (640, 480), ALL, 0.0)
        t = p.truth()
        cx, cy = p.camera.project([0, 0, -t["depth_mm"]])
        self.assertAlmostEqual(t["angle"], math.degrees(math.atan2(cy - t["vy"], t["vx"] - cx)) % 360, places=3)


class Development(unittest.TestCase):
    def test_optics_move_no_centre(self):
        yy, xx = np.mgrid[:101, :121]
        disc = (np.hypot(xx - 80.3, yy - 41.6) < 9).astype(np.float32) * 0.5
        truth = centroid_of(disc)
        for seed in range(12):
            o = Optics(np.random.default_rng(seed), 1.0)
            o.noise = o.vignette = o.floor = 0.0
            o.gamma = 1.0
            o.turn = math.radians(0.1)
            got = centroid_of(o.develop(disc, 1.0, (20.0, 60.0)) / 255.0)
            self.assertAlmostEqual(truth[0], got[0], delta=0.05)
            self.assertAlmostEqual(truth[1], got[1], delta=0.05)


def centroid_of(share):
    yy, xx = np.mgrid[:share.shape[0], :share.shape[1]]
    near = share * (np.hypot(xx - 80.3, yy - 41.6) < 20)
    return (near * xx).sum() / near.sum(), (near * yy).sum() / near.sum()


class Draw(unittest.TestCase):
    def test_picture_depends_on_its_key_alone(self):
        a, b, c = (Picture(3, i, (640, 480), ALL, 0.2) for i in (4, 4, 5))
        self.assertEqual((a.truth(), a.scene(0)), (b.truth(), b.scene(0)))
        self.assertNotEqual(a.scene(0), c.scene(0))

    def test_nothing_covers_the_valve_hole(self):
        for i in range(60):
            p = Picture(11, i, (640, 480), ALL, 0.0)
            t = p.truth()
            for o in t["others"]:
                if o["kind"] in ("bolt", "window", "weld", "scratch"):
                    continue
                with self.subTest(index=i, other=o):
                    self.assertGreater(math.hypot(o["x"] - t["ox"], o["y"] - t["oy"]), t["outer_r"])


if __name__ == "__main__":
    unittest.main()
