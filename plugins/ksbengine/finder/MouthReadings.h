#pragma once

#include "MouthProblem.h"

namespace finder {

/// The likeliest reading of a coarse picture of a hole, to be refined. Which edge is the mouth's is a choice that no
/// small step undoes: the same dark disc may be a bore in a chamfer as wide as half its radius, or a wide mouth that
/// shows its far end. So readings of all kinds compete: rings of several widths around mouths of several sizes, each
/// without a visible wall and with one on either side. By plain least squares the gray values of each follow from its
/// shape; the likeliest are improved and compared by their evidence.
MouthProblem::State likeliestReading(const MouthPatch& patch, const MouthExpectation& expected);

} // namespace finder
