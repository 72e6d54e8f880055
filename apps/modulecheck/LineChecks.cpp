#include "Checks.h"
#include "Contract.h"
#include "platform/PseudoTerminal.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialStatus.h>
#include <valvecell/ISerialUrgent.h>

#include <QThread>

#include <atomic>
#include <thread>

namespace {

using Contract::linger;

constexpr int openMs = 1500;
const char baud[] = "115200";

/// A port whose frames are heard, on one thread, and only while they may come.
class PortInbox
{
public:
    explicit PortInbox(Subject& subject)
        : m_subject(subject)
    {
    }
    std::unique_ptr<ISerialPort> made()
    {
        std::unique_ptr<ISerialPort> port(m_subject.make<ISerialPort>());
        if (port)
            m_subject.call("setReceiveCallback()", atOnceMs,
                           [&] { port->setReceiveCallback(&m_owner, [this](SComFrame frame) { take(frame); }); });
        return port;
    }
    bool open(ISerialPort& port, const char* call, const QString& name, const char* rate)
    {
        may = true;
        bool opened = false;
        m_subject.call(call, openMs, [&] { opened = port.open(name, QLatin1String(rate)); });
        return opened;
    }
    void close(ISerialPort& port)
    {
        m_subject.call("close()", 2000, [&] { port.close(); });
        may = false;
    }
    SComFrame last() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_last;
    }

    std::atomic<bool> may{false}; ///< frames may come
    std::atomic<int> frames{0};

private:
    void take(const SComFrame& frame)
    {
        if (!may)
            m_subject.fault(QStringLiteral("a frame is received while the port is not open"));
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_thread && m_thread != QThread::currentThreadId())
            m_subject.fault(QStringLiteral("frames are received on more than one thread"));
        m_thread = QThread::currentThreadId();
        m_last = frame;
        ++frames;
    }

    Subject& m_subject;
    QObject m_owner;
    mutable std::mutex m_mutex; // protects the following
    Qt::HANDLE m_thread = nullptr;
    SComFrame m_last;
};

void checkLineLife(Subject& subject)
{
    const SComFrame frame;
    Contract::live(subject, [&] {
        PortInbox inbox(subject);
        auto port = inbox.made();
        if (!port)
            return false;
        subject.call("send() before open()", atOnceMs, [&] { port->send(&frame); });
        if (inbox.open(*port, "open() of a port that there is not", QStringLiteral("/nowhere/port"), baud))
            subject.fault(QStringLiteral("open() says that a port is open that there is not"));
        inbox.open(*port, "open() with a baud rate that is none", QStringLiteral("/nowhere/port"), "fast");
        subject.call("send() on a line that is down", atOnceMs, [&] { port->send(&frame); });
        Contract::refuseStrangers(subject, *port);
        inbox.close(*port);
        subject.call("close() again", 2000, [&] { port->close(); });
        linger(300);
        Contract::destroy(subject, port);
        return true;
    });
}

/// A port on a line whose other end is held here.
struct OpenLine
{
    explicit OpenLine(Subject& subject)
        : inbox(subject)
    {
        m_line.open(QIODevice::ReadWrite);
        port = inbox.made();
        if (!port || inbox.open(*port, "open()", m_line.farEnd(), baud))
            return;
        subject.note(QStringLiteral("it opens no pseudo-terminal, so that nothing of an open line is tried"));
        Contract::destroy(subject, port);
    }
    /// What comes out of the line within that time, but at once when something does.
    QByteArray written(int ms)
    {
        QByteArray bytes;
        Subject::waitFor([&] { return !(bytes += m_line.readAll()).isEmpty(); }, ms);
        linger(20);
        return bytes + m_line.readAll();
    }
    void write(const QByteArray& bytes) { m_line.write(bytes); }
    QString name() const { return m_line.farEnd(); }

    PortInbox inbox;
    std::unique_ptr<ISerialPort> port; ///< null when it did not open

private:
    platform::PseudoTerminal m_line;
};

SComFrame someFrame()
{
    SComFrame frame;
    frame.command = 'F';
    for (int word = 0; word < 8; ++word)
        frame.data[word] = qint16(word * 3001 - 9000);
    return frame;
}

bool same(const SComFrame& one, const SComFrame& other)
{
    return one.command == other.command && std::equal(std::begin(one.data), std::end(one.data), other.data);
}

