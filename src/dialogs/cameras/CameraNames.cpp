#include "dialogs/cameras/CameraNames.h"

#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraList.h>

namespace CameraNames {

QString of(CameraType type)
{
    const CameraTypeName* known = cameraTypeNames;
    for (const CameraTypeName& one : cameraTypeNames) {
        if (one.type == type)
            known = &one;
    }
    return QStringLiteral("%1(%2)").arg(QLatin1String(known->name)).arg(int(known->type));
}

QString of(CameraState state)
{
    switch (state) {
    case CameraState::Initialized:
        return QStringLiteral("Initialized");
    case CameraState::Opened:
        return QStringLiteral("Opened");
    case CameraState::Running:
        return QStringLiteral("Running");
    case CameraState::Paused:
        return QStringLiteral("Paused");
    case CameraState::Closed:
        return QStringLiteral("Closed");
    case CameraState::Uninitialized:
        break;
    }
    return QStringLiteral("Uninitialized"); // also for a code that a module made up
}

QString of(PixelFormat format)
{
    switch (format) {
    case PixelFormat::Gray8:
        return QStringLiteral("GRAY8");
    case PixelFormat::Rgb24:
        return QStringLiteral("RGB24");
    case PixelFormat::Rgb32:
        return QStringLiteral("RGB32");
    case PixelFormat::Gray16:
        return QStringLiteral("GRAY16");
    case PixelFormat::Rgb48:
        return QStringLiteral("RGB48");
    case PixelFormat::Bgr24:
        return QStringLiteral("BGR24");
    case PixelFormat::Bgr32:
        return QStringLiteral("BGR32");
    case PixelFormat::None:
        break;
    }
    return QStringLiteral("None");
}

} // namespace CameraNames

namespace CameraAudit {
namespace {

QString nameOf(const QString& key)
{
    return QStringLiteral("camera/") + key;
}

QString nameOf(const CameraEntry& camera)
{
    return nameOf(camera.key);
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

AuditChanges feature(const QString& cameraKey, const CameraFeature& before, const QVariant& value)
{
    const QString name = nameOf(cameraKey) + QLatin1Char('/') + before.name;
    if (before.kind == CameraFeature::Kind::Command)
        return {{name, {}, QStringLiteral("executed")}};
    return {{name, before.value.toString(), value.toString()}};
}

} // namespace CameraAudit
