#pragma once

#include <QCursor>

/// The cursors of regions of interest. GUI thread.
namespace RoiCursors {

/// How many eighths of a turn a region's rotation (degrees) is away from upright, rounded as the cursors need it: 0
/// to 7.
int rotationOffset(double rotation);

/// One of the eight rotation cursors; entry `index` mod 8 shows 45 * index degrees.
QCursor rotation(int index);

/// The resize cursor of a handle that lies `direction` eighths of a turn from +x, clockwise, on a region that is turned
/// by `offset` eighths.
Qt::CursorShape resize(int direction, int offset);

} // namespace RoiCursors
