#include "GvcpProbe.h"

#include "GObjectPtr.h"

#include <QtEndian>

#include <gio/gio.h>

namespace {

constexpr guint16 port = 3956;
constexpr int headerSize = 8;
constexpr quint16 discovery = 0x0002;
constexpr quint16 readRegisters = 0x0080;
constexpr int tries = 3; // a datagram may get lost

// Of the answer to a discovery.
constexpr int vendorAt = 0x48, modelAt = 0x68, serialAt = 0xD8, userNameAt = 0xE8;
constexpr int answerSize = 0xF8;

GObjectPtr<GSocket> connectTo(const QString& address)
{
    GObjectPtr<GInetAddress> host(g_inet_address_new_from_string(address.toLatin1().constData()));
    if (!host)
        return nullptr;
    GObjectPtr<GSocketAddress> camera(g_inet_socket_address_new(host.get(), port));
    GObjectPtr<GSocket> socket(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_DATAGRAM, G_SOCKET_PROTOCOL_UDP, nullptr));
    if (!socket || !g_socket_connect(socket.get(), camera.get(), nullptr, nullptr))
        return nullptr;
    g_socket_set_blocking(socket.get(), FALSE);
    return socket;
}

QByteArray command(quint16 code, const QByteArray& payload)
{
    QByteArray packet(headerSize, '\0');
    packet[0] = 0x42;
    packet[1] = 0x01; // wants an answer
    qToBigEndian(code, packet.data() + 2);
    qToBigEndian(quint16(payload.size()), packet.data() + 4);
    qToBigEndian(quint16(1), packet.data() + 6);
    return packet + payload;
}

/// The answer's payload; empty when none came.
QByteArray ask(const QString& address, quint16 code, const QByteArray& payload, std::chrono::milliseconds limit)
{
    const auto socket = connectTo(address);
    const QByteArray packet = command(code, payload);
    QByteArray answer(1024, '\0');
    for (int i = 0; socket && i < tries; ++i) {
        if (g_socket_send(socket.get(), packet.constData(), gsize(packet.size()), nullptr, nullptr) < 0 ||
            !g_socket_condition_timed_wait(socket.get(), G_IO_IN, limit.count() * 1000 / tries, nullptr, nullptr))
            continue;
        const auto size = g_socket_receive(socket.get(), answer.data(), gsize(answer.size()), nullptr, nullptr);
        const bool good = size >= headerSize && qFromBigEndian<quint16>(answer.constData()) == 0 &&
                          qFromBigEndian<quint16>(answer.constData() + 2) == code + 1;
        if (good)
            return answer.mid(headerSize, int(size) - headerSize);
    }
    return {};
}

QString text(const QByteArray& answer, int at, uint size)
{
    return QString::fromUtf8(answer.constData() + at, int(qstrnlen(answer.constData() + at, size)));
}

} // namespace

std::optional<DeviceIdentity> GvcpProbe::identify(const QString& address, std::chrono::milliseconds limit)
{
    const QByteArray answer = ask(address, discovery, {}, limit);
    if (answer.size() < answerSize)
        return std::nullopt;
    return DeviceIdentity{text(answer, vendorAt, 32), text(answer, modelAt, 32), text(answer, serialAt, 16),
                          text(answer, userNameAt, 16), address};
}

std::optional<quint32> GvcpProbe::readRegister(const QString& address, quint32 reg, std::chrono::milliseconds limit)
{
    QByteArray payload(4, '\0');
    qToBigEndian(reg, payload.data());
    const QByteArray answer = ask(address, readRegisters, payload, limit);
    if (answer.size() < 4)
        return std::nullopt;
    return qFromBigEndian<quint32>(answer.constData());
}

QString GvcpProbe::ownAddress(const QString& address)
{
    const auto socket = connectTo(address);
    GObjectPtr<GSocketAddress> own(socket ? g_socket_get_local_address(socket.get(), nullptr) : nullptr);
    if (!own)
        return {};
    char* text = g_inet_address_to_string(g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(own.get())));
    const QString result = QString::fromLatin1(text);
    g_free(text);
    return result;
}
