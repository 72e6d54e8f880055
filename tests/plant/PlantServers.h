#pragma once

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

/// A process that ends with its owner.
class OwnProcess : public QProcess
{
public:
    ~OwnProcess() override
    {
        kill();
        waitForFinished();
    }
};

/// PostgreSQL with a database of its own in a folder that goes with it.
class OwnDatabase
{
public:
    /// `place`: a folder for its files, or one of its own.
    explicit OwnDatabase(const QString& place = {})
    {
        const QStringList versions = QDir("/usr/lib/postgresql").entryList({"*"}, QDir::Dirs | QDir::NoDotAndDotDot);
        if (versions.isEmpty())
            return;
        const QString programs = "/usr/lib/postgresql/" + versions.last() + "/bin/";
        const QString data = (place.isEmpty() ? m_folder.path() : place) + "/data";
        m_folder.setAutoRemove(true);
        if (geteuid() == 0) { // it refuses to run as an administrator
            const passwd* user = getpwnam("postgres");
            QDir().mkpath(data);
            for (const QString& folder : {m_folder.path(), data})
                if (chown(qUtf8Printable(folder), user->pw_uid, user->pw_gid) != 0)
                    return;
            m_user = QStringList{"setpriv", "--reuid=postgres", "--regid=postgres", "--clear-groups"};
        }
        if (!run(m_user + QStringList{programs + "initdb", "-D", data, "-U", "plant", "-A", "trust", "-E", "UTF8",
                                      "--locale=C.UTF-8", "-N"}))
            return;
        const QStringList line = m_user + QStringList{programs + "postgres",
                                                      "-D",
                                                      data,
                                                      "-F",
                                                      "-c",
                                                      "listen_addresses=",
                                                      "-c",
                                                      "unix_socket_directories=" + m_folder.path()};
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.start(line.first(), line.mid(1));
        m_server.waitForStarted();
        while (m_server.state() != QProcess::NotRunning &&
               !run({"createdb", "-h", m_folder.path(), "-U", "plant", "valvecell"}))
            m_server.waitForFinished(50);
    }

    bool runs() const { return m_server.state() == QProcess::Running; }
    QString address() const { return "host=" + m_folder.path() + " user=plant dbname=valvecell"; }

private:
    static bool run(const QStringList& line)
    {
        QProcess process;
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(line.first(), line.mid(1));
        return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    QTemporaryDir m_folder;
    QStringList m_user;
    OwnProcess m_server;
};

inline quint16 freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = bind(socket, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(socket);
    return bound ? ntohs(address.sin_port) : 0;
}

inline QString brokerProgram()
{
    return QStandardPaths::findExecutable("mosquitto", {"/usr/sbin", "/usr/bin"});
}
