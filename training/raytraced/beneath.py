"""What lies below the wheel and shows through its openings: belt, rollers, grid, floor or a table of light."""

from sdl import rgb

KINDS = ["belt_dark", "belt_gray", "belt_bright", "rollers", "grid", "floor", "light_table", "pit"]


def plane(z, pigment, glow, grain=0.0, diffuse=0.7):
    return "plane { <0,0,1>, %g pigment { %s } normal { granite %g scale 15 } finish { ambient 0.4 diffuse %g emission %g } }" % (
        z, pigment, grain, diffuse, glow)


def draw(rng, wheel, belt_glow):
    """Scene text and kind. `belt_glow` > 0 lights the ground from below."""
    z, u = -wheel.depth - rng.uniform(0, 4), rng.uniform
    kind = str(rng.choice(KINDS, p=[.24, .16, .1, .13, .1, .13, .06, .08]))
    if belt_glow > 0 and kind not in ("belt_bright", "rollers", "grid"):
        kind = "light_table"
    if kind == "light_table":
        return plane(z, rgb(0.8), belt_glow or u(0.5, 2.5)), kind
    if kind == "pit":
        return plane(z - u(300, 900), rgb(u(0.02, 0.1)), 0), kind
    if kind == "floor":
        a = u(0.12, 0.4)
        return plane(z - u(0, 500), "granite color_map { [0 rgb %g] [1 rgb %g] } scale %g" % (a * 0.7, a * 1.3, u(20, 200)), 0, 0.2), kind
    if kind == "rollers":
        r, turn = u(20, 45), rng.choice([0, 90])
        pitch = r * u(2.1, 4)
        n = int(700 / pitch)
        skin = "pigment { rgb %g } finish { ambient 0.4 diffuse 0.5 specular 0.5 roughness 0.03 metallic }" % u(0.15, 0.6)
        rolls = ["cylinder { <-900,%g,%g>,<900,%g,%g>,%g }" % (y, z - r, y, z - r, r) for y in ((i + 0.3) * pitch for i in range(-n, n))]
        return "union { %s %s rotate <0,0,%g> } %s" % (" ".join(rolls), skin, turn, plane(z - 300, rgb(0.05), belt_glow)), kind
    if kind == "grid":
        pitch, share = u(15, 60), u(0.3, 0.75)
        hole, bar = u(0.01, 0.06) + 0.5 * belt_glow, u(0.12, 0.5)
        if rng.random() < 0.5:
            p = "function { select(mod(abs(x)/%g,1)-%g, 1, select(mod(abs(y)/%g,1)-%g,1,0)) }" % (pitch, share, pitch, share)
            p += " color_map { [0.5 rgb %g] [0.5 rgb %g] }" % (hole, bar)
        else:
            p = "function { sqrt(pow(mod(abs(x)/%g,1)-0.5,2)+pow(mod(abs(y)/%g,1)-0.5,2)) }" % (pitch, pitch)
            p += " color_map { [%g rgb %g] [%g rgb %g] }" % (share / 2, hole, share / 2, bar)
        return plane(z, p + " rotate <0,0,%g>" % rng.choice([0, 45, u(0, 90)]), 0.0 + 0.5 * belt_glow, 0.0), kind
    a = dict(belt_dark=u(0.02, 0.07), belt_gray=u(0.08, 0.3), belt_bright=u(0.35, 0.75))[kind]
    weave = "bozo color_map { [0 rgb %g] [1 rgb %g] } scale <%g,%g,5>" % (a * 0.8, a * 1.2, u(2, 200), u(2, 60))
    return plane(z, weave, belt_glow * 0.6, u(0, 0.4)), kind
