#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>

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

/// The text of one log line, built in a buffer of fixed size without allocating. What does not fit is cut, text at a
/// whole character, numbers wholly.
class LogStream
{
public:
    static constexpr std::size_t capacity = 4000; ///< bytes

    const char* data() const { return m_buffer; }
    int size() const { return static_cast<int>(m_size); }
    std::size_t available() const { return capacity - m_size; }

    void append(const char* bytes, std::size_t length);
    void appendUtf8(const char* bytes, std::size_t length);
    void clear() { m_size = 0; }

    LogStream& operator<<(bool value) { return *this << (value ? '1' : '0'); }
    LogStream& operator<<(char value);
    LogStream& operator<<(int value) { return *this << static_cast<long long>(value); }
    LogStream& operator<<(unsigned value) { return *this << static_cast<unsigned long long>(value); }
    LogStream& operator<<(long value) { return *this << static_cast<long long>(value); }
    LogStream& operator<<(unsigned long value) { return *this << static_cast<unsigned long long>(value); }
    LogStream& operator<<(long long value);
    LogStream& operator<<(unsigned long long value);
    LogStream& operator<<(float value) { return *this << static_cast<double>(value); }
    LogStream& operator<<(double value);      ///< as "%.12g"
    LogStream& operator<<(const void* value); ///< "0x" and lower-case hexadecimal digits
    LogStream& operator<<(const char* utf8);
    LogStream& operator<<(const std::string& utf8);
    LogStream& operator<<(const QByteArray& utf8);
    LogStream& operator<<(const QString& text);

private:
    char m_buffer[capacity];
    std::size_t m_size = 0;
};

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

/// Logs a fault that lasts twice: when it begins, and, with the number of failures, when it is over. One thread.
class FaultNotice
{
public:
    /// Logs the first failure; those that follow are only counted.
    void failed(const QString& text)
    {
        if (++m_failures == 1)
            SystemLog::warning(text);
    }

    /// Logs the end, if anything had failed. "%1" in the text is the number of failures.
    void over(const QString& text)
    {
        if (m_failures > 0)
            SystemLog::warning(text.arg(m_failures));
        m_failures = 0;
    }

    bool lasts() const { return m_failures > 0; }

private:
    int m_failures = 0;
};
