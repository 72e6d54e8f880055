#include "db/log/LogLine.h"

#include <QDebug>

#include <algorithm>
#include <atomic>
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

} // namespace

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
