#pragma once

/// What the cell itself has against an answer, as recorded in place of the engine's error code, whose are below 100.
enum class CellError {
    NoImage = 100,
    Overdue = 101,
    NoResult = 102,
    NotSent = 103,     ///< the line of the part's trigger is gone
    NoModel = 104,     ///< refused: the PLC's index has no model
    Overrun = 105,     ///< refused: too many triggers wait
    NotCarried = 106,  ///< found, and a frame cannot carry where
    Calibration = 107, ///< found, and the station's calibration cannot be right
};
