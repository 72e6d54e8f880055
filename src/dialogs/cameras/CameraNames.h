#pragma once

#include <valvecell/CameraCodes.h>

#include <QString>
#include <QVector>

/// The names under which codes of cameras are shown; the same in every language. Pure functions.
namespace CameraNames {

/// All types, in the order of their codes.
const QVector<CameraType>& types();

/// For example "Virtual Camera(100)"; that of CameraType::Unknown for a code without a name.
QString of(CameraType type);
QString of(CameraState state);
QString of(PixelFormat format);

} // namespace CameraNames
