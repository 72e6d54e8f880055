"""What lens, sensor and exposure make of radiance: blur, turn, vignetting, gain, gamma, noise, eight bits.

All blurs are symmetric about a place, so that they move no centre."""
import math

import cv2
import numpy as np


class Optics:
    def __init__(self, rng, scale):
        """`scale` is the picture's height over 2048: blur is drawn for full-size pictures, then follows it half-way."""
        self.blur = float(np.exp(rng.uniform(math.log(0.45), math.log(2.0)))) * max(scale, 0.62)
        self.noise = float(np.exp(rng.uniform(math.log(0.5), math.log(10))))
        self.turn = math.radians(rng.uniform(0.02, 0.12)) if rng.random() < 0.12 else 0.0
        self.vignette = rng.uniform(0, 0.35)
        self.gamma = float(rng.choice([1.0, 0.75, 0.6, 0.45], p=[0.5, 0.2, 0.15, 0.15]))
        self.target = float(np.exp(rng.uniform(math.log(40), math.log(210))))
        self.glare = rng.uniform(0.03, 0.12) if rng.random() < 0.15 else 0.0
        self.grain = rng.uniform(0.0, 0.7)
        self.floor = rng.uniform(0, 8)
        self.seed = int(rng.integers(1 << 31))

    def gain_for(self, level, highlights):
        """The gain that brings the ledge's `level` to the target, unless `highlights` (the wheel's 95th percentile)
        would then be burnt out: never below a ledge of 40."""
        want = (self.target / 255) ** (1 / self.gamma) / max(level, 1e-6)
        most = 1.1 / max(highlights, 1e-6)
        least = (40 / 255) ** (1 / self.gamma) / max(level, 1e-6)
        return max(min(want, most), least)

    def develop(self, radiance, gain, hub):
        h, w = radiance.shape
        x = radiance * np.float32(gain)
        if self.glare:
            x = x + np.float32(self.glare) * cv2.GaussianBlur(np.minimum(x, 6), (0, 0), h * 0.05)
        x = np.minimum(x, 3.0)
        if self.turn:
            x = sum(cv2.warpAffine(x, cv2.getRotationMatrix2D(tuple(float(c) for c in hub), math.degrees(self.turn) * k, 1.0),
                                   (w, h), flags=cv2.INTER_LINEAR, borderMode=cv2.BORDER_REPLICATE) for k in (-1, -.5, 0, .5, 1)) / 5
        x = cv2.GaussianBlur(x, (0, 0), self.blur)
        yy, xx = np.mgrid[:h, :w].astype(np.float32)
        far = ((xx - w / 2) ** 2 + (yy - h / 2) ** 2) / (w * w + h * h) * 4
        x = x * (1 - np.float32(self.vignette) * far)
        rng = np.random.default_rng(self.seed)
        out = 255 * np.clip(x, 0, None) ** np.float32(self.gamma) * np.float32(1 - self.floor / 255) + np.float32(self.floor)
        sigma = np.float32(self.noise) * (1 - self.grain + self.grain * np.sqrt(np.clip(out, 0, 255) / 128))
        out = out + sigma * rng.standard_normal((h, w), dtype=np.float32)
        return np.clip(np.rint(out), 0, 255).astype(np.uint8)
