#include "SerialPortTool.h"

#include "LineWorker.h"
#include "PortList.h"
#include "PortName.h"

#include <valvecell/Export.h>

#include <cstring>

namespace {

/// A line that takes longer to open counts as not open yet; the attempt goes on. What a device does may take its time;
/// a device server answers at once or is not there.
constexpr std::chrono::milliseconds openWait{1000};
constexpr std::chrono::milliseconds connectWait{250};

qint32 baudFrom(const QString& text)
{
    bool number = false;
    const qint32 baud = text.trimmed().toInt(&number);
    return number && baud > 0 ? baud : 0;
}

} // namespace

SerialPortTool::SerialPortTool()
    : m_state(std::make_shared<LineState>())
{
    m_thread.setObjectName(QStringLiteral("serial line"));
}

SerialPortTool::~SerialPortTool()
{
    SerialPortTool::close();
}

void SerialPortTool::setReceiveCallback(QObject*, ReceiveCallback callback)
{
    m_receive = std::move(callback);
}

LineSettings SerialPortTool::settingsFor(const QString& portName, const QString& baudRate) const
{
    const qint32 baud = baudFrom(baudRate);
    const auto receive = m_receive ? m_receive : [](const SComFrame&) {};
    const bool goodName = PortName::problemOf(portName).isEmpty();
    if (goodName && (baud > 0 || PortName::from(portName).isTcp()))
        return {portName, baud, receive};
    m_state->setLastFault(goodName ? LineFault{LineFault::BadBaudRate, baudRate, {}}
                                   : LineFault{LineFault::BadName, portName, {}});
    return {};
}

void SerialPortTool::startThread(const LineSettings& settings)
{
    m_state->stopping = false;
    auto* const worker = new LineWorker(settings, m_state);
    worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, worker, &QObject::deleteLater);
    m_thread.start(QThread::TimeCriticalPriority);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_worker = worker;
}

bool SerialPortTool::open(const QString& portName, const QString& baudRate)
{
    close();
    const LineSettings settings = settingsFor(portName, baudRate);
    if (settings.portName.isEmpty())
        return false;
    startThread(settings);
    const auto opened = std::make_shared<std::promise<bool>>();
    auto outcome = opened->get_future();
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, opened] { worker->start(opened); }, Qt::QueuedConnection);
    const auto patience = PortName::from(portName).isTcp() ? connectWait : openWait;
    return outcome.wait_for(patience) == std::future_status::ready && outcome.get();
}

bool SerialPortTool::reopen(const QString& portName, const QString& baudRate)
{
    const LineSettings settings = settingsFor(portName, baudRate);
    if (settings.portName.isEmpty())
        return false;
    if (!m_worker)
        startThread(settings);
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, settings] { worker->change(settings); }, Qt::QueuedConnection);
    return true;
}

void SerialPortTool::close()
{
    if (!m_worker)
        return;
    m_state->stopping = true;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QMetaObject::invokeMethod(m_worker, &LineWorker::stop, Qt::QueuedConnection);
        m_worker = nullptr;
    }
    m_thread.wait();
}

void SerialPortTool::send(const SComFrame* frame)
{
    if (frame)
        send(*frame, m_state->session);
}

void SerialPortTool::send(const SComFrame& frame, quint64 session)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_worker || session == 0 || session != m_state->session) {
        ++m_state->framesDropped;
        return;
    }
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, frame, session] { worker->write(frame, session); }, Qt::QueuedConnection);
}

SerialStatus SerialPortTool::status() const
{
    return m_state->snapshot();
}

quint64 SerialPortTool::session() const
{
    return m_state->session;
}

std::function<QVector<FoundPort>()> SerialPortTool::finder() const
{
    return [] { return findPorts(); };
}

QString SerialPortTool::problemOf(const QString& name) const
{
    return PortName::problemOf(name);
}

void* SerialPortTool::extension(const char* id)
{
    const auto asked = [id](const char* offered) { return id && std::strcmp(id, offered) == 0; };
    if (asked(ISerialStatus::id))
        return static_cast<ISerialStatus*>(this);
    if (asked(ISerialUrgent::id))
        return static_cast<ISerialUrgent*>(this);
    if (asked(ISerialSession::id))
        return static_cast<ISerialSession*>(this);
    if (asked(ISerialPorts::id))
        return static_cast<ISerialPorts*>(this);
    return asked(ISerialReopen::id) ? static_cast<ISerialReopen*>(this) : nullptr;
}

VALVECELL_MODULE_EXPORT ISerialPort* SerialPortCreate()
{
    return new SerialPortTool;
}
