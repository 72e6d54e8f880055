"""What the metal looks like: pigment, finish and grain as texture text, with a part of its own for each zone."""
import numpy as np

KINDS = ["machined", "machined_coarse", "polished", "black_matt", "black_gloss", "silver", "gray_matt", "cast", "primer",
         "rusty", "white"]
HEADER = "#declare noise = function { internal(76) }\n"


def grooves(rng, strength):
    """Turning marks: random rings about the hub, finer across than along."""
    k = rng.uniform(0.5, 2.5)
    return "normal { function { noise(sqrt(x*x+y*y)*%.4g, atan2(y,x)*1.5, z*0.3) } %.4g }" % (k, strength)


def tone(base, spread, scale, kind="bozo"):
    lo, hi = base * (1 - spread), base * (1 + spread)
    return "pigment { %s color_map { [0 rgb %.4g] [1 rgb %.4g] } scale %.4g }" % (kind, lo, hi, scale)


def rings(base, spread, k):
    return "pigment { function { noise(sqrt(x*x+y*y)*%.4g, 0, 0) } color_map { [0.2 rgb %.4g] [0.8 rgb %.4g] } }" % (
        k, base * (1 - spread), base * (1 + spread))


def finish(diffuse, specular, rough, mirror=0.0, metallic=True):
    m = "reflection { %.4g metallic }" % mirror if mirror > 0 and metallic else "reflection { %.4g }" % mirror if mirror > 0 else ""
    return "finish { ambient %.4g diffuse %.4g specular %.4g roughness %.4g %s %s }" % (
        diffuse, diffuse, specular, rough, "metallic" if metallic else "", m)


def texture(kind, rng, shade=1.0):
    """One texture block; shade darkens it (deep or shaded faces)."""
    u = rng.uniform
    if kind == "machined":
        parts = rings(shade * u(0.45, 0.7), u(0.02, 0.09), u(0.8, 3)), grooves(rng, u(0.05, 0.3)), finish(0.55, u(0.2, 0.6), u(0.02, 0.1), u(0.05, 0.3))
    elif kind == "machined_coarse":
        parts = rings(shade * u(0.4, 0.65), u(0.06, 0.16), u(0.25, 0.8)), grooves(rng, u(0.3, 0.8)), finish(0.6, u(0.2, 0.5), u(0.03, 0.1), u(0.0, 0.15))
    elif kind == "polished":
        parts = tone(shade * u(0.5, 0.7), 0.03, 40), "normal { bumps %.3g scale %.3g }" % (u(0.0, 0.06), u(4, 15)), finish(0.3, u(0.5, 0.9), u(0.005, 0.03), u(0.4, 0.7))
    elif kind in ("black_matt", "black_gloss"):
        gloss = kind.endswith("gloss")
        parts = tone(shade * u(0.03, 0.09), 0.1, 30), "normal { bumps %.3g scale %.3g }" % (u(0, 0.12), u(0.6, 2)), finish(
            0.8, u(0.3, 0.8) if gloss else u(0.05, 0.2), u(0.004, 0.02) if gloss else u(0.05, 0.15), u(0.04, 0.1) if gloss else 0, False)
    elif kind in ("silver", "gray_matt", "white", "primer"):
        base = dict(silver=u(0.42, 0.65), gray_matt=u(0.16, 0.35), white=u(0.7, 0.85), primer=u(0.25, 0.5))[kind]
        gloss = kind in ("silver", "white")
        parts = tone(shade * base, u(0.01, 0.06), u(0.5, 40)), "normal { bumps %.3g scale %.3g }" % (u(0.02, 0.15), u(0.5, 1.5)), finish(
            0.7, u(0.15, 0.4) if gloss else 0.05, u(0.01, 0.06), u(0.02, 0.08) if gloss else 0, kind == "silver")
    elif kind == "cast":
        parts = tone(shade * u(0.3, 0.55), u(0.05, 0.2), u(0.6, 3), "granite" if rng.random() < 0.5 else "bozo"), "normal { granite %.3g scale %.3g }" % (
            u(0.2, 0.7), u(2, 9)), finish(0.65, u(0.1, 0.3), u(0.05, 0.15))
    else:
        a, b = shade * u(0.08, 0.2), shade * u(0.2, 0.38)
        parts = "pigment { %s color_map { [0 rgb %.3g] [0.45 rgb %.3g] [1 rgb %.3g] } scale %.3g }" % (
            rng.choice(["bozo turbulence 0.6", "granite", "agate"]), a, (a + b) / 2, b, u(8, 50)), "normal { granite %.3g scale 4 }" % u(0.1, 0.5), finish(0.7, 0.05, 0.1, 0, False)
    return "texture { %s }" % " ".join(parts)


def shaded_wall(shade, rng, depth, dark):
    """A bore's wall: as bright as `shade` at the mouth, `dark` at the depth (the frame's z runs up from -depth)."""
    return ("texture { pigment { gradient z color_map { [0 rgb %.4g] [0.96 rgb %.4g] [1 rgb %.4g] } scale %.5g translate <0,0,%.5g> } "
            "finish { ambient 0.5 diffuse 0.55 specular 0.15 roughness 0.08 } }") % (dark, shade, shade, depth + 7, -depth)


def draw(rng, wheel):
    """Textures of the wheel's rings and cut walls, and the name of the ledge's kind."""
    d = wheel.design
    p = np.array([18, 8, 9, 9, 9, 14, 8, 10, 5, 8 if d.steel else 2, 2], float)
    if d.steel:
        p[:3] *= 0.3
    ledge = str(rng.choice(KINDS, p=p / p.sum()))
    style = rng.random()
    face = ledge if style < 0.55 else str(rng.choice(KINDS, p=p / p.sum()))
    lip = ledge if style < 0.4 else str(rng.choice(["machined", "polished", "machined_coarse", face]))
    hub = "machined" if rng.random() < 0.45 else face
    t = {k: texture(v, rng) for k, v in dict(ledge=ledge, face=face, lip=lip, hub=hub).items()}
    if ledge == face:
        t["face"] = t["ledge"]
    if lip == ledge:
        t["lip"] = t["ledge"]
    wall_kind = ledge if rng.random() < 0.6 else str(rng.choice(["cast", "black_matt", "silver"]))
    t["wall"] = texture(wall_kind if "machined" not in wall_kind else "cast", rng, 0.8)
    return t, ledge
