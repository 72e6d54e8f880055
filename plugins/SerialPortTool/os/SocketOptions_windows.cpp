#include "os/SocketOptions.h"

// Each needs the one before.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <mstcpip.h>
// clang-format on

#ifndef TCP_MAXRT
#define TCP_MAXRT 5
#endif

void os::noticeLoss(qintptr socket)
{
    tcp_keepalive idle{1, 1000, 1000};
    DWORD done = 0;
    WSAIoctl(static_cast<SOCKET>(socket), SIO_KEEPALIVE_VALS, &idle, sizeof idle, nullptr, 0, &done, nullptr, nullptr);
    const DWORD seconds = 2;
    setsockopt(static_cast<SOCKET>(socket), IPPROTO_TCP, TCP_MAXRT, reinterpret_cast<const char*>(&seconds),
               sizeof seconds);
}

qint64 os::unacknowledged(qintptr)
{
    return 0;
}
