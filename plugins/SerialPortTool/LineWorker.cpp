#include "LineWorker.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QMutexLocker>
#include <QThread>

namespace {

Q_LOGGING_CATEGORY(lcSerial, "valvecell.serial", QtInfoMsg)

/// Bytes that may wait for a jammed line; past them frames are given up rather than sent late.
constexpr qint64 maxWaitingBytes = 8 * wire::frameBytes;

/// The device behind a name, links followed; empty when it is a path to nothing. A name that is no path stays as it is
/// unless it is one of /dev.
QString deviceOf(const QString& name)
{
    if (name.contains(QLatin1Char('/')))
        return QFileInfo(name).canonicalFilePath();
    const QString inDev = QFileInfo(QStringLiteral("/dev/") + name).canonicalFilePath();
    return inDev.isEmpty() ? name : inDev;
}

} // namespace

void LineState::setDevice(const QString& device)
{
    const QMutexLocker lock(&m_mutex);
    m_device = device;
}

void LineState::setLastError(const QString& error)
{
    const QMutexLocker lock(&m_mutex);
    m_lastError = error;
}

SerialStatus LineState::snapshot() const
{
    const QMutexLocker lock(&m_mutex);
    SerialStatus status;
    status.open = session != 0;
    status.device = m_device;
    status.framesIn = framesIn;
    status.framesOut = framesOut;
    status.framesDropped = framesDropped;
    status.badBytes = badBytes;
    status.crcErrors = crcErrors;
    status.openAttempts = openAttempts;
    status.lastError = m_lastError;
    return status;
}

LineWorker::LineWorker(LineSettings settings, std::shared_ptr<LineState> state)
    : m_settings(std::move(settings))
    , m_state(std::move(state))
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &LineWorker::openOrRetry);
    connect(&m_port, &QSerialPort::readyRead, this, &LineWorker::onReadyRead);
    connect(&m_port, &QSerialPort::errorOccurred, this, &LineWorker::onError);
}

void LineWorker::start(const std::shared_ptr<std::promise<bool>>& opened)
{
    openOrRetry();
    opened->set_value(m_port.isOpen());
}

/// Neither the pause nor the message of the former line holds for the new one.
void LineWorker::change(const LineSettings& settings)
{
    m_state->session = 0;
    m_retry.stop();
    if (m_port.isOpen())
        m_port.close();
    m_settings = settings;
    m_reported = false;
    m_pause.reset();
    openOrRetry();
}

void LineWorker::openOrRetry()
{
    ++m_state->openAttempts;
    const QString problem = tryOpen();
    if (problem.isEmpty()) {
        onOpened();
        return;
    }
    noteFailure(problem);
    closeAndRetry();
}

/// Looks up the name at each attempt: after the cable was pulled it may lead to another device.
QString LineWorker::tryOpen()
{
    m_device = deviceOf(m_settings.portName);
    m_state->setDevice(m_device);
    if (m_device.isEmpty())
        return QStringLiteral("%1: no such device").arg(m_settings.portName);
    m_port.setPortName(m_device);
    const bool opened = m_port.open(QIODevice::ReadWrite) && m_port.setBaudRate(m_settings.baudRate) &&
                        m_port.setDataBits(QSerialPort::Data8) && m_port.setParity(QSerialPort::NoParity) &&
                        m_port.setStopBits(QSerialPort::OneStop) && m_port.setFlowControl(QSerialPort::NoFlowControl);
    return opened ? QString() : QStringLiteral("%1: %2").arg(m_device, m_port.errorString());
}

void LineWorker::onOpened()
{
    m_port.clear(QSerialPort::Input); // a trigger from before belongs to a part that is gone
    m_decoder.reset();
    m_openSince.start();
    if (std::exchange(m_reported, false))
        qCInfo(lcSerial).noquote() << m_device + QStringLiteral(": open again");
    m_state->session = ++m_state->sessions;
}

/// A good frame proves the line; rubbish does not.
void LineWorker::onReadyRead()
{
    const quint64 badBytes = m_decoder.badBytes();
    const quint64 crcErrors = m_decoder.crcErrors();
    m_decoder.feed(m_port.readAll(), [this](const SComFrame& frame) {
        if (m_state->stopping)
            return;
        m_pause.reset();
        ++m_state->framesIn;
        m_settings.receive(frame);
    });
    m_state->badBytes += m_decoder.badBytes() - badBytes;
    m_state->crcErrors += m_decoder.crcErrors() - crcErrors;
}

/// A frame of a former session, or behind a jam, would come late, and is dropped and counted instead.
void LineWorker::write(const SComFrame& frame, quint64 session)
{
    if (session != m_state->session || m_port.bytesToWrite() > maxWaitingBytes) {
        ++m_state->framesDropped;
        return;
    }
    const bool written = m_port.write(m_encoder.next(frame)) == wire::frameBytes && m_port.flush();
    ++(written ? m_state->framesOut : m_state->framesDropped);
}

void LineWorker::onError(QSerialPort::SerialPortError error)
{
    const bool failed = error != QSerialPort::NoError && error != QSerialPort::TimeoutError;
    if (!failed || m_state->session == 0) // closed: openOrRetry() deals with what open() says
        return;
    m_state->session = 0;
    noteFailure(m_device + QStringLiteral(": the line is lost")); // the system's reasons for it vary and mislead
    if (m_openSince.hasExpired(ReopenPause::longest.count()))
        m_pause.reset();
    // Not from inside the port's own notification, which goes on to use the port.
    QMetaObject::invokeMethod(this, &LineWorker::closeAndRetry, Qt::QueuedConnection);
}

void LineWorker::closeAndRetry()
{
    if (m_port.isOpen())
        m_port.close();
    m_retry.start(m_pause.next());
}

void LineWorker::stop()
{
    m_state->session = 0;
    m_retry.stop();
    m_port.close();
    thread()->quit();
}

void LineWorker::noteFailure(const QString& problem)
{
    m_state->setLastError(problem);
    if (!std::exchange(m_reported, true))
        qCWarning(lcSerial).noquote() << problem;
}
