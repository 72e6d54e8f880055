"""Lamps of a plant: point lights that cast shadows, the bright bodies that shiny metal mirrors, and an even share.

All is gray; lamps shine in the one of the three colours that stands for their sector about the hub, so that one trace
keeps the sectors apart and shadows are laid on each.
"""
import math

from outlines import TAU
from sdl import vec

KINDS = ["ring", "bars", "dome", "low_angle", "room", "one_side", "backlight", "mixture"]


class Rig:
    def __init__(self):
        self.points, self.bodies, self.ambient, self.sky, self.belt = [], [], 0.06, (0.02, 0.05), 0.0

    def lamp(self, place, power, reach=None, shadow=True):
        colour = [0, 0, 0]
        colour[int((math.atan2(place[1], place[0]) / TAU + 1) * 3) % 3] = 3 * power
        fade = "fade_distance %.5g fade_power 2" % reach if reach else ""
        self.points.append("light_source { %s rgb %s %s %s }" % (vec(place), vec(colour), fade, "" if shadow else "shadowless"))

    def body(self, shape, glow):
        self.bodies.append("%s pigment { rgb 1 } finish { emission %.4g ambient 0 diffuse 0 } no_shadow no_image }" % (shape, glow))

    def sdl(self):
        sky = "sky_sphere { pigment { gradient z color_map { [0 rgb %.4g] [1 rgb %.4g] } } }\n" % self.sky
        return "\n".join(self.points + self.bodies) + "\n" + sky


def ring(rig, rng, wheel, camera, power):
    n, radius, height = 6, rng.uniform(70, 420), camera.distance * rng.uniform(0.35, 0.98)
    for i in range(n):
        a = TAU * (i + 0.3) / n
        rig.lamp((radius * math.cos(a), radius * math.sin(a), height), power / n)
    width = rng.uniform(20, 60)
    rig.body("disc { <0,0,%g>, <0,0,-1>, %g, %g " % (height, radius + width, max(radius - width, 10)), rng.uniform(2, 6))
    rig.ambient += 0.08 * power


def bar(rig, a, r, z, half, power, glow, reach=None):
    c, s = math.cos(a), math.sin(a)
    for t in (-0.7, 0, 0.7):
        rig.lamp((r * c - t * half * s, r * s + t * half * c, z), power / 3, reach)
    rig.body("box { <%g,%g,-25>, <%g,%g,25> rotate <0,0,%g> translate <0,0,%g> " % (
        r - 25, -half, r + 25, half, math.degrees(a), z), glow)


def bars(rig, rng, wheel, camera, power):
    n = int(rng.choice([2, 4], p=[0.65, 0.35]))
    turn, r, z = rng.choice([0, TAU / 4, rng.uniform(0, TAU)]), rng.uniform(1.3, 3.2) * wheel.R, rng.uniform(150, 900)
    half, glow = rng.uniform(150, 450), rng.uniform(2, 6)
    for i in range(n):
        bar(rig, turn + TAU * i / n, r, z, half, power / n * rng.uniform(0.7, 1.3), glow, 1.2 * math.hypot(r, z))
    rig.ambient += 0.08 * power


def dome(rig, rng, wheel, camera, power):
    n = 7
    turn = rng.uniform(0, TAU)
    for i in range(n):
        a, e = turn + TAU * i / n, math.radians(35 if i % 2 else 62)
        rig.lamp((1500 * math.cos(a) * math.cos(e), 1500 * math.sin(a) * math.cos(e), 1500 * math.sin(e)), 0.6 * power / n)
    rig.ambient += 0.45 * power
    rig.sky = (0.5 * power, rng.uniform(0.5, 0.9) * power)


def low_angle(rig, rng, wheel, camera, power):
    n, r, z = 8, rng.uniform(1.15, 1.7) * wheel.R, rng.uniform(50, 260)
    for i in range(n):
        a = TAU * i / n
        rig.lamp((r * math.cos(a), r * math.sin(a), z), 2.4 * power / n, 1.0 * r)
    rig.body("torus { %g, 12 rotate <90,0,0> translate <0,0,%g> " % (r, z), rng.uniform(3, 8))
    rig.ambient += 0.05 * power


def room(rig, rng, wheel, camera, power):
    for _ in range(int(rng.integers(1, 4))):
        a = rng.uniform(0, TAU)
        rig.lamp((rng.uniform(300, 2500) * math.cos(a), rng.uniform(300, 2500) * math.sin(a), rng.uniform(1800, 3500)), 0.4 * power)
    for _ in range(int(rng.integers(1, 4))):
        rig.body("box { <-700,-60,0>, <700,60,10> rotate <0,0,%g> translate <%g,%g,3000> " % (
            rng.uniform(0, 180), rng.uniform(-1200, 1200), rng.uniform(-1200, 1200)), rng.uniform(1.5, 5))
    rig.ambient += 0.3 * power
    rig.sky = (rng.uniform(0.03, 0.2), rng.uniform(0.1, 0.4))


def one_side(rig, rng, wheel, camera, power):
    r, z = rng.uniform(0.8, 3.5) * wheel.R, rng.uniform(200, 1100)
    bar(rig, rng.uniform(0, TAU), r, z, rng.uniform(60, 400), power * 1.2, rng.uniform(3, 7), 1.2 * math.hypot(r, z))
    rig.ambient += rng.uniform(0.05, 0.2) * power


def backlight(rig, rng, wheel, camera, power):
    rig.belt = rng.uniform(0.5, 3.0)
    (room if rng.random() < 0.6 else ring)(rig, rng, wheel, camera, power)


def draw(rng, wheel, camera):
    """A rig of lamps and its kind."""
    kind = str(rng.choice(KINDS, p=[0.22, 0.14, 0.15, 0.08, 0.14, 0.09, 0.08, 0.10]))
    rig = Rig()
    if kind == "mixture":
        for f in rng.choice([ring, bars, dome, low_angle, room, one_side], 2, replace=False):
            f(rig, rng, wheel, camera, rng.uniform(0.3, 0.7))
    else:
        globals()[kind](rig, rng, wheel, camera, 1.0)
    return rig, kind
