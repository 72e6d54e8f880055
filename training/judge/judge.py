"""Trains the judge: whether a place is a drilled hole, where its mouth's middle is and how large it is."""
import math
import multiprocessing

import numpy as np
import torch
import torch.nn.functional as functional

import glance
import paint
import sampling
from nets import Judge

SOURCE_REACH, SOURCE_SIDE = 8.5, 136  # a remembered place: half side in radii, and in places


class Place:
    """A piece of a wheel around one place, large enough to be looked at off its middle, turned and scaled."""

    __slots__ = ("gray", "hole", "outer", "black", "white", "kind")

    def __init__(self, gray, hole, outer, black, white, kind):
        self.gray = gray    # 8-bit, x axis along the direction from the hub
        self.hole = hole    # (x, y, radius) in radii from the middle, or None
        self.outer = outer  # outer radius of the edge in radii, 0: not known
        self.black, self.white = black, white
        self.kind = kind    # what it is if no hole, as the finder's Lookalike; -1: not known


KINDS = {"blot": 0, "rust_spot": 0, "water_drop": 0, "chip": 0, "dimple": 1, "pin_mark": 1, "paint_dot": 1, "screw": 1,
         "rubber_plug": 1, "sticker": 1, "clock": 2, "letters": 2, "window": 3, "scratch": 3, "weld": 3, "chalk": 3, "counterweight": 3}


DRILLED = ("drain", "vent", "bolt", "window")


def kind_at(wheel, x, y, radius):
    for kind, ox, oy, size in wheel.others:
        if math.hypot(x - ox, y - oy) < max(size, 0.5 * radius):
            return KINDS.get(kind, -1)
    return -1


def place_at(levels, hub, x, y, radius, wheel, black, white):
    direction = math.atan2(y - hub[1], x - hub[0])
    gray = sampling.patch(levels, (x, y), direction, SOURCE_REACH * radius, SOURCE_SIDE)
    hole = None
    if wheel.hole:
        dx, dy = wheel.hole[0] - x, wheel.hole[1] - y
        c, s = math.cos(direction), math.sin(direction)
        hole = ((dx * c + dy * s) / radius, (dy * c - dx * s) / radius, wheel.hole[2] / radius)
    return Place(gray, hole, wheel.outer / radius if wheel.outer else 0, black, white,
                 kind_at(wheel, x, y, radius))


def radii_without_model(rim, low=0.0125, high=0.055, count=4):
    a, b = math.log(low * rim), math.log(high * rim)
    return [math.exp(a + (b - a) * (i + 0.5) / count) for i in range(count)]


def candidates(net, levels, hub, radii, band, most):
    """What the glance finds on a ring: [(logit, x, y, radius)], best first, each place once."""
    found = []
    for radius in radii:
        strip, low, step = sampling.ring_map(levels, hub, band, radius)
        for logit, column, row, size in glance.places(net, strip, most):
            angle, reach = 2 * math.pi * row / strip.shape[0], low + column * step
            found.append((logit, hub[0] + reach * math.cos(angle), hub[1] + reach * math.sin(angle),
                          radius * math.exp(float(np.clip(size, -0.35, 0.35)))))
    found.sort(reverse=True)
    kept = []
    for one in found:
        if all(math.hypot(one[1] - k[1], one[2] - k[2]) > min(one[3], k[3]) for k in kept):
            kept.append(one)
    return kept[:most]


def drilled(logit, x, y, radius, seen, hub, wheel):
    """Whether a place is rather another drilled hole of the wheel: one of a round, or one much smaller than the valve
    hole. Such are holes to the eye; what distinguishes them is their company and size, which the finder weighs itself."""
    for kind, ox, oy, size in wheel.others:
        if math.hypot(x - ox, y - oy) < max(size, 0.5 * radius):
            return kind in DRILLED
    if logit < 1:
        return False
    if wheel.hole and radius < 0.6 * wheel.hole[2]:
        return True
    reach = math.hypot(x - hub[0], y - hub[1])
    alike = [o for o in seen if o[0] > 0 and abs(math.log(o[3] / radius)) < 0.2 and
             abs(math.hypot(o[1] - hub[0], o[2] - hub[1]) - reach) < 0.015 * wheel.rim and
             math.hypot(o[1] - x, o[2] - y) > 2 * radius]
    return len(alike) >= 2


