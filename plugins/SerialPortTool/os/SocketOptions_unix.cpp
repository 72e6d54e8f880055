#include "os/SocketOptions.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#ifdef Q_OS_LINUX
#include <linux/sockios.h>
#endif

namespace {

void set(qintptr socket, int option, int value)
{
    ::setsockopt(static_cast<int>(socket), IPPROTO_TCP, option, &value, sizeof value);
}

} // namespace

void os::noticeLoss(qintptr socket)
{
#ifdef TCP_KEEPIDLE
    set(socket, TCP_KEEPIDLE, 1);
#endif
    set(socket, TCP_KEEPINTVL, 1);
    set(socket, TCP_KEEPCNT, 2);
#ifdef TCP_USER_TIMEOUT
    set(socket, TCP_USER_TIMEOUT, 2000);
#endif
}

qint64 os::unacknowledged(qintptr socket)
{
    int bytes = 0;
#ifdef SIOCOUTQ
    if (::ioctl(static_cast<int>(socket), SIOCOUTQ, &bytes) != 0)
        return 0;
#else
    Q_UNUSED(socket)
#endif
    return bytes;
}
