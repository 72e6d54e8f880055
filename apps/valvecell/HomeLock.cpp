#include "HomeLock.h"

#include <valvecell/HomeFiles.h>
#include <valvecell/HostChoice.h>

#include <QMessageBox>
#include <QTimer>

#include <cstdio>

HomeLock::HomeLock()
    : m_path(HomeFiles::home() + QStringLiteral("/valvecell.lock"))
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

void HomeLock::reportInUse() const
{
    qint64 process = 0;
    QString host;
    QString name;
    m_lock.getLockInfo(&process, &host, &name);
    const QString home = QDir::toNativeSeparators(HomeFiles::home());
    std::fprintf(stderr, "%s: in use by another %s, process %lld on %s\n", qUtf8Printable(home), qUtf8Printable(name),
                 static_cast<long long>(process), qUtf8Printable(host));
    if (HostChoice::isUnattended())
        return;
    QMessageBox box(
        QMessageBox::Warning, QStringLiteral("ValveCell"),
        QStringLiteral("程序已在运行（进程%1），正在使用文件夹%2。\nThe program is running already (process %1), "
                       "in %2.")
            .arg(process)
            .arg(home));
    constexpr int msOnTheScreen = 10000;
    QTimer::singleShot(msOnTheScreen, &box, &QDialog::accept);
    box.exec();
}
