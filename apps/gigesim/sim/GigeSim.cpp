#include "GigeSim.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

#include <algorithm>

namespace {

constexpr quint16 controlPort = 3956;
constexpr size_t framesKept = 2;
constexpr int idleMs = 200;

quint64 nanoseconds(std::chrono::steady_clock::time_point at)
{
    return quint64(std::chrono::duration_cast<std::chrono::nanoseconds>(at.time_since_epoch()).count());
}

} // namespace

GigeSim::GigeSim(Identity identity, Source source)
    : m_identity(std::move(identity))
    , m_source(std::move(source))
{
}

GigeSim::~GigeSim()
{
    m_ending = true;
    wake();
    wait();
}

/// The sockets are made by the thread that uses them; here it is only seen whether the address is free.
bool GigeSim::start(QString* error)
{
    QUdpSocket probe;
    if (!probe.bind(m_identity.address, controlPort, QAbstractSocket::DontShareAddress)) {
        *error =
            QStringLiteral("%1:%2: %3").arg(m_identity.address.toString()).arg(controlPort).arg(probe.errorString());
        return false;
    }
    probe.close();
    QThread::start();
    return true;
}

void GigeSim::setFaults(const Faults& faults)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults = faults;
    wake();
}

GigeSim::Faults GigeSim::faults() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_faults;
}

void GigeSim::powerCycle()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_cycleDue = true;
    wake();
}

void GigeSim::fireLine()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_linesDue;
    wake();
}

GigeSim::Counts GigeSim::counts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts;
}

/// An empty datagram to itself.
void GigeSim::wake() const
{
    QUdpSocket().writeDatagram(QByteArray(1, '\0'), m_identity.address, controlPort);
}

void GigeSim::run()
{
    QUdpSocket control, broadcast, stream;
    m_control = &control;
    m_stream = &stream;
    control.bind(m_identity.address, controlPort, QAbstractSocket::DontShareAddress);
    broadcast.bind(QHostAddress(QHostAddress::Broadcast), controlPort,
                   QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint);
    stream.bind(m_identity.address, 0);
    m_registers =
        std::make_unique<GigeRegisters>(m_identity.address, m_identity.serial, m_identity.userName, m_identity.sensor);
    m_registers->setNumber(GigeRegisters::StreamSource, stream.localPort());
    m_server = std::make_unique<GvcpServer>(*m_registers);
    m_nextUnasked = Clock::now();
    while (!m_ending) {
        control.waitForReadyRead(msToNext());
        receive(control);
        receive(broadcast);
        takeOrders();
        sendDue();
    }
}

int GigeSim::msToNext() const
{
    auto next = Clock::now() + std::chrono::milliseconds(idleMs);
    if (!m_exposures.empty())
        next = std::min(next, m_exposures.front().due);
    if (faults().unasked > 0)
        next = std::min(next, m_nextUnasked);
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(next - Clock::now());
    return std::max(0, int(left.count()));
}

void GigeSim::receive(QUdpSocket& socket)
{
    while (socket.hasPendingDatagrams()) {
        const QNetworkDatagram packet = socket.receiveDatagram();
        if (packet.data().size() <= 1 || faults().silent)
            continue;
        const GvcpServer::Sender sender{QHostAddress(packet.senderAddress().toIPv4Address()),
                                        quint16(packet.senderPort())};
        GvcpServer::Effect effect;
        const QByteArray answer = m_server->answer(packet.data(), sender, Clock::now(), &effect);
        if (!answer.isEmpty())
            m_control->writeDatagram(answer, sender.address, sender.port);
        act(effect);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_counts.controlled = m_registers->number(GigeRegisters::Control) != 0;
}

void GigeSim::act(const GvcpServer::Effect& effect)
{
    if (effect.started || effect.stopped)
        m_exposures.clear();
    if (effect.started)
        m_block = 0;
    if (effect.triggered && m_registers->number(GigeRegisters::TriggerSource) == 0)
        expose();
    if (effect.testPacket)
        send(QByteArray(int(m_registers->number(GigeRegisters::PacketSize) & 0xFFFF) - 28, '\0'));
    for (const auto& [frame, whole] : m_sent) {
        if (!whole || int(frame.block()) != effect.resendBlock)
            continue;
        for (quint32 i = effect.resendFirst; i <= effect.resendLast && i < frame.packetCount(); ++i)
            send(frame.packet(i));
    }
}

/// A trigger that comes while the camera is not acquiring is lost, as it is in real ones.
void GigeSim::expose()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_counts.triggers;
    }
    if (m_registers->number(GigeRegisters::Acquisition) == 0 || m_registers->number(GigeRegisters::Control) == 0)
        return;
    const auto now = Clock::now();
    const auto begun = m_exposures.empty() ? now : std::max(now, m_exposures.back().due);
    m_exposures.push_back({begun, begun + std::chrono::microseconds(m_registers->number(GigeRegisters::ExposureTime))});
}

