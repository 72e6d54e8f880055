#include "PortLink.h"

#include <QFileInfo>

PortLink::PortLink(QString path)
    : m_path(std::move(path))
{
}

PortLink::~PortLink()
{
    remove();
}

/// A link cannot be turned, only replaced.
bool PortLink::point(const QString& device, QString* error)
{
    if (!mayReplace()) {
        *error = QStringLiteral("%1: there is something else than a link to a device").arg(m_path);
        return false;
    }
    if (QFileInfo(m_path).isSymLink())
        QFile::remove(m_path);
    if (!QFile::link(device, m_path)) {
        *error = QStringLiteral("%1: the link cannot be made").arg(m_path);
        return false;
    }
    m_device = device;
    return true;
}

void PortLink::remove()
{
    if (isOurs())
        QFile::remove(m_path);
    m_device.clear();
}

bool PortLink::isOurs() const
{
    return !m_device.isEmpty() && QFileInfo(m_path).symLinkTarget() == m_device;
}

bool PortLink::mayReplace() const
{
    const QFileInfo info(m_path);
    if (!info.isSymLink())
        return !info.exists();
    const QString target = info.symLinkTarget();
    return target.startsWith(QLatin1String("/dev/")) || !QFileInfo::exists(target);
}
