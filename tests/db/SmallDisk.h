#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// A disk of a few MiB that can be filled, emptied and made read-only; only an administrator can have one.
class SmallDisk
{
public:
    explicit SmallDisk(int mebibytes)
    {
        m_mounted = run("mount", {"-t", "tmpfs", "-o", QString("size=%1m").arg(mebibytes), "tmpfs", m_folder.path()});
    }

    ~SmallDisk()
    {
        if (m_mounted)
            run("umount", {"--lazy", m_folder.path()});
    }

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_folder.path(); }

    void fill()
    {
        QFile ballast(m_folder.filePath("ballast"));
        if (!ballast.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            return;
        while (ballast.write(QByteArray(4096, 'x')) == 4096) {
        }
    }

    void empty() { QFile::remove(m_folder.filePath("ballast")); }

    bool setReadOnly(bool on) { return run("mount", {"-o", on ? "remount,ro" : "remount,rw", m_folder.path()}); }

private:
    static bool run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program, arguments);
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    QTemporaryDir m_folder;
    bool m_mounted = false;
};
