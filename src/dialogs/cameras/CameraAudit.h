#pragma once

#include "common/AuditChange.h"

#include <valvecell/ICameraList.h>

/// What is told of changed cameras: "camera/KEY" with the type, and "camera/KEY/SETTING" with each value. Pure
/// functions.
namespace CameraAudit {

AuditChanges added(const CameraEntry& camera);
AuditChanges removed(const CameraEntry& camera);
/// Empty when both are the same; settings that `after` does not name count as kept.
AuditChanges changed(const CameraEntry& before, const CameraEntry& after);

} // namespace CameraAudit
