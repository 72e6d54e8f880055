#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/// A home of its own for one test, with Chinese in its path; removed afterwards.
class TempHome
{
public:
    TempHome()
    {
        QDir().mkpath(path() + QStringLiteral("/user"));
        qputenv("VALVECELL_HOME", path().toUtf8());
    }
    ~TempHome() { qunsetenv("VALVECELL_HOME"); }

    QString path(const QString& below = {}) const { return m_dir.path() + QStringLiteral("/工厂") + below; }

    void write(const QString& below, const QByteArray& content) const
    {
        QDir().mkpath(QFileInfo(path(below)).path());
        QFile file(path(below));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    QByteArray read(const QString& below) const
    {
        QFile file(path(below));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// From now on nothing can be written to user/.
    void block() const
    {
        QVERIFY(QDir(path("/user")).removeRecursively());
        write("/user", "a file where a folder is needed");
    }

    /// Files beside `below` whose names begin with its name: what was kept aside.
    QStringList keptAside(const QString& below) const
    {
        const QFileInfo info(path(below));
        return info.dir().entryList({info.fileName() + QStringLiteral(".damaged-*")}, QDir::Files);
    }

private:
    QTemporaryDir m_dir;
};