def places_of(wheel, net, rng, most=14):
    """The hole of a wheel, and what the glance takes for one; and one place of plain surface to paint on."""
    levels = sampling.read(wheel.file)
    black, white = sampling.levels_of(levels[0])
    off = rng.normal(0, 0.002 * wheel.rim, 2)
    hub = (wheel.hub[0] + off[0], wheel.hub[1] + off[1])
    wide = (glance.BAND[0] * wheel.rim, glance.BAND[1] * wheel.rim)
    seen = candidates(net, levels, hub, radii_without_model(wheel.rim), wide, most)
    size = wheel.hole[2] if wheel.hole else wheel.rim * math.exp(rng.uniform(math.log(0.012), math.log(0.05)))
    seen += candidates(net, levels, hub, [size * rng.uniform(0.85, 1.18)], wide, most)
    holes, others, plain = [], [], []
    if wheel.hole:
        holes.append(place_at(levels, hub, *wheel.hole, wheel, black, white))
    for logit, x, y, radius in seen:
        if drilled(logit, x, y, radius, seen, hub, wheel):
            continue
        place = place_at(levels, hub, x, y, radius, wheel, black, white)
        if place.hole is None or math.hypot(place.hole[0], place.hole[1]) > 1.3 * max(1.0, place.hole[2]):
            others.append(place)
    for kind, x, y, radius in wheel.others:  # also those that the glance passes over
        if kind not in DRILLED and 0.4 * size < radius < 2 * size and wide[0] < math.hypot(x - hub[0], y - hub[1]) < wide[1]:
            others.append(place_at(levels, hub, x, y, radius, wheel, black, white))
    for _ in range(3):
        a, reach = rng.uniform(0, 2 * math.pi), wheel.ring * (1 + rng.normal(0, 0.04))
        x, y = hub[0] + reach * math.cos(a), hub[1] + reach * math.sin(a)
        if wheel.hole is None or math.hypot(x - wheel.hole[0], y - wheel.hole[1]) > 4 * wheel.hole[2]:
            plain.append(place_at(levels, hub, x, y, size, wheel, black, white))
    return holes, others, plain


def views(gray, center, turn, scale):
    """The near and the wide view of a remembered place."""
    levels = sampling.pyramid(np.clip(gray, 0, 255).astype(np.uint8), 4)
    middle = (SOURCE_SIDE - 1) / 2
    unit = SOURCE_SIDE / (2 * SOURCE_REACH)
    at = (middle + center[0] * unit, middle + center[1] * unit)
    return [sampling.patch(levels, at, turn, reach * scale * unit, sampling.PATCH_SIDE) for reach in sampling.PATCH_REACHES]


def prepared(near, wide, black, white):
    """Gray values of the two views to what the network reads; the same in the finder."""
    near, wide = np.sqrt(near.astype(np.float32)), np.sqrt(wide.astype(np.float32))
    middle, spread = wide.mean(), wide.std() + 0.3
    dark, bright = math.sqrt(max(0.0, black)), math.sqrt(max(white, black + 1))
    return np.stack([(near - middle) / spread, (wide - middle) / spread, 2 * (near - dark) / max(1.0, bright - dark) - 1])


def sample_of(pools, rng):
    """One example of any world, each as often as the others: pictures, label, and what the network should answer of a hole (x, y, log radius, log outer or nan)."""
    holes, others, plain = pools[rng.integers(len(pools))]
    u = rng.random()
    if u < 0.22:
        place, label = holes[rng.integers(len(holes))], 1
    elif u < 0.58:
        place, label = others[rng.integers(len(others))], 0
    else:
        place, label = plain[rng.integers(len(plain))], int(u < 0.80)
    unit = SOURCE_SIDE / (2 * SOURCE_REACH)
    middle = (SOURCE_SIDE - 1) / 2
    gray = place.gray.astype(np.float32)
    truth, outer = (place.hole, place.outer) if label else (None, 0)
    kind = -1 if label else place.kind
    if u >= 0.58:
        size = math.exp(rng.uniform(-0.2, 0.2))
        painter = paint.Piece(gray, (middle + rng.normal(0, 2), middle + rng.normal(0, 2)), rng)
        painter.soft = rng.uniform(0.6, 2.5)
        if label:
            edge = paint.hole(painter, size * unit, place.black)
            if edge is None:
                return None  # nobody could see it
            truth = ((painter.center[0] - middle) / unit, (painter.center[1] - middle) / unit, size)
            outer = edge / unit
        else:
            kind = paint.no_hole(painter, size * unit, place.black)
        gray = painter.gray
    if rng.random() < 0.35:  # something else beside it
        a, reach = rng.uniform(0, 2 * math.pi), rng.uniform(2.2, 7) * unit
        painter = paint.Piece(gray, (middle + reach * math.cos(a), middle + reach * math.sin(a)), rng)
        painter.soft = rng.uniform(0.6, 2)
        paint.no_hole(painter, unit * rng.uniform(0.4, 1.2), place.black)
        gray = painter.gray
    black, white = place.black, place.white
    gray = paint.photograph(gray, rng, 2.5)
    black, white = _levels_after(place, gray, rng)
    if rng.random() < 0.5:
        gray = gray[::-1]
        truth = (truth[0], -truth[1], truth[2]) if truth else None
    turn = rng.normal(0, 0.06)
    if truth:
        tight = rng.random() < 0.4
        reach, a = (0.1 if tight else 0.4) * math.sqrt(rng.random()) * truth[2], rng.uniform(0, 2 * math.pi)
        scale = truth[2] * math.exp(rng.uniform(-1, 1) * (0.1 if tight else 0.42))
        center = (truth[0] + reach * math.cos(a), truth[1] + reach * math.sin(a))
        dx, dy = (truth[0] - center[0]) / scale, (truth[1] - center[1]) / scale
        c, s = math.cos(turn), math.sin(turn)
        targets = [dx * c + dy * s, dy * c - dx * s, math.log(truth[2] / scale), math.log(outer / scale) if outer else math.nan]
    else:
        center = rng.normal(0, 0.12, 2)
        scale = math.exp(rng.uniform(-0.25, 0.25))
        targets = [0, 0, 0, math.nan]
    near, wide = views(np.ascontiguousarray(gray), center, turn, scale)
    return near, wide, black, white, label, kind, targets


