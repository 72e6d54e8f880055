#include "platform/ServiceNotice.h"

#include <QCoreApplication>

#ifdef Q_OS_UNIX
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace platform {

namespace {

/// Milliseconds from one sign of life to the next; 0 when nobody waits for any, or for those of another process.
int aliveMs()
{
    const qint64 process = qEnvironmentVariable("WATCHDOG_PID").toLongLong();
    const qint64 period = qEnvironmentVariable("WATCHDOG_USEC").toLongLong();
    return process == 0 || process == QCoreApplication::applicationPid() ? int(period / 2000) : 0;
}

} // namespace

ServiceNotice::ServiceNotice(QObject* parent)
    : QObject(parent)
{
    m_alive.setInterval(aliveMs());
    connect(&m_alive, &QTimer::timeout, this, [this] { send("WATCHDOG=1"); });
}

void ServiceNotice::ready()
{
    send("READY=1");
    if (m_alive.interval() > 0)
        m_alive.start();
}

void ServiceNotice::stopping()
{
    m_alive.stop();
    send("STOPPING=1");
}

void ServiceNotice::status(const QString& sentence)
{
    send("STATUS=" + sentence.simplified().toUtf8());
}

#ifdef Q_OS_UNIX

void ServiceNotice::send(const QByteArray& text) const
{
    const QByteArray name = qgetenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    if (name.isEmpty() || size_t(name.size()) >= sizeof address.sun_path)
        return;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    if (name[0] == '@')
        address.sun_path[0] = '\0'; // a name without a file
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return;
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    ::sendto(socket, text.constData(), size_t(text.size()), MSG_NOSIGNAL, reinterpret_cast<sockaddr*>(&address),
             length);
    ::close(socket);
}

#else

void ServiceNotice::send(const QByteArray&) const {}

#endif

} // namespace platform
