#include "ScriptSession.h"

#include "Console.h"
#include "FrameText.h"
#include "platform/StandardInput.h"

#include <QFile>

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
        Console::say(FrameText::frame(frame) + when);
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
