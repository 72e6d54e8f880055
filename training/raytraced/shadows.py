"""Shadows at a small part of the cost: most rays of a picture would be shadow rays, for shadows that are soft anyway.

The picture is traced without shadows; a second time COARSE times coarser, with and without. Their ratio, smoothed among
pixels of like brightness so that it does not leak over edges, darkens the picture, for each sector of lamps by itself. Named windows are traced in full.
"""
import numpy as np

from sdl import trace

COARSE = 4
END = "} // wheel\n"  # the last words of a scene with shadows; lamps that are shadowless would lose their highlights


def spread(ratio, coarse, fine, sharp=0.12):
    """The coarse ratio on the fine grid: each pixel takes the mean of the 3 x 3 nearest coarse ones, weighted by
    distance and by how alike their unshadowed radiances are."""
    fine, coarse = (a.mean(axis=2) for a in (fine, coarse))
    h, w = fine.shape
    total, weight = np.zeros((h, w, 3), np.float32), np.full((h, w), 1e-6, np.float32)
    yy, xx = (np.arange(h) + 0.5) / COARSE - 0.5, (np.arange(w) + 0.5) / COARSE - 0.5
    log_fine, log_coarse = np.log(fine + 1e-3), np.log(coarse + 1e-3)
    y0, x0 = np.rint(yy).astype(int), np.rint(xx).astype(int)
    for dy in range(-1, 2):
        iy = np.clip(y0 + dy, 0, ratio.shape[0] - 1)
        wy = np.exp(-0.5 * ((yy - y0 - dy) / 0.7) ** 2).astype(np.float32)
        for dx in range(-1, 2):
            ix = np.clip(x0 + dx, 0, ratio.shape[1] - 1)
            wx = np.exp(-0.5 * ((xx - x0 - dx) / 0.7) ** 2).astype(np.float32)
            near = np.ix_(iy, ix)
            k = np.exp(-((log_fine - log_coarse[near]) / sharp) ** 2 / 2) + 1e-4
            k *= wy[:, None] * wx[None, :]
            total += k[:, :, None] * ratio[near]
            weight += k
    return total / weight[:, :, None]


def pasted(image, window, patch):
    """Puts a patch in its window with a feathered border."""
    x0, y0, w, h = window
    ramp = lambda n: np.minimum(1, np.minimum(np.arange(n) + 1, n - np.arange(n)) / 4.0)
    mask = (ramp(h)[:, None] * ramp(w)[None, :]).astype(np.float32)
    part = image[y0:y0 + h, x0:x0 + w]
    part += mask[:, :, None] * (patch - part)


def traced(camera, scene, windows, threshold):
    """Radiance of the picture; `threshold` is the step, summed over three colours, above which edges are traced finer."""
    edges = "+A%.4f +AM1 +R2" % min(max(threshold, 0.002), 0.99)  # the range that the tracer takes
    bare = scene.replace(END, "no_shadow }\n")
    image = trace(camera.sdl() + bare, camera.w, camera.h, edges)
    w, h = -(-camera.w // COARSE), -(-camera.h // COARSE)
    whole = camera.sdl((0, 0, w * COARSE, h * COARSE))
    lit, dark = trace(whole + bare, w, h), trace(whole + scene, w, h)
    image *= spread(np.minimum(dark / np.maximum(lit, 1e-4), 1.5), lit, image)
    for window in windows:
        pasted(image, window, trace(camera.sdl(window) + scene, *window[2:], edges))
    return image.mean(axis=2)