void checkFrames(Subject& subject)
{
    OpenLine line(subject);
    if (!line.port)
        return;
    const SComFrame frame = someFrame();
    subject.call("send()", atOnceMs, [&] { line.port->send(&frame); });
    const QByteArray bytes = line.written(2000);
    if (bytes.isEmpty())
        subject.fault(QStringLiteral("a frame does not come out of an open line"));
    line.write(bytes);
    if (!Subject::waitFor([&] { return line.inbox.frames > 0; }, 1000))
        subject.note(QStringLiteral("it does not receive what it sends; so its reception is not tried"));
    else if (!same(line.inbox.last(), frame))
        subject.fault(QStringLiteral("a frame comes back as another"));
    if (auto* status = extensionOf<ISerialStatus>(line.port.get())) {
        if (!status->status().open || status->status().framesOut == 0)
            subject.fault(QStringLiteral("status() of an open line says that it is closed, or wrote nothing"));
    }
    line.inbox.close(*line.port);
    line.write(bytes);
    linger(300);
    line.inbox.open(*line.port, "open() again", line.name(), baud);
    for (int i = 0; i < 50; ++i)
        subject.call("send()", atOnceMs, [&] { line.port->send(&frame); });
    Contract::destroy(subject, line.port, "the destructor of an open port");
    line.inbox.may = false;
    line.write(bytes);
    linger(300);
}

/// Sends by an interface that knows sessions, with the right one and with another.
template <typename Send>
void trySessions(Subject& subject, OpenLine& line, quint64 session, const char* name, Send send)
{
    line.written(100);
    subject.call(name, atOnceMs, [&] { send(session); });
    if (line.written(2000).isEmpty())
        subject.fault(QStringLiteral("%1 writes nothing in the present session").arg(QLatin1String(name)));
    subject.call(name, atOnceMs, [&] { send(session + 7); });
    if (!line.written(300).isEmpty())
        subject.fault(QStringLiteral("%1 writes a frame of another session").arg(QLatin1String(name)));
}

void checkSessions(Subject& subject)
{
    OpenLine line(subject);
    auto* sessions = extensionOf<ISerialSession>(line.port.get());
    if (!sessions)
        return;
    const quint64 first = sessions->session();
    if (first == 0)
        subject.fault(QStringLiteral("session() of an open line is 0"));
    const SComFrame frame = someFrame();
    trySessions(subject, line, first, "send() with a session", [&](quint64 of) { sessions->send(frame, of); });
    if (auto* urgent = extensionOf<ISerialUrgent>(line.port.get()))
        trySessions(subject, line, first, "sendUrgent()",
                    [&](quint64 of) { std::thread([&] { urgent->sendUrgent(frame, of); }).join(); });
    line.inbox.close(*line.port);
    if (sessions->session() != 0)
        subject.fault(QStringLiteral("session() of a closed line is not 0"));
    line.inbox.open(*line.port, "open() again", line.name(), baud);
    if (sessions->session() == first)
        subject.fault(QStringLiteral("session() is the same after the line was opened again"));
    Contract::destroy(subject, line.port);
}

void checkPorts(Subject& subject)
{
    OpenLine line(subject);
    if (auto* reopen = extensionOf<ISerialReopen>(line.port.get())) {
        bool taken = false;
        subject.call("reopen()", atOnceMs, [&] { taken = reopen->reopen(line.name(), QStringLiteral("fast")); });
        if (taken)
            subject.fault(QStringLiteral("reopen() takes a baud rate that is none"));
        const SComFrame frame = someFrame();
        line.port->send(&frame);
        if (line.written(2000).isEmpty())
            subject.fault(QStringLiteral("a refused reopen() cuts the present line"));
    }
    std::function<QVector<FoundPort>()> finder;
    if (auto* ports = extensionOf<ISerialPorts>(line.port.get())) {
        QString problem;
        subject.call("problemOf()", atOnceMs, [&] { problem = ports->problemOf(QString()); });
        if (problem.isEmpty())
            subject.fault(QStringLiteral("problemOf() takes an empty name"));
        finder = ports->finder();
    }
    if (line.port)
        Contract::destroy(subject, line.port);
    if (finder)
        subject.call("finder() after the port is gone", 10000, [&] { std::thread([&] { finder(); }).join(); });
}

} // namespace

namespace Checks {

QVector<Check> ofLine()
{
    return {{"line", Subject::SerialPort, checkLineLife},
            {"frames", Subject::SerialPort, checkFrames},
            {"sessions", Subject::SerialPort, checkSessions},
            {"ports", Subject::SerialPort, checkPorts}};
}

} // namespace Checks
