#include "db/log/LogLine.h"

#include <QDebug>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <ctime>
#include <mutex>

namespace SystemLog {
namespace {

/// Of "yyyy-MM-dd hh:mm:ss".
constexpr std::size_t timeLength = 19;

std::atomic<Output> s_output{nullptr};

/// The variable is looked at and has no effect; kept, since plants have it in their start scripts.
int initialLevel()
{
    static_cast<void>(qEnvironmentVariableIsSet("MUDUO_LOG_TRACE"));
    return Trace;
}

std::atomic<int>& levelStore()
{
    static std::atomic<int> level{initialLevel()};
    return level;
}

std::tm localTime(std::time_t seconds)
{
    std::tm time{};
#ifdef Q_OS_WIN
    localtime_s(&time, &seconds);
#else
    localtime_r(&seconds, &time);
#endif
    return time;
}

/// Appends the local time; its text is made once a second for the whole process.
void appendTime(LogStream& stream)
{
    static std::mutex mutex; // guards the second and its text
    static std::time_t textSecond = -1;
    static char text[timeLength + 1];
    const std::time_t now = std::time(nullptr);
    const std::lock_guard<std::mutex> lock(mutex);
    if (now != textSecond) {
        const std::tm time = localTime(now);
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &time);
        textSecond = now;
    }
    if (stream.available() > timeLength)
        stream.append(text, timeLength);
}

/// The database cannot carry an apostrophe, and no line is to be lost for one.
QByteArray withoutApostrophes(const LogStream& stream)
{
    QByteArray text(stream.data(), stream.size());
    std::replace(text.begin(), text.end(), '\'', '`');
    return text;
}

/// Characters: more than any number takes.
constexpr std::size_t longestNumber = 32;

/// \param how the number, and for one with a fraction its form and precision
template <typename... How>
LogStream& appendNumber(LogStream& stream, How... how)
{
    char text[longestNumber];
    const std::to_chars_result end = std::to_chars(text, text + longestNumber, how...);
    stream.append(text, static_cast<std::size_t>(end.ptr - text));
    return stream;
}

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

} // namespace

void LogStream::append(const char* bytes, std::size_t length)
{
    if (length > available())
        return;
    std::memcpy(m_buffer + m_size, bytes, length);
    m_size += length;
}

void LogStream::appendUtf8(const char* bytes, std::size_t length)
{
    if (length > available()) {
        length = available();
        while (length > 0 && isContinuation(bytes[length]))
            --length;
    }
    append(bytes, length);
}

LogStream& LogStream::operator<<(char value)
{
    append(&value, 1);
    return *this;
}

LogStream& LogStream::operator<<(long long value)
{
    return appendNumber(*this, value);
}

LogStream& LogStream::operator<<(unsigned long long value)
{
    return appendNumber(*this, value);
}

LogStream& LogStream::operator<<(double value)
{
    return appendNumber(*this, value, std::chars_format::general, 12);
}

LogStream& LogStream::operator<<(const void* value)
{
    char text[longestNumber] = {'0', 'x'};
    const auto address = reinterpret_cast<std::uintptr_t>(value);
    const std::to_chars_result end = std::to_chars(text + 2, text + longestNumber, address, 16);
    append(text, static_cast<std::size_t>(end.ptr - text));
    return *this;
}

LogStream& LogStream::operator<<(const char* utf8)
{
    if (utf8)
        appendUtf8(utf8, std::strlen(utf8));
    return *this;
}

LogStream& LogStream::operator<<(const std::string& utf8)
{
    appendUtf8(utf8.data(), utf8.size());
    return *this;
}

LogStream& LogStream::operator<<(const QByteArray& utf8)
{
    appendUtf8(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    return *this;
}

LogStream& LogStream::operator<<(const QString& text)
{
    return *this << text.toUtf8();
}

void setOutput(Output output)
{
    s_output.store(output, std::memory_order_release);
}

int level()
{
    return levelStore().load(std::memory_order_relaxed);
}

void setLevel(int level)
{
    levelStore().store(level, std::memory_order_relaxed);
}

LogLine::LogLine(int type)
    : m_type(type)
{
    appendTime(m_stream);
    m_stream << ' ';
}

/// Nearly every line is without an apostrophe and goes out of the stream's buffer, not copied.
LogLine::~LogLine()
{
    const Output output = s_output.load(std::memory_order_acquire);
    if (!output || m_type > level())
        return;
    const char* const end = m_stream.data() + m_stream.size();
    if (std::find(m_stream.data(), end, '\'') == end) {
        output(m_type, m_stream.data(), m_stream.size());
    } else {
        const QByteArray text = withoutApostrophes(m_stream);
        output(m_type, text.constData(), text.size());
    }
}

void information(const QString& text)
{
    LogLine(Information).stream() << text;
}

void warning(const QString& text)
{
    QMessageLogger(nullptr, 0, nullptr, ownCategory).warning().noquote() << text;
    LogLine(Warning).stream() << text;
}

} // namespace SystemLog