def _levels_after(place, gray, rng):
    """Black and bright of the whole image after a piece of it was photographed anew: moved as the piece was."""
    old_low, old_high = np.percentile(place.gray, [2, 90])
    low, high = np.percentile(gray, [2, 90])
    gain = (high - low) / max(8.0, old_high - old_low)
    black = low + (place.black - old_low) * gain + rng.normal(0, 3)
    white = low + (place.white - old_low) * gain + rng.normal(0, 8)
    return float(np.clip(black, 0, 255)), float(np.clip(white, black + 5, 255))


def pool_of(pools, rng, count):
    inputs = np.empty((count, 3, sampling.PATCH_SIDE, sampling.PATCH_SIDE), np.float16)
    labels, kinds, targets = np.empty(count, np.float32), np.empty(count, np.int64), np.empty((count, 4), np.float32)
    i = 0
    while i < count:
        made = sample_of(pools, rng)
        if made is None:
            continue
        near, wide, black, white, labels[i], kinds[i], targets[i] = made
        inputs[i] = prepared(near, wide, black, white)
        i += 1
    return inputs, labels, kinds, targets


_pools = None


def _part(seed_and_count):
    return pool_of(_pools, np.random.default_rng(seed_and_count[0]), seed_and_count[1])


def examples(pools, seed, count, jobs):
    """Examples, made by several processes, the same for any number of them."""
    global _pools
    _pools = pools
    parts = [([seed, k], count // 20) for k in range(20)]
    with multiprocessing.get_context("fork").Pool(jobs) as workers:
        made = workers.map(_part, parts, 1)
    return [torch.from_numpy(np.concatenate(x)) for x in zip(*made)]


def loss_of(answer, labels, kinds, targets):
    loss = functional.binary_cross_entropy_with_logits(answer[:, 0], labels * 0.98 + 0.01)
    known = kinds >= 0
    if known.any():
        loss = loss + 0.1 * functional.cross_entropy(answer[known, 5:], kinds[known])
    positive = labels > 0
    if positive.any():
        predicted, expected = answer[positive, 1:5], targets[positive]
        known = torch.isfinite(expected)
        loss = loss + 2.0 * functional.smooth_l1_loss(predicted[known], expected[known], beta=0.1)
    return loss


def train(pools, seed, rounds, count=20000, epochs=3, size=64, jobs=2, log=print):
    torch.manual_seed(seed)
    net = Judge()
    optimiser = torch.optim.AdamW(net.parameters(), lr=2e-3, weight_decay=1e-3)
    steps = rounds * epochs * (count // size)
    schedule = torch.optim.lr_scheduler.OneCycleLR(optimiser, 3e-3, total_steps=steps, pct_start=0.15)
    for turn in range(rounds):
        inputs, *meant = examples(pools, seed + turn, count, jobs)
        net.train()
        total = 0.0
        for _ in range(epochs):
            order = torch.randperm(count)
            for k in range(count // size):
                pick = order[k * size: (k + 1) * size]
                x = inputs[pick].float()
                x = x * torch.exp(0.1 * torch.randn(size, 1, 1, 1)) + 0.1 * torch.randn(size, 3, 1, 1)
                loss = loss_of(net(x), *(m[pick] for m in meant))
                optimiser.zero_grad()
                loss.backward()
                optimiser.step()
                schedule.step()
                total += float(loss)
        log(f"judge {turn + 1}/{rounds}: loss {total / (epochs * (count // size)):.4f}")
    return net.eval()
