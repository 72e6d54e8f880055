#include "platform/PseudoTerminal.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>
#endif

namespace platform {

PseudoTerminal::PseudoTerminal(QObject* parent)
    : QIODevice(parent)
{
}

PseudoTerminal::~PseudoTerminal()
{
    closePair();
}

bool PseudoTerminal::open(OpenMode mode)
{
    if (isOpen() || !makePair()) {
        closePair();
        return false;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_near, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PseudoTerminal::readyRead);
    return QIODevice::open(mode | Unbuffered);
}

void PseudoTerminal::close()
{
    QIODevice::close();
    closePair();
}

#ifdef Q_OS_UNIX

bool PseudoTerminal::makePair()
{
    m_near = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_near < 0 || ::grantpt(m_near) != 0 || ::unlockpt(m_near) != 0) {
        setErrorString(qt_error_string(errno));
        return false;
    }
    m_farEnd = QString::fromLocal8Bit(::ptsname(m_near));
    m_held = ::open(m_farEnd.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (m_held < 0 || ::tcgetattr(m_held, &settings) != 0) {
        setErrorString(m_farEnd + QStringLiteral(": ") + qt_error_string(errno));
        return false;
    }
    ::cfmakeraw(&settings);
    return ::tcsetattr(m_held, TCSANOW, &settings) == 0;
}

void PseudoTerminal::closePair()
{
    m_notifier.reset();
    m_farEnd.clear();
    for (int* end : {&m_held, &m_near})
        if (*end >= 0)
            ::close(std::exchange(*end, -1));
}

qint64 PseudoTerminal::readData(char* data, qint64 maxSize)
{
    // A user that was killed leaves the port claimed for itself alone, and the held end would keep that claim alive.
    ::ioctl(m_held, TIOCNXCL);
    const ssize_t got = ::read(m_near, data, static_cast<size_t>(maxSize));
    return got >= 0 || errno == EAGAIN || errno == EINTR ? qMax<qint64>(got, 0) : -1;
}

qint64 PseudoTerminal::writeData(const char* data, qint64 size)
{
    for (qint64 done = 0; done < size;) {
        const ssize_t put = ::write(m_near, data + done, static_cast<size_t>(size - done));
        if (put < 0 && errno != EINTR)
            return errno == EAGAIN ? size : -1;
        done += qMax<qint64>(put, 0);
    }
    return size;
}

#else

bool PseudoTerminal::makePair()
{
    setErrorString(QStringLiteral("pseudo-terminals are not available on this platform"));
    return false;
}

void PseudoTerminal::closePair() {}

qint64 PseudoTerminal::readData(char*, qint64)
{
    return -1;
}

qint64 PseudoTerminal::writeData(const char*, qint64)
{
    return -1;
}

#endif

} // namespace platform
