#include "VirtualSettings.h"

#include <valvecell/HomeFiles.h>

namespace {

const auto kFolder = QStringLiteral("folder");
const auto kExposure = QStringLiteral("exposure_ms");
const auto kTransfer = QStringLiteral("transfer_ms");

bool isNumber(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

} // namespace

/// All or nothing: the changes are tried on a copy.
bool VirtualSettings::change(const QVariantMap& changes, QString* error)
{
    VirtualSettings next = *this;
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        const bool time = it.key() == kExposure || it.key() == kTransfer;
        const double ms = it->toDouble();
        if (time && isNumber(*it) && ms >= 0 && ms <= maxMs)
            (it.key() == kExposure ? next.exposureMs : next.transferMs) = ms;
        else if (it.key() == kFolder && it->userType() == QMetaType::QString && !it->toString().trimmed().isEmpty())
            next.folder = it->toString();
        else {
            *error = time                  ? tr("%1 必须是 0 到 %2 之间的毫秒数").arg(it.key()).arg(maxMs)
                     : it.key() == kFolder ? tr("folder 必须是图像文件夹的路径")
                                           : tr("虚拟相机没有设置项“%1”").arg(it.key());
            return false;
        }
    }
    *this = next;
    return true;
}

QVariantMap VirtualSettings::toMap() const
{
    return {{kFolder, folder}, {kExposure, exposureMs}, {kTransfer, transferMs}};
}

QString VirtualSettings::folderPath() const
{
    return folder.isEmpty() ? QString() : QDir::cleanPath(QDir(HomeFiles::home()).absoluteFilePath(folder));
}