void GigeSim::takeOrders()
{
    bool cycle = false;
    int lines = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        cycle = std::exchange(m_cycleDue, false);
        lines = std::exchange(m_linesDue, 0);
    }
    if (cycle) {
        *m_registers = GigeRegisters(m_identity.address, m_identity.serial, m_identity.userName, m_identity.sensor);
        m_registers->setNumber(GigeRegisters::StreamSource, m_stream->localPort());
        m_server->release();
        m_exposures.clear();
    }
    const bool armed =
        m_registers->number(GigeRegisters::TriggerMode) != 0 && m_registers->number(GigeRegisters::TriggerSource) != 0;
    for (int i = 0; armed && i < lines; ++i)
        expose();
    const Faults now = faults();
    if (now.unasked > 0 && Clock::now() >= m_nextUnasked) {
        m_nextUnasked = std::max(m_nextUnasked + std::chrono::microseconds(1'000'000 / now.unasked), Clock::now());
        expose();
    }
}

void GigeSim::sendDue()
{
    while (!m_exposures.empty() && m_exposures.front().due <= Clock::now()) {
        const Exposure exposure = m_exposures.front();
        m_exposures.pop_front();
        sendFrame(exposure);
    }
    const bool isFree =
        m_registers->number(GigeRegisters::TriggerMode) == 0 && m_registers->number(GigeRegisters::Acquisition) != 0;
    if (isFree && m_exposures.empty()) {
        expose();
        if (!m_exposures.empty())
            m_exposures.back().due += std::chrono::microseconds(m_registers->number(GigeRegisters::FramePeriod));
    }
}

void GigeSim::sendFrame(const Exposure& exposure)
{
    const Faults now = faults();
    if (now.stalled || now.silent)
        return;
    quint64 frames = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        frames = ++m_counts.frames;
    }
    m_block = m_block == 0xFFFF ? 1 : quint16(m_block + 1); // 0 is no frame's number
    const GvspFrame frame(m_source(nanoseconds(exposure.begun)), *m_registers, m_block, nanoseconds(exposure.begun));
    const bool whole = now.dropEvery == 0 || frames % quint64(now.dropEvery) != 0;
    const quint32 dropped = whole ? frame.packetCount() : frame.packetCount() / 2;
    m_sent.emplace_back(frame, whole);
    if (m_sent.size() > framesKept)
        m_sent.pop_front();
    const auto begun = Clock::now();
    qint64 bytes = 0;
    for (quint32 i = 0; i < frame.packetCount(); ++i) {
        const QByteArray packet = frame.packet(i);
        bytes += packet.size();
        if (i != dropped)
            send(packet);
        keepPace(begun, bytes);
    }
}

void GigeSim::keepPace(Clock::time_point begun, qint64 bytes)
{
    if (m_identity.megabits == 0)
        return;
    constexpr std::chrono::microseconds tolerance(200);
    const auto due = begun + std::chrono::microseconds(8 * bytes / m_identity.megabits);
    while (Clock::now() + tolerance < due && !m_ending) {
        QThread::usleep(ulong(tolerance.count()) / 2);
        receive(*m_control);
    }
}

void GigeSim::send(const QByteArray& packet)
{
    constexpr int headers = 28;
    const Faults now = faults();
    if (now.largestPacket > 0 && packet.size() + headers > now.largestPacket)
        return;
    m_stream->writeDatagram(packet, QHostAddress(m_registers->number(GigeRegisters::StreamAddress)),
                            quint16(m_registers->number(GigeRegisters::StreamPort)));
}
