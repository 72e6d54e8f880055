"""Weighs the judge's evidence against place, size and company, so that the finder's score is a probability: on wheels that
neither network has learnt from."""
import math
import multiprocessing

import numpy as np
import torch

import glance
import judge
import sampling

# As in the finder's HoleChoice.
PLACE_SIGMA, SIZE_SIGMA = {"taught": 0.03, "auto": 0.05}, {"taught": 0.18, "auto": 0.6}
PRIOR_PLACE, PRIOR_SIZE = 0.875, 0.028  # of the rim's radius
ALIKE_SIZE, ALIKE_RING, ALIKE_ODDS, LEAST_OF_ROUND, FEWEST_OF_ROUND = 0.16, 0.012, 3, -1.5, 2

_nets = None


def looked_at(net, levels, hub, places, black, white):
    """The judge's answers for places (x, y, radius), each looked at a second time where the first look found it."""
    def answers(at):
        inputs = []
        for x, y, radius in at:
            direction = math.atan2(y - hub[1], x - hub[0])
            near, wide = (sampling.patch(levels, (x, y), direction, reach * radius, sampling.PATCH_SIDE) for reach in sampling.PATCH_REACHES)
            inputs.append(judge.prepared(near, wide, black, white))
        with torch.no_grad():
            return net(torch.from_numpy(np.array(inputs, np.float32))).numpy()

    moved = []
    for (x, y, radius), answer in zip(places, answers(places)):
        direction = math.atan2(y - hub[1], x - hub[0])
        dx, dy, grow = (float(np.clip(answer[i], -0.6, 0.6)) * k for i, k in ((1, radius), (2, radius), (3, 1)))
        c, s = math.cos(direction), math.sin(direction)
        moved.append((x + dx * c - dy * s, y + dx * s + dy * c, radius * math.exp(grow)))
    return moved, answers(moved)


def _seen(job):
    """Evidence and truth of a wheel's candidates: [(evidence, is the hole, is another drilled hole)], and the rank of the
    hole among them."""
    wheel, seed = job
    first, second = _nets
    rng = np.random.default_rng([13, seed])
    levels = sampling.read(wheel.file)
    black, white = sampling.levels_of(levels[0])
    off = rng.normal(0, 0.0015 * wheel.rim, 2)
    hub = (wheel.hub[0] + off[0], wheel.hub[1] + off[1])
    band = (glance.BAND[0] * wheel.rim, glance.BAND[1] * wheel.rim)
    found = judge.candidates(first, levels, hub, judge.radii_without_model(wheel.rim), band, 16)
    if not found:
        return [], None
    moved, answers = looked_at(second, levels, hub, [f[1:] for f in found], black, white)
    rows, rank = [], None
    for i, ((logit, *_), (x, y, radius), answer) in enumerate(zip(found, moved, answers)):
        hit = wheel.hole is not None and math.hypot(x - wheel.hole[0], y - wheel.hole[1]) < 0.5 * wheel.hole[2]
        if hit and rank is None:
            rank = i
        other = not hit and judge.drilled(logit, x, y, radius, found, hub, wheel)
        rows.append((float(answer[0]), hit, other))
    return rows, rank


def report(first, second, held, jobs, log):
    """Prints how early the glance names the hole, and what evidence the judge gives holes and other places."""
    global _nets
    _nets = (first, second)
    for folder, wheels in held.items():
        with multiprocessing.get_context("fork").Pool(jobs) as workers:
            seen = workers.map(_seen, list(zip(wheels, range(len(wheels)))), 4)
        with_hole = [rank for (_, rank), wheel in zip(seen, wheels) if wheel.hole]
        rows = np.array([row for made, _ in seen for row in made if not row[2]], float)
        holes, rest = rows[rows[:, 1] > 0, 0], rows[rows[:, 1] == 0, 0]
        log("%s: %d holes, among the first 1, 4, 8, 16 candidates %s; evidence of holes %s, of the rest %s" % (
            folder, len(with_hole), " ".join("%.2f %%" % (100 * np.mean([r is not None and r < n for r in with_hole])) for n in (1, 4, 8, 16)),
            np.round(np.percentile(holes, [1, 5, 25, 50]), 2), np.round(np.percentile(rest, [50, 95, 99, 99.9]), 2)))


