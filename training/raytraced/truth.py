"""The truth record of a picture: everything by projection, in pixels; missing values are None."""
import math

import numpy as np

from camera import ellipse_of
from outlines import TAU


def circle(radius, z, n=180):
    t = np.arange(n) * TAU / n
    return np.stack([radius * np.cos(t), radius * np.sin(t), np.full(n, float(z))], 1)


def rounded(v):
    return None if v is None else round(float(v), 4)


def others_of(picture):
    """Named rivals: bolts, windows and clutter, with place and radius on the picture."""
    w, cam, out = picture.wheel, picture.camera, []
    places = list(picture.heap.others)
    for i in range(w.design.bolts):
        a = math.radians(picture.turn) + TAU * i / w.design.bolts
        places.append(("bolt", np.array([w.r_bolt * math.cos(a), w.r_bolt * math.sin(a), w.z_hub]), w.bolt[1]))
    c, s = math.cos(math.radians(picture.turn)), math.sin(math.radians(picture.turn))
    for outline in w.windows:
        x, y = outline.mean(axis=0)
        size = float(np.sqrt(np.mean(np.sum((outline - (x, y)) ** 2, axis=1))))
        places.append(("window", np.array([x * c - y * s, x * s + y * c, w.surface_z(math.hypot(x, y))]), size))
    for kind, p, r in places:
        x, y = cam.project(p)
        k = cam.focal / float((p - cam.place) @ cam.forward)
        out.append(dict(kind=kind, x=rounded(x), y=rounded(y), r=rounded(r * k)))
    return out


def hole_truth(picture):
    h, cam, w = picture.hole, picture.camera, picture.wheel
    vx, vy, va, vb = ellipse_of(cam.project(h.mouth()))
    ox, oy, outer, _ = ellipse_of(cam.project(h.rim()))
    mid = h.mouth().mean(axis=0)
    cx, cy = cam.project([0, 0, mid[2]])
    px, py = cam.project(mid)
    return dict(cx=rounded(cx), cy=rounded(cy), vx=rounded(vx), vy=rounded(vy), vr=rounded(va), va=rounded(va), vb=rounded(vb),
                angle=rounded(math.degrees(math.atan2(-(vy - cy), vx - cx)) % 360), ox=rounded(ox), oy=rounded(oy),
                outer_r=rounded(outer), edge=h.edge, stem=h.stem, through=h.through, mid_x=rounded(px), mid_y=rounded(py),
                depth_mm=rounded(-mid[2]), hole_mm=rounded(2 * h.r), pitch_r=rounded(math.hypot(vx - cx, vy - cy)))


def truth_of(picture):
    p, w, cam, d = picture, picture.wheel, picture.camera, picture.design
    rim_x, rim_y, rim_r, _ = ellipse_of(cam.project(circle(w.R, 0)))
    hub_x, hub_y = cam.project([0, 0, 0])
    bore_x, bore_y, bore_r, _ = ellipse_of(cam.project(circle(w.r_bore, w.z_hub)))
    deep_x, deep_y = cam.project([0, 0, w.zv])
    ring = ellipse_of(cam.project(circle(w.rv, w.zv)))[2]
    t = dict(image=None, wheel=True, valve=p.has_hole, cx=rounded(deep_x), cy=rounded(deep_y), vx=None, vy=None, vr=None, va=None,
             vb=None, angle=None, ox=None, oy=None, outer_r=None, edge=None, stem=None, through=None, hole_mm=None,
             depth_mm=rounded(-w.zv), pitch_r=rounded(ring))
    if p.has_hole:
        t.update(hole_truth(p))
    t.update(rim_r=rounded(rim_r), rim_cx=rounded(rim_x), rim_cy=rounded(rim_y), hub_rim_x=rounded(hub_x), hub_rim_y=rounded(hub_y),
             hub_hole_x=t["cx"], hub_hole_y=t["cy"], bore_x=rounded(bore_x), bore_y=rounded(bore_y), bore_r=rounded(bore_r),
             design="%03d_%s" % (d.number, d.name), background=p.beneath, light=p.light, surface=p.surface,
             distance_mm=rounded(cam.distance), focal_px=rounded(cam.focal), pp_x=rounded(cam.pp[0]), pp_y=rounded(cam.pp[1]),
             mm_per_px=rounded(cam.distance / cam.focal), tilt_deg=rounded(math.degrees(math.acos(min(1.0, -cam.forward[2])))),
             incline_deg=rounded(d.incline), blur=rounded(p.optics.blur), noise=rounded(p.optics.noise), others=others_of(p))
    t["tags"] = tags(p)
    return t


def tags(p):
    out = ["steel" if p.design.steel else "alloy"]
    out += [] if p.has_hole else ["negative"]
    out += ["blur"] if p.optics.blur > 1.5 else []
    out += ["noise"] if p.optics.noise > 6 else []
    out += ["glare"] if p.optics.glare else []
    out += ["motion"] if p.optics.turn else []
    out += ["stem"] if p.has_hole and p.hole.stem != "none" else []
    out += ["light:" + p.light, "surface:" + p.surface] + (["edge:" + p.hole.edge] if p.has_hole else [])
    return out
