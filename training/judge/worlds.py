"""Reads the truth.json of any set of wheels."""
import json
import os
from dataclasses import dataclass
from typing import Optional, Tuple


@dataclass
class Wheel:
    file: str
    hub: Tuple[float, float]
    rim: float
    ring: float
    hole: Optional[Tuple[float, float, float]]  # x, y, radius of the mouth; None: it has none
    outer: float  # radius of the outer edge of chamfer or counterbore; that of the mouth where it is plain; 0: not known
    design: str
    world: str
    others: tuple = ()  # (kind, x, y, radius) of what else is to be seen, where the truth names it


def _own(folder, entry, world):
    hole = (entry["x"], entry["y"], entry["hole_radius"]) if entry["hole"] else None
    return Wheel(os.path.join(folder, entry["file"]), (entry["hub_x"], entry["hub_y"]), entry["rim_radius"],
                 entry["ring_radius"] or 0.87 * entry["rim_radius"], hole, entry.get("edge_radius") or 0, entry["model"], world)


def _other(folder, entry, world):
    hole = (entry["vx"], entry["vy"], entry["vr"]) if entry["valve"] else None
    hub = (entry.get("rim_cx") or entry["cx"], entry.get("rim_cy") or entry["cy"])
    return Wheel(os.path.join(folder, entry["image"]), hub, entry["rim_r"], entry.get("pitch_r") or 0.87 * entry["rim_r"],
                 hole, entry.get("outer_r") or 0, str(entry.get("design")), world,
                 tuple((o["kind"], o["x"], o["y"], o["r"]) for o in entry.get("others", ())))


def read(folder, world):
    with open(os.path.join(folder, "truth.json"), encoding="utf-8") as file:
        truth = json.load(file)
    if isinstance(truth, dict):
        return [_own(folder, entry, world) for entry in truth["images"]]
    return [_other(folder, entry, world) for entry in truth if entry["wheel"] and entry.get("rim_r")]
