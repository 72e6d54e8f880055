#include "dialogs/cameras/FolderProbe.h"

#include <QFileInfo>
#include <QThread>

#include <memory>

namespace {
constexpr int kPauseMs = 250;
} // namespace

FolderProbe::FolderProbe(QObject* parent)
    : QObject(parent)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPauseMs);
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
    const auto isThere = std::make_shared<bool>(true);
    // Belongs to nobody: a dialog that closes meanwhile does not wait for it.
    QThread* thread = QThread::create([isThere, path = m_wanted] { *isThere = QFileInfo(path).isDir(); });
    connect(thread, &QThread::finished, this, [this, isThere, path = m_wanted] {
        m_looking = false;
        m_seen = path;
        m_missing = !*isThere;
        if (m_wanted != path)
            m_pause.start();
        emit looked();
    });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}
