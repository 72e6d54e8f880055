#include "ScriptRunner.h"

#include "Console.h"
#include "PlcFrames.h"
#include "PlcLine.h"
#include "platform/StandardInput.h"

#include <QFile>

#include <algorithm>

namespace {

/// Frames that nobody waited for; beyond, an endless script would fill the memory.
constexpr int maxUnread = 1000;

} // namespace

ScriptRunner::ScriptRunner(PlcLine& line, bool stopAtFailure)
    : m_line(line)
    , m_stopAtFailure(stopAtFailure)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ScriptRunner::onTimeout);
    connect(&line, &PlcLine::frameReceived, this, &ScriptRunner::onFrame);
}

void ScriptRunner::add(const QVector<ScriptCommand>& commands)
{
    m_commands += commands;
    scheduleStep();
}

void ScriptRunner::close()
{
    m_closed = true;
    scheduleStep();
}

void ScriptRunner::scheduleStep()
{
    // Always through the event loop: endless scripts neither nest nor keep the line from being read.
    QMetaObject::invokeMethod(this, &ScriptRunner::step, Qt::QueuedConnection);
}

void ScriptRunner::step()
{
    if (m_busy || m_done)
        return;
    if (m_next < m_commands.size()) {
        m_current = m_commands[m_next++];
        run(m_current);
        if (!m_busy && !m_done)
            scheduleStep();
    } else if (m_closed) {
        m_done = true;
        emit finished(m_failures);
    }
}

void ScriptRunner::run(const ScriptCommand& command)
{
    switch (command.kind) {
    case ScriptCommand::Send:
        send(command.frame);
        break;
    case ScriptCommand::Raw:
        m_line.sendBytes(command.bytes);
        break;
    case ScriptCommand::Garbage:
        m_line.sendBytes(garbage(command.number));
        break;
    case ScriptCommand::Pull:
        m_unread.clear();
        m_line.pull(command.number);
        break;
    case ScriptCommand::Repeat:
        repeat(command);
        break;
    case ScriptCommand::Wait:
    case ScriptCommand::None:
        expect(command);
        break;
    case ScriptCommand::Sleep:
        m_busy = true;
        m_timer.start(command.number);
        break;
    }
}

void ScriptRunner::send(const SComFrame& frame)
{
    const qint64 at = m_line.send(frame);
    if (frame.command == PlcFrames::trigger)
        m_triggerNs = at;
}

void ScriptRunner::repeat(const ScriptCommand& command)
{
    int& rounds = m_rounds[m_next];
    ++rounds;
    if (command.number == 0 || rounds < command.number)
        m_next = 0;
    else
        rounds = 0;
}

QByteArray ScriptRunner::garbage(int count)
{
    QByteArray bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(m_random.bounded(256)); });
    return bytes;
}

/// A frame that came before it was waited for counts.
void ScriptRunner::expect(const ScriptCommand& command)
{
    m_busy = true;
    const auto it = std::find_if(m_unread.begin(), m_unread.end(), [&](const Arrival& arrival) {
        return arrival.frame.command == command.frame.command;
    });
    if (it == m_unread.end()) {
        m_timer.start(command.number);
        return;
    }
    const Arrival arrival = *it;
    m_unread.erase(it);
    settle(arrival);
}

void ScriptRunner::onFrame(const SComFrame& frame, qint64 atNs)
{
    const bool expecting = m_busy && (m_current.kind == ScriptCommand::Wait || m_current.kind == ScriptCommand::None);
    if (expecting && m_current.frame.command == frame.command)
        settle({frame, atNs});
    else if (frame.command != PlcFrames::heartbeat && m_unread.size() < maxUnread)
        m_unread.append({frame, atNs});
}

void ScriptRunner::settle(const Arrival& arrival)
{
    m_timer.stop();
    m_busy = false;
    const double afterMs = m_triggerNs < 0 ? -1 : static_cast<double>(arrival.atNs - m_triggerNs) / 1e6;
    emit arrived(arrival.frame, afterMs);
    if (m_current.kind == ScriptCommand::None)
        fail(QStringLiteral("a frame %1 came").arg(PlcFrames::commandText(arrival.frame.command)));
    scheduleStep();
}

void ScriptRunner::onTimeout()
{
    m_busy = false;
    if (m_current.kind == ScriptCommand::Wait)
        fail(QStringLiteral("no frame %1 within %2 ms")
                 .arg(PlcFrames::commandText(m_current.frame.command))
                 .arg(m_current.number));
    scheduleStep();
}

void ScriptRunner::fail(const QString& reason)
{
    ++m_failures;
    emit failed(QStringLiteral("line %1: %2").arg(m_current.line).arg(reason));
    if (!m_stopAtFailure)
        return;
    m_done = true;
    emit finished(m_failures);
}

ScriptSession::ScriptSession(PlcLine& line)
    : m_line(line)
{
}

ScriptSession::~ScriptSession() = default;

/// Every awaited frame is printed, with the time since the last trigger.
void ScriptSession::begin(bool stopAtFailure)
{
    m_runner = std::make_unique<ScriptRunner>(m_line, stopAtFailure);
    connect(m_runner.get(), &ScriptRunner::arrived, this, [](const SComFrame& frame, double afterTriggerMs) {
        const QString when = afterTriggerMs < 0 ? QString() : QStringLiteral("  %1 ms").arg(afterTriggerMs, 0, 'f', 3);
        Console::say(PlcFrames::text(frame) + when);
    });
    connect(m_runner.get(), &ScriptRunner::failed, this, &Console::complain);
    connect(m_runner.get(), &ScriptRunner::finished, this,
            [this](int failures) { emit finished(failures + m_misunderstood > 0 ? 1 : 0); });
}

bool ScriptSession::runFile(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    QVector<ScriptCommand> commands;
    if (!PlcScript::parse(QString::fromUtf8(file.readAll()), &commands, error)) {
        *error = QStringLiteral("%1, %2").arg(path, *error);
        return false;
    }
    begin(true);
    m_runner->add(commands);
    m_runner->close();
    return true;
}

void ScriptSession::runInput()
{
    begin(false);
    m_input = std::make_unique<platform::StandardInput>();
    connect(m_input.get(), &platform::StandardInput::line, this, &ScriptSession::onLine);
    connect(m_input.get(), &platform::StandardInput::closed, m_runner.get(), &ScriptRunner::close);
}

void ScriptSession::onLine(const QString& text)
{
    QVector<ScriptCommand> commands;
    QString error;
    if (PlcScript::parseLine(text, ++m_lines, &commands, &error)) {
        m_runner->add(commands);
        return;
    }
    ++m_misunderstood;
    Console::complain(error);
}
