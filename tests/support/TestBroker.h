#pragma once

#include "support/Patience.h"

#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

/// A real broker in a folder of its own, on a free port of the loopback. It keeps what it has over a restart.
class TestBroker
{
public:
    /// `settings`: further lines of its configuration, as they follow "listener".
    explicit TestBroker(const QByteArray& settings = "allow_anonymous true\n")
        : m_settings(settings)
    {
        QTcpServer free;
        free.listen(QHostAddress::LocalHost);
        m_port = free.serverPort();
    }
    ~TestBroker() { kill(); }

    qint64 processId() const { return m_process.processId(); }
    quint16 port() const { return m_port; }
    QString folder() const { return m_folder.path(); }

    bool start()
    {
        QFile file(m_folder.filePath("broker.conf"));
        file.open(QIODevice::WriteOnly);
        // It gives up root's rights, and would then not own its folder.
        file.write("user root\npersistence true\nautosave_interval 1\nautosave_on_changes true\nmax_queued_messages 0\n"
                   "log_type error\npersistence_location " +
                   QFile::encodeName(m_folder.path()) + "/\nlistener " + QByteArray::number(m_port) + " 127.0.0.1\n" +
                   m_settings);
        file.close();
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start("/usr/sbin/mosquitto", {"-c", file.fileName()});
        return m_process.waitForStarted() && QTest::qWaitFor([this] { return answers(); }, patienceMs);
    }
    /// As when its machine loses power.
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    /// As when it is told to end: it writes down what it has.
    void stop()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

private:
    bool answers() const
    {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", m_port);
        return socket.waitForConnected(1000);
    }

    const QByteArray m_settings;
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};
