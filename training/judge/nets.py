"""The two networks. `Glance` looks over a whole ring map and answers where a hole may be; `Judge` looks at one place."""
import torch
from torch import nn

STRIDE = 4  # of the glance's answers, in places of the ring map


def conv(inputs, outputs, size=3, stride=1):
    return nn.Sequential(nn.Conv2d(inputs, outputs, size, stride=stride, padding=size // 2, bias=True), nn.BatchNorm2d(outputs), nn.ReLU())


class Glance(nn.Module):
    """(n, 1, rows, columns) of a ring map to (n, 4, rows / 4, columns / 4): logit of a hole, its middle against the
    cell's in radii looked for (across columns, across rows), logarithm of its radius against the one looked for."""

    def __init__(self, a=8, b=16, c=24):
        super().__init__()
        self.body = nn.Sequential(conv(1, a, 5, 2), conv(a, b, 3, 2), conv(b, c), conv(c, c))
        self.head = nn.Conv2d(c, 4, 1)

    def forward(self, x):
        return self.head(self.body(x))


class Judge(nn.Module):
    """(n, 3, 32, 32) of patches to (n, 9): logit of a hole, its middle against the patch's in radii assumed (along and
    across the direction from the hub), logarithms of the mouth's radius and of the outer edge's against the assumed,
    logits of what it is if it is no hole."""

    def __init__(self, a=16, b=32, c=48, d=64):
        super().__init__()
        self.body = nn.Sequential(conv(3, a), nn.MaxPool2d(2), conv(a, b), nn.MaxPool2d(2), conv(b, c), nn.MaxPool2d(2), conv(c, c))
        self.head = nn.Sequential(nn.Flatten(), nn.Dropout(0.2), nn.Linear(c * 16, d), nn.ReLU(), nn.Linear(d, 9))

    def forward(self, x):
        return self.head(self.body(x))


def fused(net):
    """A copy of a trained network whose normalisations are part of its convolutions."""
    import copy
    result = copy.deepcopy(net).eval()
    for module in result.modules():
        if isinstance(module, nn.Sequential) and len(module) == 3 and isinstance(module[1], nn.BatchNorm2d):
            module[0] = torch.nn.utils.fusion.fuse_conv_bn_eval(module[0], module[1])
            module[1] = nn.Identity()
    return result
