"""Trains the glance: which places of an unwrapped ring are worth a look."""
import math

import cv2
import numpy as np
import torch
import torch.nn.functional as functional

import paint
import sampling
from nets import STRIDE, Glance

ROWS, COLUMNS = 96, 48  # of a training piece
BAND = (0.70, 0.97)     # of the rim's radius, where holes are looked for without a model


def maps_of(wheel, rng, count):
    """Some ring maps of a wheel, as the finder would see it with a model and without: [(map, hole)], hole = (column, row,
    radius) in places or None."""
    levels = sampling.read(wheel.file)
    made = []
    for _ in range(count):
        off = rng.normal(0, 0.002 * wheel.rim, 2)
        hub = (wheel.hub[0] + off[0], wheel.hub[1] + off[1])
        true = wheel.hole[2] if wheel.hole else wheel.rim * math.exp(rng.uniform(math.log(0.011), math.log(0.058)))
        radius = true * math.exp(rng.uniform(-0.27, 0.27))
        if rng.random() < 0.4:
            band = (wheel.ring * 0.96, wheel.ring * 1.04)
        else:
            band = (BAND[0] * wheel.rim, BAND[1] * wheel.rim)
        strip, low, step = sampling.ring_map(levels, hub, band, radius)
        hole = None
        if wheel.hole:
            dx, dy = wheel.hole[0] - hub[0], wheel.hole[1] - hub[1]
            row = math.atan2(dy, dx) % (2 * math.pi) / (2 * math.pi) * strip.shape[0]
            hole = ((math.hypot(dx, dy) - low) / step, row, true / step)
        made.append((strip, hole))
    return made


def piece_of(strip, hole, rng):
    """A piece of a map, and where in it holes are: real and painted ones."""
    rows = np.arange(ROWS)
    near = hole is not None and rng.random() < 0.5
    first = int(hole[1] - rng.uniform(8, ROWS - 8)) if near else int(rng.integers(0, strip.shape[0]))
    room = strip.shape[1] - COLUMNS
    left = int(rng.integers(0, room + 1)) if room > 0 else 0
    gray = strip[(first + rows) % strip.shape[0]][:, left: left + COLUMNS].astype(np.float32)
    if gray.shape[1] < COLUMNS:
        gray = cv2.copyMakeBorder(gray, 0, 0, 0, COLUMNS - gray.shape[1], cv2.BORDER_REPLICATE)
    holes = []
    if hole is not None:
        row = (hole[1] - first) % strip.shape[0]
        if row < ROWS:
            holes.append((hole[0] - left, row, hole[2]))
    black = float(np.percentile(gray, 1))
    for _ in range(rng.integers(0, 4)):
        painter = paint.Piece(gray, (rng.uniform(6, COLUMNS - 6), rng.uniform(6, ROWS - 6)), rng)
        painter.soft = rng.uniform(0.35, 1.2)
        x, y = painter.center
        if any(math.hypot(x - h[0], y - h[1]) < 14 for h in holes):
            continue
        if rng.random() < 0.5:
            radius = sampling.MAP_RADIUS * math.exp(rng.uniform(-0.3, 0.3))
            spread = gray[max(0, int(y) - 8): int(y) + 9, max(0, int(x) - 8): int(x) + 9].std()
            if spread < 25 and paint.hole(painter, radius, black) is not None:
                holes.append((x, y, radius))
                gray = painter.gray
        else:
            paint.no_hole(painter, sampling.MAP_RADIUS, black)
            gray = painter.gray
    gray = paint.photograph(gray, rng, 1.0)
    if rng.random() < 0.5:
        gray = gray[::-1]
        holes = [(x, ROWS - 1 - y, r) for x, y, r in holes]
    return np.ascontiguousarray(gray), holes


def prepared(gray):
    """As the network sees a map: square roots, so that a dim contrast counts like a bright one, against its spread."""
    root = np.sqrt(gray)
    return (root - root.mean()) / (root.std() + 0.15)


