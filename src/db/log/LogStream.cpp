#include "db/log/LogStream.h"

#include <charconv>
#include <cstring>

namespace SystemLog {
namespace {

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

} // namespace SystemLog
