#pragma once

#include "ScriptRunner.h"

#include <memory>

namespace platform {
class StandardInput;
}

/// One run of a script, or of the commands that come over the standard input.
class ScriptSession : public QObject
{
    Q_OBJECT

public:
    explicit ScriptSession(PlcLine& line);
    ~ScriptSession() override;

    /// Begins a script; false with file, line and reason when it cannot be read.
    bool runFile(const QString& path, QString* error);
    /// Takes commands from the standard input until it ends.
    void runInput();

signals:
    void finished(int exitCode); ///< 0 when every command did what it should, otherwise 1

private:
    void begin(bool stopAtFailure);
    /// A line that is not understood is told, counts as a failure, and the next one is taken.
    void onLine(const QString& text);

    PlcLine& m_line;
    std::unique_ptr<ScriptRunner> m_runner;
    std::unique_ptr<platform::StandardInput> m_input;
    int m_lines = 0;
    int m_misunderstood = 0;
    bool m_anyCommand = false;
};
