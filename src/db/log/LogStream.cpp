#include "db/log/LogStream.h"

#include <cstdio>
#include <cstring>

namespace SystemLog {
namespace {

constexpr char digits[] = "0123456789abcdef";
/// Characters: more than any of the numbers below takes.
constexpr std::size_t longestNumber = 32;

/// Writes the value's digits so that they end at `end`; returns where they begin.
char* digitsBefore(char* end, unsigned long long value, unsigned base)
{
    do {
        *--end = digits[value % base];
        value /= base;
    } while (value != 0);
    return end;
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
    char text[longestNumber];
    char* const end = text + longestNumber;
    const auto bits = static_cast<unsigned long long>(value);
    char* begin = digitsBefore(end, value < 0 ? 0 - bits : bits, 10);
    if (value < 0)
        *--begin = '-';
    append(begin, static_cast<std::size_t>(end - begin));
    return *this;
}

LogStream& LogStream::operator<<(unsigned long long value)
{
    char text[longestNumber];
    char* const end = text + longestNumber;
    const char* const begin = digitsBefore(end, value, 10);
    append(begin, static_cast<std::size_t>(end - begin));
    return *this;
}

LogStream& LogStream::operator<<(double value)
{
    char text[longestNumber];
    const int length = std::snprintf(text, sizeof text, "%.12g", value);
    append(text, static_cast<std::size_t>(length));
    return *this;
}

LogStream& LogStream::operator<<(const void* value)
{
    char text[longestNumber];
    char* const end = text + longestNumber;
    char* begin = digitsBefore(end, reinterpret_cast<std::uintptr_t>(value), 16);
    *--begin = 'x';
    *--begin = '0';
    append(begin, static_cast<std::size_t>(end - begin));
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

} // namespace SystemLog
