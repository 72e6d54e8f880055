#include "home/HomeLock.h"

#include <valvecell/HomeFiles.h>

HomeLock::HomeLock(const QString& home)
    : m_path(home + QStringLiteral("/valvecell.lock"))
    , m_lock(m_path)
{
}

bool HomeLock::take()
{
    if (HomeFiles::isNoFile(m_path))
        HomeFiles::keepAside(m_path);
    m_lock.setStaleLockTime(0); // a day in production is none
    if (m_lock.tryLock())
        return true;
    if (m_lock.error() != QLockFile::LockFailedError)
        return true; // a home that cannot be written has worse problems, which are reported where they matter
    constexpr int secondsToWriteIt = 5;
    const QFileInfo file(m_path);
    const bool unfinished =
        file.size() == 0 && file.lastModified().secsTo(QDateTime::currentDateTime()) > secondsToWriteIt;
    return unfinished && m_lock.removeStaleLockFile() && m_lock.tryLock();
}

HomeLock::Owner HomeLock::owner() const
{
    Owner owner;
    m_lock.getLockInfo(&owner.process, &owner.machine, &owner.program);
    return owner;
}
