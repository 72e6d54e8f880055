#include "dialogs/cameras/CameraAudit.h"

#include "dialogs/cameras/CameraNames.h"

namespace CameraAudit {
namespace {

QString nameOf(const CameraEntry& camera)
{
    return QStringLiteral("camera/") + camera.key;
}

} // namespace

AuditChanges added(const CameraEntry& camera)
{
    AuditChanges changes{{nameOf(camera), {}, CameraNames::of(camera.type)}};
    for (auto it = camera.settings.begin(); it != camera.settings.end(); ++it)
        changes.append({nameOf(camera) + QLatin1Char('/') + it.key(), {}, it->toString()});
    return changes;
}

AuditChanges removed(const CameraEntry& camera)
{
    return {{nameOf(camera), CameraNames::of(camera.type), {}}};
}

AuditChanges changed(const CameraEntry& before, const CameraEntry& after)
{
    AuditChanges changes;
    if (before.type != after.type)
        changes.append({nameOf(before), CameraNames::of(before.type), CameraNames::of(after.type)});
    for (auto it = after.settings.begin(); it != after.settings.end(); ++it) {
        const QString old = before.settings.value(it.key()).toString();
        if (old != it->toString())
            changes.append({nameOf(before) + QLatin1Char('/') + it.key(), old, it->toString()});
    }
    return changes;
}

} // namespace CameraAudit
