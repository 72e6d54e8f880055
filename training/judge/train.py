#!/usr/bin/python3
"""Learns the finder's two networks from folders of rendered wheels and writes them as ONNX files.

  train.py --out DIR --world FOLDER [--world FOLDER ...] --valid FOLDER [...] [--steps N] [--rounds N] [--jobs J]

The same folders and numbers give the same files. Prints, for each folder held back, how often the true hole is among the
first candidates and how well the judge parts holes from the rest; and the weights that HoleChoice should have."""
import argparse
import multiprocessing
import os
import sys

import cv2
import numpy as np
import torch

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import calibrate
import glance
import judge
import nets
import sampling
import worlds

MAPS_OF_WHEEL = 4
_glance = None


def _maps(job):
    wheel, seed = job
    return glance.maps_of(wheel, np.random.default_rng([11, seed]), MAPS_OF_WHEEL)


def _places(job):
    wheel, seed = job
    return judge.places_of(wheel, _glance, np.random.default_rng([12, seed]))


def _each(function, wheels, jobs):
    """The function of each wheel, in order."""
    with multiprocessing.get_context("fork").Pool(jobs) as workers:
        return workers.map(function, list(zip(wheels, range(len(wheels)))), 8)


def export(net, example, file, axes=None):
    net = nets.fused(net)
    torch.onnx.export(net, example, file, opset_version=11, input_names=["pictures"], output_names=["answers"], dynamic_axes=axes)


def main():
    global _glance
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("--out", required=True)
    p.add_argument("--world", action="append", required=True)
    p.add_argument("--valid", action="append", default=[])
    p.add_argument("--steps", type=int, default=3500, help="of the glance")
    p.add_argument("--rounds", type=int, default=24, help="of the judge, 20,000 examples each")
    p.add_argument("--jobs", type=int, default=2)
    p.add_argument("--glance", help="goes on from this state instead of learning the glance")
    a = p.parse_args()
    torch.set_num_threads(1)
    torch.use_deterministic_algorithms(True)
    cv2.setNumThreads(1)
    os.makedirs(a.out, exist_ok=True)
    log = lambda text: print(text, flush=True)
    learnt_from = [worlds.read(folder, os.path.basename(folder.rstrip("/"))) for folder in a.world]
    if a.glance:
        first = nets.Glance()
        first.load_state_dict(torch.load(a.glance))
    else:
        maps = [[m for made in _each(_maps, wheels, a.jobs) for m in made] for wheels in learnt_from]
        first = glance.train(maps, 1, a.steps, log=log)
        del maps
        torch.save(first.state_dict(), os.path.join(a.out, "glance.pt"))
    _glance = first.eval()
    pools = []
    for folder, wheels in zip(a.world, learnt_from):
        made = _each(_places, wheels, a.jobs)
        pools.append([[place for places in kind for place in places] for kind in zip(*made)])
        log("%s: %d wheels, %d holes, %d other places, %d of plain surface" % (folder, len(wheels), *map(len, pools[-1])))
    second = judge.train(pools, 1, a.rounds, jobs=a.jobs, log=log)
    torch.save(second.state_dict(), os.path.join(a.out, "judge.pt"))
    held = {folder: worlds.read(folder, os.path.basename(folder.rstrip("/"))) for folder in a.valid}
    calibrate.report(first, second, held, a.jobs, log)
    calibrate.weigh(first, second, held, a.jobs, log)
    export(first, torch.zeros(1, 1, 1024, 64), os.path.join(a.out, "glance.onnx"))
    export(second, torch.zeros(2, 3, sampling.PATCH_SIDE, sampling.PATCH_SIDE), os.path.join(a.out, "judge.onnx"),
           {"pictures": {0: "n"}, "answers": {0: "n"}})


if __name__ == "__main__":
    main()
