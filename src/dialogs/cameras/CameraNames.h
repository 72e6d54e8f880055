#pragma once

#include "common/AuditChange.h"

#include <valvecell/CameraCodes.h>

#include <QString>

class QVariant;
struct CameraEntry;
struct CameraFeature;

/// The names under which codes of cameras are shown; the same in every language. Pure functions.
namespace CameraNames {

/// For example "Virtual Camera(100)"; that of CameraType::Unknown for a code without a name.
QString of(CameraType type);
QString of(CameraState state);
QString of(PixelFormat format);

} // namespace CameraNames

/// What is reported of changed cameras: "camera/KEY" with the type, and "camera/KEY/SETTING" with each value;
/// features of its own are settings, too. Pure
/// functions.
namespace CameraAudit {

AuditChanges added(const CameraEntry& camera);
AuditChanges removed(const CameraEntry& camera);
/// Empty when both are the same; settings that `after` does not name count as kept.
AuditChanges changed(const CameraEntry& before, const CameraEntry& after);
/// A camera took `value` for a feature that had another.
AuditChanges feature(const QString& cameraKey, const CameraFeature& before, const QVariant& value);

} // namespace CameraAudit
