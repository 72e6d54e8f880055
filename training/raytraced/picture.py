"""One picture from (seed, index, size, designs): the draw, the render, and the truth by projection."""
import math

import numpy as np

import beneath
import lights
import shadows
import surfaces
from camera import Camera
from clutter import Heap
from designs import Design
from hole import Hole
from optics import Optics
from outlines import TAU
from sdl import trace
from truth import truth_of
from wheel import Wheel

class Picture:
    """Everything drawn; `attempt` draws other lamps for a hole that nobody could see in the first ones."""

    def __init__(self, seed, index, size, designs, no_hole):
        self.key = [seed, index, size[0], size[1]]
        rng = np.random.default_rng(self.key)
        self.design = Design(int(rng.choice(designs)))
        self.size, (w, h) = size, size
        self.has_hole = bool(rng.random() >= no_hole)
        radius = rng.uniform(165, 280)
        rim_px = h * rng.uniform(0.25, 0.49)
        off = rng.uniform(0, 0.08) * h * np.array([math.cos(a := rng.uniform(0, TAU)), math.sin(a)])
        off *= min(1.0, max(0.05 * h, 0.52 * h - rim_px) / (np.linalg.norm(off) + 1e-9))
        distance = rng.uniform(800, 2500)
        self.camera = Camera(size, rim_px * distance / radius, distance, rng.uniform(0, 2), rng.uniform(0, 360),
                             np.array([(w - 1) / 2, (h - 1) / 2]) + off,
                             ((w - 1) / 2 + rng.normal(0, 0.006) * w, (h - 1) / 2 + rng.normal(0, 0.006) * h))
        self.hole = Hole(rng, radius, self.design.incline)
        self.wheel = Wheel(self.design, radius, self.hole.outer)
        self.turn = rng.uniform(0, 360)
        self.hole.place(self.wheel, self._hole_angle(rng))
        self.optics = Optics(rng, h / 2048)
        self.textures, self.surface = surfaces.draw(rng, self.wheel)
        self._clutter(rng)
        self.light = self.beneath = "none"

    def _hole_angle(self, rng):
        """Between two spoke ends where these run over the ledge, anywhere otherwise; radians, y up."""
        n = len(self.wheel.axes)
        if self.wheel.over:
            room = self.wheel.rv * TAU / n - self.wheel.over_width
            self.wheel.over = n <= 12 and room > 2 * self.hole.outer + 14
        if self.wheel.over or rng.random() < 0.5:
            return math.radians(self.turn) + TAU / n * (int(rng.integers(n)) + 0.5)
        return rng.uniform(0, TAU)

    def _clutter(self, rng):
        count = int(rng.integers(0, 7)) if self.has_hole else int(rng.integers(2, 9))
        angle = self.hole.angle if self.has_hole else None
        self.heap = Heap(rng, self.wheel, self.hole.r, angle, 1.3 * self.hole.outer, self.textures["wall"], count)
        dark = rng.uniform(0.02, 0.1)
        shade = rng.uniform(0.15, 0.6) if rng.random() < 0.75 else rng.uniform(0.03, 0.1)
        self.hole_wall = surfaces.shaded_wall(shade, rng, self.hole.deep if not self.hole.through else self.wheel.thin, dark)
        self.edge = self.textures["ledge"] if rng.random() < 0.65 else surfaces.texture("machined", rng)

    def scene(self, attempt):
        rng = np.random.default_rng(self.key + [1000 + attempt])
        rig, self.light = lights.draw(rng, self.wheel, self.camera)
        ground, self.beneath = beneath.draw(rng, self.wheel, rig.belt)
        cut = list(self.heap.cutters)
        solids = list(self.heap.solids)
        if self.has_hole:
            cut += [(self.wheel.rv, c) for c in self.hole.cutters(self.edge, self.hole_wall)]
            solids += self.hole.stem_sdl()
        return "\n".join([
            "#version 3.7; global_settings { assumed_gamma 1.0 max_trace_level 2 ambient_light rgb %.4g }" % rig.ambient,
            surfaces.HEADER, rig.sdl(), ground, "union {", self.wheel.solid(self.turn, self.textures, cut)] + solids + [shadows.END])

    def window(self, x, y, radius):
        """A feature's surroundings in whole pixels: x0, y0, width, height; None where it is off the picture."""
        half = int(1.3 * radius + 6)
        x0, y0 = max(0, int(round(x)) - half), max(0, int(round(y)) - half)
        w, h = min(int(round(x)) + half + 1, self.size[0]) - x0, min(int(round(y)) + half + 1, self.size[1]) - y0
        return (x0, y0, w, h) if min(w, h) > 4 else None

    def sharp_windows(self):
        """The valve hole and its rivals on the ledge, all alike: where shadows are traced for every pixel. The first
        is the valve hole's, where there is one; a few places without a feature are among them."""
        t = self.truth()
        out = [self.window(t["ox"], t["oy"], t["outer_r"])] if self.has_hole else []
        near = [o for o in t["others"] if o["kind"] not in ("bolt", "window") and o["r"] < 0.12 * t["rim_r"]
                and abs(math.hypot(o["x"] - t["cx"], o["y"] - t["cy"]) - t["pitch_r"]) < 0.1 * t["rim_r"]]
        out += [self.window(o["x"], o["y"], o["r"]) for o in near[:10]]
        rng = np.random.default_rng(self.key + [77])
        for a in rng.uniform(0, TAU, 2):
            x, y = t["cx"] + t["pitch_r"] * math.cos(a), t["cy"] + t["pitch_r"] * math.sin(a)
            out.append(self.window(x, y, 0.04 * t["rim_r"]))
        return [o for o in out if o]

    def _gain(self, image):
        """Exposure by the ledge and the wheel's highlights."""
        t = np.arange(0, TAU, TAU / 180)
        w = self.wheel
        ring = self.camera.project(np.stack([w.rv * np.cos(t), w.rv * np.sin(t), np.full(len(t), w.zv)], 1))
        wheel = self.camera.project(np.concatenate([np.stack([r * np.cos(t), r * np.sin(t), 0 * t], 1)
                                                    for r in np.linspace(w.r_hub, w.R, 24)]))

        def seen(p):
            q = np.rint(p / self.step).astype(int)
            ok = (q >= 0).all(axis=1) & (q[:, 0] < image.shape[1]) & (q[:, 1] < image.shape[0])
            return image[q[ok, 1], q[ok, 0]]
        return self.optics.gain_for(float(np.median(seen(ring))), float(np.percentile(seen(wheel), 90)))

    def visible(self, crop, window, gain):
        """Whether a person would see the hole in its developed surroundings: gray steps along most of its edge."""
        x0, y0, w, h = window
        dev = np.clip(crop * gain, 0, 1) ** self.optics.gamma * 255
        steps = []
        edges = [self.hole.mouth()] + ([self.hole.rim()] if self.hole.sink else [])
        for edge in edges:
            p = self.camera.project(edge) - (x0, y0)
            mid = p.mean(axis=0)
            a = np.linalg.norm(p - mid, axis=1).mean()
            level = [self._sample(dev, mid + (p - mid) * (1 + s / a)) for s in (-0.25 * a - 1, 0.2 * a + 1)]
            steps.append(np.abs(level[1] - level[0]))
        step, need = np.maximum.reduce(steps), max(14.0, 3 * self.optics.noise)
        return bool(np.mean(step > need) > 0.6 and np.median(step) > need)

    @staticmethod
    def _sample(image, p):
        q = np.clip(np.rint(p).astype(int), 0, [image.shape[1] - 1, image.shape[0] - 1])
        return image[q[:, 1], q[:, 0]]

    def render(self, attempts=6):
        """The picture and its truth."""
        windows = self.sharp_windows()
        for attempt in range(attempts):
            scene = self.scene(attempt)
            self.step = max(self.size[1] / 120, 1)
            preview = trace(self.camera.sdl() + scene, int(self.size[0] / self.step), int(self.size[1] / self.step)).mean(axis=2)
            gain = self._gain(preview)
            if not self.has_hole:
                break
            crop = trace(self.camera.sdl(windows[0]) + scene, *windows[0][2:]).mean(axis=2)
            if self.visible(crop, windows[0], gain):
                break
        image = shadows.traced(self.camera, scene, windows, 0.9 / gain)
        truth = self.truth()
        truth["attempt"] = attempt
        return self.optics.develop(image, gain, (truth["rim_cx"], truth["rim_cy"])), truth

    def truth(self):
        return truth_of(self)
