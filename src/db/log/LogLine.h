#pragma once

#include "db/log/LogStream.h"

namespace SystemLog {

/// The level of a line is also the type that it is stored and asked for by.
enum Level { Error = 0, Warning = 1, Information = 2, Debug = 3, Trace = 4 };

/// Takes a finished line: its level as the type, UTF-8 bytes, their number. Called on the thread that logs; it does not
/// block.
using Output = void (*)(int type, const char* message, int length);

/// Where lines go; nowhere until the system log exists. Any thread.
void setOutput(Output output);

/// Lines above this level are not written; 4, all of them, at the start.
int level();
void setLevel(int level);

/// One line: it begins with the local time, takes what is streamed into it, and goes to the output when it ends.
/// Costs less than a microsecond and never waits for the disk. Any thread.
///     SystemLog::LogLine(SystemLog::Information).stream() << "...";
class LogLine
{
public:
    explicit LogLine(int type);
    ~LogLine();
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;

    LogStream& stream() { return m_stream; }

private:
    const int m_type;
    LogStream m_stream;
};

/// One line at level 2.
void information(const QString& text);

/// The debug stream's category of what warning() writes there, so that it is not taken for a line of its own.
constexpr const char* ownCategory = "valvecell.systemlog";

/// One line at level 1, and the same as a warning of the debug stream: for what an operator can mend.
void warning(const QString& text);

} // namespace SystemLog
