#pragma once

#include "WheelSpec.h"

#include <vector>

namespace wheel {

/// A model as the plant knows it.
struct Design
{
    std::string key;  ///< for command lines
    std::string name; ///< UTF-8, as in the model library
    int plcIndex = 0;
    FaceSpec face;
};

/// All designs, in the order of their PLC indices.
const std::vector<Design>& designs();

/// The design of that key or name; null when there is none.
const Design* findDesign(const std::string& keyOrName);

} // namespace wheel
