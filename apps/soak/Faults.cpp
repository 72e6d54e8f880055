#include "Faults.h"

#include "CellProcess.h"
#include "NetworkCameras.h"
#include "db/SqlConnection.h"

#include <QFile>
#include <QThread>

#include <atomic>
#include <thread>

namespace {

/// A file or folder that is somewhere else for a while; in its place is nothing, or a file where a folder is needed.
class Away : public Fault
{
public:
    Away(QString name, QString path, bool block)
        : m_name(std::move(name))
        , m_path(std::move(path))
        , m_block(block)
    {
    }
    ~Away() override { bringBack(); }

    QString name() const override { return m_name; }
    bool begin() override
    {
        m_gone = QFile::rename(m_path, away());
        if (m_gone && m_block)
            QFile(m_path).open(QIODevice::WriteOnly);
        return m_gone;
    }
    void end() override { bringBack(); }
    bool losesPictures() const override { return m_block; }
    bool losesImages() const override { return !m_block; }

private:
    QString away() const { return m_path + QStringLiteral(".away"); }
    void bringBack()
    {
        if (!m_gone)
            return;
        QFile::remove(m_path);
        m_gone = !QFile::rename(away(), m_path);
    }

    const QString m_name;
    const QString m_path;
    const bool m_block;
    bool m_gone = false;
};

/// The camera of station 1 neither sends nor answers.
class CableOut : public Fault
{
public:
    explicit CableOut(NetworkCameras& cameras)
        : m_cameras(cameras)
    {
    }
    ~CableOut() override { CableOut::end(); }
    QString name() const override { return QStringLiteral("camera"); }
    bool begin() override { return m_cameras.order(1, "vanish"); }
    void end() override { m_cameras.order(1, "return"); }
    bool losesImages() const override { return true; }

private:
    NetworkCameras& m_cameras;
};

class FullDisk : public Fault
{
public:
    explicit FullDisk(CellProcess& program)
        : m_program(program)
    {
    }
    QString name() const override { return QStringLiteral("disk"); }
    bool begin() override { return m_program.limitFiles(0); }
    void end() override { m_program.limitFiles(-1); }
    bool losesPictures() const override { return true; }

private:
    CellProcess& m_program;
};

/// Another program writes in all databases.
class Locks : public Fault
{
public:
    explicit Locks(const QString& home)
    {
        for (const char* file : {"/DBFiles/Pellix.db", "/DBFiles/wheelhubzd.db", "/dbLog.db"})
            m_files << home + QLatin1String(file);
    }
    QString name() const override { return QStringLiteral("lock"); }
    bool begin() override
    {
        for (const QString& file : m_files) {
            auto connection = std::make_unique<SqlConnection>(QStringLiteral("QSQLITE"));
            connection->database().setDatabaseName(file);
            connection->database().setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=1000"));
            connection->database().open();
            connection->exec(QStringLiteral("BEGIN IMMEDIATE"));
            if (!connection->failed())
                m_connections.push_back(std::move(connection));
        }
        return !m_connections.empty();
    }
    void end() override
    {
        for (const auto& connection : m_connections)
            connection->exec(QStringLiteral("ROLLBACK"));
        m_connections.clear();
    }

private:
    QStringList m_files;
    std::vector<std::unique_ptr<SqlConnection>> m_connections;
};

/// Twice as many busy threads as there are processors.
class BusyMachine : public Fault
{
public:
    ~BusyMachine() override { stop(); }
    QString name() const override { return QStringLiteral("load"); }
    bool begin() override
    {
        m_busy = true;
        for (int i = 0; i < 2 * QThread::idealThreadCount(); ++i)
            m_threads.emplace_back([this] {
                while (m_busy) {
                }
            });
        return true;
    }
    void end() override { stop(); }

private:
    void stop()
    {
        m_busy = false;
        for (std::thread& thread : m_threads)
            thread.join();
        m_threads.clear();
    }

    std::atomic<bool> m_busy{false};
    std::vector<std::thread> m_threads;
};

} // namespace

QStringList Faults::names()
{
    return {QStringLiteral("kill"), QStringLiteral("cut"),  QStringLiteral("camera"), QStringLiteral("disk"),
            QStringLiteral("lock"), QStringLiteral("load"), QStringLiteral("archive")};
}

std::unique_ptr<Fault> Faults::make(const QString& name, const Ground& ground)
{
    const QString& home = ground.home;
    if (name == QLatin1String("camera") && ground.cameras)
        return std::make_unique<CableOut>(*ground.cameras);
    if (name == QLatin1String("camera"))
        return std::make_unique<Away>(name, home + QStringLiteral("/images/1"), false);
    if (name == QLatin1String("archive"))
        return std::make_unique<Away>(name, home + QStringLiteral("/DBFiles/Images"), true);
    if (name == QLatin1String("disk"))
        return std::make_unique<FullDisk>(ground.program);
    if (name == QLatin1String("lock"))
        return std::make_unique<Locks>(home);
    if (name == QLatin1String("load"))
        return std::make_unique<BusyMachine>();
    return nullptr;
}
