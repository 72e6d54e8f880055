#pragma once

/// Pixels that a finger in a glove needs: nothing that is to be touched is lower.
constexpr int fingerSize = 40;
