#include "dialogs/cameras/FolderProbe.h"

#include <QFileInfo>

namespace {
constexpr int pauseMs = 250;
} // namespace

FolderProbe::FolderProbe(QObject* parent)
    : QObject(parent)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseMs);
    connect(&m_pause, &QTimer::timeout, this, &FolderProbe::begin);
}

void FolderProbe::look(const QString& path)
{
    m_wanted = path;
    m_pause.start();
}

void FolderProbe::begin()
{
    if (m_looking)
        return;
    m_looking = true;
    m_background.run([path = m_wanted] { return QFileInfo(path).isDir(); },
                     [this, path = m_wanted](bool isThere) {
                         m_looking = false;
                         m_seen = path;
                         m_missing = !isThere;
                         if (m_wanted != path)
                             m_pause.start();
                         emit looked();
                     });
}
