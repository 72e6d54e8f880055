#include "LineWorker.h"

#include "ByteLine.h"

#include <QLoggingCategory>
#include <QMutexLocker>
#include <QThread>

namespace {

Q_LOGGING_CATEGORY(lcSerial, "valvecell.serial", QtInfoMsg)

/// Bytes that may wait for a jammed line; past them frames are given up rather than sent late.
constexpr qint64 maxWaitingBytes = 8 * wire::frameBytes;

} // namespace

void LineState::setDevice(const QString& device)
{
    const QMutexLocker lock(&m_mutex);
    m_device = device;
}

void LineState::setLastFault(const LineFault& fault)
{
    const QMutexLocker lock(&m_mutex);
    m_lastFault = fault;
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
    status.lastError = m_lastFault.sentence();
    return status;
}

LineWorker::LineWorker(LineSettings settings, std::shared_ptr<LineState> state)
    : m_settings(std::move(settings))
    , m_state(std::move(state))
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &LineWorker::attempt);
}

LineWorker::~LineWorker() = default;

void LineWorker::start(std::shared_ptr<std::promise<bool>> opened)
{
    m_opener = std::move(opened);
    begin();
}

/// Neither the pause nor the message of the former line holds for the new one.
void LineWorker::change(const LineSettings& settings)
{
    m_state->session = 0;
    m_retry.stop();
    m_settings = settings;
    m_reported = false;
    m_pause.reset();
    begin();
}

void LineWorker::begin()
{
    m_line = byteLineFor(m_settings.portName, m_settings.baudRate);
    connect(m_line.get(), &ByteLine::opened, this, &LineWorker::onOpened);
    connect(m_line.get(), &ByteLine::readyRead, this, &LineWorker::onReadyRead);
    connect(m_line.get(), &ByteLine::failed, this, &LineWorker::onFailed);
    attempt();
}

void LineWorker::attempt()
{
    ++m_state->openAttempts;
    m_line->open();
    m_state->setDevice(m_line->place());
}

void LineWorker::onOpened()
{
    m_decoder.reset();
    m_openSince.start();
    m_state->setDevice(m_line->place());
    if (std::exchange(m_reported, false))
        qCInfo(lcSerial).noquote() << m_line->place() + QStringLiteral(": open again");
    m_state->session = ++m_state->sessions;
    answerOpener(true);
}

/// A good frame proves the line; rubbish does not.
void LineWorker::onReadyRead()
{
    const quint64 badBytes = m_decoder.badBytes();
    const quint64 crcErrors = m_decoder.crcErrors();
    m_decoder.feed(m_line->readAll(), [this](const SComFrame& frame) {
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
    if (session != m_state->session || m_line->waiting() > maxWaitingBytes) {
        ++m_state->framesDropped;
        return;
    }
    ++(m_line->write(m_encoder.next(frame)) ? m_state->framesOut : m_state->framesDropped);
}

void LineWorker::onFailed(const LineFault& fault)
{
    const bool wasOpen = m_state->session.exchange(0) != 0;
    noteFault(fault);
    if (wasOpen && m_openSince.hasExpired(ReopenPause::longest.count()))
        m_pause.reset();
    // Not from inside the line's own signal, and not for a line that was changed meanwhile.
    QMetaObject::invokeMethod(
        m_line.get(), [this] { closeAndRetry(); }, Qt::QueuedConnection);
    answerOpener(false);
}

void LineWorker::closeAndRetry()
{
    m_line->close();
    m_retry.start(m_pause.next());
}

void LineWorker::answerOpener(bool opened)
{
    if (const auto opener = std::exchange(m_opener, nullptr))
        opener->set_value(opened);
}

void LineWorker::stop()
{
    m_state->session = 0;
    m_retry.stop();
    m_line->close();
    thread()->quit();
}

void LineWorker::noteFault(const LineFault& fault)
{
    m_state->setLastFault(fault);
    if (std::exchange(m_reported, true))
        qCDebug(lcSerial).noquote() << fault.logText();
    else
        qCWarning(lcSerial).noquote() << fault.logText();
}