def targets_of(holes):
    """Per cell: 1 hole, 0 none, -1 does not matter; and what it should answer of the hole."""
    h, w = ROWS // STRIDE, COLUMNS // STRIDE
    label = np.zeros((h, w), np.float32)
    targets = np.zeros((3, h, w), np.float32)
    cy, cx = np.mgrid[0:h, 0:w].astype(np.float32) * STRIDE + (STRIDE - 1) / 2
    for x, y, r in holes:
        d = np.hypot(cx - x, cy - y)
        label[(d < 1.6 * r) & (label == 0)] = -1
        size = abs(math.log(r / sampling.MAP_RADIUS))
        if size > 0.33:
            continue
        hit = d < 3.0
        label[hit] = 1
        targets[0][hit] = (x - cx)[hit] / sampling.MAP_RADIUS
        targets[1][hit] = (y - cy)[hit] / sampling.MAP_RADIUS
        targets[2][hit] = math.log(r / sampling.MAP_RADIUS)
    return label, targets


def batch_of(maps, rng, size):
    pieces, labels, targets = [], [], []
    for _ in range(size):
        world = maps[rng.integers(len(maps))]
        gray, holes = piece_of(*world[rng.integers(len(world))], rng)
        pieces.append(prepared(gray) * math.exp(rng.normal(0, 0.2)) + rng.normal(0, 0.2))
        a, b = targets_of(holes)
        labels.append(a)
        targets.append(b)
    return (torch.from_numpy(np.array(pieces, np.float32)[:, None]), torch.from_numpy(np.array(labels)),
            torch.from_numpy(np.array(targets)))


def loss_of(answer, labels, targets):
    logit = answer[:, 0]
    matters = labels >= 0
    each = functional.binary_cross_entropy_with_logits(logit, labels.clamp(min=0), reduction="none")
    share = torch.sigmoid(logit)
    wrong = torch.where(labels > 0, 1 - share, share)
    weight = torch.where(labels > 0, torch.tensor(1.0), torch.tensor(0.5)) * wrong ** 2
    positive = labels > 0
    count = positive.sum().clamp(min=1)
    place = functional.smooth_l1_loss(answer[:, 1:].permute(0, 2, 3, 1)[positive], targets.permute(0, 2, 3, 1)[positive], reduction="sum", beta=0.2)
    return ((each * weight)[matters].sum() + 0.7 * place) / count


def train(maps, seed, steps, size=48, log=print):
    """`maps`: those of each world, which are drawn from equally often."""
    torch.manual_seed(seed)
    rng = np.random.default_rng(seed)
    net = Glance()
    optimiser = torch.optim.AdamW(net.parameters(), lr=3e-3, weight_decay=1e-4)
    schedule = torch.optim.lr_scheduler.OneCycleLR(optimiser, 4e-3, total_steps=steps)
    total = 0.0
    for step in range(steps):
        loss = loss_of(net(batch[0]), *batch[1:]) if (batch := batch_of(maps, rng, size)) else None
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
        schedule.step()
        total += float(loss)
        if step % 100 == 99:
            log(f"glance {step + 1}/{steps}: loss {total / 100:.4f}")
            total = 0.0
    return net.eval()


def places(net, strip, most, least=-6.0):
    """The best places of a map: [(logit, column, row, log radius)], best first, none within a radius of a better one."""
    x = torch.from_numpy(prepared(strip.astype(np.float32)))[None, None]
    with torch.no_grad():
        out = net(x)[0].numpy()
    logit = out[0].copy()
    found = []
    cy, cx = np.mgrid[0:logit.shape[0], 0:logit.shape[1]].astype(np.float32) * STRIDE + (STRIDE - 1) / 2
    while len(found) < most:
        k = int(logit.argmax())
        y, x = divmod(k, logit.shape[1])
        if logit[y, x] < least:
            break
        px = cx[y, x] + out[1, y, x] * sampling.MAP_RADIUS
        py = cy[y, x] + out[2, y, x] * sampling.MAP_RADIUS
        found.append((float(logit[y, x]), float(px), float(py), float(out[3, y, x])))
        logit[np.hypot(cx - px, cy - py) < 1.2 * sampling.MAP_RADIUS] = -99
        logit[y, x] = -99
    return found