def _choice(job):
    """Of a wheel, for each way: the features of its candidates (evidence, place, size, of a round, 1) and which one is the
    hole, -1 for none."""
    wheel, seed = job
    first, second = _nets
    rng = np.random.default_rng([14, seed])
    levels = sampling.read(wheel.file)
    black, white = sampling.levels_of(levels[0])
    hub = tuple(np.array(wheel.hub) + rng.normal(0, 0.0015 * wheel.rim, 2))
    # A model knows rim, ring and hole to within some percent each; the ring is scaled by the rim.
    size = (wheel.hole[2] if wheel.hole else 0.027 * wheel.rim) * rng.uniform(0.92, 1.08)
    ring = wheel.ring * rng.uniform(0.98, 1.02) * rng.uniform(0.98, 1.02)
    ways = {"taught": ([size], (0.97 * ring - 0.03 * wheel.rim, 1.03 * ring + 0.03 * wheel.rim), 8, ring, size),
            "auto": (judge.radii_without_model(wheel.rim), (glance.BAND[0] * wheel.rim, glance.BAND[1] * wheel.rim), 14,
                     PRIOR_PLACE * wheel.rim, PRIOR_SIZE * wheel.rim)}
    made = {}
    for way, (radii, band, most, place, prior) in ways.items():
        found = judge.candidates(first, levels, hub, radii, band, most)
        if not found:
            continue
        moved, answers = looked_at(second, levels, hub, [f[1:] for f in found], black, white)
        seen = [(float(a[0]), x, y, r * math.exp(float(np.clip(a[3], -0.6, 0.6)))) for (x, y, r), a in zip(moved, answers)]
        seen.sort(reverse=True)
        kept = []
        for one in seen:
            if all(math.hypot(one[1] - k[1], one[2] - k[2]) > 1.1 * max(one[3], k[3]) for k in kept):
                kept.append(one)
        reach = [math.hypot(x - hub[0], y - hub[1]) for _, x, y, _ in kept]
        rows, hit = [], -1
        for i, (evidence, x, y, radius) in enumerate(kept):
            others = sum(j != i and abs(math.log(radius / o[3])) < ALIKE_SIZE and abs(reach[i] - reach[j]) < ALIKE_RING * wheel.rim
                         and min(evidence, o[0]) > LEAST_OF_ROUND and abs(evidence - o[0]) < ALIKE_ODDS
                         for j, o in enumerate(kept))
            rows.append([evidence, -math.log1p(((reach[i] - place) / (PLACE_SIGMA[way] * (ring if way == "taught" else wheel.rim))) ** 2),
                         -math.log1p((math.log(radius / prior) / SIZE_SIGMA[way]) ** 2), float(others >= FEWEST_OF_ROUND), 1.0])
            if wheel.hole and math.hypot(x - wheel.hole[0], y - wheel.hole[1]) < 0.5 * wheel.hole[2]:
                hit = i
        made[way] = (torch.tensor(rows), hit)
    return made


def weigh(first, second, held, jobs, log):
    """The weights of HoleChoice, by logistic regression of which place is the hole or that none is."""
    global _nets
    _nets = (first, second)
    wheels = [wheel for folder in held.values() for wheel in folder]
    with multiprocessing.get_context("fork").Pool(jobs) as workers:
        made = workers.map(_choice, list(zip(wheels, range(len(wheels)))), 4)
    prior = torch.tensor([1.0, 1.0, 1.0, -2.0, 0.0])
    for way in PLACE_SIGMA:
        rows = [one[way] for one in made if way in one]
        weights = prior.clone().requires_grad_(True)
        fit = torch.optim.LBFGS([weights], max_iter=200)

        def loss():
            none = torch.zeros(1)
            total = sum(-torch.log_softmax(torch.cat([none, x @ weights]), 0)[hit + 1] for x, hit in rows)
            return total / len(rows) + 0.002 * ((weights - prior) ** 2).sum()

        def step():
            fit.zero_grad()
            value = loss()
            value.backward()
            return value
        fit.step(step)
        log("%s, %d wheels, loss %.4f: evidence %.2f place %.2f size %.2f round %.2f offset %.2f" % (
            way, len(rows), float(loss()), *weights.tolist()))
